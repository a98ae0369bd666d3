// What whole commands cost on the index of a large repository, beside a bare scan of the same rows, and with the index
// in a server: command_bench WIKI_SCOPE [postgresql://...]
//
// The bare scan is the floor: it steps once through every row into and out of a page, in a table of nothing but
// integers that is clustered by target and has an index by source, and reads its four integers. It keeps nothing, sorts
// nothing, and knows no paths or names. Of all runs the best counts, of a command as of its scan: what else the machine
// does only ever adds to a time.

#include "bench/child.h"
#include "fixtures/generated_repository.h"
#include "fixtures/temporary_folder.h"
#include "host/sqlite/sqlite_connection.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

using bench::Cost;
using host::SqliteConnection;
using host::Statement;
using host::TemporaryFolder;

constexpr bench::Repository REPOSITORY = bench::LARGE_REPOSITORY;

// Files of the repository that stand one behind the other, named to the command as a page is.
struct PageShape {
    std::string name;
    std::vector<std::string> arguments;
    int first_file;
    int last_file;
};

std::vector<std::string> paths(int first, int last) {
    std::vector<std::string> paths;
    for (int file = first; file <= last; ++file) {
        paths.push_back(path_of(REPOSITORY, file));
    }
    return paths;
}

std::vector<PageShape> page_shapes() {
    constexpr int LAST = REPOSITORY.files - 1;
    constexpr int MIDDLE = REPOSITORY.files / 2;
    return {{"page .", {"."}, 0, LAST},
            {"page of a folder of 500 files", {"src/core"}, 0, REPOSITORY.core_files - 1},
            {"page of 5 files with a hot header", paths(0, 4), 0, 4},
            {"page of 12 files", paths(MIDDLE, MIDDLE + 11), MIDDLE, MIDDLE + 11}};
}

// Writes the file of a wiki whose pages share the files of the repository out, in their order.
void write_wiki(const std::string& file, int pages) {
    std::ofstream out(file);
    for (int page = 0; page < pages; ++page) {
        out << "[[page]]\ntitle = 'Page " << page << "'\npaths = [\n";
        for (const std::string& path :
             paths(REPOSITORY.files * page / pages, REPOSITORY.files * (page + 1) / pages - 1)) {
            out << "  '" << path << "',\n";
        }
        out << "]\n";
    }
}

// A table of integers that holds the edges of a repository, clustered both ways.
class BareTable {
  public:
    BareTable(std::string path, const std::string& index) : path_(std::move(path)) {
        const SqliteConnection connection(path_, SqliteConnection::Mode::CREATE);
        connection.execute("PRAGMA synchronous = OFF; ATTACH '" + index + "' AS made");
        connection.execute(R"sql(
            CREATE TABLE bare(target INTEGER, source INTEGER, resolution INTEGER, refs INTEGER,
                              PRIMARY KEY(target, source, resolution)) WITHOUT ROWID;
            INSERT INTO bare SELECT target_id, source_file_id, resolution_id, refs FROM made.edges
                ORDER BY target_id, source_file_id, resolution_id;
            CREATE INDEX bare_by_source ON bare(source, target, resolution, refs);
        )sql");
    }

    // Reads the rows into and out of some files; how many there are.
    std::size_t scan(const PageShape& page) const {
        const SqliteConnection connection(path_, SqliteConnection::Mode::READ);
        connection.execute("PRAGMA cache_size = -65536");
        const std::int64_t declarations = REPOSITORY.declarations_per_file;
        return rows_read(connection, "SELECT source, target, resolution, refs FROM bare WHERE target BETWEEN ?1 AND ?2",
                         page.first_file * declarations + 1, (page.last_file + 1) * declarations) +
               rows_read(connection, "SELECT source, target, resolution, refs FROM bare WHERE source BETWEEN ?1 AND ?2",
                         page.first_file + 1, page.last_file + 1);
    }

  private:
    static std::size_t rows_read(const SqliteConnection& connection, const char* query, std::int64_t first,
                                 std::int64_t last) {
        Statement rows(connection, query);
        rows.bind(1, first);
        rows.bind(2, last);
        std::size_t count = 0;
        while (rows.step()) {
            for (const int column : {0, 1, 2, 3}) {
                static_cast<void>(rows.integer(column));
            }
            ++count;
        }
        return count;
    }

    std::string path_;
};

// The costs of several things, of which each is run as often as the others, in turns.
class Costs {
  public:
    void add(const std::string& name, std::function<Cost()> run) { runs_.emplace_back(name, std::move(run)); }

    void run(int rounds) {
        for (int round = 0; round < rounds; ++round) {
            for (const auto& [name, run] : runs_) {
                costs_[name].push_back(run());
            }
        }
    }

    // The best of all runs.
    [[nodiscard]] Cost of(const std::string& name) const {
        return std::ranges::min(costs_.at(name), {}, &Cost::processor_seconds);
    }

  private:
    std::vector<std::pair<std::string, std::function<Cost()>>> runs_;
    std::map<std::string, std::vector<Cost>> costs_;
};

// The command with its index in a server instead of a file.
std::vector<std::string> in_server(std::vector<std::string> command, const std::string& server) {
    *std::next(std::ranges::find(command, "--index")) = server;
    command.insert(command.end(), {"--repository", "large"});
    return command;
}

void measure(const std::string& wiki_scope, const std::string& server) {
    constexpr int ROUNDS = 5;
    const TemporaryFolder folder;
    const std::string scip = folder / "large.scip";
    const std::string index = folder / "large.db";
    const std::string checkout = folder / "empty";
    std::filesystem::create_directory(checkout);
    write_scip(REPOSITORY, scip);
    const std::vector<std::string> import{wiki_scope, "import", scip, "--index", index};
    bench::cost_of_program(import);
    if (!server.empty()) {
        bench::cost_of_program({wiki_scope, "init", "--index", server});
        bench::cost_of_program(in_server(import, server));
    }
    const BareTable bare(folder / "bare.db", index);
    const std::string changed_index = folder / "changed.db";
    bench::Repository changed = REPOSITORY;
    changed.renamed_files = 50;
    write_scip(changed, folder / "changed.scip");
    bench::cost_of_program({wiki_scope, "import", folder / "changed.scip", "--index", changed_index});

    Costs costs;
    std::vector<std::string> served;  // the commands that are run with both kinds of index
    const auto add_command = [&](const std::string& name, const std::vector<std::string>& command) {
        costs.add(name, [command] { return bench::cost_of_program(command); });
        if (!server.empty()) {
            costs.add("served " + name,
                      [command, &server] { return bench::cost_of_program(in_server(command, server)); });
            served.push_back(name);
        }
    };
    add_command("import", import);
    for (const PageShape& page : page_shapes()) {
        std::vector<std::string> command{wiki_scope, "page", "--index", index, "--checkout", checkout};
        command.insert(command.end(), page.arguments.begin(), page.arguments.end());
        add_command(page.name, command);
        costs.add("bare " + page.name, [&bare, page] { return bench::cost_of([&] { bare.scan(page); }); });
        if (page.arguments.front() == ".") {
            command.insert(command.end(), {"--format", "json"});
            costs.add(page.name + " --format json", [command] { return bench::cost_of_program(command); });
        }
    }
    const std::vector<std::vector<std::string>> lookups{
        {"files"}, {"find", "art"}, {"stats"}};  // every name holds "art"
    for (const std::vector<std::string>& lookup : lookups) {
        std::vector<std::string> command{wiki_scope};
        command.insert(command.end(), lookup.begin(), lookup.end());
        command.insert(command.end(), {"--index", index});
        add_command(lookup.front(), command);
    }
    costs.add("diff", [&] { return bench::cost_of_program({wiki_scope, "diff", index, changed_index}); });
    constexpr int PAGES = 300;
    write_wiki(folder / "wiki.toml", PAGES);
    costs.add("pages", [&] {
        std::filesystem::remove_all(folder / "pages");
        return bench::cost_of_program({wiki_scope, "pages", folder / "wiki.toml", "--out", folder / "pages", "--index",
                                       index, "--checkout", checkout});
    });
    costs.run(ROUNDS);

    const PageShape all = page_shapes().front();
    std::printf("%zu MB of SCIP, %zu MB of index; one bare scan of all rows %.2f s\n\n",
                std::filesystem::file_size(scip) / 1'000'000, std::filesystem::file_size(index) / 1'000'000,
                costs.of("bare " + all.name).processor_seconds);
    std::printf("| Command | rows | bare scans | elapsed ms | peak MB |\n|---|---|---|---|---|\n");
    const auto print = [&](const std::string& name, const PageShape& page) {
        const Cost cost = costs.of(name);
        std::printf("| `%s` | %zu | %.2g | %.0f | %.0f |\n", name.c_str(), bare.scan(page),
                    cost.processor_seconds / costs.of("bare " + page.name).processor_seconds,
                    cost.elapsed_seconds * 1e3, cost.peak_megabytes);
    };
    print("import", all);
    for (const PageShape& page : page_shapes()) {
        print(page.name, page);
    }
    print(all.name + " --format json", all);
    for (const std::vector<std::string>& lookup : lookups) {
        print(lookup.front(), all);
    }
    print("diff", all);
    print("pages", all);
    if (!server.empty()) {
        std::printf("\n| Command | elapsed ms with a file | with a server | times |\n|---|---|---|---|\n");
    }
    for (const std::string& name : served) {
        const double with_file = costs.of(name).elapsed_seconds;
        const double with_server = costs.of("served " + name).elapsed_seconds;
        std::printf("| `%s` | %.0f | %.0f | %.1f |\n", name.c_str(), with_file * 1e3, with_server * 1e3,
                    with_server / with_file);
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) {
        std::fputs("usage: command_bench WIKI_SCOPE [postgresql://...]\n", stderr);
        return 2;
    }
    try {
        measure(argv[1], argc == 3 ? argv[2] : "");
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "command_bench: %s\n", error.what());
        return 1;
    }
}
