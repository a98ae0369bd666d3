#include "host/rules/toml_file.h"

#include "host/text/glob.h"
#include "host/text/printable.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace host {

namespace {

// "a, b and c"
std::string listed(std::span<const std::string_view> keys) {
    std::string text(keys.front());
    for (std::size_t at = 1; at < keys.size(); ++at) {
        text.append(at + 1 == keys.size() ? " and " : ", ").append(keys[at]);
    }
    return text;
}

}  // namespace

TomlFile::TomlFile(std::string name, std::string_view text) : name_(std::move(name)) {
    try {
        root_ = toml::parse(text, name_);
    } catch (const toml::parse_error& error) {
        throw fault(error.source(), std::string(error.description()));
    }
}

std::runtime_error TomlFile::fault(const toml::source_region& where, const std::string& what) const {
    return std::runtime_error(name_ + ":" + std::to_string(where.begin.line) + ": " + printable(what));
}

void TomlFile::refuse_unknown_keys(const toml::table& table, std::span<const std::string_view> keys) const {
    for (const auto& [key, value] : table) {
        if (std::ranges::find(keys, key.str()) == keys.end()) {
            throw fault(key.source(), "unknown key `" + std::string(key.str()) + "`; the keys are " + listed(keys));
        }
    }
}

std::vector<std::string> TomlFile::strings(const toml::table& table, std::string_view key) const {
    std::vector<std::string> list;
    const toml::node* const value = table.get(key);
    if (value == nullptr) {
        return list;
    }
    const std::string wrong = "`" + std::string(key) + "` must be a list of strings";
    const toml::array* const elements = value->as_array();
    if (elements == nullptr) {
        throw fault(value->source(), wrong);
    }
    for (const toml::node& element : *elements) {
        const auto* const text = element.as_string();
        if (text == nullptr) {
            throw fault(element.source(), wrong);
        }
        list.push_back(text->get());
    }
    return list;
}

std::vector<std::string> TomlFile::patterns(const toml::table& table, std::string_view key) const {
    std::vector<std::string> list = strings(table, key);
    for (std::size_t at = 0; at < list.size(); ++at) {
        try {
            Glob{list[at]};
        } catch (const std::invalid_argument& error) {
            throw fault(table.get(key)->as_array()->get(at)->source(), error.what());
        }
    }
    return list;
}

}  // namespace host
