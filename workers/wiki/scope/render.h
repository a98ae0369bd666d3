// The page's grounding as Markdown.
//
// A block is a list of lines, each ended by one "\n": the heading as given, an empty line, a sentence of explanation,
// then the content. Paths and names are printed as they are, most of them between backticks. In a table every cell but
// the path is escaped: bars get a backslash, line feeds become blanks.
#pragma once

#include "workers/wiki/scope/consumers.h"
#include "workers/wiki/scope/facts.h"
#include "workers/wiki/scope/file_cards.h"
#include "workers/wiki/scope/neighbours.h"

#include <span>
#include <string>
#include <string_view>

namespace wiki::scope {

/// The two texts between the heading of the file-card table and its rows, each behind an empty line. Both are whole
/// lines.
inline constexpr std::string_view FILE_CARDS_EXPLANATION =
    "Every file of this page, from the index. Lines and the summary come from the file; the most used declarations "
    "are ranked by the references production code outside the page makes to them (line, references; `in-page` when "
    "only the page's own files use them); users are the other production files that reference the file through "
    "evidence-backed edges.\n";
inline constexpr std::string_view FILE_CARDS_HEAD =
    "| File | Lines | Declarations | Summary | Most used | Used by | Tests |\n"
    "|---|---|---|---|---|---|---|\n";

/// Returns the file-card table, a row for each of `cards` in their order: path, lines ("?" when the file could not be
/// read), number of declarations, summary, most used declarations, users, tests. A cell that shows a part of a list
/// ends in the number of what is left out.
std::string render_file_cards(std::span<const FileCard> cards, std::string_view heading);

/// Returns the table of `file_cards(facts, fan_in, missing)`. Calls `tests_reaching`, whose failures pass unchanged to
/// the caller.
std::string render_file_cards(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading,
                              std::span<const std::string> missing = {});

/// The consumers block without its heading. Each text is a whole line.
struct ConsumersText {
    std::string explanation;             ///< what the counts are evidence of
    std::vector<std::string> consumers;  ///< a line for each consumer shown, in order
    std::string more_consumers;          ///< how many are not shown; empty when all are
    /// In this order, where they apply: there is no consumer; what is not counted; what no consumer uses.
    std::vector<std::string> notes;
};

/// Returns the lines of the consumers block.
ConsumersText consumers_text(const Consumers& consumers);

/// Returns the consumers block: what the counts are evidence of; a line for each consumer shown, with its names; the
/// number of consumers left out; the references that are not counted; the public code that no consumer uses. Files
/// without a language are called "files of unknown language".
std::string render_consumers(const Consumers& consumers, std::string_view heading);

/// Returns the block of `consumers(facts, fan_in)`.
std::string render_consumers(const ScopeFacts& facts, const FanIn& fan_in, std::string_view heading);

}  // namespace wiki::scope
