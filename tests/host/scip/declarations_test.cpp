// The rules by which what SCIP says of a symbol becomes a row: its lines, its kind and names, its language.

#include "fixtures/scip_builder.h"
#include "fixtures/temporary_folder.h"
#include "host/scip/declarations.h"
#include "host/scip/language.h"
#include "host/scip/lines_of_range.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace host::scip {
namespace {

constexpr std::int32_t MAX = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t MIN = std::numeric_limits<std::int32_t>::min();

// An occurrence with these ranges: from field 8 on a message each, before it packed numbers.
Occurrence occurrence_with(const std::vector<std::pair<protozero::pbf_tag_type, Numbers>>& ranges) {
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
    return Occurrence::read(bytes);
}

TEST(ScipRange, BecomesInclusiveLinesWithinBounds) {
    const std::vector<std::pair<Numbers, indexing::LineSpan>> cases{
        {{4, 0, 7}, {5, 5}},        {{4, 2, 6, 1}, {5, 7}},       {{4, 2, 6, 0}, {5, 6}},
        {{4, 2, 5, 0}, {5, 5}},     {{4, 2, 1, 3}, {5, 5}},       {{-3, 0, 2, 1}, {1, 3}},
        {{MIN, 0, MIN, 0}, {1, 1}}, {{MIN, 0, MAX, 0}, {1, MAX}}, {{MAX, 0, 1}, {MAX, MAX}},
    };
    for (const auto& [numbers, lines] : cases) {
        EXPECT_EQ(lines_of(occurrence_with({{1, numbers}}).range.value()), lines) << testing::PrintToString(numbers);
    }
    EXPECT_FALSE(occurrence_with({{1, {1, 2}}}).range);
    EXPECT_FALSE(occurrence_with({{1, {1, 2, 3, 4, 5}}}).range);
}

TEST(ScipRange, TheNewerSpellingsWin) {
    EXPECT_EQ(occurrence_with({{8, {4, 1, 2}}, {1, {9, 0, 1}}}).range, (Range{4, 1, 4, 2}));
    EXPECT_EQ(occurrence_with({{9, {4, 1, 6, 0}}}).range, (Range{4, 1, 6, 0}));
    EXPECT_EQ(occurrence_with({{10, {4, 1, 2}}, {9, {1, 0, 9, 9}}}).enclosing_range, (Range{4, 1, 4, 2}));
    EXPECT_EQ(occurrence_with({{11, {4, 1, 6, 1}}, {7, {0, 0, 1}}}).enclosing_range, (Range{4, 1, 6, 1}));
    EXPECT_FALSE(occurrence_with({{7, {4, 0}}, {1, {2, 0, 1}}}).enclosing_range);
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
    EXPECT_EQ(occurrence.range, (Range{4, 0, 4, 1}));
    EXPECT_EQ(occurrence.symbol, "");
    EXPECT_FALSE(occurrence.is_definition());
}

TEST(ScipDeclaration, FollowsFromKindThenDescriptorsThenSignature) {
    const auto fenced = [](const std::string& text) {
        return Says{.documentation = {"Says.", "Doc\n```ts\n" + text + "\n```\n"}};
    };
    const std::vector<std::tuple<std::string, Says, std::string>> cases{
        // Nothing stated: by descriptor.
        {"m/f().", {}, "function f m.f"},
        {"C#f().", {}, "method f C.f"},
        {"typeLiteral3:f().", {}, "method f typeLiteral3.f"},
        {"C#`<constructor>`().", {}, "constructor constructor C.constructor"},
        {"C#__init__().", {}, "constructor __init__ C.__init__"},
        {"C#`<init>`().", {}, "constructor constructor C.constructor"},
        {"C#`<get>x`().", {}, "method x C.x"},
        {"__init__().", {}, "function __init__ __init__"},
        {"M!", {}, "function M M"},
        {"C#x.", fenced("const x: 1"), "attribute x C.x"},
        {"typeLiteral3:x.", {}, "attribute x typeLiteral3.x"},
        {"object3:x.", {}, "variable x object3.x"},
        {"E#A.", fenced("(enum member) E.A = 0"), "constant A E.A"},
        {"MAX_9.", {}, "constant MAX_9 MAX_9"},
        {"max.", fenced("var max"), "variable max max"},
        {"max.", fenced(" const max"), "constant max max"},
        {"max.", fenced("export const max: (string | number)[]"), "constant max max"},
        {"max.", fenced("constant max"), "variable max max"},
        {"max.", {.documentation = {"const max", "a ``` const"}}, "variable max max"},
        {"max.", {.signature = "var max", .documentation = {"```\nconst max\n```"}}, "variable max max"},
        {"f.", fenced("var f: (a: (b: 1) => 2) => 3"), "function f f"},
        {"f.", fenced("let f: ({ [x: string]: unknown; ...; } | { reado..."), "variable f f"},
        {"f.", fenced("const f: <T>(a: T) => T"), "function f f"},
        {"f.", fenced("const f: {\n    (a: 1): 2;\n}"), "function f f"},
        {"f.", fenced("const f: { <T>(a: T): T }"), "function f f"},
        {"F.", fenced("const F: new () => Error"), "function F F"},
        {"f.", fenced("const f: newest"), "constant f f"},
        {"T#", {}, "class T T"},
        {"T#", fenced("interface T<U>"), "interface T T"},
        {"T#", fenced("pub(crate) trait T"), "interface T T"},
        {"T#", fenced("export declare const enum T"), "enum T T"},
        {"T#", {.signature = "type T = 1"}, "type T T"},
        {"T#", fenced("public final interface T"), "interface T T"},
        {"T#", fenced("alias interface T"), "class T T"},
        {"T#", fenced("interface_2 T"), "class T T"},
        // Stated kinds, one of each row kind; an unknown one says nothing.
        {"f().", {.kind = 7, .display_name = "F"}, "class F f"},
        {"T#", {.kind = 59}, "struct T T"},
        {"T#", {.kind = 86}, "interface T T"},
        {"T#", {.kind = 11}, "enum T T"},
        {"T#", {.kind = 73}, "type T T"},
        {"C#f().", {.kind = 34}, "function f C.f"},
        {"f().", {.kind = 72}, "method f f"},
        {"f().", {.kind = 9, .display_name = "<constructor>"}, "constructor constructor f"},
        {"x.", {.kind = 77}, "attribute x x"},
        {"x.", {.kind = 12}, "constant x x"},
        {"C#x.", {.kind = 60}, "variable x C.x"},
        {"C#x.", {.kind = 999}, "attribute x C.x"},
        // Scopes and parameters declare nothing, unless a module is a type.
        {"M#", {.kind = 29}, "class M M"},
        {"m.", {.kind = 35}, ""},
        {"x.", {.kind = 44}, ""},
        {"T#", {.kind = 58}, ""},
        {"a/", {.kind = 7}, ""},
        {"a:", {}, ""},
        {"f().(p)", {.kind = 61}, ""},
        {"C#[T]", {}, ""},
    };
    const TemporaryFolder folder;
    TextSpool spool(folder / "texts");
    for (const auto& [descriptors, says, expected] : cases) {
        const std::string bytes = ScipDocument("a").describes(symbol(descriptors), says).bytes();
        Description description;
        description.add(Document{bytes}.symbols().next().value(), spool);
        const std::string string = symbol(descriptors);
        const std::vector<Descriptor> parts = parse_symbol(string).value().descriptors;
        const std::string row =
            std::string(kind_of(parts, description, {})) + " " + name_of(parts, description) + " " + fqn_of(parts);
        EXPECT_EQ(is_declaration(parts.back(), description.kind) ? row : "", expected)
            << descriptors << " kind " << says.kind;
    }
}

TEST(ScipDeclaration, WhatTheSourceHoldsDecidesBetweenFunctionConstantAndVariable) {
    const std::vector<Descriptor> variable{{"x", Suffix::TERM}};
    const std::vector<Descriptor> member{{"C", Suffix::TYPE}, {"x", Suffix::TERM}};
    EXPECT_EQ(kind_of(variable, {}, {.kind = {}, .is_callable = true, .is_constant = true}), "function");
    EXPECT_EQ(kind_of(variable, {}, {.kind = {}, .is_constant = true}), "constant");
    EXPECT_EQ(kind_of(member, {}, {.kind = {}, .is_callable = true}), "attribute");
}

TEST(ScipDeclaration, CannotBePublicInsideABodyOrAsAMember) {
    const auto stands_outside = [](const std::string& descriptors) {
        return scip::stands_outside(parse_symbol(symbol(descriptors)).value().descriptors);
    };
    EXPECT_TRUE(stands_outside("m/N/f()."));
    EXPECT_TRUE(stands_outside("C#"));
    for (const char* const inside : {"f().x.", "x.C#f().", "M!x.", "C#x.", "typeLiteral1:x.", "[T]x.", "f().C#D#"}) {
        EXPECT_FALSE(stands_outside(inside)) << inside;
    }
}

TEST(ScipLanguage, IsStatedElseByExtension) {
    const std::vector<std::tuple<std::string, std::string, std::string>> cases{
        {"TypeScript", "a.py", "typescript"},
        {std::string("lua\0", 4), "a.py", "python"},
        {std::string(65'537, 'x'), "a.py", "python"},
        {"", "a.d.mts", "typescript"},
        {"", "src.py/a.cjs", "javascript"},
        {"", "a.txt", ""},
        {"", "a.", ""},
        {"", "src.ts/Makefile", ""},
    };
    for (const auto& [stated, path, language] : cases) {
        EXPECT_EQ(language_of(stated, path), language) << path;
    }
}

}  // namespace
}  // namespace host::scip
