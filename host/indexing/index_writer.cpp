#include "host/indexing/index_writer.h"

#include "host/files/file_language.h"
#include "host/indexing/edge_counts.h"
#include "host/indexing/file_rows.h"
#include "host/indexing/findings.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string_view>
#include <vector>

namespace host::indexing {

namespace {

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

// Which files get a declaration as modules.
std::vector<bool> modules_named_in(const Extraction& extraction, const References& references,
                                   const AfterFile& after_file) {
    std::vector<bool> is_module(extraction.files.size());
    for (std::uint32_t file = 0; file < extraction.files.size(); ++file) {
        if (references.may_name_modules(file)) {
            for (const auto& [module, count] : references.from(file).modules) {
                is_module[module] = true;
            }
        }
        after_file(0);
    }
    return is_module;
}

class IndexWriter {
  public:
    IndexWriter(RowWriter& out, const Extraction& extraction, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report)
        : out_(out), files_(extraction.files), symbols_(*extraction.symbols), extraction_(extraction), spool_(spool),
          after_file_(after_file), report_(report), references_(references),
          ids_(extraction, modules_named_in(extraction, references, after_file)), counts_(ids_.last()) {
        report_.declarations = ids_.last();
    }

    void write() {
        insert_files();
        insert_resolutions();
        insert_edges();  // counts the uses of declarations
        insert_declarations();
    }

  private:
    void insert_files() {
        std::set<std::string> languages;
        for (std::uint32_t place = 0; place < files_.size(); ++place) {
            const std::string& language = files_[place].language;
            out_.add(file_row(extraction_, place, ids_));
            ++report_.files_by_language[language];
            if (!language.empty()) {
                languages.insert(language);
            }
        }
        report_.files = static_cast<std::int64_t>(files_.size());
        for (const std::string& language : languages) {
            out_.add(LanguageRow{.name = language, .import_resolved = extraction_.languages.contains(language)});
        }
    }

    void insert_declarations() {
        for (std::uint32_t file = 0; file < files_.size(); ++file) {
            if (ids_.is_module(file)) {
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
        insert({.id = ids_.of_module(file),
                .file = RowIds::of_file(file),
                .name = name_of_module(files_[file].path),
                .fqn = fully_qualified.fqn,
                .kind = "module",
                .is_export = true,
                .first_line = 1,
                .last_line = std::max(declared.line_count, 1)});
    }

    void insert_declaration(const DeclarationPlace& place) {
        const Declaration& declaration = files_[place.file].declared.declarations[place.declaration];
        const RowId id = ids_.of(place);
        if (const Description description = description_of(declaration, spool_); !description.is_empty()) {
            out_.add(DescriptionRow{id, description.signature, description.documentation});
        }
        const DeclarationName name = symbols_.name_of(declaration.symbol, place.file);
        insert({.id = id,
                .file = RowIds::of_file(place.file),
                .name = name.name,
                .fqn = name.fqn,
                .kind = declaration.kind,
                .is_export = declaration.is_public && references_.lead_to(place),
                .first_line = declaration.lines.first,
                .last_line = declaration.lines.last});
    }

    void insert(DeclarationRow row) {
        row.uses = counts_.uses(row.id);
        out_.add(row);
        ++report_.declarations_by_kind[std::string(row.kind)];
    }

    void insert_resolutions() {
        for (const Resolution resolution : RESOLUTIONS) {
            out_.add(ResolutionRow{id_of(resolution), name_of(resolution)});
        }
    }

    void insert_edges() {
        Findings findings(extraction_);
        for (std::uint32_t file = 0; file < files_.size(); ++file) {
            const FileReferences references = references_.from(file);
            const bool is_test = utils::is_test_path(files_[file].path);
            const std::vector<EdgeRow> edges = edge_rows(references, file, ids_);
            for (const EdgeRow& edge : edges) {
                out_.add(edge);
                counts_.add(edge, is_test);
            }
            report_.edges += static_cast<std::int64_t>(edges.size());
            findings.add(file, references);
            after_file_(files_[file].steps);
        }
        findings.report(report_);
        report_.edges_by_resolution = counts_.by_resolution();
    }

    RowWriter& out_;
    const std::vector<ExtractedFile>& files_;
    const Symbols& symbols_;
    const Extraction& extraction_;
    TextSpool& spool_;
    const AfterFile& after_file_;
    ImportReport& report_;
    const References& references_;
    const RowIds ids_;
    EdgeCounts counts_;
};

}  // namespace

void write_rows(RowWriter& out, const Extraction& extraction, const References& references, TextSpool& spool,
                const AfterFile& after_file, ImportReport& report) {
    IndexWriter(out, extraction, references, spool, after_file, report).write();
}

}  // namespace host::indexing
