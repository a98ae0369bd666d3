#include "host/sources/c/c_condition.h"

#include "host/sources/c/c_scanner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

namespace host::sources {

namespace {

using std::string_view;

struct COperator {
    string_view spelling;
    int precedence = 0;
};

// Those that begin with others stand before them.
constexpr auto C_OPERATORS = std::to_array<COperator>({{"||", 1},
                                                       {"&&", 2},
                                                       {"==", 6},
                                                       {"!=", 6},
                                                       {"<<", 8},
                                                       {">>", 8},
                                                       {"<=", 7},
                                                       {">=", 7},
                                                       {"<", 7},
                                                       {">", 7},
                                                       {"|", 3},
                                                       {"^", 4},
                                                       {"&", 5},
                                                       {"+", 9},
                                                       {"-", 9},
                                                       {"*", 10},
                                                       {"/", 10},
                                                       {"%", 10}});

CNumber c_truth(bool is_true, bool is_false) {
    return is_true ? C_TRUE : is_false ? C_FALSE : C_TRUE_OR_FALSE;
}

// Bounds that do not fit are none.
CNumber sum(const CNumber& one, const CNumber& other) {
    CNumber sum;
    const bool has_least = one.least != C_ANY.least && other.least != C_ANY.least;
    const bool has_most = one.most != C_ANY.most && other.most != C_ANY.most;
    if ((has_least && __builtin_add_overflow(one.least, other.least, &sum.least)) ||
        (has_most && __builtin_add_overflow(one.most, other.most, &sum.most))) {
        return C_ANY;
    }
    return sum;
}

CNumber product(const CNumber& one, const CNumber& other) {
    CNumber product;
    if (one.least < 0 || other.least < 0 || __builtin_mul_overflow(one.least, other.least, &product.least)) {
        return C_ANY;
    }
    const bool has_most = one.most != C_ANY.most && other.most != C_ANY.most;
    if (has_most && __builtin_mul_overflow(one.most, other.most, &product.most)) {
        return C_ANY;
    }
    return product;
}

CNumber combined(string_view spelling, const CNumber& left, const CNumber& right) {
    if (spelling == "||") {
        return either(left, right);
    }
    if (spelling == "&&") {
        return c_truth(left.is_true() && right.is_true(), left.is_false() || right.is_false());
    }
    const bool is_less = left.most < right.least;
    const bool is_more = left.least > right.most;
    const bool is_at_most = left.most <= right.least;
    const bool is_at_least = left.least >= right.most;
    const bool is_apart = is_less || is_more;
    const bool is_equal = is_at_most && is_at_least;
    if (spelling == "==") {
        return c_truth(is_equal, is_apart);
    }
    if (spelling == "!=") {
        return c_truth(is_apart, is_equal);
    }
    if (spelling == "<") {
        return c_truth(is_less, is_at_least);
    }
    if (spelling == ">") {
        return c_truth(is_more, is_at_most);
    }
    if (spelling == "<=") {
        return c_truth(is_at_most, is_more);
    }
    if (spelling == ">=") {
        return c_truth(is_at_least, is_less);
    }
    return spelling == "+" ? sum(left, right) : spelling == "*" ? product(left, right) : C_ANY;
}

CNumber c_literal(string_view text) {
    const bool is_hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const int base = is_hexadecimal ? 16 : text.starts_with("0b") ? 2 : text.starts_with('0') ? 8 : 10;
    text.remove_prefix(is_hexadecimal || base == 2 ? 2 : 0);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    const string_view suffix = text.substr(static_cast<std::size_t>(end - text.data()));
    const bool is_whole = error == std::errc() && suffix.find_first_not_of("uUlL") == string_view::npos;
    return is_whole ? CNumber{.least = value, .most = value} : C_ANY;
}

class CCondition {
  public:
    CCondition(string_view text, const std::function<CMacro(string_view)>& macro) : rest_(text), macro_(macro) {}

    CNumber evaluate() {
        const CNumber number = choice(0);
        cut_blanks(rest_);
        return rest_.empty() ? number : C_ANY;
    }

  private:
    static constexpr int DEEPEST = 100;

    CNumber choice(int depth) {
        const CNumber condition = binary(1, depth);
        if (!take("?") || depth >= DEEPEST) {
            return condition;
        }
        const CNumber one = choice(depth + 1);
        take(":");
        const CNumber other = choice(depth + 1);
        return condition.is_true() ? one : condition.is_false() ? other : C_ANY;
    }

    CNumber binary(int precedence, int depth) {
        CNumber left = unary(depth);
        for (;;) {
            cut_blanks(rest_);
            const auto* const found = std::ranges::find_if(
                C_OPERATORS, [&](const COperator& each) { return rest_.starts_with(each.spelling); });
            if (found == C_OPERATORS.end() || found->precedence < precedence) {
                return left;
            }
            rest_.remove_prefix(found->spelling.size());
            left = combined(found->spelling, left, binary(found->precedence + 1, depth));
        }
    }

    CNumber unary(int depth) {
        if (depth >= DEEPEST) {
            return C_ANY;
        }
        cut_blanks(rest_);
        if (take("!")) {
            return negated(unary(depth + 1));
        }
        if (take("-") || take("~")) {
            unary(depth + 1);
            return C_ANY;
        }
        if (take("+")) {
            return unary(depth + 1);
        }
        if (take("(")) {
            const CNumber inner = choice(depth + 1);
            take(")");
            return inner;
        }
        const string_view word = cut_word(rest_);
        if (word == "defined") {
            const bool is_in_brackets = take("(");
            const CNumber is_defined = macro_(cut_word(rest_)).is_defined;
            return !is_in_brackets || take(")") ? is_defined : C_ANY;
        }
        return !word.empty() && is_c_digit(word.front()) ? c_literal(word) : value_of(word);
    }

    // A name that is no macro counts as 0. Of what is called nothing is known.
    CNumber value_of(string_view name) {
        cut_blanks(rest_);
        if (rest_.starts_with('(')) {
            cut_arguments();
            return C_ANY;
        }
        const CMacro macro = macro_(name);
        return macro.is_defined.is_true() ? macro.value : macro.is_defined.is_false() ? C_FALSE : C_ANY;
    }

    void cut_arguments() {
        std::size_t depth = 0;
        std::size_t at = 0;
        for (; at < rest_.size(); ++at) {
            depth += rest_[at] == '(' ? 1 : 0;
            if (rest_[at] == ')' && --depth == 0) {
                break;
            }
        }
        rest_.remove_prefix(std::min(at + 1, rest_.size()));
    }

    bool take(string_view token) {
        cut_blanks(rest_);
        const bool is_next = rest_.starts_with(token);
        rest_.remove_prefix(is_next ? token.size() : 0);
        return is_next;
    }

    string_view rest_;
    const std::function<CMacro(string_view)>& macro_;
};

}  // namespace

CNumber negated(const CNumber& number) {
    return c_truth(number.is_false(), number.is_true());
}

CNumber either(const CNumber& one, const CNumber& other) {
    return c_truth(one.is_true() || other.is_true(), one.is_false() && other.is_false());
}

CNumber evaluated_condition(string_view expression, const std::function<CMacro(string_view)>& macro) {
    return CCondition(expression, macro).evaluate();
}

void cut_blanks(string_view& text) {
    while (!text.empty()) {
        std::size_t blanks = std::min(text.find_first_not_of(" \t\r\n\f\\"), text.size());
        if (text.starts_with("/*")) {
            const std::size_t end = text.find("*/", 2);
            blanks = end == string_view::npos ? text.size() : end + 2;
        } else if (text.starts_with("//")) {
            blanks = text.size();
        }
        if (blanks == 0) {
            return;
        }
        text.remove_prefix(blanks);
    }
}

string_view cut_word(string_view& text) {
    cut_blanks(text);
    const auto* const end = std::ranges::find_if_not(text, is_of_c_name);
    const string_view word = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

}  // namespace host::sources
