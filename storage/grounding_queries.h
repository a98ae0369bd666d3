// The questions that grounding a page asks of the index, and the records that answer them.
//
// Declarations only: whoever links the component defines the functions. Each is called once for a whole page. A
// function may throw whatever it likes; the component lets it pass unchanged. The records are quick to build and to
// compare when the texts in them are shared: one `models::Text` for each distinct path, kind and resolution.
#pragma once

#include "models/constant_set.h"
#include "models/text.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace storage {

class Database;

using FileId = std::int64_t;
using SymbolId = std::int64_t;

/// The kinds of declarations whose short names collide with unrelated accesses: a reference to one of them that was
/// resolved by its name alone is no evidence of a use.
inline constexpr models::ConstantSet NAME_MATCH_KINDS{"attribute", "constant"};

/// A file of the index.
struct ScopeFile {
    FileId id = 0;
    models::Text path;                     ///< segments separated by "/", the same text in every record
    std::optional<models::Text> language;  ///< none, or empty, when the index knows none
};

/// A declaration. Lines are 1-based and inclusive; an index that does not know them gives 0 or less.
struct ScopeSymbol {
    SymbolId id = 0;
    models::Text path;  ///< the file that declares it
    models::Text name;  ///< its short name; private when it starts with "_"
    models::Text kind;
    bool is_export = false;
    std::int32_t start_line = 0;
    std::int32_t end_line = 0;
    models::Text fqn;  ///< its fully qualified name
};

/// The references that one file makes to one declaration of the page by one resolution.
struct InboundReference {
    models::Text source_path;
    SymbolId target_id = 0;
    models::Text target_path;
    models::Text target_name;
    models::Text target_kind;
    models::Text resolution;
    std::int64_t refs = 0;  ///< how many references the record stands for
};

/// The references that one file of the page makes to one declaration of another file by one resolution.
struct OutboundReference {
    models::Text source_path;
    ScopeSymbol target;
    models::Text resolution;
    std::int64_t refs = 0;  ///< how many references the record stands for
};

/// The files of `paths` that the index holds, each once, in the order that the page is to have.
std::vector<ScopeFile> scope_files(Database& db, std::span<const std::string> paths);

/// The declarations of the files `file_ids`, in the order that the page is to have.
std::vector<ScopeSymbol> scope_symbols(Database& db, std::span<const FileId> file_ids);

/// Every reference to a declaration of the files `file_ids`, from any file, those files included. In an order that is
/// always the same, for it decides between equal counts; those from one file together, for speed.
std::vector<InboundReference> inbound_references(Database& db, std::span<const FileId> file_ids);

/// Every reference from the files `file_ids` to a declaration of another file. In an order that is always the same,
/// those from one file together.
std::vector<OutboundReference> outbound_references(Database& db, std::span<const FileId> file_ids);

/// Those of `languages` (sorted, without repeats) for which the indexer resolves imports.
std::vector<models::Text> import_resolved_languages(Database& db, std::span<const models::Text> languages);

}  // namespace storage
