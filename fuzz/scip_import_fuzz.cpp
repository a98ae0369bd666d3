// Arbitrary bytes as a SCIP file: they are refused in one line and nothing is left of them, or they become an index
// that keeps its promises and gives a page.

#include "fixtures/scip_builder.h"
#include "fixtures/temporary_folder.h"
#include "fuzz/promise.h"
#include "host/files/checkout.h"
#include "host/imports/import.h"
#include "host/page/page.h"
#include "host/page/page_json.h"
#include "host/page/page_markdown.h"
#include "host/sqlite/schema.h"
#include "host/sqlite/sqlite_database.h"
#include "host/sqlite/sqlite_index.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace host;
using fuzz::promise;
using indexing::ImportReport;

struct RowPromise {
    std::string_view text;
    std::string_view breach;  // a query for the rows that break it
};

constexpr auto ROW_PROMISES = std::to_array<RowPromise>({
    {"files are numbered by path",
     "SELECT 1 FROM (SELECT id, row_number() OVER (ORDER BY path) AS place FROM files) WHERE id <> place"},
    {"declarations are numbered by file and first line",
     "SELECT 1 FROM (SELECT id, row_number() OVER (ORDER BY file_id, start_line, id) AS place FROM symbols) "
     "WHERE id <> place"},
    {"resolutions are numbered by name",
     "SELECT 1 FROM (SELECT id, row_number() OVER (ORDER BY name) AS place FROM resolutions) WHERE id <> place"},
    {"an edge that is not ambiguous is local just when it stays in its file",
     "SELECT 1 FROM edges JOIN symbols ON symbols.id = target_id JOIN resolutions ON resolutions.id = resolution_id "
     "WHERE resolutions.name NOT IN ('ambiguous', iif(file_id = source_file_id, 'local', 'import'))"},
    {"a description is of a declaration and says something",
     "SELECT 1 FROM descriptions WHERE symbol_id NOT IN (SELECT id FROM symbols) OR signature || documentation = ''"},
    {"an edge stands for references", "SELECT 1 FROM edges WHERE refs < 1"},
    {"an edge leads from a file to a declaration",
     "SELECT 1 FROM edges "
     "WHERE source_file_id NOT IN (SELECT id FROM files) OR target_id NOT IN (SELECT id FROM symbols) "
     "OR resolution_id NOT IN (SELECT id FROM resolutions)"},
    {"a declaration is of a file", "SELECT 1 FROM symbols WHERE file_id NOT IN (SELECT id FROM files)"},
    {"a declaration is on lines of its file",
     "SELECT 1 FROM symbols WHERE start_line < 1 OR end_line < start_line OR end_line > 2147483647"},
});

// Where the input and the index lie, and a checkout that holds one file.
class Workshop {
  public:
    // Imports the input; none when it is refused.
    [[nodiscard]] std::optional<ImportReport> import() const {
        const auto check_progress = [](std::int64_t done, std::int64_t total) {
            promise(0 <= done && done <= total && total > 0, "the steps that are done are some of all");
        };
        try {
            return imports::import_scip({{folder_ / "in.scip"}, folder_ / "checkout"}, *SqliteIndex(index_).replace(),
                                        check_progress);
        } catch (const std::runtime_error& error) {
            const std::string_view said = error.what();
            promise(said.starts_with(folder_ / "in.scip" + ": "), "a failure names the file");
            promise(said.find('\n') == std::string_view::npos, "a failure is one line");
            return std::nullopt;
        }
    }

    // The input is a source file too.
    void put_input(std::string_view bytes) const {
        folder_.write("in.scip", bytes);
        folder_.write("checkout/src/a.ts", bytes);
        std::filesystem::remove(index_);
    }
    void put_index(std::string_view bytes) const { folder_.write("index.db", bytes); }
    [[nodiscard]] std::string index_bytes() const { return folder_.read("index.db"); }

    // Whether there is nothing but the input, the checkout and perhaps the index.
    [[nodiscard]] bool is_tidy() const {
        const std::filesystem::directory_iterator entries(folder_ / "");
        return std::distance(entries, {}) == (std::filesystem::exists(index_) ? 3 : 2);
    }

    [[nodiscard]] SqliteConnection open() const { return open_index(index_); }
    [[nodiscard]] Checkout checkout() const { return Checkout(folder_ / "checkout"); }

  private:
    TemporaryFolder folder_;
    std::string index_ = folder_ / "index.db";
};

void check_rows(const SqliteConnection& index) {
    for (const auto& [text, breach] : ROW_PROMISES) {
        promise(!Statement(index, breach).step(), text);
    }
}

std::vector<std::string> all_paths(const SqliteConnection& index) {
    std::vector<std::string> paths;
    for (Statement rows(index, "SELECT path FROM files"); rows.step();) {
        paths.emplace_back(rows.text(0));
    }
    return paths;
}

void check_page(const Workshop& workshop, const ImportReport& counts) {
    const SqliteConnection index = workshop.open();
    SqliteDatabase db(index, {});
    const Checkout checkout = workshop.checkout();
    const Page page = load_page(db, checkout, all_paths(index));
    promise(page.missing.empty() && std::cmp_equal(page.facts.files.size(), counts.files), "a page has every file");
    promise(std::cmp_equal(page.facts.symbols.size(), counts.declarations), "a page has every declaration");
    promise(std::cmp_equal(page.facts.inbound.size(), counts.edges), "a page of everything has every edge");
    for (const storage::ScopeFile& file : page.facts.files) {
        promise(!file.language || page.facts.import_resolved(file.path), "the imports of every language are resolved");
    }
    std::ostringstream markdown;
    write_markdown(markdown, page, db, {});
    std::ostringstream json;
    write_json(json, page, page_values(page, db));
    promise(nlohmann::json::accept(json.str()), "a page as JSON is JSON");
}

void check_accepted(const Workshop& workshop, const ImportReport& counts) {
    check_rows(workshop.open());
    check_page(workshop, counts);
    const std::string bytes = workshop.index_bytes();
    const bool is_replaced = workshop.import().has_value();
    promise(is_replaced == (counts.files > 0), "an index is replaced by another, but not by nothing");
    promise(workshop.index_bytes() == bytes, "equal input gives equal bytes");
    promise(workshop.is_tidy(), "an import leaves nothing but the index");
}

void check_refused(const Workshop& workshop, const std::string& old_index) {
    promise(workshop.is_tidy() && workshop.index_bytes().empty(), "a refused import leaves nothing");
    workshop.put_index(old_index);
    promise(!workshop.import(), "what is refused is refused again");
    promise(workshop.index_bytes() == old_index && workshop.is_tidy(), "a refused import leaves the old index");
}

std::string make_old_index(const Workshop& workshop) {
    workshop.put_input(scip::scip_file({scip::ScipDocument("old.ts").defines(scip::F)}));
    promise(workshop.import().has_value(), "a sound SCIP file is imported");
    return workshop.index_bytes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Workshop workshop;
    static const std::string old_index = make_old_index(workshop);
    workshop.put_input(std::string(data, data + size));
    if (const std::optional<ImportReport> counts = workshop.import()) {
        check_accepted(workshop, *counts);
    } else {
        check_refused(workshop, old_index);
    }
    return 0;
}
