// What a doc comment of JavaScript states of types: its tags, as text.
#pragma once

#include <string_view>
#include <vector>

namespace host::sources {

/// A name of which a tag states the type.
struct DocName {
    std::string_view name;
    std::string_view type;         ///< without braces
    std::vector<DocName> members;  ///< of what is an object, as in `@param {T} name.a`
};

/// A type to which a tag gives a name.
struct DocAlias {
    std::string_view name;
    std::string_view type;            ///< `@typedef {T} A`; empty where further tags say what it is
    std::vector<DocName> properties;  ///< `@property {T} a`, `@prop {T} [a=1]`
    bool is_function = false;         ///< `@callback A`, with:
    std::vector<DocName> parameters;  ///< as those of `DocTags`
    std::string_view result;          ///< likewise
};

/// The types that the tags of a comment state, without their braces; empty where it has no such tag.
struct DocTags {
    std::string_view type;                          ///< `@type {T}`
    std::string_view result;                        ///< `@return {T}`, `@returns {T}`
    std::string_view self;                          ///< `@this {T}`
    std::vector<DocName> parameters;                ///< `@param {T} a`, `@param {T} [a=1]`; in order
    std::vector<std::string_view> type_parameters;  ///< `@template T, U`
    std::vector<DocAlias> aliases;
};

/// Returns whether a name of the language may hold a character, which may be a byte of one that is not ASCII.
bool is_doc_name_letter(char letter);

/// Returns whether a comment is one that documents: `/** ... */`.
bool is_doc_comment(std::string_view comment);

/// Returns what a doc comment states. What follows `@typedef`, `@callback` or `@overload` is about these, and says nothing
/// of what stands below the comment. The result points into the text.
DocTags read_doc_tags(std::string_view comment);

}  // namespace host::sources
