// The outline of a source file: its declarations, their lines, and which of them are public.
#pragma once

#include "host/sources/language.h"
#include "host/sources/public_names.h"
#include "host/syntax/syntax.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace host::sources {

/// Where a name stands in a file.
struct Position {
    std::int32_t line = 1;    ///< 1-based
    std::int32_t column = 0;  ///< 0-based, in UTF-16 code units

    // NOLINTNEXTLINE(modernize-use-nullptr,readability-implicit-bool-conversion): it misreads the default
    friend auto operator<=>(const Position&, const Position&) = default;
};

/// What the source says of one declaration. Its lines are 1-based, both inclusive, and take in all that belongs to it
/// (its decorators, `export`, its body), except for the comment above.
struct SourceDeclaration {
    std::string name;
    std::uint32_t offset = 0;  ///< of the name in the text behind a byte-order mark, in bytes
    Position position;         ///< of the name
    std::int32_t first_line = 1;
    std::int32_t last_line = 1;
    std::string_view kind;      ///< a word of language.h; empty where the source leaves it open
    bool is_at_top = false;     ///< whether it stands in no other declaration and no function
    bool is_variable = false;   ///< whether it binds a name to a value
    bool is_public = false;     ///< whether the file makes it public, should it stand at the top or in a namespace
    bool is_callable = false;   ///< whether it is a type that can be called, or a variable without a kind that can be
    bool is_constant = false;   ///< whether it is a variable without a kind that is said to stay as it is
    std::string signature;      ///< its text up to the body, as many lines as that takes, without their common indent
    std::string documentation;  ///< its doc comment as prose; empty when it has none
    /// Of a type, and of a variable without a kind: the names of types, each without its scope, by one of which it can
    /// be called if that can be. `core.Parse<T> & Named` gives Parse and Named.
    std::vector<std::string> type_names;
};

/// Lines of a file, 1-based, both inclusive.
struct Lines {
    std::int32_t first = 1;
    std::int32_t last = 1;
};

struct Outline {
    std::vector<SourceDeclaration> declarations;  ///< by the position of their names, one for each
    PublicNames public_names;
    std::int32_t line_count = 0;            ///< at least 1
    bool is_cpp = false;                    ///< whether the text holds what C++ has and C has not
    bool is_damaged = false;                ///< whether a part of the text does not parse, and may hold more
    std::size_t damage = 0;                 ///< how large that part is, in bytes
    std::vector<Lines> test_regions;        ///< what the language compiles for tests alone
    std::unordered_set<std::string> slots;  ///< the names of attributes that classes list
    std::optional<syntax::Syntax> syntax;   ///< none unless asked for, and for languages of which it is not read

    [[nodiscard]] bool is_in_test(std::int32_t line) const {
        return std::ranges::any_of(test_regions,
                                   [line](const Lines& region) { return region.first <= line && line <= region.last; });
    }
};

/// In bytes. People do not write larger files; a tree takes some twenty times as much memory as its text.
inline constexpr std::size_t LARGEST_SOURCE = 4'194'304;

/// How much an outline holds.
enum class Content {
    DECLARATIONS,
    NAMES,   ///< and what each name of the text is looked up in, `Outline::syntax`
    TOKENS,  ///< and where each of these names stands
};

/// Parses the text of a source file. What stands in a damaged part of it is left out. None when the text is not UTF-8,
/// when it is larger than `LARGEST_SOURCE` or takes seconds or hundreds of megabytes to parse, as no source does, and
/// when `is_cancelled`, which is read all the while, becomes true. May be called on several threads.
std::optional<Outline> outline_of(std::string_view text, const Language& language,
                                  const std::atomic<bool>& is_cancelled, Content content = Content::DECLARATIONS);

/// The same for the file at `path`, in the language that `understood_language` gives; none where it gives none. A
/// header without a stated language is read as C when it holds nothing that C has not, and as much of it is damaged in
/// C++.
std::optional<Outline> outline_of(std::string_view text, std::string_view stated_language, std::string_view path,
                                  const std::atomic<bool>& is_cancelled, Content content = Content::DECLARATIONS);

}  // namespace host::sources
