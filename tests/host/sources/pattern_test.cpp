// What patterns match, in the notation of pattern.h.

#include "host/sources/language.h"
#include "host/sources/pattern.h"
#include "host/sources/pattern_matcher.h"
#include "host/sources/syntax_tree.h"

#include <gtest/gtest.h>

#include <atomic>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace host::sources {
namespace {

constexpr std::string_view PATTERN_TEXT = "f(a, 1, b)\ndef g(d): pass\n";

void match_all(const Pattern& pattern, TSNode node, PatternMatcher& matcher, const PatternMatcher::OnMatch& on_match) {
    for (const NodePattern& alternative : pattern.alternatives) {
        if (alternative.symbol == ts_node_symbol(node)) {
            matcher.match(alternative, node, on_match);
        }
    }
    for (std::uint32_t child = 0; child < ts_node_child_count(node); ++child) {
        match_all(pattern, ts_node_child(node, child), matcher, on_match);
    }
}

// What a pattern captures in the text: "x=a y=b; x=a y=c".
std::string captured(std::string_view text) {
    const std::atomic<bool> never = false;
    const Language& python = *understood_language("python", "");
    const ParserMemory memory;
    const SyntaxTree tree = parsed(PATTERN_TEXT, python, never, memory).value();
    const Patterns patterns = read_patterns(text, python.grammar());
    PatternMatcher matcher(tree.root());
    std::string matches;
    match_all(patterns.patterns.at(0), tree.root(), matcher, [&](std::span<const CapturedPart> parts) {
        std::string separator = matches.empty() ? "" : "; ";
        for (const auto& [capture, node] : parts) {
            const std::uint32_t begin = ts_node_start_byte(node);
            matches.append(std::exchange(separator, " ")).append(patterns.captures[capture]).append("=");
            matches += PATTERN_TEXT.substr(begin, ts_node_end_byte(node) - begin);
        }
    });
    return matches;
}

TEST(Pattern, MatchesTypesTokensFieldsAndWhatIsAbsent) {
    EXPECT_EQ(captured("(integer) @x"), "x=1");
    EXPECT_EQ(captured("; a comment\n[(integer) (pass_statement)] @x @y"), "x=1 y=1; x=pass y=pass");
    EXPECT_EQ(captured("(parameters \")\" @x)"), "x=)");
    EXPECT_EQ(captured("(call function: (_) @x)"), "x=f");
    EXPECT_EQ(captured("(function_definition !return_type name: (_) @x)"), "x=g");
    EXPECT_EQ(captured("(function_definition !body name: (_) @x)"), "");
}

TEST(Pattern, FindsChildrenInTheirOrderInEveryWayThatCapturesOthers) {
    EXPECT_EQ(captured("(call function: (_) @x arguments: (argument_list (identifier) @y))"), "x=f y=a; x=f y=b");
    EXPECT_EQ(captured("(argument_list (_) @x (identifier) @y)"), "x=a y=b; x=1 y=b");
    EXPECT_EQ(captured("(argument_list (integer) (identifier) @x)"), "x=b");
    EXPECT_EQ(captured("(argument_list [(integer) (identifier)]) @x"), "x=(a, 1, b)");
    EXPECT_EQ(captured("(argument_list . (identifier) @x)"), "x=a");
    EXPECT_EQ(captured("(argument_list . (integer) @x)"), "");
    EXPECT_EQ(captured("(argument_list (integer) . (identifier) @x)"), "x=b");
}

TEST(Pattern, ThatTheGrammarDoesNotHaveIsRefused) {
    for (const std::string_view text : {"(call", "(call) @", "(no_such)", "(call no_such: (_))", "\"no such\"", "x"}) {
        EXPECT_THROW(captured(text), std::logic_error) << text;
    }
}

}  // namespace
}  // namespace host::sources
