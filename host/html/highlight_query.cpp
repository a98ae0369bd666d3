#include "host/html/highlight_query.h"

#include "host/html/highlight_queries.h"
#include "host/sources/parser_memory.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

namespace host::html {

namespace {

// What captures mean, by the beginnings of their names. Others say nothing, since grammars differ on whether what they
// say of all names comes before or after what they say of some.
constexpr auto CODE_CLASSES = std::to_array<std::pair<std::string_view, CodeClass>>({
    {"keyword", CodeClass::KEYWORD},
    {"string", CodeClass::STRING},
    {"escape", CodeClass::STRING},
    {"number", CodeClass::NUMBER},
    {"constant", CodeClass::NUMBER},
    {"comment", CodeClass::COMMENT},
    {"function", CodeClass::FUNCTION},
    {"type", CodeClass::TYPE},
    {"constructor", CodeClass::TYPE},
    {"embedded", CodeClass::PLAIN},
});

std::optional<CodeClass> class_named(std::string_view capture) {
    const auto* const found =
        std::ranges::find_if(CODE_CLASSES, [&](const auto& row) { return capture.starts_with(row.first); });
    return found == CODE_CLASSES.end() ? std::nullopt : std::optional(found->second);
}

// The queries of a language, in the order in which what comes later is right.
std::string query_text(std::string_view language) {
    using namespace highlight_queries;
    static const std::map<std::string_view, std::vector<std::string_view>> QUERIES{
        {"c", {C}},
        {"cpp", {C, CPP}},
        {"go", {GO}},
        {"java", {JAVA}},
        {"javascript", {JAVASCRIPT, JSX}},
        {"python", {PYTHON}},
        {"rust", {RUST}},
        {"tsx", {JAVASCRIPT, JSX, TYPESCRIPT}},
        {"typescript", {JAVASCRIPT, TYPESCRIPT}},
    };
    std::string text;
    if (const auto found = QUERIES.find(language); found != QUERIES.end()) {
        for (const std::string_view query : found->second) {
            text.append(query).append("\n");
        }
    }
    return text;
}

std::string_view string_of(const TSQuery* query, std::uint32_t id) {
    std::uint32_t length = 0;
    const char* const characters = ts_query_string_value_for_id(query, id, &length);
    return {characters, length};
}

// A regular expression that the text alone matches.
std::string literally(std::string_view text) {
    std::string expression = "^";
    for (const char character : text) {
        expression.append("[").append(1, character).append("]");
    }
    return expression + "$";
}

}  // namespace

HighlightQuery::HighlightQuery(const sources::Language& language, const std::string& query) {
    sources::provide_parser_memory();
    std::uint32_t offset = 0;
    TSQueryError error = TSQueryErrorNone;
    query_.reset(
        ts_query_new(language.grammar(), query.data(), static_cast<std::uint32_t>(query.size()), &offset, &error));
    if (query_ == nullptr) {
        throw std::logic_error("the query for highlighting " + std::string(language.name) +
                               " does not fit its grammar: " + query.substr(offset, query.find('\n', offset) - offset));
    }
    for (std::uint32_t capture = 0; capture < ts_query_capture_count(handle()); ++capture) {
        std::uint32_t length = 0;
        const char* const characters = ts_query_capture_name_for_id(handle(), capture, &length);
        classes_.push_back(class_named({characters, length}));
    }
    conditions_.resize(ts_query_pattern_count(handle()));
    for (std::uint32_t pattern = 0; pattern < conditions_.size(); ++pattern) {
        std::uint32_t count = 0;
        const TSQueryPredicateStep* const steps = ts_query_predicates_for_pattern(handle(), pattern, &count);
        const std::span all(steps, count);
        for (std::size_t at = 0; at + 2 < count; ++at) {  // "match?" or "eq?", a capture, a text
            const bool is_predicate = all[at].type == TSQueryPredicateStepTypeString &&
                                      all[at + 1].type == TSQueryPredicateStepTypeCapture &&
                                      all[at + 2].type == TSQueryPredicateStepTypeString;
            if (is_predicate) {
                const std::string_view text = string_of(handle(), all[at + 2].value_id);
                const bool is_literal = string_of(handle(), all[at].value_id) == "eq?";
                conditions_[pattern].push_back(
                    {.capture = all[at + 1].value_id,
                     .expected = std::regex(is_literal ? literally(text) : std::string(text))});
            }
        }
    }
}

bool HighlightQuery::holds(const TSQueryMatch& match, std::string_view text) const {
    constexpr std::size_t LONGEST_NAME = 200;  // what is longer is none that an expression is about
    return std::ranges::all_of(conditions_[match.pattern_index], [&](const Condition& condition) {
        return std::ranges::all_of(std::span(match.captures, match.capture_count), [&](const TSQueryCapture& capture) {
            const std::uint32_t begin = ts_node_start_byte(capture.node);
            const std::string_view name = text.substr(begin, ts_node_end_byte(capture.node) - begin);
            return capture.index != condition.capture ||
                   (name.size() <= LONGEST_NAME && std::regex_search(name.begin(), name.end(), condition.expected));
        });
    });
}

const HighlightQuery* highlight_query_of(const sources::Language& language) {
    static std::mutex mutex;
    static std::map<std::string_view, std::unique_ptr<const HighlightQuery>> queries;
    const std::scoped_lock lock(mutex);
    const auto [found, is_new] = queries.try_emplace(language.name);
    if (is_new) {
        if (const std::string text = query_text(language.name); !text.empty()) {
            found->second = std::make_unique<const HighlightQuery>(language, text);
        }
    }
    return found->second.get();
}

}  // namespace host::html
