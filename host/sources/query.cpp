#include "host/sources/query.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>

namespace host::sources {

namespace {

using std::string_view;

// In the order of `Capture`.
constexpr auto CAPTURE_NAMES = std::to_array<string_view>(
    {"class",     "struct",    "interface", "enum",        "type",    "function",  "method",    "constructor",
     "attribute", "constant",  "variable",  "declaration", "binding", "namespace", "wrapper",   "of",
     "callable",  "const",     "exported",  "name",        "body",    "value",     "docstring", "part",
     "named",     "decorator", "exporting", "testing",     "test",    "comment",   "visible",   "hidden",
     "local",     "enclosed",  "export",    "slot",        "list",    "module",    "cpp"});
static_assert(CAPTURE_NAMES.size() == static_cast<std::size_t>(Capture::ARGUMENT));

std::optional<Capture> capture_named(string_view name) {
    const auto* const found = std::ranges::find(CAPTURE_NAMES, name);
    return found == CAPTURE_NAMES.end() ? std::nullopt
                                        : std::optional(static_cast<Capture>(found - CAPTURE_NAMES.begin()));
}

std::string text_of(const Language& language) {
    std::string text;
    for (const string_view query : language.queries) {
        text += query;
    }
    return text;
}

std::logic_error unusable(const Language& language, const std::string& reason) {
    return std::logic_error("the query of " + std::string(language.name) + " " + reason);
}

// Whether a predicate of some pattern compares the capture.
bool is_argument(CaptureNumber number, const Patterns& patterns) {
    const auto is_it = [number](const PredicateOperand& operand) {
        return operand.is_capture && operand.capture == number;
    };
    return std::ranges::any_of(patterns.patterns, [&](const Pattern& pattern) {
        return std::ranges::any_of(pattern.predicates, [&](const Predicate& predicate) {
            return is_it(predicate.left) || is_it(predicate.right);
        });
    });
}

Patterns patterns_of(const Language& language) {
    try {
        return read_patterns(text_of(language), language.grammar());
    } catch (const std::logic_error& error) {
        throw unusable(language, std::string("does not fit its grammar: ") + error.what());
    }
}

}  // namespace

string_view name_of(Capture capture) {
    return capture == Capture::ARGUMENT ? string_view() : CAPTURE_NAMES.at(static_cast<std::size_t>(capture));
}

Query::Query(const Language& language)
    : patterns_(patterns_of(language)), candidates_(ts_language_symbol_count(language.grammar())) {
    for (const std::string& name : patterns_.captures) {
        const auto number = static_cast<CaptureNumber>(captures_.size());
        const std::optional<Capture> meaning = capture_named(name);
        if (!meaning && !is_argument(number, patterns_)) {
            throw unusable(language, "has a capture without a meaning: @" + name);
        }
        captures_.push_back(meaning.value_or(Capture::ARGUMENT));
    }
    std::uint32_t place = 0;
    for (const Pattern& pattern : patterns_.patterns) {
        for (const NodePattern& node : pattern.alternatives) {
            if (node.symbol == NodePattern::ANY_NAMED) {
                throw unusable(language, "has a pattern for nodes of any type");
            }
            (node.symbol < candidates_.size() ? candidates_[node.symbol] : of_errors_).push_back({&node, place});
        }
        ++place;
    }
}

const Query& query_of(const Language& language) {
    struct Slot {
        std::once_flag once;
        std::optional<Query> query;
    };
    static std::vector<Slot> slots(languages().size());
    Slot& slot = slots.at(static_cast<std::size_t>(&language - languages().data()));
    std::call_once(slot.once, [&] { slot.query.emplace(language); });
    return *slot.query;
}

}  // namespace host::sources
