// What a front end extracts from a repository: its files, what they declare, and what their tokens name.
//
// A front end reads whatever it understands, and fills an `Extraction`. The rest of this room makes an index of that:
// references lead to declarations (references.h), rows get their ids and are written (index_writer.h).
#pragma once

#include "host/files/text_spool.h"
#include "host/indexing/line_span.h"
#include "host/indexing/symbols.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host::indexing {

/// A declaration of a file.
struct Declaration {
    SymbolNumber symbol = 0;  ///< of several that are one declaration, the one whose kind and lines these are
    std::string_view kind;    ///< class, struct, interface, enum, type, function, method, ...; of static storage
    LineSpan lines;
    bool is_public = false;
    SpooledText signature;
    std::vector<SpooledText> further_signatures;  ///< of the others that are one with it, as they were defined
    SpooledText documentation;                    ///< its own, else that of the first of the others that has one
};

/// A symbol that a file declares.
struct DeclaredSymbol {
    SymbolNumber symbol = 0;
    /// The place of the declaration to which references lead; of a constructor that of its type, if the file has it.
    std::uint32_t declaration = 0;
    std::int32_t line_count = 0;  ///< of its own declaration here
    bool is_described = false;    ///< whether the front end knows more of it here than its name
};

/// What a file declares.
struct FileDeclarations {
    std::vector<Declaration> declarations;  ///< by first line, then in the order of first definition
    std::vector<DeclaredSymbol> symbols;    ///< every symbol that leads to a declaration, once
    std::vector<SymbolNumber> modules;      ///< the symbols that stand for the file itself; the first names it
    std::int32_t line_count = 1;            ///< of the file
};

struct ExtractedFile {
    std::string path;
    std::string language;  ///< in lower case; empty when unknown
    FileDeclarations declared;
    std::int64_t content_hash = 0;                            ///< of the source that was read; 0 when there was none
    bool has_moved = false;                                   ///< whether that source is not the one which was indexed
    std::unordered_map<TokenNames, std::int64_t> references;  ///< tokens that define nothing, by what they name
    std::size_t steps = 0;                                    ///< how much of the progress of an import its writing is
};

struct Extraction {
    std::vector<ExtractedFile> files;  ///< by path, each once
    TokenTable tokens;
    std::unique_ptr<const Symbols> symbols;

    std::string damaged;           ///< the files with declarations in parts that do not parse, each ended by "\n"
    std::string shared_summaries;  ///< as `host::shared_summaries` gives them
};

}  // namespace host::indexing
