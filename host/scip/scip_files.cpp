#include "host/scip/scip_files.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <tuple>
#include <utility>

namespace host::scip {

namespace {

std::string joined(const auto& texts) {
    std::string list;
    for (const std::string& text : texts) {
        list.append(list.empty() ? "" : ", ").append(text);
    }
    return list;
}

std::string tool_of(const Metadata& metadata) {
    const bool has_both = !metadata.tool_name.empty() && !metadata.tool_version.empty();
    return metadata.tool_name + (has_both ? " " : "") + metadata.tool_version;
}

}  // namespace

ScipFiles::ScipFiles(const std::vector<std::string>& paths, const std::string& copy_path,
                     const std::function<void()>& check_interrupt) {
    std::vector<std::tuple<std::string, std::string, std::int64_t, std::size_t>> keys;  // with the place
    std::set<std::int64_t> contents;
    for (const std::string& path : paths) {
        ScipFile file(InputFile(path, copy_path, check_interrupt), check_interrupt);
        const std::int64_t content = paths.size() > 1 ? file.content_hash() : 0;
        if (contents.insert(content).second) {
            keys.emplace_back(file.metadata().project_root, tool_of(file.metadata()), content, files_.size());
            files_.push_back(std::move(file));
        }
    }
    std::ranges::sort(keys);
    for (const auto& key : keys) {
        order_.push_back(std::get<std::size_t>(key));
    }
}

std::size_t ScipFiles::document_count() const {
    std::size_t count = 0;
    for (const ScipFile& file : files_) {
        count += file.document_count();
    }
    return count;
}

std::string ScipFiles::names() const {
    std::vector<std::string> names;
    for (const std::size_t place : order_) {
        names.push_back(files_[place].name());
    }
    return joined(names);
}

std::string ScipFiles::tools() const {
    std::set<std::string> tools;
    for (const ScipFile& file : files_) {
        if (std::string tool = tool_of(file.metadata()); !tool.empty()) {
            tools.insert(std::move(tool));
        }
    }
    return joined(tools);
}

Repository ScipFiles::repository(const std::optional<std::string>& checkout) const {
    std::vector<std::string> roots;
    for (const std::size_t place : order_) {
        roots.push_back(files_[place].metadata().project_root);
    }
    return repository_of(roots, checkout);
}

std::vector<PlacedScipFile> ScipFiles::placed_in(const Repository& repository) {
    std::vector<PlacedScipFile> placed;
    for (std::size_t at = 0; at < order_.size(); ++at) {
        placed.push_back({&files_[order_[at]], repository.folders[at]});
    }
    return placed;
}

}  // namespace host::scip
