// What tokens name of which the source has the last word.

#include "tests/host/scip/import_fixture.h"

namespace host::scip {
namespace {

TEST_F(ScipImport, ANameThatAModulePassesOnStandsForWhatAnotherOneDeclares) {
    const std::string types = symbol("`types.ts`/");
    const std::string deep = symbol("deep/`index.ts`/");
    const std::string all = symbol("`all.ts`/");
    folder.write("checkout/types.ts", "function stringType() {}\nexport { stringType as string }\n");
    folder.write("checkout/deep/index.ts", "export const low = 1\nexport * from '../all'\n");
    folder.write("checkout/all.ts", "export * from './types.js'\nimport * as deep from './deep'\nexport { deep }\n");
    folder.write("checkout/barrel.ts", "export { string } from './types'\n");
    folder.write("checkout/user.ts",
                 "import * as z from './all'\n/* \xF0\x9F\x98\x80 */ z.string()\nz\n  .string(z, z[string])\n"
                 "z.deep.low\n");
    import_with_sources({ScipDocument("types.ts").defines(types).defines(types + "stringType().", {0, 9, 19}),
                         ScipDocument("deep/index.ts").defines(deep).defines(deep + "low.", {0, 13, 16}),
                         ScipDocument("all.ts").defines(all),
                         ScipDocument("barrel.ts").occurs("local 7", 0, {0, 9, 15}),
                         ScipDocument("user.ts")
                             .occurs(all, 0, {1, 9, 10})
                             .occurs("local 1", 0, {1, 11, 17})  // followed
                             .occurs(all, 0, {2, 0, 1})
                             .occurs("local 1", 0, {3, 3, 9})  // followed
                             .occurs(all, 0, {3, 10, 11})
                             .occurs(all, 0, {3, 13, 14})
                             .occurs("local 1", 0, {3, 15, 21})
                             .occurs(all, 0, {4, 0, 1})
                             .occurs("local 2", 0, {4, 2, 6})      // followed to a module,
                             .occurs("local 3", 0, {4, 7, 10})});  // and on from there
    EXPECT_EQ(rows("SELECT path || ' ' || name || ' ' || refs AS row FROM symbols JOIN edges ON symbols.id = target_id "
                   "JOIN files ON files.id = source_file_id WHERE kind <> 'module' ORDER BY row"),
              "barrel.ts stringType 1; types.ts stringType 1; user.ts low 1; user.ts stringType 2");
}

// A document whose local starts where the source binds an import says no more than the source does.
TEST_F(ScipImport, ALocalThatTheDocumentDefinesIsNothingElse) {
    const std::string m = symbol("`m.ts`/");
    folder.write("checkout/m.ts", "export function f() {}\n");
    folder.write("checkout/a.ts", "import { f } from './m'\nf()\nf()\n");
    import_with_sources(
        {ScipDocument("m.ts").defines(m).defines(m + "f().", {0, 16, 17}), ScipDocument("a.ts")
                                                                               .occurs(m + "f().", 0, {0, 9, 10})
                                                                               .defines("local 1", {1, 0, 1})
                                                                               .occurs("local 1", 0, {2, 0, 1})});
    EXPECT_EQ(edges(), "a.ts 1 import 1");
}

// Modules of Python, as scip-python writes them.
std::string module(const std::string& name) {
    return symbol("`" + name + "`/__init__:");
}

// A package p that passes on through `*` what p.fields declares, and a file that uses it.
class PythonImport : public ScipImport {
  protected:
    void import_user(const std::string& text, ScipDocument& user) const {
        folder.write("checkout/p/__init__.py", "from p.fields import *\nfrom .fields import A as Z\n");
        folder.write("checkout/p/fields.py", "class A: pass\nclass B: pass\nclass _C: pass\n");
        folder.write("checkout/user.py", text);
        import_with_sources({ScipDocument("p/__init__.py").defines(module("p"), {0, 0, 0}),
                             ScipDocument("p/fields.py")
                                 .defines(module("p.fields"), {0, 0, 0})
                                 .defines(in("p.fields", "A#"), {0, 6, 7})
                                 .defines(in("p.fields", "B#"), {1, 6, 7})
                                 .defines(in("p.fields", "_C#"), {2, 6, 8}),
                             user.defines(module("user"), {0, 0, 0})});
    }

    [[nodiscard]] std::string used() const {
        return rows(
            "SELECT name || ' ' || refs AS row FROM symbols JOIN edges ON id = target_id WHERE source_file_id = "
            "(SELECT id FROM files WHERE path = 'user.py') ORDER BY name");
    }
};

TEST_F(PythonImport, ATokenWithAnotherNameMeansWhatTheImportsOfItsFileSay) {
    const std::string wrong = in("p.fields", "B#");
    ScipDocument user = ScipDocument("user.py")
                            .occurs(module("p"), 0, {0, 7, 8})
                            .occurs(wrong, 0, {1, 14, 15})  // from p import A
                            .occurs(module("p"), 0, {2, 0, 1})
                            .occurs(wrong, 0, {2, 2, 3})    // p.A
                            .occurs(wrong, 0, {3, 0, 1})    // A
                            .occurs(wrong, 0, {4, 2, 3})    // x.A: nobody knows
                            .occurs(wrong, 0, {5, 14, 20})  // B as y
                            .occurs(wrong, 0, {6, 0, 1})    // y
                            .occurs(module("p"), 0, {7, 0, 1})
                            .occurs(wrong, 0, {7, 2, 3})      // p.Z
                            .occurs("local 7", 0, {8, 0, 1})  // A, which no document defines
                            .occurs(wrong, 0, {9, 5, 14});    // of p.fields
    import_user("import p\nfrom p import A\np.A\nA\nx.A\nfrom p import B as y\ny\np.Z\nA\nfrom .p.fields import *",
                user);
    EXPECT_EQ(used(), "A 5; B 2; p 5");
}

TEST_F(PythonImport, ANameThatIsImportedAndNowhereATokenIsUsedAsOftenAsTheSourceMentionsIt) {
    ScipDocument user = ScipDocument("user.py").occurs(in("p.fields", "B#"), 0, {1, 14, 15});
    import_user("from p import A as _, B as b\nfrom p import B\ndef f(): return _(_)\ndef g(_): return _", user);
    EXPECT_EQ(used(), "A 3; B 2; p 2");
    ScipDocument whole = ScipDocument("user.py").occurs(in("p.fields", "A#"), 0, {0, 14, 20});  // A as _
    import_user("from p import A as _\n_", whole);
    EXPECT_EQ(used(), "A 2; p 1");
}

TEST_F(PythonImport, AMemberOfAModuleIsUsedWhereNoTokenNamesIt) {
    ScipDocument user = ScipDocument("user.py").occurs(module("p"), 0, {0, 7, 8}).occurs(module("p"), 0, {1, 0, 1});
    import_user("import p\np.A\np.fields.B\np.gone\np.fields.B.x\n", user);
    EXPECT_EQ(used(), "A 1; B 2; p 5");
}

TEST_F(PythonImport, AFileThatIsOnlyImportedIsAModuleThoughNoTokenNamesIt) {
    ScipDocument user = ScipDocument("user.py").occurs("local 1", 0, {0, 5, 6});
    import_user("from p import gone", user);
    EXPECT_EQ(used(), "p 1");
}

// scip-python takes a class that bears a name of the language for the language's own, and leaves out its definition.
TEST_F(PythonImport, ADeclarationHidesTheOneOfItsNameThatTheLanguageHas) {
    const std::string warning = "scip-python python python-stdlib 3.11 builtins/Warning#";
    folder.write("checkout/a.py", "class Warning: pass\nWarning\n");
    folder.write("checkout/b.py", "from a import Warning\nimport a\na.Warning\n");
    folder.write("checkout/c.py", "Warning\n");
    import_with_sources({ScipDocument("a.py")
                             .defines(module("a"), {0, 0, 0})
                             .occurs(warning, 0, {0, 6, 13})
                             .occurs(warning, 0, {1, 0, 7}),
                         ScipDocument("b.py")
                             .defines(module("b"), {0, 0, 0})
                             .occurs(warning, 0, {0, 14, 21})
                             .occurs(module("a"), 0, {2, 0, 1})
                             .occurs(warning, 0, {2, 2, 9}),
                         ScipDocument("c.py").defines(module("c"), {0, 0, 0}).occurs(warning, 0, {0, 0, 7})});
    EXPECT_EQ(declarations(), "Warning class 1-1 public");
    EXPECT_EQ(edges(), "a.py 1 local 1; b.py 1 import 2");
}

TEST_F(PythonImport, TheTextOfASourceThatHasChangedSinceItWasIndexedSaysNothing) {
    ScipDocument user =
        ScipDocument("user.py").defines(in("user", "f()."), {0, 4, 5}).occurs(in("p.fields", "B#"), 0, {2, 0, 1});
    import_user("# A new line.\ndef f(): pass\nA\n", user);
    EXPECT_EQ(used(), "B 1");
}

// Projects in folders of one SCIP file, whose packages have no name.
std::string nameless(const std::string& descriptors) {
    return "t npm . . " + descriptors;
}

TEST_F(ScipImport, ProjectsWithoutANameShareNoDeclarations) {
    const std::string file = nameless("`a.ts`/");
    const std::string f = nameless("`a.ts`/f().");
    const std::string g = nameless("`g.ts`/g().");
    const auto declares = [&](const std::string& path) {
        return ScipDocument(path).defines(file, {0, 0, 0}).defines(f, {0, 16, 17}).describes(f, {.signature = path});
    };
    folder.write("checkout/one/a.ts", "export function f() {}\n");
    folder.write("checkout/two/a.ts", "export function f() {}\n\n");
    folder.write("checkout/b.ts", "export * from './one/a'\n");
    folder.write("checkout/user.ts", "import { f } from './b'\n");
    folder.write("checkout/bare.ts", "import './two/a'\n");
    const std::vector<ScipDocument> documents{declares("one/a.ts").refers(f).refers(g),
                                              declares("two/a.ts"),
                                              ScipDocument("two/g.ts").defines(g),
                                              ScipDocument("user.ts").occurs(f, 0, {0, 9, 10}),
                                              ScipDocument("b.ts").defines(nameless("`b.ts`/"), {0, 0, 0}),
                                              ScipDocument("lost.ts").refers(f),
                                              ScipDocument("bare.ts").occurs(file, 0, {0, 7, 16})};
    import_with_sources(documents);
    EXPECT_EQ(rows("SELECT path || ' ' || name || ' ' || kind AS row FROM symbols "
                   "JOIN files ON files.id = file_id ORDER BY symbols.id"),
              "one/a.ts a module; one/a.ts f function; two/a.ts a module; two/a.ts f function; two/g.ts g function");
    EXPECT_EQ(edges(), "b.ts 1 import 1; bare.ts 3 import 1; lost.ts 2 ambiguous 1; lost.ts 4 ambiguous 1; "
                       "one/a.ts 2 local 1; one/a.ts 5 import 1; user.ts 2 import 1");
}

}  // namespace
}  // namespace host::scip
