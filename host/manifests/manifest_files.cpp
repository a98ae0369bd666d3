#include "host/manifests/manifest_files.h"

#include "host/text/blanks.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <filesystem>

namespace host::manifests {

namespace {

// Skips what begins at `at`: a string literal, or one byte.
std::size_t behind_token(std::string_view text, std::size_t at) {
    if (text[at] != '"') {
        return at + 1;
    }
    for (++at; at < text.size() && text[at] != '"'; ++at) {
        at += text[at] == '\\' ? 1 : 0;
    }
    return std::min(at + 1, text.size());
}

// Where the comment at `at` ends; `at` itself where there is none.
std::size_t behind_comment(std::string_view text, std::size_t at) {
    const std::string_view rest = text.substr(at);
    if (rest.starts_with("//")) {
        return std::min(text.find('\n', at), text.size());
    }
    if (rest.starts_with("/*")) {
        const std::size_t end = text.find("*/", at + 2);
        return end == std::string_view::npos ? text.size() : end + 2;
    }
    return at;
}

// Leaves out comments, and each comma that only a closing bracket follows.
std::string plain_json(std::string_view text) {
    std::string plain;
    std::size_t comma = std::string::npos;  // the last token is this comma
    for (std::size_t at = 0; at < text.size();) {
        if (const std::size_t end = behind_comment(text, at); end > at) {
            at = end;
            continue;
        }
        const std::size_t end = behind_token(text, at);
        if ((text[at] == '}' || text[at] == ']') && comma != std::string::npos) {
            plain[comma] = ' ';
        }
        if (BLANKS.find(text[at]) == std::string_view::npos) {
            comma = text[at] == ',' ? plain.size() : std::string::npos;
        }
        plain.append(text.substr(at, end - at));
        at = end;
    }
    return plain;
}

}  // namespace

std::string_view folder_of(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
}

std::optional<std::string> joined(std::string_view folder, std::string_view path) {
    if (path.starts_with('/')) {
        return std::nullopt;
    }
    std::string whole = (std::filesystem::path(folder) / path).lexically_normal().generic_string();
    while (whole.ends_with('/')) {
        whole.pop_back();
    }
    if (whole == ".." || whole.starts_with("../")) {
        return std::nullopt;
    }
    return whole == "." ? "" : whole;
}

ManifestFiles::ManifestFiles(const Checkout& checkout, std::span<const std::string> paths)
    : checkout_(checkout), paths_(paths.begin(), paths.end()) {
    std::ranges::sort(paths_);
}

bool ManifestFiles::has(std::string_view path) const {
    return std::ranges::binary_search(paths_, path);
}

bool ManifestFiles::has_prefix(std::string_view prefix) const {
    const auto found = std::ranges::lower_bound(paths_, prefix);
    return found != paths_.end() && found->starts_with(prefix);
}

std::optional<std::string> ManifestFiles::text(std::string_view path) const {
    constexpr std::size_t LARGEST = 1'048'576;  // bytes
    std::optional<FileContent> file = has(path) ? checkout_.read(path, LARGEST) : std::nullopt;
    return file ? std::move(file->text) : std::nullopt;
}

nlohmann::json ManifestFiles::json(std::string_view path) const {
    const std::optional<std::string> text = this->text(path);
    nlohmann::json value = text ? nlohmann::json::parse(plain_json(*text), nullptr, false) : nlohmann::json();
    return value.is_discarded() ? nlohmann::json() : value;
}

const nlohmann::json& value_at(const nlohmann::json& value, std::string_view key) {
    static const nlohmann::json NONE;
    const auto found = value.is_object() ? value.find(std::string(key)) : value.end();
    return found == value.end() ? NONE : *found;
}

std::string text_at(const nlohmann::json& value, std::string_view key) {
    const nlohmann::json& found = value_at(value, key);
    return found.is_string() ? found.get<std::string>() : "";
}

}  // namespace host::manifests
