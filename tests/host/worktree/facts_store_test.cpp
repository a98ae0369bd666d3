// What was read of a file is found again by its content, whole or not at all.

#include "host/worktree/facts_store.h"

#include "fixtures/temporary_folder.h"
#include "host/worktree/bytes.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace host::worktree {
namespace {

SourceFacts facts(std::string_view text, const std::string& path) {
    static const std::atomic<bool> IS_CANCELLED = false;
    return facts_of(text, path, IS_CANCELLED);
}

constexpr std::string_view CPP =
    "// Keeps items.\n#ifdef _WIN32\n#include <a.h>\n#elif A\nint v;\n#else\nint v;\n#endif\nnamespace n {\n/** One. */\nstruct One { int a; void f(One other); };\n"
    "void One::f(One other) { other.a = a; g<One>(other); }\n}\n";

// Equal facts have equal bytes.
TEST(FactsBytes, HoldAllOfTheFacts) {
    for (
        const auto& [text, path] : std::vector<std::pair<std::string_view, std::string>>{
            {CPP, "a.h"},
            {"package p\n\nimport \"fmt\"\n\ntype T struct{ E }\n\nfunc (t *T) F(a map[string]T) (int, error) { return 0, "
             "fmt.Errorf(\"\") }\n",
             "b.go"},
            {"", "c.py"},
            {"\xFF", "d.java"}}) {
        const SourceFacts read = facts(text, path);
        const SourceFacts copy = facts_in(to_bytes(read), path);
        EXPECT_EQ(to_bytes(copy), to_bytes(read)) << path;
        EXPECT_EQ(copy.language, read.language);
        EXPECT_EQ(copy.dialect, read.dialect);
        EXPECT_EQ(copy.syntax.expressions, read.syntax.expressions);
    }
}

TEST(FactsBytes, AreRefusedWhereTheyDoNotFitTogether) {
    const std::string bytes = to_bytes(facts(CPP, "a.h"));
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        EXPECT_THROW(static_cast<void>(facts_in(bytes.substr(0, size), "a.h")), Malformed) << size;
    }
    for (std::size_t at = 0; at < bytes.size(); ++at) {  // each byte changed: refused, or facts that can be walked
        for (const unsigned change : {1U, 0x7FU, 0x80U}) {
            std::string changed = bytes;
            changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ change);
            try {
                static_cast<void>(to_bytes(facts_in(changed, "a.h")));
            } catch (const Malformed&) {
            }
        }
    }
}

TEST(FactsBytes, NeverReachBehindTheirEnd) {
    for (const std::string_view bytes : {"\x01", "\x02x", "\xFF", "\x80\x80\x80\x80\x80\x80\x80\x80\x80\x80\x01"}) {
        EXPECT_THROW(ByteReader(bytes).text(), Malformed);
    }
}

// What stands in bodies, at which lines, and what else is said of a declaration, is none of others' business.
TEST(Surfaces, AreEqualWhereOtherFilesSeeNoDifference) {
    const auto surface = [](std::string_view text) { return to_bytes(surface_of(facts(text, "a.cpp"))); };
    const std::string_view text = "#include \"b.h\"\nstruct A : B { T<C> f(D d); };\nint g() { return 1; }\n";
    for (const auto& [other, is_equal] : std::vector<std::pair<std::string_view, bool>>{
             {"#include \"b.h\"\n\nstruct A : B { T<C> f(D d); };\nint g() { return 2; }\n", true},
             {"#include \"b.h\"\nstruct A : B { T<C> f(D d); };\nint g() { C c; return X(c, a.f()); }\n", true},
             {"#include \"b.h\"\n/** An A. */\nstruct A : B { T<C> f(D e); };\nint g() { return 1; }\n", true},
             {"#include \"b.h\"\nstruct A : B { T<C> f(D d); };\nint g() { return 1; }\nint h() { return g(); }\n",
              false},
             {"#include \"b.h\"\nstruct A : B { T<C> h(D d); };\nint g() { return 1; }\n", false},
             {"#include \"b.h\"\nstruct A : B { T<E> f(D d); };\nint g() { return 1; }\n", false},
             {"#include \"b.h\"\nstruct A : C { T<C> f(D d); };\nint g() { return 1; }\n", false},
             {"#include \"c.h\"\nstruct A : B { T<C> f(D d); };\nint g() { return 1; }\n", false},
             {"// B.\n#include \"b.h\"\nstruct A : B { T<C> f(D d); };\nint g() { return 1; }\n", false},
             {"#include \"b.h\"\nstruct A : B { T<C> f(D d); };\nint g() { return (; }\n", false}}) {
        EXPECT_EQ(surface(other) == surface(text), is_equal) << other;
    }
}

TEST(FactsStore, FindsTheSurfaceAlone) {
    const TemporaryFolder folder;
    const SourceFacts one = facts(CPP, "a.h");
    FactsStore(folder / "facts", "1").add(7, "a.h", one);
    FactsStore store(folder / "facts", "1");
    const std::string surface = to_bytes(store.find_surface(7, "a.h").value());
    EXPECT_EQ(surface, to_bytes(surface_of(one)));
    EXPECT_EQ(surface, to_bytes(surface_of(facts_in(surface, "a.h"))));
    EXPECT_FALSE(store.find_surface(8, "a.h"));
}

TEST(FactsStore, FindsWhatAnEarlierOneWasGiven) {
    const TemporaryFolder folder;
    const std::string path = folder / "facts";
    const SourceFacts one = facts(CPP, "a.h");
    FactsStore(path, "1").add(7, "a.h", one);
    {
        FactsStore store(path, "1");
        EXPECT_EQ(to_bytes(store.find(7, "b/c.h").value()), to_bytes(one));
        EXPECT_FALSE(store.find(7, "a.c"));
        EXPECT_FALSE(store.find(8, "a.h"));
        store.add(8, "a.h", one);
    }
    EXPECT_TRUE(FactsStore(path, "1").find(8, "a.h"));
    EXPECT_FALSE(FactsStore(path, "2").find(8, "a.h")) << "another program wrote it";
    EXPECT_FALSE(FactsStore(path, "1").find(8, "a.h")) << "which took the file over";
}

TEST(FactsStore, ForgetsWhatNobodyAsksForAndWhatIsDamaged) {
    const TemporaryFolder folder;
    const std::string path = folder / "facts";
    const SourceFacts one = facts(CPP, "a.h");
    {
        FactsStore store(path, "1");
        for (std::int64_t content = 1; content <= 5; ++content) {
            store.add(content, "a.h", one);
        }
    }
    const auto size = std::filesystem::file_size(path);
    EXPECT_TRUE(FactsStore(path, "1").find(5, "a.h"));
    EXPECT_LT(std::filesystem::file_size(path), size / 2);
    {
        FactsStore store(path, "1");
        EXPECT_TRUE(store.find(5, "a.h"));
        store.add(6, "a.h", one);
    }
    std::string bytes = folder.read("facts");
    bytes.resize(bytes.size() - 1);
    folder.write("facts", bytes);
    {
        FactsStore store(path, "1");
        EXPECT_TRUE(store.find(5, "a.h"));
        EXPECT_FALSE(store.find(6, "a.h"));
        store.add(7, "a.h", one);
    }
    EXPECT_TRUE(FactsStore(path, "1").find(7, "a.h"));
    FactsStore("/nowhere/facts", "1").add(1, "a.h", one);
    EXPECT_FALSE(FactsStore("/nowhere/facts", "1").find(1, "a.h"));
}

}  // namespace
}  // namespace host::worktree
