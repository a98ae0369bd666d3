#include "host/indexing/index_writer.h"

#include "host/files/file_language.h"
#include "host/indexing/findings.h"
#include "utils/path_filter.h"
#include "workers/wiki/scope/uses.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

namespace host::indexing {

namespace {

constexpr std::array RESOLUTIONS{Resolution::AMBIGUOUS, Resolution::IMPORT, Resolution::LOCAL, Resolution::UNIQUE};

// "src/a.ts" -> "a", "src/a/index.ts" -> "a"
std::string name_of_module(std::string_view path) {
    const auto last_segment = [](std::string_view text) { return text.substr(text.rfind('/') + 1); };
    const std::string_view file = last_segment(path);
    if (stands_for_folder(path) && file.size() < path.size()) {
        return std::string(last_segment(path.substr(0, path.size() - file.size() - 1)));
    }
    const std::string_view stem = stem_of(file);
    return std::string(stem.empty() ? file : stem);
}

// The number of lines that declarations, ordered by first line, cover together.
std::int64_t declared_lines(const std::vector<Declaration>& declarations) {
    std::int64_t lines = 0;
    std::int64_t last = 0;
    for (const Declaration& declaration : declarations) {
        const LineSpan& span = declaration.lines;
        lines += std::max<std::int64_t>(span.last - std::max<std::int64_t>(span.first - 1, last), 0);
        last = std::max<std::int64_t>(span.last, last);
    }
    return lines;
}

// The content hash as the index stores it: none when no source was read, 0 when it has changed since it was indexed.
std::optional<std::int64_t> content_hash_of(const ExtractedFile& file) {
    if (file.content_hash == 0) {
        return std::nullopt;
    }
    return file.has_moved ? 0 : file.content_hash;
}

class IndexWriter {
  public:
    IndexWriter(RowWriter& out, const Extraction& extraction, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report)
        : out_(out), files_(extraction.files), symbols_(*extraction.symbols), extraction_(extraction), spool_(spool),
          after_file_(after_file), report_(report), references_(references) {}

    void write() {
        number_declarations();
        insert_files();
        insert_resolutions();
        insert_edges();  // counts the uses of declarations
        insert_declarations();
    }

  private:
    void insert_files() {
        std::set<std::string> languages;
        for (std::size_t place = 0; place < files_.size(); ++place) {
            const ExtractedFile& file = files_[place];
            out_.add(FileRow{.id = static_cast<RowId>(place + 1),
                             .path = file.path,
                             .language = file.language,
                             .content_hash = content_hash_of(file),
                             .declarations = first_ids_[place + 1] - first_ids_[place],
                             .declared_lines = declared_lines(file.declared.declarations)});
            ++report_.files_by_language[file.language];
            if (!file.language.empty()) {
                languages.insert(file.language);
            }
        }
        report_.files = static_cast<std::int64_t>(files_.size());
        for (const std::string& language : languages) {
            out_.add(LanguageRow{.name = language, .import_resolved = extraction_.languages.contains(language)});
        }
    }

    // Finds the files that get a declaration as modules, and assigns the ids of all declarations.
    void number_declarations() {
        is_module_.resize(files_.size());
        for (std::uint32_t file = 0; file < files_.size(); ++file) {
            if (references_.may_name_modules(file)) {
                for (const auto& [module, count] : references_.from(file).modules) {
                    is_module_[module] = true;
                }
            }
            after_file_(0);
        }
        RowId next = 1;
        for (std::size_t file = 0; file < files_.size(); ++file) {
            first_ids_.push_back(next);
            next += static_cast<RowId>(files_[file].declared.declarations.size()) + (is_module_[file] ? 1 : 0);
        }
        first_ids_.push_back(next);
        report_.declarations = next - 1;
        uses_.resize(static_cast<std::size_t>(next));
    }

    static RowId id_of(Resolution resolution) { return static_cast<RowId>(resolution) + 1; }

    [[nodiscard]] RowId id_of_module(std::uint32_t file) const { return first_ids_[file]; }

    [[nodiscard]] RowId id_of(const DeclarationPlace& place) const {
        return first_ids_[place.file] + (is_module_[place.file] ? 1 : 0) + place.declaration;
    }

    void insert_declarations() {
        for (std::uint32_t file = 0; file < files_.size(); ++file) {
            if (is_module_[file]) {
                insert_module(file);
            }
            for (std::uint32_t at = 0; at < files_[file].declared.declarations.size(); ++at) {
                insert_declaration({file, at});
            }
            after_file_(0);
        }
    }

    void insert_module(std::uint32_t file) {
        const FileDeclarations& declared = files_[file].declared;
        const DeclarationName fully_qualified = symbols_.name_of(declared.modules.front(), file);
        insert({.id = id_of_module(file),
                .file = file + 1,
                .name = name_of_module(files_[file].path),
                .fqn = fully_qualified.fqn,
                .kind = "module",
                .is_export = true,
                .first_line = 1,
                .last_line = std::max(declared.line_count, 1)});
    }

    void insert_declaration(const DeclarationPlace& place) {
        const Declaration& declaration = files_[place.file].declared.declarations[place.declaration];
        const RowId id = id_of(place);
        const std::string signatures = signatures_of(declaration);
        if (!signatures.empty() || !declaration.documentation.empty()) {
            out_.add(DescriptionRow{id, signatures, spool_.read(declaration.documentation)});
        }
        const DeclarationName name = symbols_.name_of(declaration.symbol, place.file);
        insert({.id = id,
                .file = place.file + 1,
                .name = name.name,
                .fqn = name.fqn,
                .kind = declaration.kind,
                .is_export = declaration.is_public && references_.lead_to(place),
                .first_line = declaration.lines.first,
                .last_line = declaration.lines.last});
    }

    void insert(DeclarationRow row) {
        row.uses = uses_[static_cast<std::size_t>(row.id)];
        out_.add(row);
        ++report_.declarations_by_kind[std::string(row.kind)];
    }

    // The signatures of a declaration and of those merged into it, one a line, each once.
    [[nodiscard]] std::string signatures_of(const Declaration& declaration) const {
        std::vector<std::string> signatures{spool_.read(declaration.signature)};
        for (const SpooledText& further : declaration.further_signatures) {
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

    void insert_resolutions() {
        for (const Resolution resolution : RESOLUTIONS) {
            out_.add(ResolutionRow{id_of(resolution), name_of(resolution)});
            is_evidence_.at(static_cast<std::size_t>(id_of(resolution))) =
                wiki::scope::use_rules(name_of(resolution)).is_evidence;
        }
    }

    void insert_edges() {
        Findings findings(extraction_);
        for (std::uint32_t file = 0; file < files_.size(); ++file) {
            const FileReferences references = references_.from(file);
            const bool is_test = utils::is_test_path(files_[file].path);
            const std::vector<EdgeRow> edges = rows_of(references, file);
            for (const EdgeRow& edge : edges) {
                out_.add(edge);
                count(edge, is_test);
            }
            report_.edges += static_cast<std::int64_t>(edges.size());
            findings.add(file, references);
            after_file_(files_[file].steps);
        }
        findings.report(report_);
        for (const Resolution resolution : RESOLUTIONS) {
            report_.edges_by_resolution[std::string(name_of(resolution))] =
                edges_by_resolution_.at(static_cast<std::size_t>(id_of(resolution)));
        }
    }

    [[nodiscard]] std::vector<EdgeRow> rows_of(const FileReferences& references, std::uint32_t file) const {
        const RowId source = RowId{file} + 1;
        std::vector<EdgeRow> rows;
        for (const Edge& edge : references.edges) {
            rows.push_back({source, id_of(edge.target), id_of(edge.resolution), edge.references});
        }
        for (const auto& [module, count] : references.modules) {
            rows.push_back({source, id_of_module(module), id_of(Resolution::IMPORT), count});
        }
        std::ranges::stable_sort(rows, {}, &EdgeRow::target);
        return rows;
    }

    void count(const EdgeRow& edge, bool is_from_test) {
        EdgeCount& count = edges_by_resolution_.at(static_cast<std::size_t>(edge.resolution));
        ++count.edges;
        count.references += edge.references;
        if (!is_from_test && is_evidence_.at(static_cast<std::size_t>(edge.resolution))) {
            uses_[static_cast<std::size_t>(edge.target)] += edge.references;
        }
    }

    RowWriter& out_;
    const std::vector<ExtractedFile>& files_;
    const Symbols& symbols_;
    const Extraction& extraction_;
    TextSpool& spool_;
    const AfterFile& after_file_;
    ImportReport& report_;
    const References& references_;
    std::vector<bool> is_module_;     // by file
    std::vector<RowId> first_ids_;    // by file; one more element holds the id after the last
    std::vector<std::int64_t> uses_;  // by the id of a declaration
    std::array<EdgeCount, RESOLUTIONS.size() + 1> edges_by_resolution_{};  // by the id of a resolution
    std::array<bool, RESOLUTIONS.size() + 1> is_evidence_{};               // likewise
};

}  // namespace

void write_rows(RowWriter& out, const Extraction& extraction, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report) {
    IndexWriter(out, extraction, references, spool, after_file, report).write();
}

}  // namespace host::indexing
