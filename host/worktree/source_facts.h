// What the text of one source file says: its declarations as an index shows them, and what it states about names.
#pragma once

#include "host/indexing/line_span.h"
#include "host/syntax/syntax.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::worktree {

/// A declaration of `SourceFacts::syntax` as an index shows it.
struct DeclarationFacts {
    syntax::DeclarationId id = 0;
    std::string_view kind;  ///< class, struct, interface, enum, type, function, method, ...; of static storage
    indexing::LineSpan lines;
    bool is_public = false;
    std::string signature;
    std::string documentation;
};

/// All that an index and its making need of one file. Depends on nothing but its text, path and language.
struct SourceFacts {
    std::string_view language;  ///< in which the text is read: "cpp" for a header that only C++ can hold
    std::string_view dialect;   ///< the same, but "tsx" for TypeScript with elements; both of static storage
    std::string summary;        ///< as `wiki::file_summary` gives it
    std::int32_t line_count = 1;
    bool is_parsed = false;   ///< false for text that is no UTF-8, too large or too complex, and for other languages
    bool is_damaged = false;  ///< whether a part of the text does not parse
    std::vector<DeclarationFacts> declarations;  ///< by first line, then by place in the text; none compiled for tests
    syntax::Syntax syntax;
};

/// Returns what the path of a file says without its text.
SourceFacts facts_of_name(std::string_view path);

/// Reads a text as that of a file at `path`. May be called on several threads.
SourceFacts facts_of(std::string_view text, const std::string& path, const std::atomic<bool>& is_cancelled);

/// Returns what other files and their rows can depend on: the facts without lines, signatures and documentation, and
/// of the syntax the surface (syntax/surface.h).
SourceFacts surface_of(const SourceFacts& facts);

/// Returns the kinds of declarations, as `DeclarationFacts::kind` holds them.
std::vector<std::string_view> kinds_of_declarations();

}  // namespace host::worktree
