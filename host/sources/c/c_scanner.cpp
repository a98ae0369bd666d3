#include "host/sources/c/c_scanner.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

// Those that expressions and statements of C hold.
constexpr auto C_KEYWORDS = std::to_array<std::string_view>(
    {"break",  "case",   "char",   "const",  "continue", "default", "do",       "double", "else",     "extern",
     "float",  "for",    "goto",   "if",     "inline",   "int",     "long",     "return", "short",    "signed",
     "sizeof", "static", "struct", "switch", "typedef",  "union",   "unsigned", "void",   "volatile", "while"});

class CScanner {
  public:
    explicit CScanner(string_view text) : text_(text) {}

    CTokens scan() {
        constexpr std::size_t BYTES_OF_A_TOKEN = 5;  // most texts have fewer
        found_.tokens.reserve(text_.size() / BYTES_OF_A_TOKEN);
        while (at_ < text_.size()) {
            const char c = text_[at_];
            const char next = c == '/' && at_ + 1 < text_.size() ? text_[at_ + 1] : '\0';
            if (c == '\n') {
                ++line_;
                ++at_;
                is_first_ = true;
            } else if (c == ' ' || c == '\t' || c == '\r' || c == '\f') {
                ++at_;
            } else if (next == '*') {
                go_behind("*/", 2);
            } else if (next == '/') {
                go_to_end_of_line();
            } else if (c == '#' && is_first_) {
                add_directive();
            } else {
                add(c);
            }
        }
        return std::move(found_);
    }

  private:
    // A backslash joins the next line.
    [[nodiscard]] bool begins_joined_line() const {
        return text_[at_] == '\\' &&
               (text_.substr(at_ + 1).starts_with("\n") || text_.substr(at_ + 1).starts_with("\r\n"));
    }

    void go_to_end_of_line() {
        for (; at_ < text_.size() && text_[at_] != '\n'; ++at_) {
            if (begins_joined_line()) {
                at_ = text_.find('\n', at_);
                ++line_;
            }
        }
    }

    // A comment in a directive may end on another line.
    void go_to_end_of_directive() {
        while (at_ < text_.size() && text_[at_] != '\n') {
            const char c = text_[at_];
            if (text_.substr(at_).starts_with("/*")) {
                go_behind("*/", 2);
            } else if (text_.substr(at_).starts_with("//")) {
                go_to_end_of_line();
            } else if (c == '"' || c == '\'') {
                go_behind_literal(c);
            } else if (begins_joined_line()) {
                at_ = text_.find('\n', at_) + 1;
                ++line_;
            } else {
                ++at_;
            }
        }
    }

    void add_directive() {
        CDirective directive{
            .begin = at_, .end = at_, .line = line_, .last_line = line_, .tokens_before = found_.tokens.size()};
        go_to_end_of_directive();
        directive.end = at_;
        directive.last_line = line_;
        found_.directives.push_back(directive);
    }

    void go_behind(string_view end, std::size_t skipped) {
        const std::size_t found = text_.find(end, at_ + skipped);
        const std::size_t stop = found == string_view::npos ? text_.size() : found + end.size();
        line_ += static_cast<std::uint32_t>(std::ranges::count(text_.substr(at_, stop - at_), '\n'));
        at_ = stop;
    }

    // One that is not closed ends with its line.
    void go_behind_literal(char quote) {
        for (++at_; at_ < text_.size() && text_[at_] != quote && text_[at_] != '\n'; ++at_) {
            at_ += text_[at_] == '\\' && !text_.substr(at_ + 1).starts_with('\n') ? 1 : 0;
        }
        at_ = std::min(text_.size(), at_ + (text_.substr(std::min(at_, text_.size())).starts_with(quote) ? 1 : 0));
    }

    void add(char c) {
        CToken token{.begin = at_, .end = at_, .line = line_, .is_word = is_c_letter(c), .is_first = is_first_};
        is_first_ = false;
        if (is_of_c_name(c)) {
            const string_view rest = text_.substr(at_);
            at_ += static_cast<std::size_t>(std::ranges::find_if_not(rest, is_of_c_name) - rest.begin());
            if (text_[at_ - 1] == 'R' && text_.substr(at_).starts_with('"')) {
                go_behind_raw_string();
                token.is_word = false;
            }
        } else if (c == '"' || c == '\'') {
            go_behind_literal(c);
        } else {
            ++at_;
        }
        token.end = at_;
        found_.tokens.push_back(token);
    }

    void go_behind_raw_string() {
        const std::size_t open = text_.find('(', at_);
        if (open == string_view::npos || open - at_ > 18) {
            ++at_;
            return;
        }
        const std::string end = ")" + std::string(text_.substr(at_ + 1, open - at_ - 1)) + "\"";
        go_behind(end, open - at_);
    }

    string_view text_;
    CTokens found_;
    std::size_t at_ = 0;
    std::uint32_t line_ = 1;
    bool is_first_ = true;
};

}  // namespace

CTokens scan_c(std::string_view text) {
    return CScanner(text).scan();
}

bool is_c_keyword(string_view word) {
    return std::ranges::binary_search(C_KEYWORDS, word);
}

}  // namespace host::sources
