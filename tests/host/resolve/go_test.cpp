// What names of Go mean: packages, build constraints, embedding.
#include "tests/host/resolve/resolved.h"

#include "host/resolve/go_build.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
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

TEST(Go, WhatABuildLeavesOutIsForOtherSuchFiles) {
    EXPECT_EQ(resolved({{"a.go", "package p\n\nfunc f() { open().close() }\n"},
                        {"any.go", "//go:build !go1.18\n\npackage p\n\ntype any = interface{}\n\nvar x any\n"},
                        {"gen.go", "// +build ignore\n\npackage main\n\nimport \"m\"\n\nfunc f() { p.F() }\n"},
                        {"open.go", "package p\n\ntype file struct{}\n\nfunc F(x any) *file { return open() }\n"},
                        {"open_unix.go", "//go:build unix\n\npackage p\n\nfunc open() *file\nfunc (f *file) close()\n"},
                        {"open_windows.go", "package p\n\nfunc open() *file\nfunc (f *file) close() { open() }\n"}},
                       module_named("m")),
              "a.go: import open of open_unix.go, 1 from line 3\n"
              "a.go: import close of open_unix.go, 1 from line 3\n"
              "any.go: local any of any.go, 1 from line 7\n"
              "gen.go: import F of open.go, 1 from line 7\n"
              "open.go: local file of open.go, 1 from line 5\n"
              "open.go: import open of open_unix.go, 1 from line 5\n"
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
