#include "host/rules/configuration.h"

#include "host/index/place.h"
#include "host/rules/toml_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace host {

namespace {

constexpr std::array<std::string_view, 5> KEYS{"exclude", "include", "test", "not-test", "index"};

// Whether the path stays below the root. No part of it may be a symbolic link, which may lead anywhere.
bool stays_below(const std::filesystem::path& root, const std::filesystem::path& path) {
    std::filesystem::path whole = root;
    return path.is_relative() && std::ranges::none_of(path, [&](const std::filesystem::path& part) {
               std::error_code error;
               return part == ".." || std::filesystem::is_symlink(whole /= part, error);
           });
}

std::string index_path(const TomlFile& file, const std::filesystem::path& root) {
    const toml::node* const value = file.root().get("index");
    if (value == nullptr) {
        return "";
    }
    std::string path = value->value_exact<std::string>().value_or("");
    if (path.empty() || is_server(path) || !stays_below(root, path)) {
        throw file.fault(value->source(),
                         "`index` must be a file below this folder; name a server or another place with --index or "
                         "WIKI_SCOPE_INDEX");
    }
    return path;
}

}  // namespace

Configuration read_configuration(const Checkout& checkout) {
    constexpr std::size_t LARGEST = 1'048'576;  // bytes
    const std::string name = checkout.root() / CONFIGURATION_FILE;
    const std::optional<FileContent> file = checkout.read(CONFIGURATION_FILE, LARGEST);
    if (!file) {
        return {};
    }
    if (!file->text) {
        throw std::runtime_error(name + ": larger than any configuration (limit 1 MiB)");
    }
    const TomlFile toml(name, *file->text);
    toml.refuse_unknown_keys(toml.root(), KEYS);
    const auto rules = [&](std::string_view holds, std::string_view does_not) {
        return rules_of(toml.patterns(toml.root(), holds), toml.patterns(toml.root(), does_not));
    };
    return {.tests = rules("test", "not-test"),
            .exclusions = rules("exclude", "include"),
            .index = index_path(toml, checkout.root())};
}

}  // namespace host
