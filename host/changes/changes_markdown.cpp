#include "host/changes/changes_markdown.h"

#include "host/changes/signature.h"
#include "host/page/budget.h"
#include "host/page/citation.h"
#include "host/page/passage.h"
#include "host/text/counted.h"
#include "host/text/markdown_text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::changes {

namespace {

constexpr std::size_t LONGEST_LIST = 12;

// "`a`, `b` and 3 more".
std::string listed(const std::vector<std::string>& spans) {
    std::string text;
    for (std::size_t at = 0; at < std::min(spans.size(), LONGEST_LIST); ++at) {
        text += (at == 0 ? "" : ", ") + spans[at];
    }
    return spans.size() <= LONGEST_LIST ? text : text + " and " + std::to_string(spans.size() - LONGEST_LIST) + " more";
}

std::string listed_paths(const std::vector<std::string>& paths) {
    std::vector<std::string> spans;
    std::ranges::transform(paths, std::back_inserter(spans), [](const std::string& path) { return code_span(path); });
    return listed(spans);
}

std::string place_of(const Declared& declared) {
    const bool has_lines = 1 <= declared.first_line && declared.first_line <= declared.last_line;
    return code_span(
        declared.path +
        (has_lines ? ":L" + std::to_string(declared.first_line) + "-L" + std::to_string(declared.last_line) : ""));
}

// "`Session.close` (method, `src/session.ts:L3-L9`)".
std::string cited(const Declared& declared) {
    return code_span(declared.name) + " (" + plain_text(declared.kind) + ", " + place_of(declared) + ")";
}

std::string with_members(const DeclarationChange& change) {
    return change.members == 0 ? "" : " and " + counted(static_cast<std::int64_t>(change.members), "member");
}

std::string point(const std::string& text) {
    return "  - " + text + "\n";
}

// One line for each way in which users are concerned.
std::string users_of(const DeclarationChange& change) {
    constexpr std::array<std::pair<User::Now, std::string_view>, 5> WAYS{{
        {User::Now::USES, "Used, before and now, by "},
        {User::Now::UNCHANGED, "Used before by files that are unchanged: "},
        {User::Now::CHANGED, "Used before by files that have changed: "},
        {User::Now::UNKNOWN, "Used before by files whose content is not known: "},
        {User::Now::GONE, "Used before by files that are gone: "},
    }};
    std::string text;
    for (const auto& [now, words] : WAYS) {
        std::vector<std::string> users;
        for (const User& user : change.users) {
            if (user.now == now) {
                users.push_back(code_span(user.path) + " (" + std::to_string(user.references) + ")");
            }
        }
        text += users.empty() ? "" : point(std::string(words) + listed(users));
    }
    return text;
}

std::string distant_of(const DeclarationChange& change) {
    std::string text;
    for (auto begin = change.distant.begin(); begin != change.distant.end();) {
        const std::size_t distance = begin->distance;
        std::vector<std::string> paths;
        for (; begin != change.distant.end() && begin->distance == distance; ++begin) {
            paths.push_back(begin->path);
        }
        text += point(std::to_string(distance) + " steps away: " + listed_paths(paths));
    }
    return text;
}

std::string concerned(const DeclarationChange& change) {
    return users_of(change) + distant_of(change) +
           (change.tests.empty() ? "" : point("Tests: " + listed_paths(change.tests))) +
           (change.name_matches == 0 ? ""
                                     : point(counted(change.name_matches, "reference") + " of other files only " +
                                             (change.name_matches == 1 ? "matches" : "match") + " its name"));
}

std::string removed(const DeclarationChange& change) {
    return "- " + cited(*change.before) + with_members(change) + "\n" + concerned(change);
}

std::string added(const DeclarationChange& change) {
    return "- " + cited(*change.after) + with_members(change) + "\n";
}

std::string changed(const DeclarationChange& change) {
    const Declared& before = *change.before;
    const Declared& after = *change.after;
    std::string text = "- " + cited(after) + "\n";
    if (change.is_renamed) {
        text += point("Was " + code_span(before.name));
    }
    if (change.is_moved) {
        text += point("Was in " + place_of(before));
    }
    if (change.has_other_kind) {
        text += point("Was of kind " + plain_text(before.kind));
    }
    if (change.has_other_visibility) {
        text += point(after.is_public ? "Is public now" : "Is no longer public");
    }
    if (change.has_other_signature) {
        text += point("Before: " + code_span(on_one_line(before.signature))) +
                point("Now: " + code_span(on_one_line(after.signature)));
    }
    return text + concerned(change);
}

std::string users(const FileUsersChange& change) {
    return "- " + code_span(change.path) + "\n" +
           (change.gained.empty() ? "" : point("Gained " + listed_paths(change.gained))) +
           (change.lost.empty() ? "" : point("Lost " + listed_paths(change.lost)));
}

std::string only_cited(const Declared& declared) {
    return "- " + cited(declared) + "\n";
}

std::vector<std::string> file_points(const Changes& changes) {
    std::vector<std::string> points;
    for (const std::string& path : changes.added_files) {
        points.push_back("- " + code_span(path) + " added\n");
    }
    for (const std::string& path : changes.removed_files) {
        points.push_back("- " + code_span(path) + " removed\n");
    }
    for (const MovedFile& file : changes.moved_files) {
        points.push_back("- " + code_span(file.old_path) + " moved to " + code_span(file.new_path) + "\n");
    }
    return points;
}

template <class Value>
std::vector<std::string> points_of(const std::vector<Value>& values, std::string (*text)(const Value&)) {
    std::vector<std::string> points;
    std::ranges::transform(values, std::back_inserter(points), text);
    return points;
}

// "2 files added, 1 removed" of such parts; empty when all counts are 0.
std::string counts(const std::string& thing, const std::vector<std::pair<std::size_t, std::string_view>>& parts) {
    std::string text;
    for (const auto& [count, what] : parts) {
        if (count > 0) {
            text += (text.empty() ? counted(static_cast<std::int64_t>(count), thing) : ", " + std::to_string(count)) +
                    " " + std::string(what);
        }
    }
    return text;
}

std::string summary(const Changes& changes) {
    std::string text;
    for (const std::string& part : {counts("file", {{changes.added_files.size(), "added"},
                                                    {changes.removed_files.size(), "removed"},
                                                    {changes.moved_files.size(), "moved"},
                                                    {changes.changed_files.size(), "changed"}}),
                                    counts("public declaration", {{changes.removed.size(), "removed"},
                                                                  {changes.changed.size(), "changed"},
                                                                  {changes.added.size(), "added"},
                                                                  {changes.unused.size(), "no longer used"},
                                                                  {changes.used_again.size(), "used again"}}),
                                    counts("file", {{changes.users.size(), "with other users"}})}) {
        text += text.empty() || part.empty() ? part : "; " + part;
    }
    return text + ".\n";
}

void add_section(std::vector<Passage>& passages, const std::string& name, const std::string& sentence,
                 std::vector<std::string> points, std::string_view item) {
    if (!points.empty()) {
        passages.push_back({.heading = "\n## " + name + "\n",
                            .sentence = sentence.empty() ? "" : "\n" + sentence + "\n",
                            .table_head = "\n",
                            .items = std::make_shared<FixedItems>(std::move(points)),
                            .item_name = item,
                            .is_bulleted = true});
    }
}

}  // namespace

void write_markdown(std::ostream& out, const Changes& changes, std::optional<std::size_t> most) {
    if (changes.empty()) {
        return;
    }
    std::vector<Passage> passages{{.heading = "# Changes\n\n" + summary(changes)}};
    add_section(passages, "Files", "", file_points(changes), "file");
    add_section(passages, "Removed declarations",
                "With the production files that used them, how often, and the tests that did.",
                points_of(changes.removed, removed), "declaration");
    add_section(passages, "Changed declarations",
                "With the other production files that used them before, how often, and the tests that use them.",
                points_of(changes.changed, changed), "declaration");
    add_section(passages, "Added declarations", "", points_of(changes.added, added), "declaration");
    add_section(passages, "No longer used", "Other production files have used these, and none refers to them any more.",
                points_of(changes.unused, only_cited), "declaration");
    add_section(passages, "Used again", "No other production file has referred to these, and now one does.",
                points_of(changes.used_again, only_cited), "declaration");
    add_section(passages, "Users of files",
                "The production files that are proven to use a file now and were not before, or the other way round.",
                points_of(changes.users, users), "file");
    out << fitted(std::move(passages), most.value_or(std::numeric_limits<std::size_t>::max()));
}

}  // namespace host::changes
