// The page's grounding as Markdown.
//
// A block is a list of lines, each ended by one "\n": the caller's heading unchanged, an empty line, a sentence of
// explanation, then the content. Paths and names are printed as they are, most between backticks; what a table shows
// beside the path of a row is made safe for its cell.
#pragma once

#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/file_cards.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace wiki::scope {

/// What stands between the heading of the file-card table and its rows: an empty line, the explanation, an empty line,
/// the head. Both are whole lines.
inline constexpr std::string_view FILE_CARDS_EXPLANATION =
    "Every file of this page, from the index. Lines and the summary come from the file; the most used declarations "
    "are ranked by the references production code outside the page makes to them (line, references; `in-page` when "
    "only the page's own files use them); users are the other production files that reference the file through "
    "evidence-backed edges.\n";
inline constexpr std::string_view FILE_CARDS_HEAD =
    "| File | Lines | Declarations | Summary | Most used | Used by | Tests |\n"
    "|---|---|---|---|---|---|---|\n";

/// The file-card table: a row for each of `cards`, in their order, with its lines ("?" when it could not be read), its
/// number of declarations, its summary, its most used declarations, its users and its tests; of those that are not
/// shown the number.
std::string render_file_cards(std::span<const FileCard> cards, std::string_view heading);

/// The table of `file_cards(facts, fan_in, missing)`, which says what is called and what makes it throw.
std::string render_file_cards(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading,
                              std::span<const std::string> missing = {});

/// The consumers block without its heading. Each text is a whole line.
struct ConsumersText {
    std::string explanation;             ///< what the counts are evidence of
    std::vector<std::string> consumers;  ///< a line for each consumer shown, in order
    std::string more_consumers;          ///< how many are not shown; empty when all are
    /// That there is no consumer, what is not counted, what no consumer uses: those that there is something to say of.
    std::vector<std::string> notes;
};

/// The lines of the consumers block.
ConsumersText consumers_text(const Consumers& consumers);

/// The consumers block: what the counts are evidence of; a line for each consumer shown, with the names that it uses
/// most; how many references are not counted; and the public code that no consumer uses. Files without a language are
/// called "files of unknown language".
std::string render_consumers(const Consumers& consumers, std::string_view heading);

/// The block of `consumers(facts, fan_in)`.
std::string render_consumers(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading);

/// A declaration in another file that the page uses.
struct Neighbour {
    const ScopeSymbol* target;  ///< a record of the `ScopeFacts`, and lives as long
    std::int64_t refs;
    friend bool operator==(const Neighbour&, const Neighbour&) = default;
};

/// The production declarations in other files that the page uses most, by their references, most first; equal counts
/// by fully qualified name, then in the order of `facts.outbound`. At most `limit`; none when it is 0 or negative.
/// References that only match the name of an attribute or a constant do not count. Where records of several
/// declarations have one id, theirs is one count, and the record is that of the last reference that counts. A count
/// that would go beyond 64 bits stops at their ends. Calls `is_test_path`, whose failures pass unchanged to the caller.
std::vector<Neighbour> neighbours(const ScopeFacts& facts, std::int64_t limit);
std::vector<Neighbour> neighbours(const ScopeFacts&& facts, std::int64_t limit) = delete;  // would dangle

/// The file of a reference, and the file of its target.
struct FilePair {
    Text source_path;
    Text target_path;
    friend bool operator==(const FilePair&, const FilePair&) = default;
};

/// The references that only match the name of an attribute or a constant ("unique" ones), by the pair of their files,
/// whether tests or not: first those of `facts.inbound`, then those of `facts.outbound`, each in order. A count that
/// would go beyond 64 bits stops at their ends.
OrderedMap<FilePair, std::int64_t> name_match_counts(const ScopeFacts& facts);

}  // namespace wiki::scope

template <>
struct std::hash<wiki::scope::FilePair> {
    std::size_t operator()(const wiki::scope::FilePair& pair) const noexcept {
        return (std::uint64_t{pair.source_path.hash()} << 32U) ^ pair.target_path.hash();
    }
};
