#include "host/resolve/language_rules.h"

#include <algorithm>
#include <array>

namespace host::resolve {

namespace {

using std::string_view;

constexpr std::array<string_view, 2> C{"c", "cpp"};
constexpr std::array<string_view, 3> ECMASCRIPT{"javascript", "tsx", "typescript"};
constexpr std::array<string_view, 1> GO{"go"};
constexpr std::array<string_view, 1> JAVA{"java"};
constexpr std::array<string_view, 1> PYTHON{"python"};
constexpr std::array<string_view, 1> RUST{"rust"};

constexpr std::array RULES{
    LanguageRules{.languages = C,
                  .modules = c_modules,
                  .has_members_in_scope = true,
                  .has_no_clashing_stars = true,
                  .exports_imports = true,
                  .has_unique_calls = true,
                  .has_macros = true,
                  .nests_owned_types = true,
                  .has_plain_pointers = true},
    LanguageRules{.languages = ECMASCRIPT, .modules = ecmascript_modules, .merges_declarations = true},
    LanguageRules{.languages = GO, .modules = go_modules, .has_nearest_members = true},
    LanguageRules{.languages = JAVA,
                  .modules = java_modules,
                  .has_members_in_scope = true,
                  .has_no_clashing_stars = true,
                  .has_overloads = true},
    LanguageRules{.languages = PYTHON,
                  .modules = python_modules,
                  .exports_imports = true,
                  .has_values_as_types = true,
                  .has_special_methods = true},
    LanguageRules{.languages = RUST, .modules = rust_modules, .has_no_clashing_stars = true},
};

}  // namespace

std::span<const LanguageRules> language_rules() {
    return RULES;
}

const LanguageRules* rules_of(string_view language) {
    const auto* const found = std::ranges::find_if(RULES, [&](const LanguageRules& rules) {
        return std::ranges::find(rules.languages, language) != rules.languages.end();
    });
    return found == RULES.end() ? nullptr : &*found;
}

}  // namespace host::resolve
