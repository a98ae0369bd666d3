#include "host/files/file_language.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace host {

namespace {

using std::string_view;

enum class Naming { FREE, AS_CLASS };

struct Extension {
    string_view text;
    string_view language;  // empty for a language that no index is known to be made of
    Naming naming = Naming::FREE;
    string_view dialect = language;
};

constexpr auto EXTENSIONS = std::to_array<Extension>({
    {"c", "c"},
    {"h", "c", Naming::FREE, "cpp"},
    {"cc", "cpp"},
    {"cpp", "cpp"},
    {"cxx", "cpp"},
    {"hpp", "cpp"},
    {"hh", "cpp"},
    {"hxx", "cpp"},
    {"inl", "cpp"},
    {"ipp", "cpp"},
    {"tcc", "cpp"},
    {"tpp", "cpp"},
    {"go", "go"},
    {"java", "java", Naming::AS_CLASS},
    {"py", "python"},
    {"pyi", "python"},
    {"rs", "rust"},
    {"ts", "typescript"},
    {"tsx", "typescript", Naming::FREE, "tsx"},
    {"mts", "typescript"},
    {"cts", "typescript"},
    {"js", "javascript"},
    {"jsx", "javascript"},
    {"mjs", "javascript"},
    {"cjs", "javascript"},
    {"kt", "kotlin", Naming::AS_CLASS},
    {"kts", "kotlin"},
    {"scala", "scala", Naming::AS_CLASS},
    {"rb", "ruby"},
    {"cs", "csharp", Naming::AS_CLASS},
    {"php", "php", Naming::AS_CLASS},
    {"swift", "swift", Naming::AS_CLASS},
    {"dart", "dart"},
    {"m", "objective-c", Naming::AS_CLASS},
    {"mm", "objective-c", Naming::AS_CLASS},
    {"groovy", "", Naming::AS_CLASS},
    {"fs", "", Naming::AS_CLASS},
    {"vb", "", Naming::AS_CLASS},
});

struct FolderStem {
    string_view language;
    string_view stem;
};

constexpr auto FOLDER_STEMS = std::to_array<FolderStem>({
    {"javascript", "index"},
    {"python", "__init__"},
    {"typescript", "index"},
});

string_view last_segment(string_view path) {
    return path.substr(path.rfind('/') + 1);
}

// Null for one that says nothing.
const Extension* extension_of(string_view path) {
    const string_view file = last_segment(path);
    const std::size_t dot = file.rfind('.');
    const string_view text = dot == string_view::npos ? string_view() : file.substr(dot + 1);
    const auto* const found = std::ranges::find(EXTENSIONS, text, &Extension::text);
    return found == EXTENSIONS.end() ? nullptr : found;
}

}  // namespace

string_view usual_language(string_view path) {
    const Extension* const extension = extension_of(path);
    return extension == nullptr ? string_view() : extension->language;
}

string_view usual_dialect(string_view path) {
    const Extension* const extension = extension_of(path);
    return extension == nullptr ? string_view() : extension->dialect;
}

std::vector<string_view> extensions_of(string_view language) {
    std::vector<string_view> extensions;
    for (const Extension& extension : EXTENSIONS) {
        if (extension.language == language) {
            extensions.push_back(extension.text);
        }
    }
    return extensions;
}

const std::vector<string_view>& module_extensions() {
    static const std::vector<string_view> extensions = [] {
        std::vector<string_view> all = extensions_of("typescript");
        all.emplace_back("d.ts");
        std::ranges::copy(extensions_of("javascript"), std::back_inserter(all));
        return all;
    }();
    return extensions;
}

string_view folder_stem(string_view language) {
    const auto* const found = std::ranges::find(FOLDER_STEMS, language, &FolderStem::language);
    return found == FOLDER_STEMS.end() ? string_view() : found->stem;
}

bool stands_for_folder(string_view path) {
    const string_view stem = folder_stem(usual_language(path));
    return !stem.empty() && stem == stem_of(path);
}

string_view stem_of(string_view path) {
    constexpr string_view DECLARATIONS = ".d";  // of TypeScript
    const string_view file = last_segment(path);
    const string_view stem = file.substr(0, file.rfind('.'));
    return stem.ends_with(DECLARATIONS) ? stem.substr(0, stem.size() - DECLARATIONS.size()) : stem;
}

bool is_named_as_class(string_view path) {
    const Extension* const extension = extension_of(path);
    return extension != nullptr && extension->naming == Naming::AS_CLASS;
}

}  // namespace host
