// What differs between languages in what a name means, as data.
#pragma once

#include "host/resolve/module_rules.h"

#include <memory>
#include <span>
#include <string_view>

namespace host::resolve {

/// The rules of the languages whose files can name each other's declarations.
struct LanguageRules {
    std::span<const std::string_view> languages;
    std::unique_ptr<ModuleRules> (*modules)(Catalog& catalog);
    /// Whether a plain name in a type may be one of its members, and of its bases.
    bool has_members_in_scope = false;
    /// Whether no name can come from two imports of all names, so that one which may have it does not count beside one
    /// that has it.
    bool has_no_clashing_stars = false;
    /// Whether what a file imports can be imported from it.
    bool exports_imports = false;
    /// Whether a value may stand for a type: `Alias = Union[A, B]`.
    bool has_values_as_types = false;
    /// Whether all declarations of a name in one place are parts of one: an interface, a constant and a namespace.
    bool merges_declarations = false;
    /// Whether a call of a function that nothing binds may be one of the only function of its name.
    bool has_unique_calls = false;
    /// Whether a macro may have the name of what else is visible, and an alias of a type that of a tag.
    bool has_macros = false;
    /// Whether a type that stands outside of its owner is a member of that (`class A::B {}`), not a part (`impl A {}`).
    bool nests_owned_types = false;
    /// Whether only `->` and an index lead to what a pointer points at.
    bool has_plain_pointers = false;
    /// Whether methods of one name are told apart by their parameters, as Java does.
    bool has_overloads = false;
    /// Whether of several bases the nearest counts that has a member, as of what Go embeds, and not the first.
    bool has_nearest_members = false;
    /// Whether methods of certain names say what operations on a value give, such as `__getitem__`.
    bool has_special_methods = false;
};

std::span<const LanguageRules> language_rules();

/// Returns null for a language without rules.
const LanguageRules* rules_of(std::string_view language);

}  // namespace host::resolve
