// What a SCIP file says of a repository, put together by source file.
//
// A SCIP file is a list of documents, each a list of occurrences; two documents may speak of one source file. Every
// document is read once: its definitions are kept, its references counted by symbol, and each symbol is told from the
// others once, by a number. So what is kept grows with symbols, and with pairs of a file and a symbol that it mentions,
// not with occurrences.
#pragma once

#include "embedded/scip/declarations.h"
#include "embedded/scip/scip_file.h"
#include "workers/wiki/scope/ordered_map.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embedded::scip {

/// A global symbol that parses, counted from 0 in the order of first mention.
using SymbolNumber = std::uint32_t;

/// The global symbols of a SCIP file.
class SymbolTable {
  public:
    SymbolTable() = default;
    ~SymbolTable() = default;
    SymbolTable(SymbolTable&&) = default;
    SymbolTable& operator=(SymbolTable&&) = default;
    SymbolTable(const SymbolTable&) = delete;
    SymbolTable& operator=(const SymbolTable&) = delete;

    /// The number of a symbol, which is the next one for a new symbol; none for one that is local, is empty, or does
    /// not parse.
    std::optional<SymbolNumber> number(std::string_view symbol);

    /// The symbol with this number, valid as long as the table.
    [[nodiscard]] std::string_view symbol(SymbolNumber number) const { return symbols_[number]; }

    [[nodiscard]] std::size_t size() const { return symbols_.size(); }

    /// How many distinct symbols do not parse.
    [[nodiscard]] std::size_t unparsed() const { return numbers_.size() - symbols_.size(); }

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view symbol) const { return std::hash<std::string_view>()(symbol); }
    };
    std::unordered_map<std::string, std::optional<SymbolNumber>, Hash, std::equal_to<>> numbers_;
    std::vector<std::string_view> symbols_;  // the keys of `numbers_`
};

/// What the documents of one source file say, in the order in which they came.
struct FileContents {
    std::size_t documents = 0;
    std::string language;  ///< the first that is stated; empty when none is
    /// The lines of each symbol that is defined, none without a usable range: of several definitions those of the one
    /// with the most lines, the first of equals.
    wiki::scope::OrderedMap<SymbolNumber, std::optional<Lines>> definitions;
    std::unordered_map<SymbolNumber, Description> descriptions;
    std::unordered_map<SymbolNumber, std::int64_t> references;  ///< occurrences that define nothing
};

struct Contents {
    Metadata metadata;
    SymbolTable symbols;
    std::map<std::string, FileContents> files;  ///< by path
    std::size_t unusable_documents = 0;         ///< left out for their path: empty, absolute, with ".." or a NUL
};

/// Reads every document of the SCIP file, calling `after_each_document`. Throws what `ScipFile` throws; what
/// `after_each_document` throws ends the reading.
Contents read_contents(ScipFile& file, const std::function<void()>& after_each_document);

}  // namespace embedded::scip
