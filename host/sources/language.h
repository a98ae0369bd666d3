// The languages whose sources are understood, as data: a grammar, a query, and what a name without a mark is.
//
// A query (queries/*.scm) says by which nodes of a language's syntax trees something is stated. A match that has a
// @name declares what it is about; one without states more of what another one declares. The captures mean:
//
//     @class, @struct, @interface, @enum, @type, @function, @method, @constructor, @attribute, @constant, @variable
//                    a declaration of this kind; of several patterns that state one, the last in the query is right
//     @declaration   a declaration whose kind is left open
//     @binding       a declaration that inside of a @local body is nobody's business
//     @namespace     this declaration is a scope: what it holds is public if it is public itself
//     @wrapper       a node around a declaration that belongs to it, such as its `export`
//     @decorator     a node above a declaration that belongs to it
//     @exporting     a decorator that marks what stands below it as public
//     @testing       a decorator that says of what stands below it that it is a test
//     @test          a region that holds nothing but tests
//     @of            a declaration, or what else may have decorators, of which this match states no more than parts
//     @body          where its body begins; the signature ends before it
//     @value         what it is set to
//     @callable      a declaration that holds something which can be called, or a type that can be
//     @part          a type by which another one, or what is of that type, can be called
//     @named         the same by its name
//     @const         a declaration whose value stays
//     @docstring     a string that documents the declaration from inside
//     @comment       a comment; one that ends right above a declaration may document it
//     @exported      a declaration, or a wrapper of one, that is marked as public
//     @export        a name that is listed as public
//     @list          the list of public names, where a file has one
//     @module        what makes the file a module, whose names are its own unless they are exported
//     @visible       a region whose declarations are public
//     @hidden        a region, or a single declaration, that is not
//     @local         the body of a function
//     @enclosed      a body in which nothing is declared that others can name, but for macros
//     @cpp           what C++ has and C has not
//     @slot          the name of an attribute that a class lists
//
// Other captures serve the predicates #eq? and #not-eq?, the only ones. A capture that does neither is an error.
#pragma once

#include "host/syntax/syntax.h"

#include <tree_sitter/api.h>

#include <span>
#include <string>
#include <string_view>

namespace host::sources {

/// What a declaration at the top of a file is that nothing marks, lists or hides.
enum class Unmarked {
    PRIVATE,
    PUBLIC,
    PUBLIC_OUTSIDE_MODULES,  ///< private in a module; a file that is none shares all its names
    PUBLIC_IF_CAPITALIZED,
};

/// Where the comment stands that documents a declaration.
enum class CommentPlace {
    RIGHT_ABOVE,
    ABOVE,  ///< blank lines and other comments may stand between
    ABOVE_OR_BELOW_DECORATORS,
};

struct Language {
    std::string_view name;
    const TSLanguage* (*grammar)();
    std::span<const std::string_view> queries;  ///< read one after the other as one
    Unmarked unmarked;
    /// The word with which a declaration begins that is not as one without it: public, or hidden where those are
    /// public. Empty where there is none.
    std::string_view mark;
    /// How a comment begins that documents a declaration; where there are none, only docstrings do.
    std::span<const std::string_view> documentation_marks;
    CommentPlace documentation_place;
    /// Whether a declaration says for the next one of its name, too, what it is: the first of several overloads, or the
    /// accessor that reads a property.
    bool has_versions;
    /// Puts a text in a way that the grammar understands better, with every name in its place; null where there is
    /// none.
    std::string (*mend)(std::string_view text) = nullptr;
    /// Reads what a tree states about names (syntax_readers.h); null for a language of which that is not read.
    syntax::Syntax (*read_syntax)(std::string_view text, TSNode root) = nullptr;
    /// Puts a text in a way of which the grammar says more, with every name in its place; null where there is none.
    std::string (*rewrite)(std::string_view text) = nullptr;
};

/// The language of a file by what its document states (in lower case, may be empty), else by its path; null for one
/// that is not understood. A header is read as C++ unless C is stated.
const Language* understood_language(std::string_view stated, std::string_view path);

/// All languages, each once.
std::span<const Language> languages();

}  // namespace host::sources
