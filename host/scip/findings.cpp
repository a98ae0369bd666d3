#include "host/scip/findings.h"

#include "host/scip/declarations.h"
#include "host/scip/symbol.h"
#include "utils/path_filter.h"

#include <algorithm>
#include <optional>

namespace host::scip {

namespace {

// "a.b/c" -> "a.b/c", "b/c", "c": where a module is imported relative to another one, some indexers name it so.
void add_with_ends(const std::string& module, std::set<std::string>& names) {
    names.insert(module);
    for (std::size_t link = module.find_first_of("./"); link != std::string::npos;
         link = module.find_first_of("./", link + 1)) {
        names.insert(module.substr(link + 1));
    }
}

}  // namespace

Findings::Findings(const Contents& contents) : contents_(contents), is_defined_(contents.symbols.size()) {
    for (const auto& [path, file] : contents.files) {
        for (const Definition& definition : file.definitions) {
            is_defined_[definition.symbol] = true;
        }
    }
    for (SymbolNumber number = 0; number < contents.symbols.size(); ++number) {
        if (is_defined_[number]) {
            const Symbol symbol = parse_symbol(contents.symbols.symbol(number)).value();
            own_heads_.insert(symbol.head);
            if (const std::optional<std::string> module = module_name(symbol.descriptors)) {
                add_with_ends(*module, held_modules_);
            }
        }
    }
}

void Findings::add(const std::string& path, const FileContents& file, const FileReferences& references,
                   std::uint32_t place) {
    for (const auto& [symbol, count] : references.nowhere) {
        add_nowhere(symbol, count);
    }
    const bool reaches_another =
        !references.modules.empty() ||
        std::ranges::any_of(references.edges, [&](const Edge& edge) { return edge.target.file != place; });
    if (!reaches_another && !file.references.empty() && utils::is_test_path(path)) {
        lost_tests_.add(path);
    }
}

void Findings::add_nowhere(SymbolNumber symbol, std::int64_t count) {
    if (is_defined_[symbol]) {
        return;  // a parameter or the like, which has no row
    }
    const Symbol parts = parse_symbol(contents_.symbols.symbol(symbol)).value();
    const bool is_own = own_heads_.contains(parts.head);
    const std::optional<std::string> module = module_name(parts.descriptors);
    if (is_own && module && !held_modules_.contains(*module)) {
        missing_modules_.insert(*module);
    } else if (!is_own && (module || is_declaration(parts.descriptors.back(), SymbolKind::UNSPECIFIED))) {
        nowhere_[parts.package] += count;
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

}  // namespace host::scip
