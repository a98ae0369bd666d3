#include "host/manifests/manifests.h"

#include "fixtures/temporary_folder.h"

#include <gtest/gtest.h>

#include <utility>

namespace host::manifests {
namespace {

using Files = std::vector<std::pair<std::string, std::string>>;
using Strings = std::vector<std::string>;
using Names = std::set<std::string>;

std::vector<resolve::Package> packages(const Files& files) {
    const TemporaryFolder folder;
    Strings paths;
    for (const auto& [path, text] : files) {
        folder.write(path, text);
        paths.push_back(path);
    }
    return packages_of(Checkout(folder / ""), paths);
}

resolve::Package package(const Files& files) {
    std::vector<resolve::Package> all = packages(files);
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? resolve::Package() : all.front();
}

TEST(Manifests, OfNpmLeadToSourcesOfWhatIsBuilt) {
    const resolve::Package found =
        package({{"p/package.json", R"({"name": "@s/p", "main": "dist/cjs/index.js", "dependencies": {"a": "1"},
                                "peerDependencies": {"b": "*"}, "exports": {
                                  ".": [{"require": "./no.js", "import": {"types": "./dist/types/index.d.ts"}}],
                                  "./sub": {"default": "./dist/esm/sub/index.js", "node": "./src/node.ts"},
                                  "./gone": "./dist/gone.js", "./*": "./lib/parts/*.js"},
                                "imports": {"#x": "./src/x.js"}})"},
                 {"p/src/index.ts", ""},
                 {"p/src/sub/index.tsx", ""},
                 {"p/src/node.ts", ""},
                 {"p/src/x.ts", ""},
                 {"p/src/parts/one.ts", ""}});
    EXPECT_EQ(found.folder, "p");
    EXPECT_EQ(found.name, "@s/p");
    EXPECT_EQ(found.entry, "src/index.ts");
    EXPECT_EQ(found.exports, (std::map<std::string, std::string>{
                                 {".", "src/index.ts"}, {"./sub", "src/node.ts"}, {"./*", "src/parts/*.js"}}));
    EXPECT_EQ(found.aliases.at("#x"), Strings{"src/x.ts"});
    EXPECT_EQ(found.dependencies, (Names{"a", "b"}));
    EXPECT_EQ(package({{"package.json", R"({"main": "lib/main"})"}, {"lib/main.js", ""}}).entry, "lib/main.js");
    EXPECT_EQ(package({{"package.json", R"({"exports": "./main.js"})"}, {"main.js", ""}}).exports.at("."), "main.js");
}

TEST(Manifests, OfNpmAreVisibleInTheirWorkspaceAlone) {
    for (const auto& [file, text] : Files{{"w/package.json", R"({"workspaces": ["packages/*"]})"},
                                          {"w/package.json", R"({"workspaces": {"packages": ["packages/**"]}})"},
                                          {"w/lerna.json", R"({"packages": ["packages/a"]})"},
                                          {"w/pnpm-workspace.yaml", "a: b\npackages:\n  # all\n  - 'packages/*'\n"},
                                          {"w/package.json", R"({"dependencies": {"a": "file:packages/a"}})"}}) {
        const bool is_linked = text.find("file:") != std::string::npos;
        const auto found = packages({{file, text},
                                     {"w/tsconfig.json", ""},
                                     {"w/packages/a/package.json", "{}"},
                                     {"w/test/package.json", "{}"}});
        ASSERT_EQ(found.size(), 3U) << text;
        EXPECT_EQ(found[1].visible_below, is_linked ? "" : "w") << text;
        EXPECT_EQ(found[2].visible_below, "w/test") << text;
    }
}

TEST(Manifests, OfTypeScriptInheritPathsFromThoseThatTheyExtend) {
    const auto found =
        packages({{"base.json",
                   "{ // why\n \"compilerOptions\": {\"paths\": {\"@/*\": [\"./a/src/*\", \"b//c\",], }, } /* \" */}"},
                  {"a/tsconfig.json",
                   R"({"extends": ["@out/side", "../base"], "references": [{"path": "./tsconfig.app.json"}]})"},
                  {"a/tsconfig.app.json", R"({"compilerOptions": {"baseUrl": "./src", "paths": {"~": ["../one"]}}})"}});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].aliases, (std::map<std::string, Strings>{{"@/*", {"src/*", "../b/c"}}, {"~", {"one"}}}));
    EXPECT_EQ(found[0].roots, Strings{"src"});
}

TEST(Manifests, OfPythonStateNamesRootsAndRequirements) {
    const resolve::Package modern = package({{"pyproject.toml", R"([project]
name = "My_App"
dependencies = ["Requests[socks]>=2; python_version > '3'"]
optional-dependencies.dev = ["pytest"]
[dependency-groups]
lint = ["ruff==1", {include-group = "dev"}]
[tool.setuptools.packages.find]
where = ["lib"])"},
                                             {"src/my_app/__init__.py", ""}});
    EXPECT_EQ(modern.name, "my-app");
    EXPECT_EQ(modern.dependencies, (Names{"pytest", "requests", "ruff"}));
    EXPECT_EQ(modern.roots, (Strings{"lib", "src"}));
    const resolve::Package old =
        package({{"setup.cfg", "[metadata]\nname = a.b\n[options]\npackage_dir =\n    = python\n"
                               "install_requires =\n    # x\n    six >= 1\n"}});
    EXPECT_EQ(old.name, "a-b");
    EXPECT_EQ(old.dependencies, Names{"six"});
    EXPECT_EQ(old.roots, Strings{"python"});
}

TEST(Manifests, OfGoRustAndJavaStateTheirNames) {
    const resolve::Package go = package(
        {{"go.mod", "module example.org/m // here\n\ngo 1.21\nrequire a.org/x v1\nrequire (\n\tb.org/y v2\n)\n"}});
    EXPECT_EQ(go.name, "example.org/m");
    EXPECT_EQ(go.dependencies, (Names{"a.org/x", "b.org/y"}));
    const resolve::Package rust = package({{"Cargo.toml", R"([package]
name = "my-crate"
[[bin]]
path = "cli/main.rs"
[dependencies]
other = { path = "../o", package = "real-name" }
[target.'cfg(unix)'.dependencies]
libc = "1")"},
                                           {"src/lib.rs", ""}});
    EXPECT_EQ(rust.name, "my_crate");
    EXPECT_EQ(rust.entry, "src/lib.rs");
    EXPECT_EQ(rust.roots, Strings{"cli/main.rs"});
    EXPECT_EQ(rust.dependencies, (Names{"libc", "other"}));
    EXPECT_EQ(rust.aliases.at("other"), Strings{"real_name"});
    EXPECT_EQ(package({{"pom.xml", "<project><parent><groupId>g</groupId><artifactId>no</artifactId></parent>"
                                   "<artifactId>a</artifactId></project>"}})
                  .name,
              "g:a");
}

TEST(Manifests, ThatCannotBeReadStateNothing) {
    const std::string deep(200'000, '[');
    for (const std::string file :
         {"package.json", "tsconfig.json", "pyproject.toml", "Cargo.toml", "go.mod", "pom.xml", "setup.cfg"}) {
        for (const std::string& text :
             {std::string(), std::string("\"\\"), std::string("/*"), std::string("<parent>"), deep,
              std::string(R"({"name": 1, "exports": [[null]], "main": {}, "compilerOptions": {"paths": {"a": {}}}})"),
              std::string(R"({"main": "../../etc/passwd", "extends": "../..", "exports": "/etc/passwd"})")}) {
            const resolve::Package found = package({{file, text}});
            EXPECT_EQ(found.name + found.entry, "") << file << text.substr(0, 20);
            EXPECT_TRUE(found.exports.empty()) << file << text.substr(0, 20);
        }
    }
}

}  // namespace
}  // namespace host::manifests
