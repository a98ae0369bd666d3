// What an index may have a page read: it names the files, and notes the folder that they were in.

#include "host/files/content_hash.h"
#include "tests/host/indexed_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace host {
namespace {

class NotedCheckout : public IndexedFolder {
  protected:
    NotedCheckout() {
        folder.write("away/known.ts", KNOWN);
        folder.write("away/secret", "# SECRET\nSECRET\n");
        folder.write("away/other", "# SECRET\nSECRET\n");
        ContentHash hash;
        hash.add(KNOWN);
        add<FileRow>({{1, "known.ts", "", hash.value()}, {2, "other", "", 1}, {3, "secret"}});
        add<DeclarationRow>(
            {{1, 2, "of_other", "", "class", true, 1, 2}, {2, 3, "of_secret", "", "class", true, 1, 2}});
        add<DescriptionRow>({{1, "", ""}, {2, "", ""}});
        change("INSERT INTO meta(key, value) VALUES('checkout', '" + folder / "away" + "')");
    }

    static constexpr const char* KNOWN = "// Known words.\n";
};

TEST_F(NotedCheckout, IsReadOnlyForFilesThatTheImportHasRead) {
    if (!test_server().empty()) {
        GTEST_SKIP() << "a server's note is never read";
    }
    const Outcome page = run("page . --index index.db");
    EXPECT_EQ(page.exit_code, 0);
    EXPECT_NE(page.out.find("| `known.ts` | 1 | 0 | Known words. |"), std::string::npos) << page.out;
    EXPECT_NE(page.out.find("| `secret` | ? | 1 |  |"), std::string::npos) << page.out;
    EXPECT_EQ(page.out.find("SECRET"), std::string::npos) << page.out;
    const std::string said =
        ": not known to be as it was indexed, so it is left out; allow it with --checkout " + folder / "away" + "\n";
    EXPECT_TRUE(page.err.starts_with("wiki-scope: other" + said + "wiki-scope: secret" + said)) << page.err;
    EXPECT_EQ(run("page . --index index.db --format json").out.find("SECRET"), std::string::npos);
}

TEST_F(NotedCheckout, IsReadWholeByWhoeverNamesItOrWorksInIt) {
    const std::string page = "wiki-scope page . --index '" + index + "'";
    EXPECT_NE(run("page . --index index.db --checkout away").out.find("\nSECRET\n"), std::string::npos);
    EXPECT_NE(shell("cd away && " + page).out.find("\nSECRET\n"), std::string::npos);
    folder.write("away/.git/HEAD", "");
    folder.write("away/below/file", "");
    EXPECT_NE(shell("cd away/below && " + page).out.find("\nSECRET\n"), std::string::npos);
}

TEST_F(NotedCheckout, IsNotReadAtAllWhenSomebodyElseMayHaveNotedIt) {
    std::filesystem::permissions(index, std::filesystem::perms::others_write, std::filesystem::perm_options::add);
    const Outcome page = run("page . --index index.db");
    EXPECT_NE(page.out.find("| `known.ts` | ? | 0 |  |"), std::string::npos) << page.out;
    const std::string here = std::filesystem::canonical(folder / "");
    EXPECT_NE(page.err.find("wiki-scope: " + here +
                            ": holds none of the page's files; name the folder that was "
                            "indexed with --checkout\n"),
              std::string::npos)
        << page.err;
    folder.write("known.ts", KNOWN);
    folder.write("secret", "SECRET\n");
    EXPECT_NE(run("page . --index index.db").out.find("| `known.ts` | 1 | 0 | Known words. |"), std::string::npos);
    EXPECT_EQ(run("page . --index index.db").out.find("SECRET"), std::string::npos);
}

}  // namespace
}  // namespace host
