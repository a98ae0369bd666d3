// What SCIP files say of a repository, put together by source file.
//
// A SCIP file is a list of documents, each a list of occurrences; documents of one or of several SCIP files may speak
// of one source file, and a symbol is the same wherever it stands. Every document is read once: its definitions are
// kept, and its references counted by what their tokens name. So without sources, what is kept grows with symbols, and
// with pairs of a file and what it mentions, not with occurrences; of a file whose text is there, the places of all
// tokens are kept as well. Signatures and documentation go to a spool.
#pragma once

#include "host/files/text_spool.h"
#include "host/indexing/extraction.h"
#include "host/indexing/line_span.h"
#include "host/scip/description.h"
#include "host/scip/scip_file.h"
#include "host/scip/tokens.h"
#include "host/sources/outline.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace host::scip {

/// A place where a global symbol is defined.
struct Definition {
    SymbolNumber symbol = 0;
    indexing::LineSpan lines;                  ///< of the whole declaration, if the document says where that is
    bool is_whole = false;                     ///< whether it does; else these are the lines of the name
    bool is_forward = false;                   ///< whether it only announces what is defined elsewhere
    std::optional<sources::Position> name;     ///< where the name stands
    std::optional<std::uint32_t> offset = {};  ///< the same in bytes, as that of a `NamedToken`; if texts tell
};

/// A token of which the source has the last word (open_tokens.h): what its document says may be wrong.
struct OpenToken {
    TokenNames names = 0;  ///< as its document says
    Range range;
};

/// What the documents of one source file say, in the order in which they came.
struct FileContents {
    std::size_t documents = 0;
    std::string language;  ///< the first that is stated; empty when none is
    std::vector<Definition> definitions;
    std::unordered_map<SymbolNumber, Description> descriptions;
    std::unordered_map<TokenNames, indexing::Occurrences> references;  ///< tokens that define nothing
    std::vector<OpenToken> open_tokens;                                ///< others, in the order of the text
    std::optional<std::vector<indexing::NamedToken>> tokens;  ///< whose meaning is known; none where no text tells
    std::vector<std::uint32_t> misnamed = {};                 ///< as those of an `indexing::ExtractedFile`
    std::int32_t last_line = 1;                               ///< the last on which anything stands
};

struct Contents {
    SymbolTable symbols;
    TokenReader tokens;
    std::map<std::string, FileContents> files;  ///< by path
    std::int64_t unusable_documents = 0;        ///< left out for their path, as `path_in_repository` judges it
    std::int64_t unwanted_documents = 0;
    std::set<std::string> unwanted;         ///< the paths of these
    std::int64_t unusable_definitions = 0;  ///< left out for want of a usable range
    /// By a symbol as documents state it, where projects whose packages have no name share it: what it may stand for.
    std::unordered_map<SymbolNumber, std::vector<SymbolNumber>> namesakes;
};

struct ContentsListener {
    /// Asked of each document whether it shall be read, by its path and whether all that it defines is generated.
    std::function<bool(const std::string& path, bool is_generated)> wants = [](auto&, bool) { return true; };
    /// Called with the path and the stated language of each source file, when its first document begins.
    std::function<void(const std::string& path, const std::string& language)> new_file = [](auto&, auto&) {};
    /// Asked for the text of a source file, for each of its documents; none where it is not there.
    std::function<std::optional<std::string>(const std::string& path)> text_of = [](auto&) { return std::nullopt; };
    /// Called after each document. What it throws ends the reading.
    std::function<void()> after_document = [] {};
};

/// A SCIP file, and the folder of the repository that its paths are relative to; "" for the root.
struct PlacedScipFile {
    ScipFile* file = nullptr;
    std::string folder;
};

/// Reads every document of the SCIP files, one file after the other, keeping texts in `spool`. Throws what `ScipFile`,
/// the spool and the listener throw.
Contents read_contents(std::span<const PlacedScipFile> files, TextSpool& spool, const ContentsListener& listener);

}  // namespace host::scip
