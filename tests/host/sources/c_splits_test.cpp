// Conditions that split what is one to the grammars of C and C++.
#include "host/sources/c/c_mending.h"

#include "tests/host/sources/outlined.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

// The lines of a mended text that are not blank, one behind the other.
std::string mended_lines(const std::string& text) {
    const std::string mended = mended_c(text);
    EXPECT_EQ(mended.size(), text.size());
    std::string found;
    for (std::size_t at = 0; at < mended.size(); ++at) {
        const std::string line = mended.substr(at, mended.find('\n', at) - at);
        found += line.find_first_not_of(' ') == std::string::npos ? "" : line + "|";
        at += line.size();
    }
    return found;
}

TEST(CSplits, OneBranchOfASplitConditionIsKeptWithoutDirectives) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"#ifdef A\nif (a) {\n#else\nif (b) {\n#endif\n}\n", "if (a) {|}|"},
        {"#ifdef _WIN32\nint f(int a) {\n#elif A\nint f() {\n#else\nint f(long a) {\n#endif\n}\n", "int f() {|}|"},
        {"if (a) {\n#ifdef A\n} else if (b) {\n#endif\n}\n", "if (a) {|} else if (b) {|}|"},
        {"if (a) b;\n#if A\nelse c;\n#endif\n", "if (a) b;|else c;|"},
        {"f(a\n#if A\n, b\n#else\n, c\n#endif\n);\n#if A\nd;\n#endif\n", "f(a|, b|);|#if A|d;|#endif|"},
        {"#if A\n#if B\nif (a) {\n#else\nif (b) {\n#endif\n}\n#endif\n", "#if A|if (a) {|}|#endif|"},
        {"#if A\nif (a) {\n#else\n#if B\nif (b) {\n#else\nif (c) {\n#endif\n#endif\n}\n", "if (a) {|}|"},
        {"template <class T>\n#if A\nb(1)\n#endif\nvoid f();\n", "template <class T>|b(1)|void f();|"},
        {"A::A() : b(1),\n#if B\nc(2),\n#endif\nd(3) {}\n", "A::A() : b(1),|c(2),|d(3) {}|"},
        {"#ifdef A\nextern \"C\" {\n#endif\nint a;\n#ifdef A\n}\n#endif\n", "int a;|"},
    };
    for (const auto& [text, lines] : cases) {
        EXPECT_EQ(mended_lines(text), lines) << text;
    }
}

TEST(CSplits, WhatIsWholeStaysAndSoDoesWhatOtherConditionsClose) {
    for (const std::string text : {
             "#if A\nint f(a) { }\n#else\nint f(b) { }\n#endif\n",
             "#ifdef __cplusplus\nextern \"C\" {\n#endif\nint a;\n}\n",
             "enum E { A,\n#if A\nB,\n#endif\nC };",
             "#if A\nwhile (a) {\n#else\n{ {\n#endif\n",
             "#endif\n#else\n)\n#if A\na;\n",
         }) {
        EXPECT_EQ(mended_c(text), text);
    }
}

TEST(CSplits, CallsAndConditionsInWhatIsLeftOutAreMentionsNonetheless) {
    const std::string text =
        "void f(int a) {\n#if defined(A) && \\\n B\nif (g(a)) {\n#else\nif (h(a) && a.m(a)) {\n#endif\n}\n}\n";
    EXPECT_FALSE(outline("a.c", text).is_damaged);
    static const std::atomic<bool> never = false;
    const syntax::Syntax stated = outline_of(text, "", "a.c", never, Content::NAMES).value().syntax.value();
    std::string calls;
    for (const syntax::Mention& mention : stated.mentions) {
        calls +=
            std::string(stated.name(stated.expressions[mention.expression].name)) + std::to_string(mention.line) + " ";
    }
    EXPECT_EQ(calls, "h6 A2 B3 g4 ");
}

}  // namespace
}  // namespace host::sources
