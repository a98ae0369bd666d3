// What an index from sources alone costs, beside a bare parse of the same files: checkout_bench WIKI_SCOPE CHECKOUT
//
// The repository is made of copies of CHECKOUT, each under names of its own, until it has a million lines. The bare
// parse is the floor: on all cores it reads every file and makes its syntax tree, asks nothing of it and keeps nothing.
// Of all runs the best counts: what else the machine does only ever adds to a time.

#include "bench/child.h"
#include "fixtures/temporary_folder.h"
#include "host/sources/language.h"

#include <tree_sitter/api.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <regex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;
using bench::Cost;
using host::TemporaryFolder;
using host::sources::understood_language;

constexpr std::size_t LINES = 1'000'000;
constexpr std::size_t MANY_FILES = 10'000;
constexpr int ROUNDS = 3;

// What has changed as late is read again, because a file system may give its next change the same time.
constexpr std::chrono::seconds SETTLING(3);

struct SourceFile {
    std::string path;  // relative
    std::string text;
};

std::string text_of(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The sources of a checkout, but for what is hidden and what builds have left there.
std::vector<SourceFile> sources_of(const fs::path& checkout) {
    std::vector<SourceFile> files;
    for (auto entry = fs::recursive_directory_iterator(checkout); entry != fs::recursive_directory_iterator();
         ++entry) {
        const std::string name = entry->path().filename();
        if (entry->is_directory() && (name.starts_with('.') || name == "build" || name == "node_modules")) {
            entry.disable_recursion_pending();
        } else if (entry->is_regular_file() && understood_language("", name) != nullptr) {
            files.push_back({entry->path().lexically_relative(checkout), text_of(entry->path())});
        }
    }
    std::ranges::sort(files, {}, &SourceFile::path);
    return files;
}

std::size_t lines_in(const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count(text, '\n'));
}

// Writes copies of the files until they have so many lines. A copy calls its folders, and its namespaces after them,
// otherwise than the others do. Returns the number of files.
std::size_t write_copies(const std::vector<SourceFile>& files, const TemporaryFolder& folder, std::size_t lines) {
    static const std::regex folders(R"(\b(host|models|storage|utils|wiki|workers)\b)");
    std::size_t written = 0;
    std::size_t count = 0;
    for (int copy = 0; written < lines; ++copy) {
        const std::string own = "$1_" + std::to_string(copy);
        for (const SourceFile& file : files) {
            folder.write(std::regex_replace(file.path, folders, own), std::regex_replace(file.text, folders, own));
            written += lines_in(file.text);
            ++count;
        }
    }
    return count;
}

void parse(const fs::path& path, TSParser* parser) {
    const std::string text = text_of(path);
    ts_parser_set_language(parser, understood_language("", path.string())->grammar());
    ts_tree_delete(ts_parser_parse_string(parser, nullptr, text.data(), static_cast<std::uint32_t>(text.size())));
}

void parse_all(const std::vector<fs::path>& paths) {
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> threads;
    for (unsigned thread = 0; thread < std::max(std::thread::hardware_concurrency(), 1U); ++thread) {
        threads.emplace_back([&] {
            TSParser* const parser = ts_parser_new();
            for (std::size_t at = next++; at < paths.size(); at = next++) {
                parse(paths[at], parser);
            }
            ts_parser_delete(parser);
        });
    }
}

Cost best(const std::function<Cost()>& run) {
    std::vector<Cost> costs;
    for (int round = 0; round < ROUNDS; ++round) {
        costs.push_back(run());
    }
    return std::ranges::min(costs, {}, &Cost::elapsed_seconds);
}

void print(const char* what, const Cost& cost, double floor) {
    std::printf("| %s | %.2f | %.0f | %.0f |\n", what, cost.elapsed_seconds / floor, cost.elapsed_seconds * 1e3,
                cost.peak_megabytes);
}

// What an answer costs that looks for changes first.
struct AnswerCosts {
    Cost unchanged;
    Cost edited;    // a file has another line
    Cost declared;  // a file has another function
};

// A file ends with `declaration`, "#" being a number, when it has another function.
AnswerCosts answer_costs(const std::string& wiki_scope, const TemporaryFolder& checkout, const std::string& file,
                         const std::string& declaration) {
    const std::vector<std::string> command{wiki_scope, "stats", "--checkout", checkout / ""};
    bench::cost_of_program(command);
    std::this_thread::sleep_for(SETTLING);
    bench::cost_of_program(command);
    const auto cost_after = [&](const std::string& added) {
        std::ofstream(checkout / file, std::ios::app) << added;
        return bench::cost_of_program(command);
    };
    int functions = 0;
    AnswerCosts costs;
    costs.unchanged = best([&] { return cost_after(""); });
    costs.edited = best([&] { return cost_after("\n"); });
    costs.declared = best([&] {
        std::string added = declaration;
        return cost_after(added.replace(added.find('#'), 1, std::to_string(functions++)));
    });
    return costs;
}

void measure(const std::string& wiki_scope, const fs::path& own) {
    const std::vector<SourceFile> sources = sources_of(own);
    const TemporaryFolder cache;
    setenv("XDG_CACHE_HOME", (cache / "").c_str(), 1);  // NOLINT(concurrency-mt-unsafe): there is one thread
    const TemporaryFolder checkout;
    const std::size_t count = write_copies(sources, checkout, LINES);
    std::vector<fs::path> paths;
    for (const auto& entry : fs::recursive_directory_iterator(checkout / "")) {
        if (entry.is_regular_file()) {
            paths.push_back(entry.path());
        }
    }
    const TemporaryFolder made;
    const Cost bare = best([&] { return bench::cost_of([&] { parse_all(paths); }); });
    const Cost import = best([&] {
        return bench::cost_of_program({wiki_scope, "import", checkout / "", "--index", made / "index.db"});
    });
    const AnswerCosts large =
        answer_costs(wiki_scope, checkout, "host_0/command/main.cpp", "\nint new_function_#() {\n    return 0;\n}\n");

    const TemporaryFolder many;
    for (std::size_t file = 0; file < MANY_FILES; ++file) {
        many.write("d" + std::to_string(file / 100) + "/f" + std::to_string(file) + ".py", "def f():\n    pass\n");
    }
    const AnswerCosts small = answer_costs(wiki_scope, many, "d0/f0.py", "def new_function_#():\n    pass\n");

    const double floor = bare.elapsed_seconds;
    std::printf("%zu files, at least %zu lines\n\n| | bare parses | elapsed ms | peak MB |\n|---|---|---|---|\n", count,
                LINES);
    print("bare parse on all cores", bare, floor);
    print("`import` of the folder", import, floor);
    print("answer, nothing changed", large.unchanged, floor);
    print("answer, one file has another line", large.edited, floor);
    print("answer, one file has another function", large.declared, floor);
    print("answer, nothing changed in 10,000 small files", small.unchanged, floor);
    print("answer, one of these has another line", small.edited, floor);
    print("answer, one of these has another function", small.declared, floor);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: checkout_bench WIKI_SCOPE CHECKOUT\n", stderr);
        return 2;
    }
    try {
        measure(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "checkout_bench: %s\n", error.what());
        return 1;
    }
}
