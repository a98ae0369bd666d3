// The rows of the index that a source file gives: what it declares, by the rules of an index instead of those of SCIP.
//
// Declarations that a language takes for one are one row. Lines, texts and what is public come from the source, where
// it is there and says so.
#pragma once

#include "host/scip/callable_types.h"
#include "host/scip/contents.h"
#include "host/scip/line_range.h"
#include "host/sources/source_reader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host::scip {

/// A declaration before it has its number. Its name and what comes with it is in its symbol.
struct Row {
    SymbolNumber symbol = 0;  ///< of several that are one row, the one whose kind and lines these are
    std::string_view kind;    ///< as `kind_of` (declarations.h) gives it
    LineRange lines;
    bool is_public = false;
    SpooledText signature;
    std::vector<SpooledText> further_signatures;  ///< of the others that are one row with it, as they were defined
    SpooledText documentation;                    ///< its own, else that of the first of the others that has one
};

/// A symbol that a file declares.
struct DeclaredSymbol {
    SymbolNumber symbol = 0;
    std::uint32_t row = 0;        ///< to which references lead; of a constructor that of its type, if the file has it
    std::int32_t line_count = 0;  ///< of its own declaration here
    bool is_described = false;    ///< whether the file's documents list it among their symbols
};

struct FileRows {
    std::vector<Row> rows;                 ///< by first line, then in the order of first definition
    std::vector<DeclaredSymbol> declared;  ///< every symbol that leads to a row, once
    std::vector<SymbolNumber> modules;     ///< the symbols that stand for the file itself
    std::int32_t line_count = 1;           ///< of the file
    std::int64_t out_of_damage = 0;        ///< rows that a source does not hold of which a part does not parse
    bool has_moved = false;  ///< whether the source is not the one that was indexed: a declaration is elsewhere in it
};

/// Which definitions of a symbol count: the forward ones only where there are no others, and of those the first file's.
class Homes {
  public:
    explicit Homes(const Contents& contents);

    [[nodiscard]] bool counts(const Definition& definition, const FileContents& file) const;

  private:
    std::vector<bool> is_defined_;
    std::unordered_map<SymbolNumber, const FileContents*> forward_;
};

/// The rows of a file. `source` is null when the source could not be read.
FileRows rows_of(const std::string& path, const FileContents& file, const Contents& contents, const Homes& homes,
                 const CallableTypes& callable_types, const sources::Source* source);

}  // namespace host::scip
