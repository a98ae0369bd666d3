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
            line += (line.empty() ? "Passed over: " : ", ") + counted(count, thing) + " " + fault;
        }
    };
    add(report.unparsed_symbols, "symbol", "that cannot be read or printed");
    add(report.unusable_documents, "document", "without a usable path");
    add(report.unusable_definitions, "definition", "without a range");
    add(report.misnamed_references, "reference", "that the source does not have under that name");
    add(report.references_in_test_code, "reference", "from tests within other sources");
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
        about(report.excluded, "Left out as excluded, installed beside the sources, made smaller or generated",
              "; --include takes them in"),
        about(report.missing_modules, "Modules of this repository that are named, but not in the index", ""),
        about(report.misnamed_tests, "Named as tests, but part of the library by what uses them",
              "; --test takes them for tests"),
        about(report.lost_tests, "Test files that reach no other file",
              "; for Python, name the folder of the package (such as src) to the indexer as an extra path of its type "
              "checker, for TypeScript as a path mapping, and index again"),
        report.sources > 0
            ? about(report.unread, "Files that the checkout does not hold, or behind links that lead out of it", "")
            : about(report.unread, "No source could be read", "; name the folder that was indexed with --checkout"),
        about(report.unparsed, "Sources that are too large, too hard to parse or no UTF-8, and were not looked into",
              ""),
        about(report.damaged, "Sources of which a part does not parse",
              "; " + counted(report.out_of_damage, "declaration") + " there took lines and signature from the indexer"),
        about(report.moved, "Sources that have changed since they were indexed", "; index them again"),
    };
    for (const std::string& line : lines) {
        if (!line.empty()) {
            out << printable(line) << '\n';
        }
    }
}

}  // namespace host::indexing
