// What a front end extracts from a repository: its files, what they declare, and what their tokens name.
//
// A front end reads the format that it understands, and fills an `Extraction`. The rest of this room makes an index
// from it: references are resolved to declarations (references.h), rows get their ids and are written (index_writer.h).
#pragma once

#include "host/files/text_spool.h"
#include "host/indexing/line_span.h"
#include "host/indexing/occurrences.h"
#include "host/indexing/symbols.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host::indexing {

/// A declaration of a file.
struct Declaration {
    SymbolNumber symbol = 0;  ///< of merged symbols, the one that gave kind and lines
    bool is_public = false;
    LineSpan lines;
    std::string_view kind;  ///< class, struct, interface, enum, type, function, method, ...; of static storage
    SpooledText signature;
    std::vector<SpooledText> further_signatures;  ///< of the symbols merged into it, in order of definition
    SpooledText documentation;                    ///< its own, else that of the first merged symbol that has one
};

/// A symbol that a file declares.
struct DeclaredSymbol {
    SymbolNumber symbol = 0;
    /// Index of the declaration that references resolve to. For a constructor, that of its type, if the file declares
    /// it.
    std::uint32_t declaration = 0;
    std::int32_t line_count = 0;  ///< of its own declaration in this file
    bool is_described = false;    ///< whether the front end knows more than its name
};

/// Where the name of a symbol stands that a file declares.
struct NamePlace {
    std::uint32_t offset = 0;  ///< in the text behind a byte-order mark, in bytes
    SymbolNumber symbol = 0;

    friend auto operator<=>(const NamePlace&, const NamePlace&) = default;
};

/// A token of a file, and what it names: one or more symbols.
struct NamedToken {
    std::uint32_t offset = 0;         ///< as that of a `NamePlace`
    TokenNames names = LOCAL_SYMBOL;  ///< `LOCAL_SYMBOL`: nothing that is counted among the references of the file
    std::int32_t line = 0;            ///< 1-based

    friend auto operator<=>(const NamedToken&, const NamedToken&) = default;
};

/// What a file declares.
struct FileDeclarations {
    std::vector<Declaration> declarations;  ///< by first line, then in the order of first definition
    std::vector<DeclaredSymbol> symbols;    ///< every symbol with a declaration, once
    std::vector<SymbolNumber> modules;      ///< the symbols of the file as a module; the first names it
    std::vector<NamePlace> names;           ///< ascending; for `joined` (joining.h) alone
    std::int32_t line_count = 1;            ///< of the file
};

struct ExtractedFile {
    std::string path;
    std::string language;  ///< in lower case; empty when unknown
    FileDeclarations declared;
    std::int64_t content_hash = 0;  ///< of the source; 0 when none was read
    bool has_moved = false;         ///< whether the source has changed since it was indexed
    /// The tokens that define nothing, by what they name.
    std::unordered_map<TokenNames, Occurrences> references;
    /// The tokens from which no binding leads on, by the only declaration that bears their name.
    std::unordered_map<SymbolNumber, Occurrences> unique_references = {};
    /// Every token of which it is known what it names, by offset, each once; for `joined` (joining.h) alone. None where
    /// it is not known which tokens these are.
    std::optional<std::vector<NamedToken>> tokens = {};
    std::vector<std::uint32_t> misnamed = {};  ///< where others stand, of which documents state another name
    std::size_t steps = 0;                     ///< progress of the import for writing this file
};

struct Extraction {
    std::vector<ExtractedFile> files;  ///< by path, each once
    TokenTable tokens;
    std::unique_ptr<const Symbols> symbols;
    std::set<std::string, std::less<>> languages;  ///< in which imports are followed as a compiler does

    std::string damaged;  ///< paths of files with declarations in parts that do not parse, each ended by "\n"
    std::vector<std::string> summaries;  ///< of the files whose source was read, in no order
};

}  // namespace host::indexing
