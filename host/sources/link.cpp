#include "host/sources/link.h"

#include <array>
#include <filesystem>

namespace host::sources {

namespace {

using std::string_view;

// What is compiled has the name of what it is compiled to.
constexpr std::array<string_view, 4> COMPILED{".js", ".jsx", ".mjs", ".cjs"};
constexpr std::array<string_view, 9> MODULE_EXTENSIONS{".ts", ".tsx", ".mts", ".cts", ".d.ts",
                                                       ".js", ".jsx", ".mjs", ".cjs"};

string_view without_compiled_extension(string_view path) {
    for (const string_view extension : COMPILED) {
        if (path.ends_with(extension)) {
            return path.substr(0, path.size() - extension.size());
        }
    }
    return path;
}

}  // namespace

std::vector<std::string> places_of_module(string_view path, string_view module) {
    if (module != "." && module != ".." && !module.starts_with("./") && !module.starts_with("../")) {
        return {};
    }
    const std::filesystem::path whole = std::filesystem::path(path).parent_path() / module;
    std::string base = whole.lexically_normal().generic_string();
    if (base.starts_with("../") || base == "..") {
        return {};
    }
    if (base.ends_with('/')) {
        base.pop_back();
    }
    std::vector<std::string> places{base};
    for (const string_view extension : MODULE_EXTENSIONS) {
        places.push_back(std::string(without_compiled_extension(base)).append(extension));
    }
    for (const string_view extension : MODULE_EXTENSIONS) {
        places.push_back((base == "." ? "" : base + "/") + "index" + std::string(extension));
    }
    return places;
}

}  // namespace host::sources
