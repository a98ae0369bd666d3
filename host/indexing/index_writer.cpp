#include "host/indexing/index_writer.h"

#include "host/indexing/edge_counts.h"
#include "host/indexing/file_rows.h"
#include "host/indexing/findings.h"
#include "host/threads/all_cores.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <future>
#include <set>
#include <vector>

namespace host::indexing {

namespace {

// Which files get a declaration as modules.
std::vector<bool> modules_named_in(const Extraction& extraction, const References& references,
                                   const AfterFile& after_file) {
    std::vector<std::vector<std::uint32_t>> named_in_files(extraction.files.size());
    const auto find_modules = [&](std::size_t at) {
        const auto file = static_cast<std::uint32_t>(at);
        if (references.may_name_modules(file)) {
            for (const auto& [module, count] : references.from(file).modules) {
                named_in_files[at].push_back(module);
            }
        }
    };
    on_all_cores(named_in_files.size(), find_modules, [&](std::size_t /*files*/) { after_file(0); });
    std::vector<bool> is_module(extraction.files.size());
    for (const std::vector<std::uint32_t>& modules : named_in_files) {
        for (const std::uint32_t module : modules) {
            is_module[module] = true;
        }
    }
    return is_module;
}

// Calls `use` for each file with what `prepare` returns for it, in order. Prepares some files at once on another
// thread, while those before are used.
template <class Prepare, class Use>
void in_order(std::size_t files, const Prepare& prepare, const Use& use) {
    constexpr std::size_t AT_ONCE = 64;
    using Prepared = decltype(prepare(std::uint32_t{}));
    const auto prepare_from = [&](std::size_t first) {
        std::vector<Prepared> prepared;
        for (std::size_t file = first; file < std::min(first + AT_ONCE, files); ++file) {
            prepared.push_back(prepare(static_cast<std::uint32_t>(file)));
        }
        return prepared;
    };
    const auto begin = [&](std::size_t first) {  // on this thread, later, where the system gives no other
        return std::async(std::launch::async | std::launch::deferred, prepare_from, first);
    };
    std::future<std::vector<Prepared>> next = begin(0);
    for (std::size_t file = 0; file < files;) {
        const std::vector<Prepared> prepared = next.get();
        next = begin(file + AT_ONCE);
        for (const Prepared& each : prepared) {
            use(static_cast<std::uint32_t>(file++), each);
        }
    }
}

class IndexWriter {
  public:
    IndexWriter(RowWriter& out, const Extraction& extraction, const References& references, TextSpool& spool,
                RowId room, const AfterFile& after_file, ImportReport& report)
        : out_(out), files_(extraction.files), extraction_(extraction), spool_(spool), after_file_(after_file),
          report_(report), references_(references),
          ids_(extraction, modules_named_in(extraction, references, after_file), room), counts_(ids_.last()) {}

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
        const auto prepare = [this](std::uint32_t file) { return texts_of(extraction_, file, ids_, spool_); };
        in_order(files_.size(), prepare, [this](std::uint32_t file, const std::vector<DeclarationTexts>& texts) {
            std::vector<DeclarationRow> rows = declaration_rows(extraction_, references_, file, ids_, texts);
            for (std::size_t at = 0; at < rows.size(); ++at) {
                const Description& description = texts[at].description;
                if (!description.is_empty()) {
                    out_.add(DescriptionRow{rows[at].id, description.signature, description.documentation});
                }
                rows[at].uses = counts_.uses(rows[at].id);
                out_.add(rows[at]);
                ++report_.declarations_by_kind[std::string(rows[at].kind)];
            }
            report_.declarations += std::ssize(rows);
            after_file_(0);
        });
    }

    void insert_resolutions() {
        for (const Resolution resolution : RESOLUTIONS) {
            out_.add(ResolutionRow{id_of(resolution), name_of(resolution)});
        }
    }

    struct FileEdges {
        FileReferences references;
        std::vector<EdgeRow> rows;
    };

    void insert_edges() {
        Findings findings(extraction_);
        const auto prepare = [this](std::uint32_t file) {
            FileEdges edges{references_.from(file), {}};
            edges.rows = edge_rows(edges.references, file, ids_);
            return edges;
        };
        in_order(files_.size(), prepare, [&](std::uint32_t file, const FileEdges& edges) {
            const bool is_test = utils::is_test_path(files_[file].path);
            for (const EdgeRow& edge : edges.rows) {
                out_.add(edge);
                counts_.add(edge, is_test);
            }
            report_.edges += static_cast<std::int64_t>(edges.rows.size());
            findings.add(file, edges.references);
            after_file_(files_[file].steps);
        });
        findings.report(report_);
        report_.edges_by_resolution = counts_.by_resolution();
    }

    RowWriter& out_;
    const std::vector<ExtractedFile>& files_;
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
                RowId room, const AfterFile& after_file, ImportReport& report) {
    IndexWriter(out, extraction, references, spool, room, after_file, report).write();
}

}  // namespace host::indexing
