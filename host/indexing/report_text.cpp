#include "host/indexing/report_text.h"

#include "host/text/counted.h"
#include "host/text/printable.h"

#include <array>
#include <ostream>

namespace host::indexing {

namespace {

// "src/a.ts, src/b.ts and 3 more"
std::string listed(const Examples& examples) {
    std::string list;
    for (const std::string& example : examples.first) {
        list.append(list.empty() ? "" : ", ").append(example);
    }
    const std::int64_t more = examples.count - static_cast<std::int64_t>(examples.first.size());
    return more > 0 ? list + " and " + std::to_string(more) + " more" : list;
}

std::string passed_over(const ImportReport& report) {
    std::string line;
    const auto add = [&](std::int64_t count, const std::string& thing, const std::string& fault) {
        if (count > 0) {
            line += (line.empty() ? "Skipped: " : ", ") + counted(count, thing) + " " + fault;
        }
    };
    add(report.unparsed_symbols, "symbol", "that cannot be parsed or printed");
    add(report.unusable_documents, "document", "without a usable path");
    add(report.unusable_definitions, "definition", "without a range");
    add(report.misnamed_references, "reference", "whose name differs in the source");
    add(report.references_in_test_code, "reference", "in test code of source files");
    return line;
}

std::string unresolved(const ImportReport& report) {
    std::string line;
    for (const auto& [language, count] : report.unresolved_by_language) {
        line += (line.empty() ? "Names that lead to no declaration here, by language: " : ", ") +
                (language.empty() ? "(unknown)" : language) + " " + std::to_string(count);
    }
    return line;
}

std::string leading_nowhere(const ImportReport& report) {
    std::string line;
    for (const auto& [package, count] : report.nowhere) {
        line += (line.empty() ? "References that lead out of the index, by package: " : ", ") +
                (package == "." ? "(no name)" : package) + " " + std::to_string(count);
    }
    return line;
}

// A line about examples, empty when there are none.
std::string about(const Examples& examples, const std::string& what, const std::string& advice) {
    return examples.count == 0 ? "" : what + ": " + listed(examples) + advice;
}

std::string in_damage(const ImportReport& report) {
    const std::string count = counted(report.out_of_damage, "declaration");
    return report.tool.empty() ? "; what stands in the other parts is missing"
                               : "; " + count + " there have lines and signature from the indexer";
}

}  // namespace

void write_made(std::ostream& out, const std::string& index, const ImportReport& report) {
    out << printable(index) << ": " << counted(report.files, "file") << ", "
        << counted(report.declarations, "declaration") << ", " << counted(report.edges, "edge")
        << (report.sources > 0 ? ", with " + counted(report.sources, "source") : ", without sources")
        << (report.tool.empty() ? "" : "; indexed by " + printable(report.tool)) << '\n';
}

void write_findings(std::ostream& out, const ImportReport& report) {
    const std::array lines{
        passed_over(report),
        leading_nowhere(report),
        unresolved(report),
        about(report.excluded, "Left out as excluded, vendored, minified or generated",
              "; use --include to index them"),
        about(report.missing_modules, "Modules of this repository that are referenced but not in the index", ""),
        about(report.misnamed_tests, "Named like tests, but used as part of the library",
              "; use --test to mark them as tests"),
        about(report.lost_tests, "Test files that reach no other file",
              "; for Python, name the folder of the package (such as src) to the indexer as an extra path of its type "
              "checker, for TypeScript as a path mapping, and index again"),
        report.sources > 0
            ? about(report.unread, "Files that are missing from the checkout, or behind links that lead out of it", "")
            : about(report.unread, "No source could be read", "; name the indexed folder with --checkout"),
        about(report.unparsed, "Sources that are too large, too complex or not UTF-8, and were not parsed", ""),
        about(report.damaged, "Sources that parse only in part", in_damage(report)),
        about(report.moved, "Sources that have changed since they were indexed", "; index them again"),
    };
    for (const std::string& line : lines) {
        if (!line.empty()) {
            out << printable(line) << '\n';
        }
    }
}

}  // namespace host::indexing
