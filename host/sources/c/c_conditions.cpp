#include "host/sources/c/c_conditions.h"

#include "host/sources/c/c_condition.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <unordered_map>

namespace host::sources {

namespace {

using std::string_view;
using syntax::Built;
using syntax::Region;

// A directive as far as conditions ask for it.
struct CDirectiveWords {
    string_view keyword;
    string_view rest;  // behind it
};

CDirectiveWords words_of(string_view text, const CDirective& directive) {
    string_view rest = text.substr(directive.begin, directive.end - directive.begin);
    rest.remove_prefix(1);
    const string_view keyword = cut_word(rest);
    return {keyword, rest};
}

// The macro that `#ifndef M` or `#if !defined(M)` asks for and nothing else; empty for other conditions.
string_view macro_that_is_missing(CDirectiveWords words) {
    string_view rest = words.rest;
    bool is_in_brackets = false;
    if (words.keyword == "if") {
        cut_blanks(rest);
        if (!rest.starts_with('!')) {
            return {};
        }
        rest.remove_prefix(1);
        if (cut_word(rest) != "defined") {
            return {};
        }
        is_in_brackets = rest.starts_with('(');
        rest.remove_prefix(is_in_brackets ? 1 : 0);
    } else if (words.keyword != "ifndef") {
        return {};
    }
    const string_view name = cut_word(rest);
    cut_blanks(rest);
    return rest == (is_in_brackets ? ")" : "") ? name : string_view();
}

class CConditions {
  public:
    CConditions(string_view text, const CTokens& scanned) : text_(text), directives_(scanned.directives) {}

    CCompiled read() {
        for (std::size_t at = 0; at < directives_.size(); ++at) {
            read(at);
        }
        return {std::move(regions_), std::move(branches_)};
    }

  private:
    // An #if that is open.
    struct Group {
        Built around = Built::ALWAYS;
        CNumber is_taken = C_FALSE;         // whether one of its branches up to here is compiled
        CNumber is_taken_by_new = C_FALSE;  // the same where libraries have all and are new
        std::size_t number = 0;
        std::size_t alternatives = 0;  // branches that a build may take
        std::optional<std::size_t> branch_around = {};
        std::size_t first_changed = 0;  // in `changed_`, of the branch that is open
    };

    void read(std::size_t at) {
        const CDirective& directive = directives_[at];
        const auto [keyword, rest] = words_of(text_, directive);
        if (keyword.starts_with("if")) {
            groups_.push_back({.around = built_,
                               .number = branches_.alternatives.size(),
                               .branch_around = branch_,
                               .first_changed = changed_.size()});
            branches_.alternatives.push_back(0);
            open_branch(directive, keyword.substr(2), rest, is_guard(at));
        } else if ((keyword.starts_with("elif") || keyword == "else") && !groups_.empty()) {
            close_branch(directive);
            open_branch(directive, keyword == "else" ? keyword : keyword.substr(4), rest, false);
        } else if (keyword == "endif" && !groups_.empty()) {
            close_branch(directive);
            close_group(directive);
        } else if (keyword == "error" && branch_) {
            branches_.branches[*branch_].built = Built::NEVER;
        } else if (built_ != Built::NEVER) {
            read_change(keyword, rest);
        }
    }

    // Of an #if ("" behind "if"), #ifdef ("def"), #ifndef ("ndef") or #else ("else").
    template <class Macro>
    [[nodiscard]] static CNumber condition(string_view form, string_view rest, const Macro& macro) {
        if (form == "else") {
            return C_TRUE;
        }
        if (form.empty()) {
            return evaluated_condition(rest, macro);
        }
        const CNumber is_defined = macro(cut_word(rest)).is_defined;
        return form == "def" ? is_defined : negated(is_defined);
    }

    void open_branch(const CDirective& directive, string_view form, string_view rest, bool is_guard) {
        Group& group = groups_.back();
        const auto macro = [this](string_view name) { return this->macro(name); };
        const auto macro_of_new = [this](string_view name) { return this->macro_of_new(name); };
        const CNumber condition = is_guard ? C_TRUE : CConditions::condition(form, rest, macro);
        const CNumber of_new = is_guard ? C_TRUE : CConditions::condition(form, rest, macro_of_new);
        const bool holds = condition.is_true() && group.is_taken.is_false();
        const bool fails = condition.is_false() || group.is_taken.is_true();
        group.first_changed = changed_.size();
        const Built built = holds ? Built::ALWAYS : fails ? Built::NEVER : Built::MAYBE;
        built_ = std::max(group.around, built);
        branch_ = branches_.branches.size();
        branches_.branches.push_back({.around = group.branch_around,
                                      .condition = group.number,
                                      .built = built,
                                      .is_substitute = of_new.is_false() || group.is_taken_by_new.is_true()});
        branches_.parts.push_back({.begin = directive.end, .branch = branch_});
        group.is_taken = either(group.is_taken, condition);
        group.is_taken_by_new = either(group.is_taken_by_new, of_new);
        begin_region(directive.last_line + 1, directive.end);
    }

    // What a branch may have defined is not known behind it.
    void close_branch(const CDirective& directive) {
        Group& group = groups_.back();
        group.alternatives += branches_.branches[*branch_].built == Built::NEVER ? 0 : 1;
        if (built_ == Built::MAYBE) {
            for (std::size_t at = group.first_changed; at < changed_.size(); ++at) {
                macros_[changed_[at]] = {};
            }
            changed_.resize(group.first_changed);
        }
        built_ = group.around;
        begin_region(directive.line, directive.begin);
    }

    void close_group(const CDirective& directive) {
        const Group& group = groups_.back();
        branches_.alternatives[group.number] = group.is_taken.is_true() ? group.alternatives : 0;
        branch_ = group.branch_around;
        branches_.parts.push_back({.begin = directive.begin, .branch = branch_});
        groups_.pop_back();
    }

    void begin_region(std::uint32_t line, std::size_t begin) {
        const Built before = regions_.empty() ? Built::ALWAYS : regions_.back().built;
        if (built_ != before) {
            regions_.push_back({.first_line = line, .begin = static_cast<std::uint32_t>(begin), .built = built_});
        }
    }

    void read_change(string_view keyword, string_view rest) {
        if (keyword.starts_with("include")) {  // may define and undefine any
            macros_.clear();
            changed_.clear();
            for (Group& group : groups_) {
                group.first_changed = 0;
            }
        } else if (keyword == "define" || keyword == "undef") {
            const string_view name = cut_word(rest);
            changed_.push_back(name);
            macros_[name] = {.is_defined = keyword == "define" ? C_TRUE : C_FALSE, .value = value_of(rest)};
        }
    }

    // Of a macro that a number replaces.
    static CNumber value_of(string_view replacement) {
        const bool is_blank = replacement.starts_with(' ') || replacement.starts_with('\t');
        cut_blanks(replacement);
        const bool is_number = is_blank && !replacement.empty() && is_c_digit(replacement.front());
        return is_number ? evaluated_condition(replacement, [](string_view) { return CMacro(); }) : C_ANY;
    }

    [[nodiscard]] CMacro macro(string_view name) const {
        const auto found = macros_.find(name);
        return found == macros_.end() ? known_c_macro(name) : found->second;
    }

    // Where libraries have all that is asked for, as HAVE_F says by custom, and are newer than any version.
    [[nodiscard]] CMacro macro_of_new(string_view name) const {
        constexpr CNumber NEW{.least = std::int64_t{1} << 48U, .most = C_ANY.most};
        const CMacro known = macro(name);
        const bool is_known = known.is_defined.is_true() || known.is_defined.is_false();
        const bool is_version = name.find("VERSION") != string_view::npos;
        const bool is_had = name.find("HAVE") != string_view::npos;
        return is_known || !(is_version || is_had) ? known
                                                   : CMacro{.is_defined = C_TRUE, .value = is_version ? NEW : C_TRUE};
    }

    // Whether all that is read of a file stands in this condition: it is the first in it, or serves nothing else, and
    // defines what it asks for.
    [[nodiscard]] bool is_guard(std::size_t at) const {
        if (at + 1 >= directives_.size()) {
            return false;
        }
        const CDirective& next = directives_[at + 1];
        auto [keyword, rest] = words_of(text_, next);
        const string_view name = macro_that_is_missing(words_of(text_, directives_[at]));
        if (name.empty() || keyword != "define" || cut_word(rest) != name ||
            next.tokens_before != directives_[at].tokens_before) {
            return false;
        }
        cut_blanks(rest);
        const bool is_followed =
            at + 2 < directives_.size() && (directives_[at + 2].tokens_before > next.tokens_before ||
                                            !words_of(text_, directives_[at + 2]).keyword.starts_with('e'));
        return is_followed && (rest.empty() || (at == 0 && next.tokens_before == 0));
    }

    string_view text_;
    std::span<const CDirective> directives_;
    std::vector<Region> regions_;
    CBranches branches_;
    std::optional<std::size_t> branch_;  // that is read
    std::vector<Group> groups_;
    Built built_ = Built::ALWAYS;
    std::unordered_map<string_view, CMacro> macros_;  // that the file has defined or undefined
    std::vector<string_view> changed_;                // of them, in branches that are open
};

}  // namespace

std::optional<std::size_t> CBranches::at(std::size_t offset) const {
    const auto next = std::ranges::upper_bound(parts, offset, {}, &Part::begin);
    return next == parts.begin() ? std::nullopt : std::prev(next)->branch;
}

CCompiled compiled_c(string_view text, const CTokens& scanned) {
    return CConditions(text, scanned).read();
}

}  // namespace host::sources
