// What names of Go mean: packages, build constraints, embedding.
#include "tests/host/resolve/resolved.h"

#include "host/resolve/go_build.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

std::vector<Package> module_named(const std::string& name) {
    Package package;
    package.name = name;
    package.language = "go";
    return {package};
}

TEST(Go, FilesOfAFolderArePackagesByTheirClause) {
    EXPECT_EQ(resolved({{"a.go", "package p\n\nfunc f() { g() }\n"},
                        {"b.go", "package p\n\nfunc g() { println() }\n"},
                        {"b_test.go", "package p_test\n\nimport \"m\"\n\nfunc f() { p.F(); g() }\nfunc g() { f() }\n"},
                        {"c.go", "package p\n\nfunc F() {}\n"}},
                       module_named("m")),
              "a.go: import g of b.go, 1 from line 3\n"
              "b_test.go: local f of b_test.go, 1 from line 6\n"
              "b_test.go: local g of b_test.go, 1 from line 5\n"
              "b_test.go: import F of c.go, 1 from line 5\n");
}

TEST(Go, WhatABuildLeavesOutComesBehindWhatItTakes) {
    EXPECT_EQ(resolved({{"a.go", "package p\n\nfunc f() { open().close() }\n"},
                        {"any.go", "//go:build !go1.18\n\npackage p\n\ntype any = interface{}\n\nvar x any\n"},
                        {"gen.go", "// +build ignore\n\npackage main\n\nimport \"m\"\n\nfunc f() { p.F() }\n"},
                        {"open.go", "package p\n\ntype file struct{}\n\nfunc F(x any) *file { return open() }\n"},
                        {"open_unix.go", "//go:build unix\n\npackage p\n\nfunc open() *file\nfunc (f *file) close()\n"},
                        {"open_windows.go", "package p\n\nfunc open() *file\nfunc (f *file) close() { open() }\n"}},
                       module_named("m")),
              "a.go: import open of open_unix.go, 1 from line 3\n"
              "a.go: import close of open_unix.go, 1 from line 3\n"
              "a.go: ambiguous open of open_windows.go, 1 from line 3\n"
              "a.go: ambiguous close of open_windows.go, 1 from line 3\n"
              "any.go: local any of any.go, 1 from line 7\n"
              "gen.go: import F of open.go, 1 from line 7\n"
              "open.go: ambiguous any of any.go, 1 from line 5\n"
              "open.go: local file of open.go, 1 from line 5\n"
              "open.go: import open of open_unix.go, 1 from line 5\n"
              "open.go: ambiguous open of open_windows.go, 1 from line 5\n"
              "open_unix.go: import file of open.go, 2 from line 5\n"
              "open_windows.go: import file of open.go, 2 from line 3\n"
              "open_windows.go: local open of open_windows.go, 1 from line 4\n");
}

TEST(Go, OfEmbeddedTypesTheNearestHasTheMember) {
    EXPECT_EQ(resolved({{"a.go", "package p\n\n"
                                 "type A struct{ x int }\n"
                                 "type B struct{ *A }\n"
                                 "type C struct{ x int }\n"
                                 "type D struct {\n\tB\n\tC\n}\n"
                                 "func (d *D) f() int { return d.x + d.B.x }\n"}},
                       module_named("m")),
              "a.go: local A of a.go, 1 from line 4\n"
              "a.go: local A.x of a.go, 1 from line 10\n"
              "a.go: local B of a.go, 1 from line 7\n"
              "a.go: local C of a.go, 1 from line 8\n"
              "a.go: local C.x of a.go, 1 from line 10\n"
              "a.go: local D of a.go, 1 from line 10\n"
              "a.go: local D.B of a.go, 1 from line 10\n");
}

// Each text is the body of a function in a.go, beside b.go with a function g, a type T with a field x, and package q.
TEST(Go, WhatBindsANameInAFunctionHidesThoseOfThePackage) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"g := 1; g++", ""},
        {"var g, h = 1, 2; g + h", ""},
        {"const g = 1; println(g)", ""},
        {"for g := range h { g }", ""},
        {"for _, g := range h { g() }", ""},
        {"if g := 2; g > 1 {}", ""},
        {"switch g := y.(type) { case int: g }", ""},
        {"select { case g := <-c: g }", ""},
        {"func(g int) { g() }(1)", ""},
        {"goto g; g: return", ""},
        {"{ g := 1; _ = g }; g()", "b.go:g"},
        {"g := g()", "b.go:g"},
        {"if g := 2; g > 1 {}; g()", "b.go:g"},
        {"switch g := y.(type) {}; g()", "b.go:g"},
        {"y.g(); y.T()", ""},
        {"z{g: g}", "b.go:g"},
        {"T{x: g}", "b.go:g b.go:T b.go:T.x"},
        {"map[string]T{\"x\": {x: 1}}", "b.go:T b.go:T.x"},
        {"type T struct{ y int }; var t T; t.x", "a.go:T"},
        {"q.F()", "q/q.go:F q/q.go"},
        {"q := T{}; q.F(); q.x", "b.go:T b.go:T.x"},
        {"func(q T) { q.F() }(y)", "b.go:T"},
        {"var t T; t.y", "b.go:T"},
    };
    for (const auto& [body, references] : cases) {
        EXPECT_EQ(targets_from("a.go",
                               {{"a.go", "package p\nimport \"m/q\"\nfunc f() { " + body + " }\n"},
                                {"b.go", "package p\nfunc g() {}\ntype T struct{ x int }\n"},
                                {"c.go", "package p\nfunc k() { type T struct{ y int } }\n"},
                                {"q/q.go", "package q\nfunc F() {}\n"}},
                               module_named("m")),
                  references)
            << body;
    }
}

TEST(Go, AValueHasTheMembersOfTheTypeThatItsOriginStates) {
    const std::vector<std::pair<std::string, bool>> cases{
        {"t.next.x", true},
        {"t.all[0].x", true},
        {"t.by[y].x", true},
        {"t.f().x", true},
        {"(<-t.c).x", true},
        {"v, err := t.m(); v.x", true},
        {"v, err := t.m(); err.x", false},
        {"for _, e := range t.all { e.x }", true},
        {"for e := range t.all { e.x }", false},
        {"for e := range t.by { e.x }", false},
        {"for e := range t.c { e.x }", true},
        {"t.all.x", false},
        {"t.f.x", false},
        {"new(T).x", true},
        {"(&T{}).x", true},
        {"w := t.m; w.x", false},
        {"h := func() *T { return nil }; h().x", true},
        {"y.(T).x", true},
        {"v, ok := y.(*T); ok.x", false},
        {"any(t).x", false},
        {"{ t := ext.T(); t.x }", false},
    };
    const std::string type =
        "package p\ntype T struct{ x int; next *T; all []*T; by map[string]T; f func() T; c chan T }\n"
        "func (t *T) m() (*T, error) { return nil, nil }\n";
    for (const auto& [body, is_found] : cases) {
        const std::string found =
            targets_from("a.go", {{"a.go", "package p\nfunc f(t T) { " + body + " }\n"}, {"t.go", type}});
        EXPECT_EQ(found.find("t.go:T.x") != std::string::npos, is_found) << body << ": " << found;
        EXPECT_EQ(found.find('?'), std::string::npos) << body << ": " << found;
    }
}

TEST(Go, ImportsLeadToTheFolderThatTheirPathNames) {
    const std::map<std::string, std::string> sources{
        {"d/d.go", "package d\nfunc F() {}\nfunc D() {}\n"},
        {"e/e.go", "package e\nfunc F() {}\n"},
        {"e/main.go", "//go:build ignore\n\npackage main\nfunc F() {}\n"},
        {"go-y/y.go", "package y\nfunc F() {}\n"},
        {"other/x.org/v/v.go", "package v\nfunc F() {}\n"},
        {"sub/vendor/x.org/v/v.go", "package v\nfunc F() {}\n"},
        {"vendor/x.org/v/v.go", "package v\nfunc F() {}\n"},
    };
    const std::vector<std::tuple<std::string, std::string, std::string>> cases{
        {"a.go", "import \"x.org/m/d\"\nfunc f() { d.F() }", ""},
        {"a.go", "import \"d\"\nfunc f() { d.F() }", ""},
        {"a.go", "import \"./d\"\nfunc f() { e.F() }", ""},
        {"a.go", "import _ \"m/d\"\nfunc f() { d.F() }", ""},
        {"a.go", "import \"m/gone\"\nfunc f() { d.F() }", ""},
        {"a.go", "import x \"m/d\"\nfunc f() { x.F(); d.F() }", "d/d.go:F d/d.go"},
        {"a.go", "import \"m/e\"\nfunc f() { e.F() }", "e/e.go:F e/e.go"},
        {"a.go", "import \"m/go-y\"\nfunc f() { y.F() }", "go-y/y.go:F go-y/y.go"},
        {"a.go", "import . \"m/d\"\nimport . \"m/e\"\nfunc f() { F(); D() }", "?d/d.go:F d/d.go:D ?e/e.go:F"},
        {"a.go", "import . \"m/d\"\nfunc F() { F() }", "a.go:F"},
        {"a.go", "import \"x.org/v\"\nfunc f() { v.F() }", "vendor/x.org/v/v.go:F vendor/x.org/v/v.go"},
        {"sub/a.go", "import \"x.org/v\"\nfunc f() { v.F() }", "sub/vendor/x.org/v/v.go:F sub/vendor/x.org/v/v.go"},
    };
    for (const auto& [path, text, references] : cases) {
        std::map<std::string, std::string> changed = sources;
        changed[path] = "package a\n" + text + "\n";
        EXPECT_EQ(targets_from(path, changed, module_named("m")), references) << text;
    }
}

TEST(Go, ABuildTakesFilesByTheirNamesAndConstraints) {
    const std::vector<std::tuple<std::string, std::string, bool>> cases{
        {"a/windows.go", "", true},
        {"a/x_windows.go", "", false},
        {"a/x_linux_test.go", "", true},
        {"a/x_linux_arm64.go", "", false},
        {"a/x_js_test.go", "", false},
        {"a/x.go", "linux", true},
        {"a/x.go", "!linux", false},
        {"a/x.go", "ignore", false},
        {"a/x.go", "go1.18 && !(windows || (darwin && cgo))", true},
        {"a/x.go", "darwin || linux && amd64", true},
        {"a/x.go", "!(unix)", false},
        {"a/x.go", std::string(100'000, '('), false},
    };
    for (const auto& [path, constraint, built] : cases) {
        EXPECT_EQ(is_built(path, constraint), built) << path << " " << constraint.substr(0, 100);
    }
}

}  // namespace
}  // namespace host::resolve
