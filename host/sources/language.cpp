#include "host/sources/language.h"

#include "host/files/file_language.h"
#include "host/sources/c/c_mending.h"
#include "host/sources/mending.h"
#include "host/sources/queries.h"
#include "host/sources/rust/rust_macros.h"
#include "host/sources/syntax_readers.h"

#include <algorithm>
#include <array>

extern "C" {
const TSLanguage* tree_sitter_c();
const TSLanguage* tree_sitter_cpp();
const TSLanguage* tree_sitter_go();
const TSLanguage* tree_sitter_java();
const TSLanguage* tree_sitter_javascript();
const TSLanguage* tree_sitter_python();
const TSLanguage* tree_sitter_rust();
const TSLanguage* tree_sitter_tsx();
const TSLanguage* tree_sitter_typescript();
}

namespace host::sources {

namespace {

using std::string_view;

constexpr std::array C_QUERIES{queries::C};
constexpr std::array CPP_QUERIES{queries::C, queries::CPP};
constexpr std::array GO_QUERIES{queries::GO};
constexpr std::array JAVA_QUERIES{queries::JAVA};
constexpr std::array JAVASCRIPT_QUERIES{queries::ECMASCRIPT, queries::JAVASCRIPT};
constexpr std::array PYTHON_QUERIES{queries::PYTHON};
constexpr std::array RUST_QUERIES{queries::RUST};
constexpr std::array TYPESCRIPT_QUERIES{queries::ECMASCRIPT, queries::TYPESCRIPT};

constexpr std::array<string_view, 1> BLOCKS{"/**"};
constexpr std::array<string_view, 2> BLOCKS_AND_LINES{"/**", "///"};
constexpr std::array<string_view, 1> ANY_COMMENT{"/"};

syntax::Syntax read_javascript(string_view text, TSNode root) {
    return read_ecmascript(text, root, tree_sitter_javascript());
}

syntax::Syntax read_tsx(string_view text, TSNode root) {
    return read_ecmascript(text, root, tree_sitter_tsx());
}

syntax::Syntax read_typescript(string_view text, TSNode root) {
    return read_ecmascript(text, root, tree_sitter_typescript());
}

enum Place : std::size_t { C, CPP, GO, JAVA, JAVASCRIPT, PYTHON, RUST, TYPESCRIPT, TSX, COUNT };

constexpr std::array<Language, COUNT> LANGUAGES{{
    {"c", tree_sitter_c, C_QUERIES, Unmarked::PUBLIC, "static", ANY_COMMENT, CommentPlace::RIGHT_ABOVE, false, mended_c,
     read_c},
    {"cpp", tree_sitter_cpp, CPP_QUERIES, Unmarked::PUBLIC, "static", ANY_COMMENT, CommentPlace::RIGHT_ABOVE, false,
     mended_c, read_cpp},
    {"go", tree_sitter_go, GO_QUERIES, Unmarked::PUBLIC_IF_CAPITALIZED, "", ANY_COMMENT, CommentPlace::RIGHT_ABOVE,
     false, nullptr, read_go},
    {"java", tree_sitter_java, JAVA_QUERIES, Unmarked::PRIVATE, "public", BLOCKS, CommentPlace::ABOVE, false, nullptr,
     read_java},
    {"javascript", tree_sitter_javascript, JAVASCRIPT_QUERIES, Unmarked::PUBLIC_OUTSIDE_MODULES, "export", BLOCKS,
     CommentPlace::ABOVE, true, nullptr, read_javascript},
    {"python",
     tree_sitter_python,
     PYTHON_QUERIES,
     Unmarked::PUBLIC,
     "",
     {},
     CommentPlace::RIGHT_ABOVE,
     true,
     nullptr,
     read_python},
    {"rust", tree_sitter_rust, RUST_QUERIES, Unmarked::PRIVATE, "pub", BLOCKS_AND_LINES,
     CommentPlace::ABOVE_OR_BELOW_DECORATORS, false, nullptr, read_rust, with_macros_as_calls},
    {"typescript", tree_sitter_typescript, TYPESCRIPT_QUERIES, Unmarked::PUBLIC_OUTSIDE_MODULES, "export", BLOCKS,
     CommentPlace::ABOVE, true, mended, read_typescript},
    {"tsx", tree_sitter_tsx, TYPESCRIPT_QUERIES, Unmarked::PUBLIC_OUTSIDE_MODULES, "export", BLOCKS,
     CommentPlace::ABOVE, true, mended, read_tsx},
}};

struct Name {
    string_view name;
    Place language;
};

// What indexers call a language. Where dialects share a name, the path decides.
constexpr auto NAMES = std::to_array<Name>({
    {"c", C},
    {"cpp", CPP},
    {"c++", CPP},
    {"go", GO},
    {"java", JAVA},
    {"javascript", JAVASCRIPT},
    {"javascriptreact", JAVASCRIPT},
    {"python", PYTHON},
    {"rust", RUST},
    {"typescript", TSX},
    {"typescriptreact", TSX},
});

// Null for a name that none of the rows has.
const auto* find(string_view name, const auto& rows) {
    const auto* const found = std::ranges::find_if(rows, [name](const auto& row) { return row.name == name; });
    return found == rows.end() ? nullptr : found;
}

}  // namespace

const Language* understood_language(string_view stated, string_view path) {
    const Language* const by_path = find(usual_dialect(path), LANGUAGES);
    const Name* const name = find(stated, NAMES);
    const Language* const by_name = name == nullptr ? nullptr : &LANGUAGES.at(name->language);
    const bool is_a_dialect =
        by_path != nullptr && by_name != nullptr && std::ranges::equal(by_path->queries, by_name->queries);
    return by_name == nullptr || is_a_dialect ? by_path : by_name;
}

std::span<const Language> languages() {
    return LANGUAGES;
}

}  // namespace host::sources
