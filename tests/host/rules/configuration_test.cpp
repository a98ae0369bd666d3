#include "host/rules/configuration.h"

#include "fixtures/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <utility>

namespace host {
namespace {

TEST(Configuration, ReadsRulesForTestsAndExclusions) {
    const TemporaryFolder folder;
    EXPECT_TRUE(read_configuration(Checkout(folder / "")).tests.empty());
    folder.write(CONFIGURATION_FILE,
                 "exclude = ['gen/'] # made\ninclude = []\ntest = [\n  'x', 'y',\n]\nnot-test = ['z']");
    const Configuration configuration = read_configuration(Checkout(folder / ""));
    EXPECT_EQ(to_json(configuration.exclusions), to_json({{"gen/", true}}));
    EXPECT_EQ(to_json(configuration.tests), to_json({{"z", false}, {"x", true}, {"y", true}}));
}

TEST(Configuration, RejectsAnIndexThatIsNoFileBelowTheRoot) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink(folder / "elsewhere.db", folder / "link");
    for (const std::string index : {"'postgresql://db/wiki'", "'postgres:u:p@db'", "'/tmp/a.db'", "'../a.db'",
                                    "'b/../../a.db'", "'link'", "'link/a.db'", "''", "7"}) {
        folder.write(CONFIGURATION_FILE, "index = " + index);
        EXPECT_THROW(read_configuration(Checkout(folder / "")), std::runtime_error) << index;
    }
    folder.write(CONFIGURATION_FILE, "index = 'build/a.db'");
    EXPECT_EQ(read_configuration(Checkout(folder / "")).index, "build/a.db");
}

TEST(Configuration, ReportsEachFaultWithItsFileAndLine) {
    const TemporaryFolder folder;
    for (const auto& [text, says] : std::vector<std::pair<std::string, std::string>>{
             {"test = ['a']\ntests = ['b']",
              ":2: unknown key `tests`; the keys are exclude, include, test, not-test and index"},
             {"\"a\\nb\" = []\n", ":1: unknown key `a\\x0ab`; the keys are exclude, include, test, not-test and index"},
             {"test = n\no\n", ":1: Error while parsing floating-point: expected 'nan', saw 'n\\x0a'"},
             {"test = 'a'", ":1: `test` must be a list of strings"},
             {"exclude = [\n 'a',\n 7]", ":3: `exclude` must be a list of strings"},
             {"test = ['{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}{a,b}']", ":1: {a,b}{a,b}"},
             {"test = [", ":1: "},
             {"[[[", ":1: "},
             {"exclud\xC3\xA9 = ['a']", ":1: "},
             {std::string(1'048'577, '#'), ": larger than any configuration (limit 1 MiB)"},
         }) {
        folder.write(CONFIGURATION_FILE, text);
        try {
            read_configuration(Checkout(folder / ""));
            ADD_FAILURE() << says;
        } catch (const std::runtime_error& error) {
            EXPECT_TRUE(std::string(error.what()).starts_with(folder / CONFIGURATION_FILE + says)) << error.what();
            EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos) << error.what();
        }
    }
}

}  // namespace
}  // namespace host
