// Imports of a checkout and of SCIP files that tell of some of its files.

#include "tests/host/scip/import_fixture.h"

namespace host::scip {
namespace {

std::string module_of_python(const std::string& name) {
    return symbol("`" + name + "`/__init__:");
}

// A package whose file a.py a document describes, while b.py has its source alone.
class BothImport : public ScipImport {
  protected:
    BothImport() {
        folder.write("checkout/lib/a.py", "from lib.b import B, C\nclass A:\n    def m(self): return B()\n");
        folder.write("checkout/lib/b.py",
                     "from lib.a import A\nclass B: pass\nclass C: pass\ndef f(): return A().m(), A().gone\n");
    }

    /// What a document says of a.py: nothing of B, and of C what no document defines.
    [[nodiscard]] static ScipDocument document() {
        return ScipDocument("lib/a.py")
            .defines(module_of_python("lib.a"), {0, 0, 0})
            .occurs(in("lib.b", "C#"), 0, {0, 21, 22})
            .defines(in("lib.a", "A#"), {1, 6, 7})
            .defines(in("lib.a", "A#m()."), {2, 8, 9});
    }

    ImportReport import_both(const std::vector<ScipDocument>& documents, std::vector<PathRule> exclusions = {}) const {
        return import_as({.scip_paths = {folder.write("in.scip", scip_file(documents))},
                          .checkout = folder / "checkout",
                          .has_other_files = true,
                          .exclusions = std::move(exclusions)});
    }

    /// The edges between files as "source > target resolution references, first line".
    [[nodiscard]] std::string uses() const {
        return rows(
            "SELECT users.path || ' > ' || symbols.name || ' ' || resolution || ' ' || refs || ' L' || first_line AS row "
            "FROM (SELECT edges.*, resolutions.name AS resolution FROM edges JOIN resolutions ON id = resolution_id) AS e "
            "JOIN files AS users ON users.id = source_file_id JOIN symbols ON symbols.id = target_id "
            "WHERE file_id <> source_file_id ORDER BY row");
    }
};

TEST_F(BothImport, ReferencesLeadFromSourcesToDocumentsAndBack) {
    folder.write("checkout/web/g.ts", "export function g() {}\n");
    folder.write("checkout/web/h.ts", "import { g } from './g'\ng()\n");
    const ImportReport report = import_both({document()});
    EXPECT_EQ(uses(),
              "lib/a.py > B import 2 L1; lib/a.py > C import 1 L1; lib/b.py > A import 3 L1; lib/b.py > m import 1 L4; "
              "web/h.ts > g import 2 L1");
    EXPECT_EQ(rows("SELECT name || import_resolved AS row FROM languages ORDER BY name"), "python1; typescript1");
    EXPECT_EQ(report.sources, 4);
    EXPECT_EQ(report.unresolved_by_language.at("python"), 1);  // gone
    EXPECT_TRUE(report.nowhere.empty());
}

TEST_F(BothImport, WhatADocumentSaysOfATokenAndOfAFileHolds) {
    import_both({document()
                     .occurs("local 1", 0, {0, 18, 19})   // B of the import
                     .occurs("local 1", 0, {2, 24, 25})   // B
                     .defines("local 1", {2, 11, 15})});  // self
    EXPECT_EQ(rows("SELECT refs AS row FROM edges JOIN symbols ON id = target_id WHERE name = 'B'"), "");
    import_both({ScipDocument("lib/a.py").defines(in("lib.a", "A#"), {1, 6, 7})});
    EXPECT_EQ(rows("SELECT name AS row FROM symbols JOIN files ON files.id = file_id WHERE path = 'lib/a.py' "
                   "AND kind <> 'module'"),
              "A")
        << "m is none of its declarations";
    EXPECT_EQ(rows("SELECT refs AS row FROM edges JOIN symbols ON id = target_id WHERE name = 'm'"), "");
}

TEST_F(BothImport, ATokenThatMayMeanSeveralIsAmbiguousAcrossBoth) {
    folder.write("checkout/lib/c.py", "if x:\n    from lib.a import A\nelse:\n    from lib.b import B as A\nA()\n");
    import_both({document()});
    EXPECT_EQ(rows("SELECT name || ' ' || refs AS row FROM edges JOIN symbols ON id = target_id WHERE resolution_id = "
                   "(SELECT id FROM resolutions WHERE name = 'ambiguous') ORDER BY row"),
              "A 1; B 1");
}

TEST_F(BothImport, TestsOfBothAreTests) {
    folder.write("checkout/tests/test_a.py", "from lib.a import A\nfrom lib.b import B\nA, B\n");
    folder.write("checkout/tests/test_b.py", "from lib.b import B\n");
    import_both({document(), ScipDocument("tests/test_b.py").defines(module_of_python("tests.test_b"), {0, 0, 0})});
    EXPECT_EQ(rows("SELECT name || ' ' || uses AS row FROM symbols WHERE name IN ('A', 'B') ORDER BY name"), "A 3; B 2")
        << "by a.py and b.py alone";
}

TEST_F(BothImport, AFileThatIsLeftOutByEitherIsLeftOut) {
    folder.write("checkout/lib/made.py", "class M: pass\n");
    const ScipDocument generated =
        ScipDocument("lib/made.py")
            .occurs(in("lib.made", "M#"), field::ROLE_DEFINITION | field::ROLE_GENERATED, {0, 6, 7});
    const ImportReport report = import_both({document(), generated}, {{"lib/b.py", true}});
    EXPECT_EQ(rows("SELECT path AS row FROM files"), "lib/a.py");
    EXPECT_EQ(report.excluded.first, (std::vector<std::string>{"lib/made.py", "lib/b.py"}));
}

TEST_F(BothImport, DocumentsThatTellOfNoFileOfTheCheckoutAreReported) {
    const ImportReport report = import_both(
        {document(), ScipDocument("../lib/b.py"), ScipDocument("lib/gone.py").defines(in("lib.gone", "G#"))});
    EXPECT_EQ(report.unusable_documents, 1);
    EXPECT_EQ(report.unread.first, std::vector<std::string>{"lib/gone.py"});
    EXPECT_EQ(rows("SELECT path AS row FROM files"), "lib/a.py; lib/b.py; lib/gone.py");
}

TEST_F(BothImport, ASourceThatHasChangedSinceItWasIndexedCompletesNothing) {
    folder.write("checkout/lib/a.py", "# new\nfrom lib.b import B, C\nclass A:\n    def m(self): return B()\n");
    const ImportReport report = import_both({document()});
    EXPECT_EQ(report.moved.count, 1);
    EXPECT_EQ(uses(), "lib/b.py > a import 1 L1") << "the module, but nothing by its place";
}

}  // namespace
}  // namespace host::scip
