#include "host/sources/pattern.h"

#include "host/text/ascii.h"
#include "host/text/blanks.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace host::sources {

namespace {

using std::string_view;

constexpr bool is_of_pattern_word(char character) {
    return is_letter(character) || ('0' <= character && character <= '9') || character == '_';
}

class PatternReader {
  public:
    PatternReader(string_view text, const TSLanguage* grammar) : rest_(text), grammar_(grammar) {}

    Patterns read() {
        for (skip_blanks(); !rest_.empty(); skip_blanks()) {
            pattern_ = &read_.patterns.emplace_back();
            std::vector<NodePattern> alternatives = read_alternatives();
            pattern_->alternatives = std::move(alternatives);
        }
        return std::move(read_);
    }

  private:
    [[noreturn]] void fail() const { throw std::logic_error(std::string(rest_.substr(0, rest_.find('\n')))); }

    // Blanks and comments.
    void skip_blanks() {
        const auto skip_to = [&](std::size_t offset) { rest_.remove_prefix(std::min(offset, rest_.size())); };
        skip_to(rest_.find_first_not_of(BLANKS));
        while (rest_.starts_with(';')) {
            skip_to(rest_.find('\n'));
            skip_to(rest_.find_first_not_of(BLANKS));
        }
    }

    bool skip(string_view token) {
        skip_blanks();
        const bool is_there = rest_.starts_with(token);
        rest_.remove_prefix(is_there ? token.size() : 0);
        return is_there;
    }

    void expect(string_view token) {
        if (!skip(token)) {
            fail();
        }
    }

    string_view read_word() {
        std::size_t size = 0;
        while (size < rest_.size() && is_of_pattern_word(rest_[size])) {
            ++size;
        }
        const string_view word = rest_.substr(0, size);
        if (word.empty()) {
            fail();
        }
        rest_.remove_prefix(word.size());
        return word;
    }

    // Behind the first quotation mark.
    string_view read_text() {
        const string_view text = rest_.substr(0, rest_.find('"'));
        rest_.remove_prefix(text.size());
        expect("\"");
        return text;
    }

    // Behind "@".
    CaptureNumber read_capture() {
        const string_view name = read_word();
        const auto found = std::ranges::find(read_.captures, name);
        const auto number = static_cast<CaptureNumber>(found - read_.captures.begin());
        if (found == read_.captures.end()) {
            read_.captures.emplace_back(name);
        }
        return number;
    }

    TSFieldId read_field() {
        const string_view rest = rest_;
        const string_view name = read_word();
        const auto size = static_cast<std::uint32_t>(name.size());
        const TSFieldId field = ts_language_field_id_for_name(grammar_, name.data(), size);
        if (field == 0) {
            rest_ = rest;
            fail();
        }
        return field;
    }

    [[nodiscard]] TSSymbol symbol(string_view name, bool is_named) const {
        const TSSymbol symbol =
            ts_language_symbol_for_name(grammar_, name.data(), static_cast<std::uint32_t>(name.size()), is_named);
        if (symbol == 0) {
            throw std::logic_error(std::string(name));
        }
        return symbol;
    }

    // A node, a token or several of them in brackets, and how it is captured.
    std::vector<NodePattern> read_alternatives() {
        std::vector<NodePattern> alternatives;
        if (skip("[")) {
            while (!skip("]")) {
                std::ranges::move(read_alternatives(), std::back_inserter(alternatives));
            }
        } else if (skip("\"")) {
            alternatives.emplace_back().symbol = symbol(read_text(), false);
        } else {
            expect("(");
            alternatives.push_back(read_node());
        }
        while (skip("@")) {
            const CaptureNumber capture = read_capture();
            for (NodePattern& node : alternatives) {
                node.captures.push_back(capture);
            }
        }
        return alternatives;
    }

    // Behind the bracket.
    NodePattern read_node() {
        NodePattern node;
        const string_view type = read_word();
        node.symbol = type == "_" ? NodePattern::ANY_NAMED : symbol(type, true);
        while (!skip(")")) {
            if (skip("!")) {
                node.absent.push_back(read_field());
            } else if (skip("(#eq?")) {
                read_predicate(true);
            } else if (skip("(#not-eq?")) {
                read_predicate(false);
            } else {
                node.children.push_back(read_child());
            }
        }
        return node;
    }

    ChildPattern read_child() {
        ChildPattern child;
        child.is_next = skip(".");
        skip_blanks();
        if (!rest_.empty() && is_of_pattern_word(rest_.front())) {
            child.field = read_field();
            expect(":");
        }
        child.alternatives = read_alternatives();
        child.has_captures = std::ranges::any_of(child.alternatives, [](const NodePattern& node) {
            return !node.captures.empty() || std::ranges::any_of(node.children, &ChildPattern::has_captures);
        });
        return child;
    }

    // Behind its name.
    void read_predicate(bool is_equal) {
        Predicate predicate{.is_equal = is_equal, .left = read_operand(), .right = read_operand()};
        pattern_->predicates.push_back(std::move(predicate));
        expect(")");
    }

    PredicateOperand read_operand() {
        PredicateOperand operand;
        operand.is_capture = skip("@");
        if (operand.is_capture) {
            operand.capture = read_capture();
        } else {
            expect("\"");
            operand.text = read_text();
        }
        return operand;
    }

    string_view rest_;
    const TSLanguage* grammar_;
    Patterns read_;
    Pattern* pattern_ = nullptr;  // that is being read
};

}  // namespace

Patterns read_patterns(string_view text, const TSLanguage* grammar) {
    return PatternReader(text, grammar).read();
}

}  // namespace host::sources
