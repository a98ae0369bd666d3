#include "host/rules/configuration.h"

#include "host/index/place.h"
#include "host/text/toml.h"

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

std::runtime_error failure(const std::string& file, const toml::source_region& where, const std::string& what) {
    return std::runtime_error(file + ":" + std::to_string(where.begin.line) + ": " + what);
}

// The patterns under a key; none when it is absent.
std::vector<std::string> patterns(const toml::table& table, std::string_view key, const std::string& file) {
    std::vector<std::string> list;
    const toml::node* const value = table.get(key);
    if (value == nullptr) {
        return list;
    }
    const toml::array* const elements = value->as_array();
    if (elements == nullptr) {
        throw failure(file, value->source(), "`" + std::string(key) + "` must be a list of strings");
    }
    for (const toml::node& element : *elements) {
        const auto* const pattern = element.as_string();
        if (pattern == nullptr) {
            throw failure(file, element.source(), "`" + std::string(key) + "` must be a list of strings");
        }
        try {
            Glob(pattern->get());
        } catch (const std::invalid_argument& error) {
            throw failure(file, element.source(), error.what());
        }
        list.push_back(pattern->get());
    }
    return list;
}

// Whether the path stays below the root. No part of it may be a symbolic link, which may lead anywhere.
bool stays_below(const std::filesystem::path& root, const std::filesystem::path& path) {
    std::filesystem::path whole = root;
    return path.is_relative() && std::ranges::none_of(path, [&](const std::filesystem::path& part) {
               std::error_code error;
               return part == ".." || std::filesystem::is_symlink(whole /= part, error);
           });
}

std::string index_path(const toml::table& table, const std::filesystem::path& root, const std::string& file) {
    const toml::node* const value = table.get("index");
    if (value == nullptr) {
        return "";
    }
    std::string path = value->value_exact<std::string>().value_or("");
    if (path.empty() || is_server(path) || !stays_below(root, path)) {
        throw failure(file, value->source(),
                      "`index` must be a file below this folder; name a server or another place with --index or "
                      "WIKI_SCOPE_INDEX");
    }
    return path;
}

void refuse_unknown_keys(const toml::table& table, const std::string& file) {
    for (const auto& [key, value] : table) {
        if (std::ranges::find(KEYS, key.str()) == KEYS.end()) {
            throw failure(file, key.source(),
                          "unknown key `" + std::string(key.str()) +
                              "`; the keys are exclude, include, test, not-test and index");
        }
    }
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
    try {
        const toml::table table = toml::parse(*file->text, name);
        refuse_unknown_keys(table, name);
        return {.tests = rules_of(patterns(table, "test", name), patterns(table, "not-test", name)),
                .exclusions = rules_of(patterns(table, "exclude", name), patterns(table, "include", name)),
                .index = index_path(table, checkout.root(), name)};
    } catch (const toml::parse_error& error) {
        throw failure(name, error.source(), std::string(error.description()));
    }
}

}  // namespace host
