// What the grammar of TypeScript does not know is read all the same.

#include "host/sources/mending.h"
#include "tests/host/sources/outlined.h"

#include <gtest/gtest.h>

namespace host::sources {
namespace {

// The damage is that of a construct if the same text without it has none, so each must come out whole.
class Construct : public testing::TestWithParam<const char*> {};

TEST_P(Construct, DamagesNothing) {
    const std::string text = std::string("export const a = 1\n") + GetParam() + "\nexport const f = <A>(b: A) => b\n";
    EXPECT_EQ(mended(text).size(), text.size());
    EXPECT_FALSE(outline("a.ts", text).is_damaged);
    EXPECT_EQ(declaration("a.ts", text, "f").signature, "export const f = <A>(b: A)");
}

INSTANTIATE_TEST_SUITE_P(
    TypeScript, Construct,
    testing::Values(
        "type M = {\n  <A>(a: A): B<A>\n  /** c */\n  <A>(): A\n}",
        "type M = g<\n  <A>(a: A) =>\n    <B>(b: B) => A\n>",
        "interface I<in A, in out B extends C, // d\n  out D> { out: 1 }", "type M = B<<C>(c: C) => D>",
        "export type * as n from 'm'\nexport type * from 'm'", "export * from 'm' with { type: 'json' }",
        "import type A = B.C", "import defer * as d from 'm'\nimport source s from 'm'",
        "abstract class C { protected abstract override readonly m: 1; static accessor n = 1; accessor #o }",
        "function u() { for (using v of w) {} }", "type M<R = any> = import('m').B<R>[]",
        "type M = (typeof undefined | boolean)[]", "const q = g(sql<{ a: () => 1 }>`b`)",
        "type M<U extends string> = `\\`${U}\\` <Self>()(\\${})`", "type M = (any) => void",
        "type M = [new: A, number: B]", "type R<type> = type extends string ? (type extends 'a' ? 1 : never) : 3",
        "let as = 1, satisfies = as, using = g(using)\nabstract.m(accessor)",
        "interface I {\n  a: string\n  in: 'b'\n}"));

TEST(Mending, KeepsWhereDeclarationsBegin) {
    const std::string text = "class C<out T> {\n  /** A. */\n  override get a() {}\n  /** B. */\n  accessor b = 1\n}";
    EXPECT_EQ(declaration("a.ts", text, "a").signature, "override get a()");
    EXPECT_EQ(declaration("a.ts", text, "a").documentation, "A.");
    EXPECT_EQ(declaration("a.ts", text, "b").signature, "accessor b = 1");
    EXPECT_EQ(declaration("a.ts", text, "b").documentation, "B.");
}

TEST(Mending, KeepsNamesAndLinesWhereTheyStand) {
    const std::string text =
        "interface I<out type> {\n  type: type\n}\nexport type R<type> = type extends '\\`' ? 1 : 2\n";
    EXPECT_EQ(declaration("a.ts", text, "type").first_line, 2);
    EXPECT_EQ(declaration("a.ts", text, "I").signature, "interface I<out type>");
    EXPECT_EQ(declaration("a.ts", text, "R").signature, "export type R<type> = type extends '\\`' ? 1 : 2");
    EXPECT_EQ(mended("a<{\r\n}>`b`"), "a  \r\n  `b`");
    EXPECT_EQ(mended("/* in out T */ f('<in T', a < b, out, type)"), "/* in out T */ f('<in T', a < b, out, _ype)");
}

}  // namespace
}  // namespace host::sources
