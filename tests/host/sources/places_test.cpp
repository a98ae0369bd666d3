// Names keep their places when a text is mended before it is parsed, and behind what counts as more than a letter.
#include "host/sources/c/c_mending.h"
#include "host/sources/mending.h"
#include "host/sources/rust/rust_macros.h"
#include "tests/host/sources/role_words.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

TEST(Places, MendingChangesNoLineAndMovesNoName) {
    const std::vector<std::pair<std::string (*)(std::string_view), std::string>> cases{
        {without_loose_macros,
         "API const char *own_f(void);\nclass EXPORT own_c : B {\n  FIELDS\n  int own_g LOCKED(m);\n};"},
        {without_loose_macros, "int own_f ARGS((type_a local_a));\r\nDECLARE(a)\r\nint CALL own_h();"},
        {mended, "interface own_i<in out T> { own_a: T; <K>(b: K): import('m').B }\nlet own_b = (any) => 1"},
        {mended, "export type * from 'm'\nabstract class own_c { static accessor own_d = sql<{ a: 1 }>`own_e` }"},
        {with_macros_as_calls,
         "fn own_f() { assert!(vec![value_a, vec![value_b]] != value_c);\n  print!(\"{}\", call_a()); }"},
    };
    for (const auto& [mend, text] : cases) {
        const std::string result = mend(text);
        ASSERT_EQ(result.size(), text.size()) << text;
        EXPECT_NE(result, text);
        std::set<std::pair<std::string, std::uint32_t>> left;
        for (const Word& word : words_of(result)) {
            left.emplace(word.text, word.offset);
        }
        for (const Word& word : words_of(text)) {
            EXPECT_TRUE(role_of_word(word.text).empty() || left.contains({word.text, word.offset})) << word.text;
        }
        for (std::size_t at = 0; at < text.size(); ++at) {
            EXPECT_EQ(result[at] == '\n' || result[at] == '\r', text[at] == '\n' || text[at] == '\r') << at;
        }
    }
}

TEST(Places, NamesAreFoundInAndAroundMacrosWhereTheyStand) {
    expect_roles("a.c", "API type_a *own_f(type_b);\nint own_g ARGS((type_c local_a));\n"
                        "TYPE_D EXPORT own_h(void) NORETURN;\n");
    expect_roles("a.cc", "class API own_c : public type_a {\n  MACRO(own)\n  type_b own_f() LOCKED(m);\n"
                         "  type_c own_g GUARDED(m) = value_a;\n};\n");
    expect_roles("a.rs",
                 "fn own_f(local_a: u8) { assert!(vec![value_a, vec![value_b]] != local_a,\n  \"{}\", call_a()); }");
}

TEST(Places, OffsetsAreBytesBehindAByteOrderMarkAndLinesAreThoseOfTheText) {
    const std::string mark = "\xEF\xBB\xBF";
    for (const auto& [path, text] : std::vector<std::pair<std::string, std::string>>{
             {"a.c", "/* \xC3\xA9 */ int own_a = value_a;\r\nint own_b = value_b;\n"},
             {"a.go", "package p\r\n/* \xF0\x9F\x98\x80 */ var own_a = value_a\nvar own_b = value_b"},
             {"A.java", "class A { String own_a = \"\xC3\xA9\" + value_a;\r\n\r\nint own_b = value_b; }"},
             {"a.py", "'\xF0\x9F\x98\x80'; own_a = value_a\r\nown_b = value_b"},
             {"a.rs", "/* \xC3\xA9 */ static own_a: u8 = value_a;\r\nstatic own_b: u8 = value_b;"},
             {"a.ts", "/* \xE2\x82\xAC */ export const own_a = value_a\r\nexport const own_b = value_b"},
         }) {
        expect_roles(path, text);
        const syntax::Syntax plain = names_in(path, text).syntax.value();
        const syntax::Syntax marked = names_in(path, mark + text).syntax.value();
        EXPECT_EQ(mentions_of(marked), mentions_of(plain)) << path;
        ASSERT_EQ(marked.declarations.size(), plain.declarations.size()) << path;
        EXPECT_EQ(marked.declarations.back().offset, plain.declarations.back().offset) << path;
    }
}

}  // namespace
}  // namespace host::sources
