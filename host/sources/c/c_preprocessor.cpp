// Directives: includes, macros, conditions.
#include "host/sources/c/c_reader.h"
#include "host/sources/c/c_scanner.h"

#include <algorithm>

namespace host::sources {

using syntax::Kind;
using syntax::Role;
using syntax::Space;
using syntax::UNKNOWN;

namespace {

// The tokens of the text that a macro is replaced by.
class CReplacementTokens {
  public:
    explicit CReplacementTokens(std::string_view text) : text_(text) {}

    // Goes on to the next name. Returns whether there is one.
    bool next() {
        while (at_ < text_.size()) {
            const char c = text_[at_];
            if (is_c_letter(c)) {
                begin_ = at_;
                at_ = std::min(text_.size(),
                               static_cast<std::size_t>(std::ranges::find_if_not(text_.substr(at_), is_of_c_name) -
                                                        text_.substr(at_).begin()) +
                                   at_);
                return true;
            }
            skip(c);
        }
        return false;
    }

    [[nodiscard]] std::string_view name() const { return text_.substr(begin_, at_ - begin_); }
    [[nodiscard]] std::uint32_t begin() const { return static_cast<std::uint32_t>(begin_); }

    // What stands before and behind the name, but for blanks.
    [[nodiscard]] std::string_view before() const {
        const std::size_t last = text_.substr(0, begin_).find_last_not_of(BLANKS);
        return last == std::string_view::npos ? std::string_view() : text_.substr(0, last + 1);
    }
    [[nodiscard]] bool is_called() const {
        const std::size_t next = text_.find_first_not_of(BLANKS, at_);
        return next != std::string_view::npos && text_[next] == '(';
    }
    [[nodiscard]] bool is_qualifier() const {
        const std::size_t next = text_.find_first_not_of(BLANKS, at_);
        return next != std::string_view::npos && text_.substr(next).starts_with("::");
    }
    [[nodiscard]] bool is_pasted() const {
        const std::size_t next = text_.find_first_not_of(BLANKS, at_);
        return before().ends_with('#') || (next != std::string_view::npos && text_.substr(next).starts_with("##"));
    }
    [[nodiscard]] std::uint32_t lines_before() const {
        return static_cast<std::uint32_t>(std::ranges::count(text_.substr(0, begin_), '\n'));
    }

  private:
    static constexpr std::string_view BLANKS = " \t\r\n\\";

    // Goes behind a number, a literal or a comment that begins here, else behind the character.
    void skip(char c) {
        if (c == '"' || c == '\'') {
            for (++at_; at_ < text_.size() && text_[at_] != c; ++at_) {
                at_ += text_[at_] == '\\' ? 1 : 0;
            }
            ++at_;
        } else if (is_c_digit(c)) {
            while (at_ < text_.size() && (is_of_c_name(text_[at_]) || text_[at_] == '.')) {
                ++at_;
            }
        } else if (text_.substr(at_).starts_with("/*")) {
            const std::size_t end = text_.find("*/", at_ + 2);
            at_ = end == std::string_view::npos ? text_.size() : end + 2;
        } else if (text_.substr(at_).starts_with("//")) {
            at_ = text_.size();
        } else {
            ++at_;
        }
    }

    std::string_view text_;
    std::size_t begin_ = 0;  // of the name
    std::size_t at_ = 0;     // behind it
};

}  // namespace

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): a rule like the others
CReader::Id CReader::ignore(const Node& /*node*/) {
    return UNKNOWN;
}

CReader::Id CReader::read_include(const Node& node) {
    const Node path = node.child(fields_.path);
    const bool is_system = path.exists() && path.type() == "system_lib_string";
    const std::string_view quoted = text(path);
    if (is_system || quoted.starts_with('"')) {
        const std::string_view name = quoted.substr(1, quoted.size() < 2 ? 0 : quoted.size() - 2);
        out_.import({.module = out_.name(name),
                     .built = out_.built_at_line(node.line()),
                     .is_star = true,
                     .is_system = is_system});
        return UNKNOWN;
    }
    return visit(path);
}

// A macro has no scope: it is known from where it is defined, in whatever it stands.
CReader::Id CReader::read_macro(const Node& node) {
    const Node name = node.child(fields_.name);
    out_.declare({.name = out_.name(text(name)), .kind = Kind::MACRO, .offset = name.begin()});
    read_replacement(node);
    return UNKNOWN;
}

void CReader::read_replacement(const Node& macro) {
    const Node value = macro.child(fields_.value);
    if (!value.exists()) {
        return;
    }
    out_.open(syntax::NO_DECLARATION);
    out_.open_local();
    for_each_child(macro.child(fields_.parameters),
                   [&](const Node& parameter, TSFieldId) { out_.bind(text(parameter), UNKNOWN); });
    Id qualifier = UNKNOWN;  // the name before the last `::`
    for (CReplacementTokens tokens(text(value)); tokens.next();) {
        const std::string_view before = tokens.before();
        const bool is_qualified = before.ends_with("::");
        const bool is_member =
            before.ends_with('.') || before.ends_with("->") || (is_qualified && qualifier == UNKNOWN);
        if (is_member || tokens.is_pasted() || is_c_keyword(tokens.name())) {
            qualifier = UNKNOWN;
            continue;
        }
        const bool is_tag = before.ends_with("struct") || before.ends_with("union") || before.ends_with("enum");
        const syntax::Token token{.name = tokens.name(),
                                  .offset = value.begin() + tokens.begin(),
                                  .line = value.line() + tokens.lines_before(),
                                  .role = is_tag               ? Role::TYPE
                                          : tokens.is_called() ? Role::CALL
                                                               : Role::VALUE,
                                  .space = is_tag                  ? Space::TAG
                                           : tokens.is_qualifier() ? Space::QUALIFIER
                                                                   : Space::VALUE};
        const Id name = is_qualified ? out_.use_member(qualifier, token) : out_.use(token);
        qualifier = tokens.is_qualifier() ? name : UNKNOWN;
    }
    out_.close();
    out_.close();
}

// Of an #ifdef or #ifndef. A macro that is defined where it is missing, as one that guards a header, is not known yet.
CReader::Id CReader::read_condition(const Node& node) {
    const Node name = node.child(fields_.name);
    const Node inside = node.named_child(1);
    const bool defines_it =
        inside.exists() && inside.type() == "preproc_def" && text(inside.child(fields_.name)) == text(name);
    if (!defines_it) {
        out_.use(token(name));
    }
    return read_level(node);
}

}  // namespace host::sources
