#include "host/sources/query.h"

#include "host/sources/parser_memory.h"

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
     "local",     "export",    "slot",      "list",        "module",  "cpp"});
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

// The numbers of the captures that predicates compare.
std::vector<std::uint32_t> arguments_of(const TSQuery* query) {
    std::vector<std::uint32_t> arguments;
    for (std::uint32_t pattern = 0; pattern < ts_query_pattern_count(query); ++pattern) {
        std::uint32_t count = 0;
        const TSQueryPredicateStep* const steps = ts_query_predicates_for_pattern(query, pattern, &count);
        for (const TSQueryPredicateStep& step : std::span(steps, count)) {
            if (step.type == TSQueryPredicateStepTypeCapture) {
                arguments.push_back(step.value_id);
            }
        }
    }
    return arguments;
}

std::logic_error unusable(const Language& language, const std::string& reason) {
    return std::logic_error("the query of " + std::string(language.name) + " " + reason);
}

}  // namespace

string_view name_of(Capture capture) {
    return capture == Capture::ARGUMENT ? string_view() : CAPTURE_NAMES.at(static_cast<std::size_t>(capture));
}

Query::Query(const Language& language) {
    count_parser_memory();  // from the first block on
    const std::string text = text_of(language);
    std::uint32_t offset = 0;
    TSQueryError error = TSQueryErrorNone;
    query_.reset(
        ts_query_new(language.grammar(), text.data(), static_cast<std::uint32_t>(text.size()), &offset, &error));
    if (query_ == nullptr) {
        throw unusable(language, "does not fit its grammar: " + text.substr(offset, text.find('\n', offset) - offset));
    }
    const std::vector<std::uint32_t> arguments = arguments_of(handle());
    for (std::uint32_t number = 0; number < ts_query_capture_count(handle()); ++number) {
        std::uint32_t size = 0;
        const char* const characters = ts_query_capture_name_for_id(handle(), number, &size);
        const string_view name(characters, size);
        const std::optional<Capture> meaning = capture_named(name);
        if (!meaning && std::ranges::find(arguments, number) == arguments.end()) {
            throw unusable(language, "has a capture without a meaning: @" + std::string(name));
        }
        captures_.push_back(meaning.value_or(Capture::ARGUMENT));
    }
}

const Query& query_of(const Language& language) {
    struct Slot {
        std::once_flag once;
        std::optional<Query> query;
    };
    static std::vector<Slot> slots(languages().size());
    Slot& slot = slots.at(static_cast<std::size_t>(&language - languages().data()));
    std::call_once(slot.once, [&] { slot.query.emplace(language); });  // not before: compiling takes its time
    return *slot.query;
}

}  // namespace host::sources
