#include "fixtures/collaborators.h"
#include "tests/scope/page_builder.h"

#include <gtest/gtest.h>

#include <map>
#include <type_traits>

namespace wiki::scope {
namespace {

using Calls = std::vector<std::string>;

static_assert(!std::is_assignable_v<decltype((std::declval<ScopeFacts&>().files)), std::vector<ScopeFile>>);
static_assert(!std::is_copy_assignable_v<ScopeFacts> && !std::is_copy_assignable_v<FanIn>);
static_assert(!std::is_copy_constructible_v<ScopeFacts> && !std::is_move_constructible_v<ScopeFacts>);
static_assert(!std::is_copy_constructible_v<FanIn> && !std::is_move_constructible_v<FanIn>);

class Load : public testing::Test {
  protected:
    Load() { storage::listening = &db; }
    ~Load() override { storage::listening = nullptr; }

    ScopeFacts load(const std::vector<std::string>& paths) {
        return load_scope_facts(db, paths, [this](const Text& path) {
            db.note("read_lines", std::string(path));
            const auto found = checkout.find(std::string(path));
            return found == checkout.end() ? std::nullopt : std::optional(found->second);
        });
    }

    storage::Database db;
    std::map<std::string, std::vector<std::string>> checkout;
};

TEST_F(Load, AsksEachQuestionOnceForTheWholePageInAFixedOrder) {
    db.files = {{7, "b.ts", "typescript"}, {3, "a.py", "python"}, {9, "c", std::nullopt},
                {4, "d.ts", "typescript"}, {5, "e.go", "Go"},     {6, "f", ""}};
    db.inbound = {from("test/x.ts").to(1), from("u.ts").to(1), from("test/x.ts").to(2)};
    db.resolved_languages = {"typescript"};
    checkout = {{"b.ts", {"one", "two"}}, {"c", {}}};

    const ScopeFacts facts = load({"b.ts", "unknown", "a.py"});

    EXPECT_EQ(db.calls,
              (Calls{"scope_files(b.ts,unknown,a.py)", "inbound_references(7,3,9,4,5,6)",
                     "import_resolved_languages(Go,python,typescript)", "read_lines(b.ts)", "file_summary(one,two)",
                     "read_lines(a.py)", "read_lines(c)", "file_summary()", "read_lines(d.ts)", "read_lines(e.go)",
                     "read_lines(f)", "scope_symbols(7,3,9,4,5,6)", "outbound_references(7,3,9,4,5,6)",
                     "is_test_path(test/x.ts)", "is_test_path(u.ts)", "importing_tests(b.ts,a.py,c,d.ts,e.go,f)"}));
    EXPECT_EQ(facts.line_counts, (OrderedMap<Text, std::int64_t>{{"b.ts", 2}, {"c", 0}}));
    EXPECT_EQ(facts.summaries, (OrderedMap<Text, Text>{{"b.ts", "one"}, {"c", "nothing"}}));
    EXPECT_EQ(facts.test_sources, TextSet{"test/x.ts"});
    EXPECT_EQ(facts.import_resolved_paths, (TextSet{"b.ts", "d.ts"}));
    EXPECT_TRUE(facts.import_resolved("d.ts"));
    EXPECT_FALSE(facts.import_resolved("a.py") || facts.import_resolved("c") || facts.import_resolved("unknown"));
}

TEST_F(Load, LetsEveryFailureOfACollaboratorPass) {
    db.files = {{1, "a.ts", "typescript"}};
    db.inbound = {from("u.ts").to(1)};
    checkout = {{"a.ts", {"one"}}};
    for (const char* call :
         {"scope_files", "inbound_references", "import_resolved_languages", "read_lines", "file_summary",
          "scope_symbols", "outbound_references", "is_test_path", "importing_tests"}) {
        db.throws_at = call;
        EXPECT_THROW(load({"a.ts"}), storage::Refusal) << call;
    }
}

}  // namespace
}  // namespace wiki::scope
