#include "host/pages/fact_changes.h"

#include "host/text/counted.h"
#include "host/text/markdown_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace host::pages {

namespace {

// What can happen to a statement, besides that one of its values changes, which is told by the place of that.
constexpr int ADDED = -1;
constexpr int REMOVED = -2;
constexpr int REORDERED = -3;

// What is said of a change. The phrase follows the names of those that it happened to; of the page itself, it stands
// alone; in front of "*" it is the noun of a number that grew or fell.
struct Wording {
    Subject subject;
    int change;
    std::string_view phrase;
};

// What concerns a reader most comes first.
constexpr std::array WORDINGS{
    Wording{Subject::PAGE, REMOVED, "fewer pages"},
    Wording{Subject::PAGE, ADDED, "more pages"},
    Wording{Subject::PAGE, REORDERED, "another order of pages"},
    Wording{Subject::PAGE, aspect::TITLE, "another title"},
    Wording{Subject::PAGE, aspect::OPTIONS, "other options"},
    Wording{Subject::FILE, REMOVED, "is no longer on the page"},
    Wording{Subject::FILE, ADDED, "is on the page now"},
    Wording{Subject::DECLARATION, aspect::SIGNATURE, "has another signature"},
    Wording{Subject::DECLARATION, aspect::KIND, "has another kind"},
    Wording{Subject::DECLARATION, aspect::LANGUAGE, "is in another language"},
    Wording{Subject::DECLARATION, REMOVED, "is no longer among the declarations"},
    Wording{Subject::DECLARATION, ADDED, "is among the declarations now"},
    Wording{Subject::PAGE, aspect::USERS, "user*"},
    Wording{Subject::CONSUMER, REMOVED, "is no longer listed as a user"},
    Wording{Subject::CONSUMER, ADDED, "is listed as a user now"},
    Wording{Subject::UNUSED, ADDED, "is listed as unused now"},
    Wording{Subject::UNUSED, REMOVED, "is no longer listed as unused"},
    Wording{Subject::FILE, aspect::SUMMARY, "has another summary"},
    Wording{Subject::FILE, aspect::TESTS, "has other tests"},
    Wording{Subject::DECLARATION, aspect::DOC_COMMENT, "has another doc comment"},
    Wording{Subject::DECLARATION, aspect::SOURCE, "has another source"},
    Wording{Subject::DEPENDENCY, REMOVED, "is no longer listed as a dependency"},
    Wording{Subject::DEPENDENCY, ADDED, "is listed as a dependency now"},
    Wording{Subject::PAGE, aspect::UNRESOLVED, "other languages whose imports are not resolved"},
    Wording{Subject::PAGE, aspect::UNCOUNTED, "other references that do not count"},
    Wording{Subject::PAGE, aspect::IN_DEPTH, "other names in depth"},
    Wording{Subject::FILE, aspect::DECLARATIONS, "has another number of declarations"},
    Wording{Subject::FILE, aspect::MOST_USED, "has other most used declarations"},
    Wording{Subject::FILE, aspect::FILE_USERS, "has other users"},
    Wording{Subject::PAGE, aspect::UNUSED_TOTAL, "unused declaration*"},
    Wording{Subject::FILE, aspect::OUTLINE, "has another outline"},
    Wording{Subject::DECLARATION, aspect::USES, "has another number of uses"},
    Wording{Subject::CONSUMER, aspect::NAMES, "makes other references"},
    Wording{Subject::DEPENDENCY, aspect::DEPENDENCY_REFERENCES, "has another number of references"},
    Wording{Subject::FILE, aspect::LINES, "has another length"},
    Wording{Subject::DECLARATION, aspect::RANGE, "stands on other lines"},
    Wording{Subject::DECLARATION, aspect::CITED_USES, "is used in other places"},
    Wording{Subject::CONSUMER, aspect::FIRST_USE, "uses the page first on another line"},
    Wording{Subject::UNUSED, aspect::UNUSED_PLACE, "stands on other lines"},
    Wording{Subject::DEPENDENCY, aspect::DEPENDENCY_PLACE, "stands on other lines"},
    Wording{Subject::FILE, aspect::SEED, "has another seed"},
    Wording{Subject::NAME_MATCH, ADDED, "matches other names now"},
    Wording{Subject::NAME_MATCH, REMOVED, "matches other names no longer"},
    Wording{Subject::NAME_MATCH, aspect::MATCH_REFERENCES, "matches other names another number of times"},
    Wording{Subject::PAGE, aspect::GRAPH, "another graph"},
    Wording{Subject::FILE, REORDERED, "another order of files"},
    Wording{Subject::DECLARATION, REORDERED, "another order of declarations"},
    Wording{Subject::CONSUMER, REORDERED, "another order of users"},
    Wording{Subject::UNUSED, REORDERED, "another order of unused declarations"},
    Wording{Subject::DEPENDENCY, REORDERED, "another order of dependencies"},
    Wording{Subject::NAME_MATCH, REORDERED, "another order of matches of names"},
};

// The changes of one kind.
struct Group {
    std::vector<std::string> names;  // of the things that it happened to
    std::int64_t growth = 0;         // of a number
};

using Key = std::tuple<std::string_view, std::string_view, std::size_t>;  // path, name, which of these

// The statements by what they are about. Several may be about things of one name: overloads.
std::map<Key, const Statement*> by_key(const std::vector<Statement>& statements) {
    std::map<Key, const Statement*> found;
    std::map<std::pair<std::string_view, std::string_view>, std::size_t> counts;
    for (const Statement& statement : statements) {
        const std::size_t which = counts[{statement.path, statement.name}]++;
        found.emplace(Key(statement.path, statement.name, which), &statement);
    }
    return found;
}

std::int64_t number_in(std::string_view text) {
    std::int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

class Comparison {
  public:
    Comparison(const StatedFacts& before, const StatedFacts& after) {
        for (const Subject subject : SUBJECTS) {
            compare(subject, before.about(subject), after.about(subject));
            if (groups_.contains({Subject::PAGE, aspect::OPTIONS})) {
                std::erase_if(groups_,
                              [](const auto& group) { return !is_told_with_other_options(group.first.second); });
                return;
            }
        }
    }

    [[nodiscard]] std::string text() const {
        constexpr std::size_t MOST = 5;
        std::string text;
        std::size_t told = 0;
        for (const Wording& wording : WORDINGS) {
            const auto group = groups_.find({wording.subject, wording.change});
            if (group != groups_.end() && told++ < MOST) {
                text.append(text.empty() ? "" : "; ").append(sentence(wording, group->second));
            }
        }
        return told > MOST ? text + "; " + counted(static_cast<std::int64_t>(told - MOST), "other change") : text;
    }

  private:
    // With other options a page says more or less of the same things, which is no change of these.
    static bool is_told_with_other_options(int change) { return change == aspect::TITLE || change == aspect::OPTIONS; }

    void compare(Subject subject, const std::vector<Statement>& before, const std::vector<Statement>& after) {
        const std::map<Key, const Statement*> old = by_key(before);
        const std::map<Key, const Statement*> now = by_key(after);
        for (const auto& [key, statement] : old) {
            if (!now.contains(key)) {
                note(subject, REMOVED, *statement);
            }
        }
        for (const auto& [key, statement] : now) {
            const auto found = old.find(key);
            if (found == old.end()) {
                note(subject, ADDED, *statement);
            } else {
                compare_values(subject, *found->second, *statement);
            }
        }
        const auto is_same_thing = [](const Statement& one, const Statement& other) {
            return one.path == other.path && one.name == other.name;
        };
        if (old.size() == now.size() && !std::equal(before.begin(), before.end(), after.begin(), is_same_thing)) {
            groups_[{subject, REORDERED}];
        }
    }

    void compare_values(Subject subject, const Statement& before, const Statement& after) {
        const std::size_t count = std::max(before.values.size(), after.values.size());
        for (std::size_t at = 0; at < count; ++at) {
            const std::string old = at < before.values.size() ? before.values[at] : "";
            const std::string now = at < after.values.size() ? after.values[at] : "";
            if (old != now) {
                note(subject, static_cast<int>(at), after).growth = number_in(now) - number_in(old);
            }
        }
    }

    Group& note(Subject subject, int change, const Statement& statement) {
        Group& group = groups_[{subject, change}];
        group.names.push_back(code_span(statement.name));
        return group;
    }

    static std::string sentence(const Wording& wording, const Group& group) {
        if (wording.phrase.ends_with('*')) {
            const std::string noun(wording.phrase.substr(0, wording.phrase.size() - 1));
            return counted(std::abs(group.growth), noun) + (group.growth > 0 ? " more" : " fewer");
        }
        const bool is_of_all = wording.subject == Subject::PAGE || wording.change == REORDERED;
        return is_of_all ? std::string(wording.phrase) : subjects(group.names) + predicate(wording, group.names.size());
    }

    // "`a`", "`a` and `b`", "`a`, `b` and 3 others"
    static std::string subjects(const std::vector<std::string>& names) {
        if (names.size() == 1) {
            return names[0];
        }
        return names.size() == 2 ? names[0] + " and " + names[1]
                                 : names[0] + ", " + names[1] + " and " +
                                       counted(static_cast<std::int64_t>(names.size() - 2), "other");
    }

    static std::string predicate(const Wording& wording, std::size_t subjects) {
        const std::size_t end = wording.phrase.find(' ');
        const std::string_view verb = wording.phrase.substr(0, end);
        const std::string rest(wording.phrase.substr(end));
        if (subjects == 1) {
            return " " + std::string(verb) + rest;
        }
        const std::string_view plural = verb == "is"        ? "are"
                                        : verb == "has"     ? "have"
                                        : verb == "matches" ? "match"
                                                            : verb.substr(0, verb.size() - 1);
        return " " + std::string(plural) + rest;
    }

    std::map<std::pair<Subject, int>, Group> groups_;
};

}  // namespace

std::string changes_between(const StatedFacts& before, const StatedFacts& after) {
    return Comparison(before, after).text();
}

}  // namespace host::pages
