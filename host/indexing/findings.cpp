#include "host/indexing/findings.h"

#include "utils/path_filter.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace host::indexing {

void Findings::add(std::uint32_t file, const FileReferences& references) {
    for (const auto& [symbol, count] : references.nowhere) {
        const std::optional<Elsewhere> elsewhere = extraction_.symbols->declared_elsewhere(symbol);
        if (elsewhere && elsewhere->is_repository) {
            missing_modules_.insert(elsewhere->name);
        } else if (elsewhere) {
            nowhere_[elsewhere->name] += count;
        }
    }
    const bool reaches_another =
        !references.modules.empty() ||
        std::ranges::any_of(references.edges, [&](const Edge& edge) { return edge.target.file != file; });
    const ExtractedFile& extracted = extraction_.files[file];
    if (!reaches_another && !extracted.references.empty() && utils::is_test_path(extracted.path)) {
        lost_tests_.add(extracted.path);
    }
}

void Findings::report(ImportReport& report) const {
    report.nowhere.assign(nowhere_.begin(), nowhere_.end());
    std::ranges::stable_sort(report.nowhere, std::ranges::greater(), &std::pair<std::string, std::int64_t>::second);
    report.nowhere.resize(std::min(report.nowhere.size(), Examples::MOST));
    for (const std::string& module : missing_modules_) {
        report.missing_modules.add(module);
    }
    report.lost_tests = lost_tests_;
}

}  // namespace host::indexing
