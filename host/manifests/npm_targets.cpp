#include "host/manifests/npm_targets.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace host::manifests {

namespace {

constexpr std::array<std::string_view, 10> SOURCES{".ts",    ".tsx", ".mts", ".cts", ".d.ts",
                                                   ".d.mts", ".js",  ".jsx", ".mjs", ".cjs"};
constexpr std::array<std::string_view, 7> WRITTEN{".d.ts", ".d.mts", ".d.cts", ".js", ".jsx", ".mjs", ".cjs"};

// Names of folders that builds write into, below the one that holds all that is written.
constexpr std::array<std::string_view, 12> FORMATS{"cjs",  "commonjs", "es",    "es2015",  "es5", "esm",
                                                   "esm5", "mjs",      "types", "typings", "umd", "lib"};

// From the first asked for to the last; the others stand between.
constexpr std::array<std::string_view, 4> FIRST_CONDITIONS{"source", "types", "import", "module"};
constexpr std::array<std::string_view, 2> LAST_CONDITIONS{"default", "require"};

std::string_view without_extension(std::string_view path) {
    for (const std::string_view extension : WRITTEN) {
        if (path.ends_with(extension)) {
            return path.substr(0, path.size() - extension.size());
        }
    }
    return path;
}

// The source at a path, with or without an extension or that of what is made of it, or in a folder; "" where none is.
std::string existing(const ManifestFiles& files, std::string_view folder, const std::string& path) {
    const std::string whole = joined(folder, path).value_or("");
    if (const std::size_t star = whole.find('*'); star != std::string::npos) {
        return files.has_prefix(std::string_view(whole).substr(0, star)) ? path : "";
    }
    if (files.has(whole)) {
        return path;
    }
    const std::string bare(without_extension(path));
    for (const std::string& base : {bare, path, bare.empty() ? "index" : bare + "/index"}) {
        for (const std::string_view extension : SOURCES) {
            if (files.has(joined(folder, base + std::string(extension)).value_or(""))) {
                return base + std::string(extension);
            }
        }
    }
    return "";
}

// Leaves out the first segment of a path.
std::string_view below_first(std::string_view path) {
    return path.substr(std::min(path.find('/'), path.size() - 1) + 1);
}

std::size_t rank(std::string_view condition) {
    const auto* const first = std::ranges::find(FIRST_CONDITIONS, condition);
    const auto* const last = std::ranges::find(LAST_CONDITIONS, condition);
    return first != FIRST_CONDITIONS.end()
               ? static_cast<std::size_t>(first - FIRST_CONDITIONS.begin())
               : FIRST_CONDITIONS.size() +
                     (last == LAST_CONDITIONS.end() ? 0 : 1 + static_cast<std::size_t>(last - LAST_CONDITIONS.begin()));
}

// The parts of a value, in the order in which they are asked for.
std::vector<const nlohmann::json*> parts(const nlohmann::json& value) {
    std::vector<const nlohmann::json*> values;
    if (value.is_array()) {
        for (const nlohmann::json& each : value) {
            values.push_back(&each);
        }
    } else if (value.is_object()) {
        std::vector<std::pair<std::size_t, const nlohmann::json*>> ranked;
        for (const auto& [condition, each] : value.items()) {
            ranked.emplace_back(rank(condition), &each);
        }
        std::ranges::stable_sort(ranked, {}, &std::pair<std::size_t, const nlohmann::json*>::first);
        for (const auto& [rank, each] : ranked) {
            values.push_back(each);
        }
    }
    return values;
}

}  // namespace

std::string source_of(const ManifestFiles& files, std::string_view folder, std::string_view stated) {
    const std::optional<std::string> path = joined("", stated);  // below the folder
    if (!path) {
        return "";
    }
    if (std::string source = existing(files, folder, *path); !source.empty()) {
        return source;
    }
    std::string_view rest = *path;
    while (rest.find('/') != std::string_view::npos) {
        rest = below_first(rest);
        const std::string_view next = rest.substr(0, rest.find('/'));
        if (std::ranges::find(FORMATS, next) == FORMATS.end() || next.size() == rest.size()) {
            return existing(files, folder, "src/" + std::string(rest));
        }
    }
    return "";
}

std::vector<std::string> sources_of(const ManifestFiles& files, std::string_view folder, const nlohmann::json& value) {
    std::vector<std::string> sources;
    std::vector<const nlohmann::json*> values{&value};  // conditions may be nested to any depth; the next is the last
    while (!values.empty()) {
        const nlohmann::json& next = *values.back();
        values.pop_back();
        if (next.is_string()) {
            const std::string source = source_of(files, folder, next.get_ref<const std::string&>());
            if (!source.empty() && std::ranges::find(sources, source) == sources.end()) {
                sources.push_back(source);
            }
        }
        const std::vector<const nlohmann::json*> further = parts(next);
        values.insert(values.end(), further.rbegin(), further.rend());
    }
    return sources;
}

}  // namespace host::manifests
