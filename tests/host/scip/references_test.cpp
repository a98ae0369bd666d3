// What tokens lead to: edges to the rows of a file, however the indexer spells what it names.

#include "tests/host/scip/import_fixture.h"

namespace host::scip {
namespace {

TEST_F(ScipImport, AllOccurrencesAtOneRangeAreOneReference) {
    import({ScipDocument("a.ts").defines(F), ScipDocument("b.ts").refers_to_all({F, F}).refers(F)});
    EXPECT_EQ(edges(), "b.ts 1 import 2");
}

TEST_F(ScipImport, ATokenOfSeveralMeaningsIsAmbiguousForEach) {
    import({ScipDocument("a.ts").defines(F).defines(G).refers_to_all({F, G}),
            ScipDocument("b.ts")
                .defines("local 1")
                .refers_to_all({F, symbol("external().")})
                .refers_to_all({G, "local 1"})
                .refers(F)});
    EXPECT_EQ(edges(),
              "a.ts 1 ambiguous 1; a.ts 2 ambiguous 1; b.ts 1 ambiguous 1; b.ts 1 import 1; b.ts 2 ambiguous 1");
}

// As scip-typescript writes each token that names Button where some file says `Button.displayName = "Button"`.
TEST_F(ScipImport, ALocalThatItsDocumentNowhereDefinesTakesNoPartInAToken) {
    const ScipDocument user = ScipDocument("b.ts").refers_to_all({F, "local 1"}).refers_to_all({F, G, "local 1"});
    import({ScipDocument("a.ts").defines(F).refers_to_all({"local 2", F}), user, user,
            ScipDocument("c.ts").refers_to_all({"local 1", "local 2"})});
    EXPECT_EQ(edges(), "a.ts 1 local 1; b.ts 1 ambiguous 2; b.ts 1 import 2");
}

TEST_F(ScipImport, AnEdgeHasTheFirstLineThatIsKnownOfItsReferences) {
    import({ScipDocument("a.ts").defines(F).defines(G),
            ScipDocument("b.ts").occurs(F, 0, {8, 0, 1}).occurs(F, 0, {6, 0, 1}).occurs(G, 0, {}),
            ScipDocument("b.ts").occurs(F, 0, {4, 0, 1}).occurs(F, 0, {}).refers_to_all({F, G})});
    EXPECT_EQ(rows("SELECT target_id || ' ' || refs || ' L' || first_line AS row FROM edges"),
              "1 1 L1002; 1 4 L5; 2 1 L1002; 2 1 L0");
}

TEST_F(ScipImport, ATokenThatDefinesOrAnnouncesAnythingIsNoReference) {
    const ScipDocument a =
        ScipDocument("a.ts").defines(F, {1, 0, 1}).defines(G, {2, 0, 1}).refers_to_all({G}, 64).refers_to_all({F}, 65);
    import({a, ScipDocument("b.ts").defines("local 1", {7, 0, 1}).occurs(F, 0, {7, 0, 1})});
    EXPECT_EQ(edges(), "");
}

TEST_F(ScipImport, WhoeverNamesADeclarationDoesNotMeanWhatExtendsIt) {
    const std::string error = in("a.ts", "global/Error#");
    const std::string extension = in("a.ts", "`\"b\"`/B#");
    import({ScipDocument("a.ts").defines(error, {1, 0, 1}).defines(extension, {2, 0, 1}),
            ScipDocument("b.ts").defines(in("b.ts", "B#")).refers_to_all({in("b.ts", "B#"), extension}),
            ScipDocument("c.ts").refers_to_all({"tool npm lib 1 `lib.d.ts`/Error#", error}).refers(error)});
    EXPECT_EQ(edges(), "b.ts 3 local 1; c.ts 1 import 1");
}

TEST_F(ScipImport, WhatATokenNamesTogetherIsOneRow) {
    const std::string type = symbol("X#");
    const std::string value = symbol("X.");
    const std::string scope = symbol("X/");
    const auto import_as = [&](const std::string& kind) {
        const Says says{.signature = kind + " X", .documentation = {"Of the type."}};
        import({ScipDocument("a.ts")
                    .defines(value, {1, 0, 1}, {1, 0, 9, 0})
                    .describes(value, {.signature = "const X: (a: 1) => 2"})
                    .defines(type, {10, 0, 1})
                    .describes(type, says)
                    .defines(scope, {20, 0, 1}),
                ScipDocument("b.ts").refers_to_all({type, value, scope}).refers(value).refers(scope)});
        return declarations();
    };
    EXPECT_EQ(import_as("class"), "X class 11-11 public");
    EXPECT_EQ(import_as("interface"), "X function 2-9 public") << "the one with the most lines";
    EXPECT_EQ(edges(), "b.ts 1 import 3");
    EXPECT_EQ(rows("SELECT replace(signature, char(10), '|') || documentation AS row FROM descriptions"),
              "const X: (a: 1) => 2|interface XOf the type.");
}

TEST_F(ScipImport, DeclarationsOfOneNameThatNoTokenNamesTogetherStayApart) {
    import({ScipDocument("a.ts")
                .defines(symbol("f(+1)."), {1, 0, 1})
                .defines(F, {2, 0, 1})
                .defines(symbol("N/f()."), {3, 0, 1})
                .refers_to_all({F, symbol("N/f().")})});
    EXPECT_EQ(declarations(), "f function 2-2 public; f function 3-3 public; f function 4-4 public");
}

TEST_F(ScipImport, TheAccessorsOfAPropertyAreOneRow) {
    import({ScipDocument("a.ts")
                .defines(symbol("C#`<get>x`()."), {1, 0, 1})
                .defines(symbol("C#`<set>x`()."), {2, 0, 1}, {2, 0, 5, 1})
                .defines(symbol("D#`<set>x`()."), {7, 0, 1})});
    EXPECT_EQ(declarations(), "x method 3-6; x method 8-8");
}

TEST_F(ScipImport, AConstructorStandsForItsTypeWhereTheFileDeclaresThat) {
    const std::string constructor = symbol("C#`<constructor>`().");
    const std::string alone = symbol("D#`<constructor>`().");
    import({ScipDocument("a.ts").defines(symbol("C#")).defines(constructor, {1, 0, 1}).defines(alone, {2, 0, 1}),
            ScipDocument("b.ts").refers(constructor).refers_to_all({constructor, symbol("C#")}).refers(alone)});
    EXPECT_EQ(edges(), "b.ts 1 import 2; b.ts 3 import 1");
}

TEST_F(ScipImport, ASymbolOfSeveralFilesLeadsToTheLargestThenADescribedThenTheFirst) {
    const std::string h = symbol("h().");
    import({ScipDocument("a.ts").defines(F).defines(G).defines(h),
            ScipDocument("b.ts").defines(F).describes(F).defines(G, {0, 0, 1}, {0, 0, 2, 1}).defines(h).refers(F),
            ScipDocument("c.ts").defines(G).describes(G), ScipDocument("d.ts").refers(F).refers(G).refers(h)});
    EXPECT_EQ(edges(), "b.ts 4 local 1; d.ts 3 import 1; d.ts 4 import 1; d.ts 5 import 1");
}

TEST_F(ScipImport, ADeclarationThatALargerOneHidesFromOthersIsNotPublic) {
    import({ScipDocument("a.py").defines(F).defines(G), ScipDocument("a.pyi").defines(F, {0, 0, 1}, {0, 0, 2, 1})});
    EXPECT_EQ(declarations(), "f function 1-1; g function 1-1 public; f function 1-3 public");
}

TEST_F(ScipImport, WhatIsOnlyAnnouncedIsDeclaredWhereTheFirstFileByPathAnnouncesIt) {
    import({ScipDocument("b.h").announces(F, {1, 0, 1}),
            ScipDocument("a.h").announces(F, {5, 0, 1}).announces(G, {6, 0, 1}),
            ScipDocument("g.c").defines(G, {9, 0, 1}), ScipDocument("c.c").refers(F).refers(G)});
    EXPECT_EQ(declarations(), "f function 6-6 public; g function 10-10 public");
    EXPECT_EQ(edges(), "c.c 1 import 1; c.c 2 import 1");
}

TEST_F(ScipImport, AFileThatIsOnlyImportedAsAWholeIsAModule) {
    const std::string barrel = in("index.ts", "");
    const std::string python = symbol("`p.index`/__init__:");
    import({ScipDocument("x/index.ts").defines(symbol("x/`index.ts`/"), {0, 0, 0}).defines(F, {3, 0, 1}),
            ScipDocument("p/index.py").defines(python, {0, 0, 0}).refers(python),
            ScipDocument("a.ts").refers(symbol("x/`index.ts`/")).refers(symbol("x/`index.ts`/")).refers(python),
            ScipDocument("b.ts").refers(F).refers(symbol("x/`index.ts`/"))});
    EXPECT_EQ(declarations(), "index module 1-1002 public; x module 1-4 public; f function 4-4 public");
    EXPECT_EQ(edges(), "a.ts 1 import 1; a.ts 2 import 2; b.ts 3 import 1");
    EXPECT_EQ(rows("SELECT fqn AS row FROM symbols WHERE kind = 'module'"), "p.index.__init__; x.index.ts");
}

TEST_F(ScipImport, AModuleNamedByTheEndOfItsNameIsTheOnlyOneThatEndsSo) {
    const auto defines = [](const std::string& path, const std::string& module) {
        return ScipDocument(path).defines(symbol("`" + module + "`/__init__:"), {0, 0, 0});
    };
    import({defines("p/q.py", "p.q"), defines("p/r.py", "p.r"), defines("p/s/r.py", "p.s.r"), defines("s/r.py", "s.r"),
            ScipDocument("p/s/a.py")
                .refers(symbol("q/__init__:"))
                .refers(symbol("r/__init__:"))
                .refers(symbol("`s.r`/__init__:"))});
    EXPECT_EQ(rows("SELECT fqn AS row FROM symbols"), "p.q.__init__; s.r.__init__");
    EXPECT_EQ(edges(), "p/s/a.py 1 import 1; p/s/a.py 2 import 1");
}

TEST_F(ScipImport, AFileThatNobodyImportsAsAWholeIsNoModule) {
    import({ScipDocument("a.ts").defines(in("a.ts", ""), {0, 0, 0}).defines(F, {1, 0, 1}).refers(in("a.ts", "")),
            ScipDocument("b.ts").refers(in("a.ts", "")).refers(F)});
    EXPECT_EQ(declarations(), "f function 2-2 public");
    EXPECT_EQ(edges(), "b.ts 1 import 1");
}

}  // namespace
}  // namespace host::scip
