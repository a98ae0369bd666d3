// What a page states, as values by which two states of it are compared.
#pragma once

#include "host/index/database.h"
#include "host/page/requested_page.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace host::pages {

/// What statements are about.
enum class Subject : std::uint8_t { PAGE, FILE, DECLARATION, CONSUMER, UNUSED, DEPENDENCY, NAME_MATCH };

inline constexpr std::array SUBJECTS{Subject::PAGE,   Subject::FILE,       Subject::DECLARATION, Subject::CONSUMER,
                                     Subject::UNUSED, Subject::DEPENDENCY, Subject::NAME_MATCH};

/// The places of the values in a statement, for each subject.
namespace aspect {
enum Page : std::uint8_t { TITLE, OPTIONS, USERS, UNUSED_TOTAL, UNRESOLVED, UNCOUNTED, IN_DEPTH, GRAPH };
enum File : std::uint8_t { LINES, DECLARATIONS, SUMMARY, MOST_USED, FILE_USERS, TESTS, SEED, OUTLINE };
enum Declaration : std::uint8_t { KIND, LANGUAGE, SIGNATURE, DOC_COMMENT, SOURCE, RANGE, USES, CITED_USES };
enum Consumer : std::uint8_t { NAMES, FIRST_USE };
enum Unused : std::uint8_t { UNUSED_PLACE };
enum Dependency : std::uint8_t { DEPENDENCY_PLACE, DEPENDENCY_REFERENCES };
enum NameMatch : std::uint8_t { MATCH_REFERENCES };
}  // namespace aspect

/// All that a page states of one thing. Of a text that may be long there is the digest (digest.h).
struct Statement {
    std::string name = {};                 ///< as the page shows it; of a file its path
    std::string path = {};                 ///< of the file that it is in; empty for what is in none
    std::vector<std::string> values = {};  ///< one for each aspect of the subject; empty where the page is silent
    friend bool operator==(const Statement&, const Statement&) = default;
};

/// The statements of a page by subject, in the order of the page.
class StatedFacts {
  public:
    [[nodiscard]] const std::vector<Statement>& about(Subject subject) const { return all_[place(subject)]; }
    [[nodiscard]] std::vector<Statement>& about(Subject subject) { return all_[place(subject)]; }
    friend bool operator==(const StatedFacts&, const StatedFacts&) = default;

  private:
    static std::size_t place(Subject subject) { return static_cast<std::size_t>(subject); }
    std::array<std::vector<Statement>, SUBJECTS.size()> all_;
};

/// Returns what a page states in the sections that its request chooses. `db` is the page's. Two pages of one request
/// that state the same are the same text. Throws `IndexError`, and what the interrupt check of `db` throws.
StatedFacts stated_facts(const std::string& title, const RequestedPage& page, storage::Database& db);

/// Returns the facts as JSON on one line.
std::string to_json(const StatedFacts& facts);

/// Reads what `to_json` wrote. Throws `std::runtime_error` for any other text.
StatedFacts read_facts(std::string_view json_text);

}  // namespace host::pages
