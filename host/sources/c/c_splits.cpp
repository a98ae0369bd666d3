#include "host/sources/c/c_splits.h"

#include "host/sources/c/c_condition.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

// How far a part of a text leads into brackets, and how far out of them in between.
struct CDepth {
    long net = 0;
    long least = 0;

    void add(const CDepth& more) {
        least = std::min(least, net + more.least);
        net += more.net;
    }
    [[nodiscard]] bool is_balanced() const { return net == 0 && least == 0; }
};

struct CSplitBranch {
    const CDirective* directive = nullptr;  // that begins it
    CDepth braces = {};
    CDepth brackets = {};
    bool begins_with_else = false;
    bool is_empty = true;
    std::size_t tokens = 0;
    string_view first = {};  // token
    string_view second = {};
    string_view last = {};

    [[nodiscard]] bool is_whole() const { return braces.is_balanced() && brackets.is_balanced() && !begins_with_else; }
};

class CSplits {
  public:
    CSplits(string_view text, const CTokens& scanned, std::span<const syntax::Region> regions)
        : text_(text), scanned_(scanned), regions_(regions) {}

    std::vector<CSplit> find() {
        std::size_t at = 0;  // token
        for (const CDirective& directive : scanned_.directives) {
            for (; at < directive.tokens_before; ++at) {
                if (groups_.empty()) {
                    const string_view mark = spelling(scanned_.tokens[at]);
                    open_brackets_ += mark == "(" ? 1 : mark == ")" ? -1 : 0;
                } else {
                    add(scanned_.tokens[at]);
                }
            }
            read(directive);
        }
        std::ranges::sort(parts_, {}, &CSplit::begin);
        std::size_t end = 0;
        std::erase_if(parts_,
                      [&](const CSplit& part) { return part.begin < std::exchange(end, std::max(end, part.end)); });
        return std::move(parts_);
    }

  private:
    struct Group {
        std::vector<CSplitBranch> branches;
        long brackets_before = 0;  // that are open
        string_view before = {};   // token
    };

    [[nodiscard]] string_view spelling(const CToken& token) const {
        return text_.substr(token.begin, token.end - token.begin);
    }

    void add(const CToken& token) {
        CSplitBranch& branch = groups_.back().branches.back();
        const string_view mark = spelling(token);
        branch.begins_with_else = branch.begins_with_else || (branch.is_empty && mark == "else");
        branch.is_empty = false;
        branch.first = branch.tokens == 0 ? mark : branch.first;
        branch.second = branch.tokens == 1 ? mark : branch.second;
        branch.last = mark;
        ++branch.tokens;
        const long brace = mark == "{" ? 1 : mark == "}" ? -1 : 0;
        const long bracket = mark == "(" ? 1 : mark == ")" ? -1 : 0;
        branch.braces.add({.net = brace, .least = std::min(brace, 0L)});
        branch.brackets.add({.net = bracket, .least = std::min(bracket, 0L)});
        open_brackets_ += bracket;
    }

    void read(const CDirective& directive) {
        string_view rest = text_.substr(directive.begin + 1, directive.end - directive.begin - 1);
        const string_view keyword = cut_word(rest);
        if (keyword.starts_with("if")) {
            const std::size_t tokens = directive.tokens_before;
            groups_.push_back({.branches = {{.directive = &directive}},
                               .brackets_before = open_brackets_,
                               .before = tokens == 0 ? string_view() : spelling(scanned_.tokens[tokens - 1])});
        } else if (groups_.empty()) {
            return;
        } else if (keyword.starts_with("elif") || keyword == "else") {
            open_brackets_ = groups_.back().brackets_before;
            groups_.back().branches.push_back({.directive = &directive});
        } else if (keyword == "endif") {
            const Group group = std::move(groups_.back());
            groups_.pop_back();
            close(group, directive);
        }
    }

    // Keeps one branch of a group that splits something: the first that may be compiled.
    void close(const Group& group, const CDirective& end) {
        const CSplitBranch& first = group.branches.front();
        const bool is_whole = std::ranges::all_of(group.branches, &CSplitBranch::is_whole) &&
                              group.brackets_before <= 0 && !is_amid(group);
        const bool is_alike = std::ranges::all_of(group.branches, [&](const CSplitBranch& each) {
            return each.braces.net == first.braces.net && each.brackets.net == first.brackets.net;
        });
        const bool leads_on = group.branches.size() == 1 && (first.braces.net != 0 || first.brackets.net != 0);
        open_brackets_ = group.brackets_before;
        if (leads_on) {
            read_linkage(first, {.begin = first.directive->begin, .end = end.end});
        }
        if (is_whole || !is_alike || leads_on) {
            return;
        }
        const auto found =
            std::ranges::find_if(group.branches, [&](const CSplitBranch& each) { return may_be_compiled(each); });
        const auto kept = found == group.branches.end() ? group.branches.begin() : found;
        const std::size_t next = kept + 1 == group.branches.end() ? end.begin : (kept + 1)->directive->begin;
        parts_.push_back({.begin = first.directive->begin, .end = kept->directive->end});
        parts_.push_back({.begin = next, .end = end.end});
        open_brackets_ += kept->brackets.net;
        if (!groups_.empty()) {
            CSplitBranch& around = groups_.back().branches.back();
            around.braces.add(kept->braces);
            around.brackets.add(kept->brackets);
            around.is_empty = false;
        }
    }

    // Whether what stands before a group goes on in it: `template <class T>`, a list of initializers `a(b),`.
    static bool is_amid(const Group& group) {
        constexpr string_view OPERATORS = ">&|=?";
        const CSplitBranch& first = group.branches.front();
        const bool is_initializer = first.second == "(" && first.last == ",";
        return !group.before.empty() &&
               (OPERATORS.find(group.before.back()) != string_view::npos || (group.before == "," && is_initializer));
    }

    // `extern "C" {` and, in a condition of its own, its end.
    void read_linkage(const CSplitBranch& branch, const CSplit& whole) {
        if (branch.first == "extern" && branch.tokens == 3) {
            linkages_.push_back(whole);
        } else if (branch.first == "}" && branch.tokens == 1 && !linkages_.empty()) {
            parts_.insert(parts_.end(), {linkages_.back(), whole});
            linkages_.pop_back();
        }
    }

    [[nodiscard]] bool may_be_compiled(const CSplitBranch& branch) const {
        const auto after = std::ranges::upper_bound(regions_, branch.directive->end, {}, &syntax::Region::begin);
        return after == regions_.begin() || std::prev(after)->built != syntax::Built::NEVER;
    }

    string_view text_;
    const CTokens& scanned_;
    std::span<const syntax::Region> regions_;
    std::vector<Group> groups_;  // that are open
    std::vector<CSplit> parts_;
    long open_brackets_ = 0;
    std::vector<CSplit> linkages_;  // that are open
};

}  // namespace

std::vector<CSplit> split_parts(string_view text, const CTokens& scanned, std::span<const syntax::Region> regions) {
    return CSplits(text, scanned, regions).find();
}

}  // namespace host::sources
