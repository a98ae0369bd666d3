#include "host/scip/index_writer.h"

#include "host/scip/declarations.h"
#include "host/scip/findings.h"
#include "host/scip/language.h"
#include "host/scip/references.h"
#include "host/scip/symbol.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace host::scip {

namespace {

constexpr std::array RESOLUTIONS{Resolution::AMBIGUOUS, Resolution::IMPORT, Resolution::LOCAL};

// What the index says of a declaration.
struct Declaration {
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

// How many lines some rows, which stand by first line, take up together.
std::int64_t declared_lines(const FileRows& rows) {
    std::int64_t lines = 0;
    std::int64_t last = 0;
    for (const Row& row : rows.rows) {
        lines += std::max<std::int64_t>(row.lines.last - std::max<std::int64_t>(row.lines.first - 1, last), 0);
        last = std::max<std::int64_t>(row.lines.last, last);
    }
    return lines;
}

class IndexWriter {
  public:
    IndexWriter(RowWriter& out, const Gathered& gathered, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report)
        : out_(out), gathered_(gathered), contents_(gathered.contents), spool_(spool), after_file_(after_file),
          report_(report), references_(references) {}

    void write() {
        find_modules();
        insert_files();
        insert_resolutions();
        insert_edges();  // which counts the uses of declarations
        insert_declarations();
    }

  private:
    void insert_files() {
        std::set<std::string> languages;
        std::size_t place = 0;
        for (const auto& [path, file] : contents_.files) {
            const std::string language = language_of(file.language, path);
            std::optional<std::int64_t> hash;
            if (gathered_.content_hashes[place] != 0) {
                hash = gathered_.rows[place].has_moved ? 0 : gathered_.content_hashes[place];
            }
            out_.add(FileRow{.id = static_cast<RowId>(place + 1),
                             .path = path,
                             .language = language,
                             .content_hash = hash,
                             .declarations = first_ids_[place + 1] - first_ids_[place],
                             .declared_lines = declared_lines(gathered_.rows[place])});
            ++report_.files_by_language[language];
            if (!language.empty()) {
                languages.insert(language);
            }
            ++place;
        }
        report_.files = static_cast<std::int64_t>(place);
        // An indexer that writes SCIP resolves imports as its language's compiler does.
        for (const std::string& language : languages) {
            out_.add(LanguageRow{.name = language, .import_resolved = true});
        }
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
        RowId next = 1;
        for (std::size_t at = 0; at < rows.size(); ++at) {
            first_ids_.push_back(next);
            next += static_cast<RowId>(rows[at].rows.size()) + (is_module_[at] ? 1 : 0);
        }
        first_ids_.push_back(next);
        report_.declarations = next - 1;
        uses_.resize(static_cast<std::size_t>(next));
    }

    static RowId id_of(Resolution resolution) { return static_cast<RowId>(resolution) + 1; }

    [[nodiscard]] RowId id_of_module(std::uint32_t file) const { return first_ids_[file]; }

    [[nodiscard]] RowId id_of(const RowPlace& place) const {
        return first_ids_[place.file] + (is_module_[place.file] ? 1 : 0) + place.row;
    }

    void insert_declarations() {
        std::uint32_t place = 0;
        for (const auto& [path, file] : contents_.files) {
            const FileRows& rows = gathered_.rows[place];
            RowId id = first_ids_[place++];
            const auto add = [&](const Declaration& found) {
                out_.add(DeclarationRow{.id = id,
                                        .file = place,
                                        .name = found.name,
                                        .fqn = found.fqn,
                                        .kind = found.kind,
                                        .is_export = found.is_public,
                                        .first_line = found.lines.first,
                                        .last_line = found.lines.last,
                                        .uses = uses_[static_cast<std::size_t>(id)]});
                ++report_.declarations_by_kind[std::string(found.kind)];
                ++id;
            };
            if (is_module_[place - 1]) {
                add(module(path, rows));
            }
            for (std::uint32_t at = 0; at < rows.rows.size(); ++at) {
                const Row& row = rows.rows[at];
                const std::string signatures = signatures_of(row);
                if (!signatures.empty() || !row.documentation.empty()) {
                    out_.add(DescriptionRow{id, signatures, spool_.read(row.documentation)});
                }
                Declaration found = declaration(row, file);
                found.is_public = found.is_public && references_.lead_to({place - 1, at});
                add(found);
            }
            after_file_(0);
        }
    }

    // The heads of all declarations that are one row, each once and below the one before.
    [[nodiscard]] std::string signatures_of(const Row& row) const {
        std::vector<std::string> signatures{spool_.read(row.signature)};
        for (const SpooledText& further : row.further_signatures) {
            signatures.push_back(spool_.read(further));
        }
        std::string text;
        for (auto signature = signatures.begin(); signature != signatures.end(); ++signature) {
            const bool is_again = std::find(signatures.begin(), signature, *signature) != signature;
            if (!signature->empty() && !is_again) {
                text.append(text.empty() ? "" : "\n").append(*signature);
            }
        }
        return text;
    }

    [[nodiscard]] Declaration module(const std::string& path, const FileRows& rows) const {
        const Symbol symbol = parse_symbol(contents_.symbols.symbol(rows.modules.front())).value();
        return {name_of_module(path), fqn_of(symbol.descriptors), "module", true, {1, std::max(rows.line_count, 1)}};
    }

    [[nodiscard]] Declaration declaration(const Row& row, const FileContents& file) const {
        const Symbol symbol = parse_symbol(contents_.symbols.symbol(row.symbol)).value();
        const auto description = file.descriptions.find(row.symbol);
        return {
            name_of(symbol.descriptors, description == file.descriptions.end() ? Description() : description->second),
            fqn_of(symbol.descriptors), row.kind, row.is_public, row.lines};
    }

    void insert_resolutions() {
        for (const Resolution resolution : RESOLUTIONS) {
            out_.add(ResolutionRow{id_of(resolution), name_of(resolution)});
        }
    }

    void insert_edges() {
        Findings findings(contents_);
        std::uint32_t place = 0;
        for (const auto& [path, file] : contents_.files) {
            const FileReferences references = references_.of(place++, file);
            std::vector<EdgeRow> edges;
            for (const Edge& edge : references.edges) {
                edges.push_back({place, id_of(edge.target), id_of(edge.resolution), edge.references});
            }
            for (const auto& [module, count] : references.modules) {
                edges.push_back({place, id_of_module(module), id_of(Resolution::IMPORT), count});
            }
            std::ranges::stable_sort(edges, {}, &EdgeRow::target);
            const bool is_test = utils::is_test_path(path);
            for (const EdgeRow& edge : edges) {
                out_.add(edge);
                count(edge, is_test);
            }
            report_.edges += static_cast<std::int64_t>(edges.size());
            findings.add(path, file, references, place - 1);
            after_file_(file.documents);
        }
        findings.report(report_);
        for (const Resolution resolution : RESOLUTIONS) {
            report_.edges_by_resolution[std::string(name_of(resolution))] =
                edges_by_resolution_.at(static_cast<std::size_t>(id_of(resolution)));
        }
    }

    void count(const EdgeRow& edge, bool is_from_test) {
        EdgeCount& count = edges_by_resolution_.at(static_cast<std::size_t>(edge.resolution));
        ++count.edges;
        count.references += edge.references;
        if (!is_from_test && edge.resolution != id_of(Resolution::AMBIGUOUS)) {
            uses_[static_cast<std::size_t>(edge.target)] += edge.references;
        }
    }

    RowWriter& out_;
    const Gathered& gathered_;
    const Contents& contents_;
    TextSpool& spool_;
    const AfterFile& after_file_;
    ImportReport& report_;
    const References& references_;
    std::vector<bool> is_module_;     // by file
    std::vector<RowId> first_ids_;    // by file, and behind the last one the id that comes next
    std::vector<std::int64_t> uses_;  // by the id of a declaration
    std::array<EdgeCount, RESOLUTIONS.size() + 1> edges_by_resolution_{};  // by the id of a resolution
};

}  // namespace

void write_rows(RowWriter& out, const Gathered& gathered, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report) {
    IndexWriter(out, gathered, references, spool, after_file, report).write();
}

}  // namespace host::scip
