#include "host/sources/module_places.h"

#include "host/files/file_language.h"

#include <filesystem>

namespace host::sources {

namespace {

using std::string_view;

// What is compiled has the name of what it is compiled to.
string_view without_compiled_extension(string_view path) {
    return usual_language(path) == "javascript" ? path.substr(0, path.rfind('.')) : path;
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
    for (const string_view extension : module_extensions()) {
        places.push_back(std::string(without_compiled_extension(base)).append(".").append(extension));
    }
    const std::string folder = base == "." ? "" : base + "/";
    for (const string_view extension : module_extensions()) {
        places.push_back(folder + std::string(folder_stem("typescript")).append(".").append(extension));
    }
    return places;
}

}  // namespace host::sources
