#include "embedded/scip/import.h"

#include "embedded/index.h"
#include "embedded/scip/contents.h"
#include "embedded/scip/declarations.h"
#include "embedded/scip/replacement.h"
#include "embedded/scip/scip_file.h"
#include "embedded/scip/symbol.h"
#include "embedded/sqlite.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace embedded::scip {

namespace {

using Id = std::int64_t;  // of a row, from 1; 0 for none

// A row of a declaration before it has its number.
struct Row {
    SymbolNumber symbol;
    Lines lines;
    Declaration declaration;
};

// The declarations that a file defines, in the order of their rows.
std::vector<Row> rows_of(const FileContents& file, const SymbolTable& symbols) {
    std::vector<Row> rows;
    for (const auto& [symbol, lines] : file.definitions) {
        const auto description = file.descriptions.find(symbol);
        std::optional<Declaration> declaration =
            declaration_of(parse_symbol(symbols.symbol(symbol)).value(),
                           description == file.descriptions.end() ? Description() : description->second);
        if (declaration) {
            rows.push_back({symbol, lines.value_or(Lines()), std::move(*declaration)});
        }
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& left, const Row& right) { return left.lines.first < right.lines.first; });
    return rows;
}

// How far an import has come, and whoever wants to know.
class Steps {
  public:
    explicit Steps(const ImportProgress& progress) : progress_(progress) {}

    void expect(std::size_t total) { total_ = std::max<std::int64_t>(static_cast<std::int64_t>(total), 1); }

    void advance(std::size_t steps = 1) {
        done_ += static_cast<std::int64_t>(steps);
        tell();
    }

    void tell() const {
        if (progress_) {
            progress_(done_, total_);
        }
    }

  private:
    const ImportProgress& progress_;
    std::int64_t done_ = 0;
    std::int64_t total_ = 1;
};

// One import: fills a database that has the schema already.
class Import {
  public:
    Import(const Contents& contents, Connection& out, Steps& steps)
        : contents_(contents), out_(out), steps_(steps), targets_(contents.symbols.size()) {}

    void insert_meta(const std::string& source) {
        Statement insert(out_, "INSERT INTO meta(key, value) VALUES(?1, ?2)");
        const auto note = [&](std::string_view key, std::string_view value) {
            if (!value.empty()) {
                insert.bind(1, key);
                insert.bind(2, value);
                insert.run();
            }
        };
        const Metadata& metadata = contents_.metadata;
        std::string tool = metadata.tool_name;
        if (!tool.empty() && !metadata.tool_version.empty()) {
            tool += ' ';
        }
        tool += metadata.tool_version;
        note("source", source);
        note("tool", tool);
        note("project_root", metadata.project_root);
    }

    ImportCounts insert_rows() {
        insert_files();
        insert_declarations();
        insert_edges();
        counts_.unparsed_symbols = static_cast<std::int64_t>(contents_.symbols.unparsed());
        counts_.unusable_documents = static_cast<std::int64_t>(contents_.unusable_documents);
        return counts_;
    }

  private:
    // The declaration that other files' references to a symbol lead to.
    struct Target {
        Id id = 0;
        bool is_described = false;  // whether its file describes the symbol
    };

    // The declarations of one file, by symbol.
    using DeclarationIds = std::unordered_map<SymbolNumber, Id>;

    void insert_files() {
        Statement insert(out_, "INSERT INTO files(id, path, language) VALUES(?1, ?2, ?3)");
        std::set<std::string> languages;
        for (const auto& [path, file] : contents_.files) {
            const std::string language = language_of(file.language, path);
            insert.bind(1, ++counts_.files);
            insert.bind(2, path);
            if (language.empty()) {
                insert.bind_null(3);
            } else {
                insert.bind(3, language);
                languages.insert(language);
            }
            insert.run();
        }
        // An indexer that writes SCIP resolves imports as its language's compiler does.
        Statement insert_language(out_, "INSERT INTO languages(name, import_resolved) VALUES(?1, 1)");
        for (const std::string& language : languages) {
            insert_language.bind(1, language);
            insert_language.run();
        }
    }

    void insert_declarations() {
        Statement insert(out_, "INSERT INTO symbols(id, file_id, name, fqn, kind, is_export, start_line, end_line) "
                               "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
        for (const auto& [path, file] : contents_.files) {
            DeclarationIds& ids = declarations_.emplace_back();
            for (const Row& row : rows_of(file, contents_.symbols)) {
                const Id id = ++counts_.declarations;
                insert.bind(1, id);
                insert.bind(2, static_cast<Id>(declarations_.size()));
                insert.bind(3, row.declaration.name);
                insert.bind(4, row.declaration.fqn);
                insert.bind(5, row.declaration.kind);
                insert.bind(6, std::int64_t{row.declaration.is_export ? 1 : 0});
                insert.bind(7, std::int64_t{row.lines.first});
                insert.bind(8, std::int64_t{row.lines.last});
                insert.run();
                ids.emplace(row.symbol, id);
                declare(row.symbol, {id, file.descriptions.contains(row.symbol)});
            }
            steps_.tell();
        }
    }

    // Makes the declaration the target of other files' references, unless one before it has the better claim.
    void declare(SymbolNumber symbol, Target declaration) {
        Target& target = targets_[symbol];
        if (target.id == 0 || (declaration.is_described && !target.is_described)) {
            target = declaration;
        }
    }

    void insert_edges() {
        Statement insert(out_, "INSERT INTO edges(source_file_id, target_id, resolution, refs) VALUES(?1, ?2, ?3, ?4)");
        Id source = 0;
        for (const auto& [path, file] : contents_.files) {
            const DeclarationIds& own = declarations_[static_cast<std::size_t>(source++)];
            for (const Edge& edge : edges_of(file, own)) {
                insert.bind(1, source);
                insert.bind(2, edge.target);
                insert.bind(3, edge.is_local ? "local" : "import");
                insert.bind(4, edge.references);
                insert.run();
                ++counts_.edges;
            }
            steps_.advance(file.documents);
        }
    }

    struct Edge {
        Id target;
        bool is_local;
        std::int64_t references;
    };

    // The edges from a file, by target; a symbol leads to one target, and no two symbols to the same.
    [[nodiscard]] std::vector<Edge> edges_of(const FileContents& file, const DeclarationIds& own) const {
        std::vector<Edge> edges;
        for (const auto& [symbol, references] : file.references) {
            if (const auto declaration = own.find(symbol); declaration != own.end()) {
                edges.push_back({declaration->second, true, references});
            } else if (targets_[symbol].id != 0) {
                edges.push_back({targets_[symbol].id, false, references});
            }
        }
        std::sort(edges.begin(), edges.end(),
                  [](const Edge& left, const Edge& right) { return left.target < right.target; });
        return edges;
    }

    const Contents& contents_;
    Connection& out_;
    Steps& steps_;
    std::vector<Target> targets_;               // by symbol number
    std::vector<DeclarationIds> declarations_;  // by file
    ImportCounts counts_;
};

// Fills a new database and closes it.
ImportCounts write_index(const std::string& path, const std::string& source, const Contents& contents, Steps& steps) {
    Connection out(path, Connection::Mode::CREATE);
    out.watch([&] { steps.tell(); });
    // Whatever goes wrong, the file is thrown away; it is made durable as a whole when it is complete.
    out.execute("PRAGMA journal_mode = MEMORY; PRAGMA synchronous = OFF");
    Transaction transaction(out);
    create_schema(out);
    Import import(contents, out, steps);
    import.insert_meta(source);
    const ImportCounts counts = import.insert_rows();
    create_indexes(out);
    transaction.commit();
    return counts;
}

std::int64_t count_rows(const Connection& index, const std::string& table) {
    Statement count(index, "SELECT count(*) FROM " + table);
    count.step();
    return count.integer(0);
}

// Whether what was written can be opened again and holds every row.
bool is_complete(const std::string& path, const ImportCounts& counts, const Steps& steps) {
    Connection index = open_index(path);
    index.watch([&] { steps.tell(); });
    return count_rows(index, "files") == counts.files && count_rows(index, "symbols") == counts.declarations &&
           count_rows(index, "edges") == counts.edges;
}

}  // namespace

ImportCounts import_scip(const std::string& scip_path, const std::string& index_path, const ImportProgress& progress) {
    require_replaceable(index_path);
    Steps steps(progress);
    const Replacement replacement(index_path);
    ScipFile scip(scip_path, [&] { steps.tell(); });
    steps.expect(2 * scip.document_count());
    steps.tell();
    const Contents contents = read_contents(scip, [&] { steps.advance(); });
    steps.advance(contents.unusable_documents);
    if (contents.files.empty() && holds_something(index_path)) {
        throw std::runtime_error(scip_path + ": names no source file, so " + index_path +
                                 " is kept; run the indexer on sources, or remove the index first");
    }
    ImportCounts counts;
    try {
        counts = write_index(replacement.partial_path(), scip_path, contents, steps);
        if (!is_complete(replacement.partial_path(), counts, steps)) {
            throw cannot_replace(index_path, "rows are missing from what was written");
        }
    } catch (const SqliteError& error) {
        throw cannot_replace(index_path, error.reason());
    }
    replacement.sync();
    steps.tell();
    replacement.commit();
    return counts;
}

}  // namespace embedded::scip
