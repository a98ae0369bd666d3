// What the text of a source file states about names, in one form for all languages: what it declares, what it imports,
// and what each of its name tokens is looked up in.
//
// Nothing in here is resolved. A token is an expression: a name to look up, or the member of another expression. What
// the file says about types is expressions, too, so that a resolver can evaluate them without a tree:
//
//     def f(a: Store) -> Item:       declaration f, FUNCTION, type #2
//         return a.find(1).next      mentions #1 (TYPE), #2 (TYPE), #4 (CALL), #6 (VALUE)
//
//     #1 NAME Store   #2 NAME Item   #3 INSTANCE #1   #4 MEMBER #3 find   #5 CALL #4   #6 MEMBER #5 next
//
// Parameters and other locals are not declarations: a token that names one is no mention, and stands in expressions as
// what the file says of its value.
#pragma once

#include "host/syntax/names.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace host::syntax {

/// Index in `Syntax::expressions`. 0 is the unknown value.
using ExpressionId = std::uint32_t;

/// Index in `Syntax::lists` of the number of expressions in a list, which follow it. 0 is the empty list.
using ListId = std::uint32_t;

/// Index in `Syntax::declarations`.
using DeclarationId = std::uint32_t;

inline constexpr ExpressionId UNKNOWN = 0;
inline constexpr DeclarationId NO_DECLARATION = 0xFFFF'FFFF;

/// Names of one spelling may mean a type here and a value there. A qualifier (`a` of `a.b`, `a::b`) may be either, or a
/// namespace or module. A tag is a type that C has named behind `struct`, `union` or `enum`: no alias is one.
enum class Space : std::uint8_t { VALUE, TYPE, QUALIFIER, TAG };

/// How an expression comes from its operands `a`, `b` and `name`. "Value" is what the expression is at run time; a
/// class, a function or a module is a value as well.
enum class Operation : std::uint8_t {
    NOTHING,      ///< nothing is known
    NAME,         ///< `name` in `Space` b, looked up around declaration a (NO_DECLARATION: at the top of the file)
    GLOBAL,       ///< `name` in `Space` b, looked up from the root of all names: `::name`, `crate::name`
    MEMBER,       ///< member `name` of a; b: `Space`
    DECLARATION,  ///< declaration a of this file
    IMPORT,       ///< what import a of this file means
    LOCAL,        ///< a local, whose value is a
    SELF,         ///< an instance of the type that declaration a is, or is a member of
    SELF_TYPE,    ///< that type itself
    SUPER,        ///< an instance of that type, whose members are looked up in its bases alone
    INSTANCE,     ///< a value of type a
    /// What calling a gives; of a type, an instance where the language has it so. b: the list of the arguments, where
    /// functions of one name are told apart by them.
    CALL,
    ARGUMENT,   ///< what a takes as argument number b (from 0): of a type, its constructor
    ELEMENT,    ///< an element of container a: by index or key, or by iteration where both give the same
    KEY,        ///< a key of container a
    ITERATED,   ///< what a loop over a gives: an element, of a map a key
    COMPONENT,  ///< component b (from 0) of tuple a
    AWAITED,    ///< what waiting for a gives; a itself where it is not awaitable
    TARGET,     ///< what pointer or reference a leads to; a itself where it is neither
    ONE_OF,     ///< one of the expressions of list a: branches, assignments, a union of types

    // Types that the text puts together. As an operand of INSTANCE they give values with elements or components.
    LIST,       ///< array, list, set, slice, channel, iterator of a; `name` if it matters which
    MAP,        ///< from keys of type a to elements of type b; `name` likewise
    TUPLE,      ///< of the types of list a
    POINTER,    ///< to a
    AWAITABLE,  ///< of a: a promise, a future
    FUNCTION,   ///< with results of type a, and parameters of the types of list b
    GENERIC,    ///< type a with the arguments of list b
    PARAMETER,  ///< type parameter number b (from 0) of the type around it, with bound a
    TYPE_OF,    ///< the type whose value is a: `typeof a`, the result of `return a`

    FOREIGN,  ///< what has no declaration in the repository: a literal, a builtin type, `name` if the text names it
};

struct Expression {
    Operation operation = Operation::NOTHING;
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    NameId name = 0;

    friend bool operator==(const Expression&, const Expression&) = default;
};

/// What a declaration is to a resolver.
enum class Kind : std::uint8_t {
    TYPE,         ///< class, struct, interface, enum, trait: has members
    ALIAS,        ///< another name of type `type`
    NAMESPACE,    ///< namespace, module in a file
    FUNCTION,     ///< function or method; its `type` is that of its result
    CONSTRUCTOR,  ///< is called by the name of the type that it is a member of
    VALUE,        ///< variable, constant, field, enumerator; its `type` is a value: INSTANCE of what is declared
    PROPERTY,     ///< is read like a field; its `type` is a value likewise
    MACRO,        ///< is replaced before names are looked up
};

/// Whether a build for this system takes a part of a text: for Linux on x86-64, with GNU C or what is compatible with
/// it. The same on every machine, so that an index is.
enum class Built : std::uint8_t {
    ALWAYS,
    MAYBE,  ///< by what is configured elsewhere
    NEVER,  ///< a part for other systems, or for none
};

struct Declaration {
    NameId name = 0;  ///< under which it is looked up
    /// As the text has it, where `name` is marked to tell it from other declarations of that spelling, such as a method
    /// from a field; else 0.
    NameId written = 0;
    Kind kind = Kind::VALUE;
    DeclarationId parent = NO_DECLARATION;  ///< whose member it is, and stands in
    /// The type whose member it is, where it stands outside of it: `impl T { fn f() }`, `func (t *T) f()`,
    /// `void T::f() {}`.
    ExpressionId owner = UNKNOWN;
    ExpressionId type = UNKNOWN;
    ListId bases = 0;  ///< of a type: the types it inherits from, in the order in which they are asked
    /// Of a function or constructor: the types of its parameters. Empty where the language needs none of them.
    ListId parameters = 0;
    /// The first declaration of the file in whose place it stands in another branch of an `#if`: no build takes both,
    /// so that they are one to the reader of an index.
    DeclarationId alternative_of = NO_DECLARATION;
    std::uint32_t offset = 0;  ///< of its name in the text, in bytes
    Built built = Built::ALWAYS;
    std::uint8_t least_arguments = 0;
    std::uint8_t most_arguments = ANY_NUMBER;
    bool is_private = false;     ///< only its own file can name it: `static`, not exported
    bool is_definition = true;   ///< false of a prototype and a forward declaration
    bool is_static = false;      ///< a member that belongs to the type, not to its instances
    bool is_hidden = false;      ///< serves the lookup of names only: no index holds it
    bool is_local = false;       ///< stands in a function: only DECLARATION expressions lead to it
    bool is_in_test = false;     ///< compiled for tests alone
    bool is_implicit = false;    ///< declared by an assignment to a member: what a base declares comes first
    bool is_substitute = false;  ///< for what the system or a library may have itself: `#ifndef HAVE_F`

    static constexpr std::uint8_t ANY_NUMBER = 255;
};

/// What a file takes from others.
///
///     import { a as b } from "./m"   name b, module "./m", original a
///     import * as b from "./m"       name b, module "./m"
///     export * from "./m"            module "./m", is_star, is_exported
///     from ..m import a              name a, module "..m", original a
///     import a.b                     name a, module "a", further "a.b"
///     use crate::m::{a as b}         name b, module "crate::m", original a
///     import "fmt"                   module "fmt"; the package says its name
///     import static p.C.f            name f, module "p.C", original f
///     #include "m.h"                 module "m.h", is_star; is_system of <m.h>
///     using namespace n              module "n", is_star
struct Import {
    NameId name = 0;      ///< in this file; 0 where it has none or the module says it
    NameId module = 0;    ///< as the file writes it
    NameId original = 0;  ///< what the module calls it; 0: the module itself
    NameId further = 0;   ///< a module that is loaded as well, so that its name can be reached through `name`
    DeclarationId around = NO_DECLARATION;  ///< where the name is bound, if not in the file
    Built built = Built::ALWAYS;
    bool is_star = false;      ///< every name of the module
    bool is_exported = false;  ///< others can import it from here
    bool is_system = false;
    bool is_type = false;         ///< only for types
    bool is_in_function = false;  ///< binds a local: only IMPORT expressions lead to it
    bool is_in_comment = false;   ///< says what a type is: the code does not import it
};

/// How a token uses what it names.
enum class Role : std::uint8_t {
    VALUE,
    CALL,  ///< called, or instantiated
    TYPE,
    IMPORT,  ///< stands in an import
    KEY,     ///< a key of a literal, or a keyword of a call
};

/// The tokens of a file that are the same expression in the same role, in parts of the text that are built alike.
struct Mention {
    ExpressionId expression = UNKNOWN;  ///< NAME, GLOBAL, MEMBER, DECLARATION or IMPORT; CALL: the function it calls
    Role role = Role::VALUE;
    Built built = Built::ALWAYS;
    std::uint8_t arguments = Declaration::ANY_NUMBER;  ///< of a call; ANY_NUMBER when unknown
    std::uint32_t count = 0;
    std::uint32_t line = 0;  ///< of the first, 1-based
};

/// Where a token stands.
struct TokenPlace {
    std::uint32_t offset = 0;  ///< in the text, in bytes
    std::uint32_t line = 0;    ///< 1-based

    friend auto operator<=>(const TokenPlace&, const TokenPlace&) = default;
};

/// All that the text of one file states.
struct Syntax {
    Names names;
    std::vector<Expression> expressions{{}};
    std::vector<ExpressionId> lists{0};
    std::vector<Declaration> declarations;
    std::vector<Import> imports;
    std::vector<Mention> mentions;
    /// Where the tokens of the mentions stand: those of the first mention, then those of the next. Empty where they
    /// were not asked for.
    std::vector<TokenPlace> places = {};
    NameId package = 0;     ///< what the file says it belongs to: `package p;`
    NameId constraint = 0;  ///< when it is compiled, as it says: `linux && !cgo`; 0: always

    [[nodiscard]] std::string_view name(NameId id) const { return names[id]; }

    /// Returns the name of a declaration as the text has it.
    [[nodiscard]] std::string_view written_name(const Declaration& declaration) const {
        return name(declaration.written == 0 ? declaration.name : declaration.written);
    }

    /// Returns the expressions of a list. Valid until a list is added.
    [[nodiscard]] std::span<const ExpressionId> list(ListId id) const {
        return std::span(lists).subspan(id + 1, lists[id]);
    }
};

}  // namespace host::syntax
