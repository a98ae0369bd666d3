#include "embedded/scip/index_writer.h"

#include "embedded/scip/declarations.h"
#include "embedded/scip/findings.h"
#include "embedded/scip/language.h"
#include "embedded/scip/references.h"
#include "embedded/scip/symbol.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace embedded::scip {

namespace {

using Id = std::int64_t;  // of a row, from 1

// A declaration as it stands in the index.
struct SymbolRow {
    std::string name;
    std::string fqn;
    std::string_view kind;
    bool is_public = false;
    LineRange lines;
};

// "src/a.ts" -> "a", "src/a/index.ts" -> "a"
std::string name_of_module(std::string_view path) {
    const auto last_segment = [](std::string_view text) { return text.substr(text.rfind('/') + 1); };
    const std::string_view file = last_segment(path);
    std::string_view stem = file.substr(0, file.rfind('.'));
    stem = stem.ends_with(".d") ? stem.substr(0, stem.size() - 2) : stem;
    if ((stem == "index" || stem == "__init__") && file.size() < path.size()) {
        stem = last_segment(path.substr(0, path.size() - file.size() - 1));
    }
    return std::string(stem.empty() ? file : stem);
}

class IndexWriter {
  public:
    IndexWriter(const Connection& out, const Gathered& gathered, TextSpool& spool, const AfterFile& after_file,
                ImportReport& report)
        : out_(out), gathered_(gathered), contents_(gathered.contents), spool_(spool), after_file_(after_file),
          report_(report), references_(contents_, gathered.rows) {}

    void write(const std::string& source) {
        insert_meta(source);
        insert_files();
        find_modules();
        insert_declarations();
        insert_resolutions();
        insert_edges();
    }

  private:
    void insert_meta(const std::string& source) {
        Statement insert(out_, "INSERT INTO meta(key, value) VALUES(?1, ?2)");
        const auto note = [&](std::string_view key, std::string_view value) {
            if (!value.empty()) {
                insert.bind(1, key);
                insert.bind(2, value);
                insert.run();
            }
        };
        note("source", source);
        note("tool", report_.tool);
        note("project_root", contents_.metadata.project_root);
    }

    void insert_files() {
        Statement insert(out_, "INSERT INTO files(id, path, language, content_hash) VALUES(?1, ?2, ?3, ?4)");
        std::set<std::string> languages;
        std::size_t place = 0;
        for (const auto& [path, file] : contents_.files) {
            const std::string language = language_of(file.language, path);
            insert.bind(1, static_cast<Id>(place + 1));
            insert.bind(2, path);
            bind_or_null(insert, 3, language);
            const std::int64_t hash = gathered_.content_hashes[place];
            if (hash == 0) {
                insert.bind_null(4);
            } else {
                insert.bind(4, gathered_.rows[place].has_moved ? 0 : hash);
            }
            insert.run();
            if (!language.empty()) {
                languages.insert(language);
            }
            ++place;
        }
        report_.files = static_cast<std::int64_t>(place);
        // An indexer that writes SCIP resolves imports as its language's compiler does.
        Statement insert_language(out_, "INSERT INTO languages(name, import_resolved) VALUES(?1, 1)");
        for (const std::string& language : languages) {
            insert_language.bind(1, language);
            insert_language.run();
        }
    }

    static void bind_or_null(Statement& statement, int parameter, const std::string& text) {
        text.empty() ? statement.bind_null(parameter) : statement.bind(parameter, text);
    }

    // Which files are declarations themselves, and with it the numbers of all declarations.
    void find_modules() {
        const std::vector<FileRows>& rows = gathered_.rows;
        is_module_.resize(rows.size());
        std::uint32_t place = 0;
        for (const auto& [path, file] : contents_.files) {
            if (references_.may_name_modules(file)) {
                for (const auto& [module, count] : references_.of(place, file).modules) {
                    is_module_[module] = true;
                }
            }
            ++place;
            after_file_(0);
        }
        Id next = 1;
        for (std::size_t at = 0; at < rows.size(); ++at) {
            first_ids_.push_back(next);
            next += static_cast<Id>(rows[at].rows.size()) + (is_module_[at] ? 1 : 0);
        }
        report_.declarations = next - 1;
    }

    static Id id_of(Resolution resolution) { return static_cast<Id>(resolution) + 1; }

    [[nodiscard]] Id id_of_module(std::uint32_t file) const { return first_ids_[file]; }

    [[nodiscard]] Id id_of(const RowPlace& place) const {
        return first_ids_[place.file] + (is_module_[place.file] ? 1 : 0) + place.row;
    }

    void insert_declarations() {
        Statement insert(out_, "INSERT INTO symbols(id, file_id, name, fqn, kind, is_export, start_line, end_line) "
                               "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)");
        Statement describe(out_, "INSERT INTO descriptions(symbol_id, signature, documentation) VALUES(?1, ?2, ?3)");
        std::uint32_t place = 0;
        for (const auto& [path, file] : contents_.files) {
            const FileRows& rows = gathered_.rows[place];
            Id id = first_ids_[place++];
            const auto add = [&](const SymbolRow& row) {
                insert.bind(1, id++);
                insert.bind(2, Id{place});
                insert.bind(3, row.name);
                insert.bind(4, row.fqn);
                insert.bind(5, row.kind);
                insert.bind(6, std::int64_t{row.is_public ? 1 : 0});
                insert.bind(7, std::int64_t{row.lines.first});
                insert.bind(8, std::int64_t{row.lines.last});
                insert.run();
            };
            if (is_module_[place - 1]) {
                add(row_of_module(path, rows));
            }
            for (std::uint32_t at = 0; at < rows.rows.size(); ++at) {
                const Row& row = rows.rows[at];
                if (!row.signature.empty() || !row.documentation.empty()) {
                    describe.bind(1, id);
                    describe.bind(2, spool_.read(row.signature));
                    describe.bind(3, spool_.read(row.documentation));
                    describe.run();
                }
                SymbolRow written = row_of(row, file);
                written.is_public = written.is_public && references_.lead_to({place - 1, at});
                add(written);
            }
            after_file_(0);
        }
    }

    [[nodiscard]] SymbolRow row_of_module(const std::string& path, const FileRows& rows) const {
        const Symbol symbol = parse_symbol(contents_.symbols.symbol(rows.modules.front())).value();
        return {name_of_module(path), fqn_of(symbol.descriptors), "module", true, {1, std::max(rows.line_count, 1)}};
    }

    [[nodiscard]] SymbolRow row_of(const Row& row, const FileContents& file) const {
        const Symbol symbol = parse_symbol(contents_.symbols.symbol(row.symbol)).value();
        const auto description = file.descriptions.find(row.symbol);
        return {
            name_of(symbol.descriptors, description == file.descriptions.end() ? Description() : description->second),
            fqn_of(symbol.descriptors), row.kind, row.is_public, row.lines};
    }

    void insert_resolutions() {
        Statement insert(out_, "INSERT INTO resolutions(id, name) VALUES(?1, ?2)");
        for (const Resolution resolution : {Resolution::AMBIGUOUS, Resolution::IMPORT, Resolution::LOCAL}) {
            insert.bind(1, id_of(resolution));
            insert.bind(2, name_of(resolution));
            insert.run();
        }
    }

    void insert_edges() {
        Statement insert(out_,
                         "INSERT INTO edges(source_file_id, target_id, resolution_id, refs) VALUES(?1, ?2, ?3, ?4)");
        struct EdgeRow {
            Id target;
            Resolution resolution;
            std::int64_t references;
        };
        Findings findings(contents_);
        std::uint32_t place = 0;
        for (const auto& [path, file] : contents_.files) {
            const FileReferences references = references_.of(place++, file);
            std::vector<EdgeRow> edges;
            for (const Edge& edge : references.edges) {
                edges.push_back({id_of(edge.target), edge.resolution, edge.references});
            }
            for (const auto& [module, count] : references.modules) {
                edges.push_back({id_of_module(module), Resolution::IMPORT, count});
            }
            std::ranges::stable_sort(edges, {}, &EdgeRow::target);
            for (const EdgeRow& edge : edges) {
                insert.bind(1, Id{place});
                insert.bind(2, edge.target);
                insert.bind(3, id_of(edge.resolution));
                insert.bind(4, edge.references);
                insert.run();
            }
            report_.edges += static_cast<std::int64_t>(edges.size());
            findings.add(path, file, references, place - 1);
            after_file_(file.documents);
        }
        findings.report(report_);
    }

    const Connection& out_;
    const Gathered& gathered_;
    const Contents& contents_;
    TextSpool& spool_;
    const AfterFile& after_file_;
    ImportReport& report_;
    References references_;
    std::vector<bool> is_module_;  // by file
    std::vector<Id> first_ids_;    // by file
};

}  // namespace

void write_rows(const Connection& out, const std::string& source, const Gathered& gathered, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report) {
    IndexWriter(out, gathered, spool, after_file, report).write(source);
}

}  // namespace embedded::scip
