// The rows of an index.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace host {

/// A row's number. Numbers ascend in the order in which pages are read: files by path, declarations by file,
/// resolutions by name.
using RowId = std::int64_t;

struct FileRow {
    RowId id = 0;
    std::string_view path;
    std::optional<std::string_view> language = std::nullopt;  ///< none, or empty, when unknown
    std::optional<std::int64_t> content_hash = std::nullopt;  ///< of the source that was read; none when none was
    std::int64_t declarations = 0;
    std::int64_t declared_lines = 0;  ///< that its declarations take up together
};

struct LanguageRow {
    std::string_view name;
    bool import_resolved = false;  ///< whether the indexer resolves the language's imports
};

/// Lines are 1-based and inclusive.
struct DeclarationRow {
    RowId id = 0;
    RowId file = 0;
    std::string_view name;
    std::string_view fqn;
    std::string_view kind;
    bool is_export = false;
    std::int64_t first_line = 0;
    std::int64_t last_line = 0;
    std::int64_t uses = 0;  ///< references from production code that prove a use, from whatever file
};

/// What a declaration is called.
struct NameRow {
    RowId declaration = 0;
    std::string_view name;
    std::int64_t uses = 0;  ///< as of a `DeclarationRow`
};

/// What else is known of a declaration; each text may be empty.
struct DescriptionRow {
    RowId declaration = 0;
    std::string_view signature;      ///< up to the body
    std::string_view documentation;  ///< the doc comment as prose
};

struct ResolutionRow {
    RowId id = 0;
    std::string_view name;
};

/// All the references that one file makes to one declaration by one resolution.
struct EdgeRow {
    RowId source = 0;  ///< a file
    RowId target = 0;  ///< a declaration
    RowId resolution = 0;
    std::int64_t references = 0;
    std::int64_t first_line = 0;  ///< of the file, 1-based, on which one of them stands; 0 when unknown

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const EdgeRow&, const EdgeRow&) = default;
};

}  // namespace host
