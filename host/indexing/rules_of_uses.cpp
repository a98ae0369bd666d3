#include "host/indexing/rules_of_uses.h"

#include "host/rules/misnamed_tests.h"
#include "host/rules/package_exports.h"
#include "host/rules/test_paths.h"
#include "host/threads/all_cores.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

namespace host::indexing {

namespace {

std::vector<FileImport> imports_into(const std::vector<bool>& targets, const Extraction& extraction,
                                     const References& references, const std::function<void()>& check_interrupt) {
    std::vector<std::vector<FileImport>> imports_of_files(extraction.files.size());
    const auto find_imports = [&](std::size_t at) {
        const auto file = static_cast<std::uint32_t>(at);
        for (const Edge& edge : references.from(file).edges) {
            if (edge.resolution == Resolution::IMPORT && targets[edge.target.file]) {
                imports_of_files[at].push_back({file, edge.target.file});
            }
        }
    };
    on_all_cores(imports_of_files.size(), find_imports, [&](std::size_t /*files*/) { check_interrupt(); });
    std::vector<FileImport> imports;
    for (const std::vector<FileImport>& of_file : imports_of_files) {
        imports.insert(imports.end(), of_file.begin(), of_file.end());
    }
    return imports;
}

// The paths that the packages around these folders export.
std::vector<std::string> exports_around(const std::set<std::string_view>& folders, const Checkout& checkout) {
    std::set<std::string_view> packages{""};
    for (const std::string_view folder : folders) {
        for (std::size_t end = folder.find('/'); end != std::string_view::npos; end = folder.find('/', end + 1)) {
            packages.insert(folder.substr(0, end));
        }
    }
    std::vector<std::string> exported;
    for (const std::string_view package : packages) {
        std::ranges::move(package_exports(checkout, package), std::back_inserter(exported));
    }
    return exported;
}

}  // namespace

std::vector<PathRule> rules_of_uses(const Extraction& extraction, const References& references,
                                    const std::optional<Checkout>& checkout,
                                    const std::function<void()>& check_interrupt) {
    std::vector<std::string_view> paths;
    std::vector<bool> may_be_misnamed;  // tests by a folder's name alone
    std::set<std::string_view> folders;
    for (const ExtractedFile& file : extraction.files) {
        const std::string_view folder = sole_test_folder(file.path);
        paths.emplace_back(file.path);
        may_be_misnamed.push_back(!folder.empty());
        if (!folder.empty()) {
            folders.insert(folder);
        }
    }
    if (folders.empty()) {
        return {};
    }
    return rules_for_misnamed_tests(paths, imports_into(may_be_misnamed, extraction, references, check_interrupt),
                                    checkout ? exports_around(folders, *checkout) : std::vector<std::string>());
}

}  // namespace host::indexing
