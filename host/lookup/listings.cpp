#include "host/lookup/listings.h"

#include "host/indexing/report_text.h"
#include "host/text/printable.h"
#include "host/text/table.h"

#include <algorithm>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace host {

namespace {

using Column = Table::Column;

// What there is most of first, then by name.
void write_counts(std::ostream& out, const std::string& name, const std::string& of,
                  const std::map<std::string, std::int64_t>& counts) {
    Table table({Column::TEXT, Column::NUMBER});
    table.add({name, of});
    std::vector<std::pair<std::string, std::int64_t>> sorted(counts.begin(), counts.end());
    std::ranges::stable_sort(sorted, std::ranges::greater(), &std::pair<std::string, std::int64_t>::second);
    for (const auto& [thing, count] : sorted) {
        table.add({thing.empty() ? "(unknown)" : thing, std::to_string(count)});
    }
    out << '\n';
    table.write(out);
}

}  // namespace

void write_text(std::ostream& out, std::span<const ListedFile> files) {
    Table table({Column::TEXT, Column::TEXT, Column::NUMBER, Column::NUMBER, Column::TEXT});
    table.add({"Path", "Language", "Declarations", "Their lines", "Test"});
    for (const ListedFile& file : files) {
        table.add({file.path, file.language, std::to_string(file.declarations), std::to_string(file.declared_lines),
                   file.is_test ? "test" : ""});
    }
    table.write(out);
}

void write_text(std::ostream& out, const FoundDeclarations& found) {
    Table table({Column::TEXT, Column::TEXT, Column::TEXT, Column::NUMBER});
    table.add({"Name", "Kind", "Place", "Uses"});
    for (const FoundDeclaration& declaration : found.best) {
        table.add({declaration.name, declaration.kind,
                   declaration.path + ":L" + std::to_string(declaration.first_line) + "-L" +
                       std::to_string(declaration.last_line),
                   std::to_string(declaration.uses)});
    }
    table.write(out);
}

void write_text(std::ostream& out, const IndexStats& stats) {
    const indexing::ImportReport& report = stats.report;
    write_made(out, stats.index, report);
    out << "Made " << stats.origin.made << " from " << printable(report.source)
        << (report.checkout.empty() || report.checkout == report.source ? ""
                                                                        : ", sources in " + printable(report.checkout))
        << "; " << stats.origin.bytes << " bytes\n";
    if (stats.is_checked) {
        out << "Checked: all of it was read, and no damage found\n";
    }
    if (!stats.origin.has_checksums) {
        out << "Without checksums, so that damage may stay unnoticed; import again for an index with them\n";
    }
    write_findings(out, report);
    write_counts(out, "Language", "Files", report.files_by_language);
    write_counts(out, "Kind", "Declarations", report.declarations_by_kind);
    Table resolutions({Column::TEXT, Column::NUMBER, Column::NUMBER});
    resolutions.add({"Resolution", "Edges", "References"});
    for (const auto& [name, count] : report.edges_by_resolution) {
        resolutions.add({name, std::to_string(count.edges), std::to_string(count.references)});
    }
    out << '\n';
    resolutions.write(out);
}

}  // namespace host
