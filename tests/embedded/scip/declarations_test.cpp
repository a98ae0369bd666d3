// The rules by which what SCIP says of a symbol becomes a row: its lines, its kind and names, its language.

#include "embedded/scip/declarations.h"
#include "tests/embedded/scip_builder.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace embedded::scip {
namespace {

constexpr std::int32_t MAX = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t MIN = std::numeric_limits<std::int32_t>::min();

// What `lines_of` makes of an occurrence with these ranges: from field 8 on a message each, before it packed numbers.
std::optional<Lines> lines_of_ranges(const std::vector<std::pair<protozero::pbf_tag_type, Numbers>>& ranges) {
    std::string bytes;
    protozero::pbf_writer occurrence(bytes);
    for (const auto& [field, numbers] : ranges) {
        if (field < 8) {
            add_packed(occurrence, field, numbers);
            continue;
        }
        protozero::pbf_writer range(occurrence, field);
        for (protozero::pbf_tag_type at = 0; at < numbers.size(); ++at) {
            range.add_int32(at + 1, numbers[at]);
        }
    }
    return lines_of(Occurrence::read(bytes));
}

TEST(ScipRange, BecomesInclusiveLinesWithinBounds) {
    const std::vector<std::pair<Numbers, std::optional<Lines>>> cases{
        {{4, 0, 7}, Lines{5, 5}},        {{4, 2, 6, 1}, Lines{5, 7}},       {{4, 2, 6, 0}, Lines{5, 6}},
        {{4, 2, 5, 0}, Lines{5, 5}},     {{4, 2, 1, 3}, Lines{5, 5}},       {{-3, 0, 2, 1}, Lines{1, 3}},
        {{MIN, 0, MIN, 0}, Lines{1, 1}}, {{MIN, 0, MAX, 0}, Lines{1, MAX}}, {{MAX, 0, 1}, Lines{MAX, MAX}},
        {{1, 2}, std::nullopt},          {{1, 2, 3, 4, 5}, std::nullopt},
    };
    for (const auto& [numbers, lines] : cases) {
        EXPECT_EQ(lines_of_ranges({{1, numbers}}), lines) << testing::PrintToString(numbers);
    }
}

TEST(ScipRange, TheNewerSpellingsWinAndTheEnclosingRangeBeforeTheRange) {
    EXPECT_EQ(lines_of_ranges({{8, {4, 1, 2}}, {1, {9, 0, 1}}}), (Lines{5, 5}));
    EXPECT_EQ(lines_of_ranges({{9, {4, 1, 6, 0}}}), (Lines{5, 6}));
    EXPECT_EQ(lines_of_ranges({{10, {4, 1, 2}}, {9, {1, 0, 9, 9}}}), (Lines{5, 5}));
    EXPECT_EQ(lines_of_ranges({{11, {4, 1, 6, 1}}, {7, {0, 0, 1}}}), (Lines{5, 7}));
    EXPECT_EQ(lines_of_ranges({{7, {4, 0}}, {1, {2, 0, 1}}}), (Lines{3, 3}));
}

TEST(ScipReader, TakesUnpackedNumbersAndPassesOverWhatItDoesNotKnow) {
    std::string bytes;
    protozero::pbf_writer message(bytes);
    message.add_string(99, "new"), message.add_fixed64(100, 1), message.add_fixed32(101, 1);
    message.add_fixed32(1, 7), message.add_int32(2, 7), message.add_string(3, "x"), message.add_int32(8, 1);
    for (const int number : {4, 0, 1}) {
        message.add_int32(1, number);
    }
    const Occurrence occurrence = Occurrence::read(bytes);
    EXPECT_EQ(lines_of(occurrence), (Lines{5, 5}));
    EXPECT_TRUE(occurrence.symbol.empty() && !occurrence.is_definition());
}

TEST(ScipDeclaration, FollowsFromKindThenDescriptorsThenSignature) {
    const auto fenced = [](const std::string& text) {
        return Says{.documentation = {"Says.", "Doc\n```ts\n" + text + "\n```\n"}};
    };
    const std::vector<std::tuple<std::string, Says, std::string>> cases{
        // Nothing stated: by descriptor.
        {"m/f().", {}, "function f m.f exported"},
        {"C#f().", {}, "method f C.f exported"},
        {"C#`<constructor>`().", {}, "constructor constructor C.<constructor> exported"},
        {"C#__init__().", {}, "constructor __init__ C.__init__ exported"},
        {"__init__().", {}, "function __init__ __init__ exported"},
        {"M!", {}, "function M M exported"},
        {"C#x.", fenced("const x: 1"), "attribute x C.x exported"},
        {"MAX_9.", {}, "constant MAX_9 MAX_9 exported"},
        {"max.", fenced("var max"), "variable max max exported"},
        {"max.", fenced(" const max"), "constant max max exported"},
        {"max.", fenced("constant max"), "variable max max exported"},
        {"max.", {.documentation = {"const max", "a ``` const"}}, "variable max max exported"},
        {"max.", {.signature = "var max", .documentation = {"```\nconst max\n```"}}, "variable max max exported"},
        {"T#", {}, "class T T exported"},
        {"T#", fenced("interface T<U>"), "interface T T exported"},
        {"T#", fenced("enum T"), "enum T T exported"},
        {"T#", {.signature = "type T = 1"}, "type T T exported"},
        {"T#", fenced("public interface T"), "class T T exported"},
        // Inside a body nothing is exported.
        {"f().x.", {}, "variable x f.x"},
        {"x.C#f().", {}, "method f x.C.f"},
        {"M!x.", {}, "variable x M.x"},
        // Stated kinds, one of each row kind; an unknown one says nothing.
        {"f().", {.kind = 7, .display_name = "F"}, "class F f exported"},
        {"T#", {.kind = 59}, "struct T T exported"},
        {"T#", {.kind = 86}, "interface T T exported"},
        {"T#", {.kind = 11}, "enum T T exported"},
        {"T#", {.kind = 73}, "type T T exported"},
        {"C#f().", {.kind = 34}, "function f C.f exported"},
        {"f().", {.kind = 72}, "method f f exported"},
        {"f().", {.kind = 9, .display_name = "<constructor>"}, "constructor constructor f exported"},
        {"x.", {.kind = 77}, "attribute x x exported"},
        {"x.", {.kind = 12}, "constant x x exported"},
        {"C#x.", {.kind = 60}, "variable x C.x exported"},
        {"C#x.", {.kind = 999}, "attribute x C.x exported"},
        // Scopes and parameters declare nothing, unless a module is a type.
        {"M#", {.kind = 29}, "class M M exported"},
        {"m.", {.kind = 35}, ""},
        {"x.", {.kind = 44}, ""},
        {"T#", {.kind = 58}, ""},
        {"a/", {.kind = 7}, ""},
        {"a:", {}, ""},
        {"f().(p)", {.kind = 61}, ""},
        {"C#[T]", {}, ""},
    };
    for (const auto& [descriptors, says, expected] : cases) {
        const std::string bytes = ScipDocument("a").describes(symbol(descriptors), says).bytes();
        Description description;
        description.add(Document{bytes}.symbols().next().value());
        const auto row = declaration_of(parse_symbol(symbol(descriptors)).value(), description);
        EXPECT_EQ(row ? std::string(row->kind) + " " + row->name + " " + row->fqn + (row->is_export ? " exported" : "")
                      : "",
                  expected)
            << descriptors << " kind " << says.kind;
    }
}

TEST(ScipLanguage, IsStatedElseByExtension) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases{
        {"TypeScript", "a.py", "typescript"},
        {std::string("lua\0", 4), "a.py", "python"},
        {"", "a.d.mts", "typescript"},
        {"", "src.py/a.cjs", "javascript"},
        {"", "a.h", "c"},
        {"", "a.txt", ""},
        {"", "a.", ""},
        {"", "src.ts/Makefile", ""},
    };
    for (const auto& [stated, path, language] : cases) {
        EXPECT_EQ(language_of(stated, path), language) << path;
    }
}

}  // namespace
}  // namespace embedded::scip
