// The page's grounding as Markdown.
//
// A block is a list of lines, each ended by one "\n": the caller's heading unchanged, an empty line, a sentence of
// explanation, then the content. Paths and names are printed as they are, most between backticks; what a table shows
// beside the path of a row is made safe for its cell.
#pragma once

#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/file_cards.h"
#include "workers/wiki/scope/neighbours.h"

#include <span>
#include <string>
#include <string_view>

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

}  // namespace wiki::scope
