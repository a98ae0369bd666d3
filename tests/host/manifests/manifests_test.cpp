#include "host/manifests/manifests.h"

#include "fixtures/temporary_folder.h"
#include "host/manifests/manifest_files.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <filesystem>
#include <tuple>
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

TEST(Manifests, OfNpmAreNotListedByPatternsThatExcludeThemOrLeadElsewhere) {
    for (const auto& [text, listed] :
         std::vector<std::pair<std::string, std::string>>{{R"(["p/*", "!p/a"])", "p/b"},
                                                          {R"(["p/*", "!p/*", "./p/a/"])", "p/a"},
                                                          {R"(["../../p/*", "/p/*", 1, null, "", "p"])", ""},
                                                          {R"(["../p/*"])", ""},
                                                          {R"({"packages": ["p/{a,b}"]})", "p/a p/b"}}) {
        std::string visible;
        for (const resolve::Package& each : packages({{"w/package.json", R"({"workspaces": )" + text + "}"},
                                                      {"w/p/a/package.json", "{}"},
                                                      {"w/p/b/package.json", "{}"},
                                                      {"w/p/c/deep/package.json", "{}"},
                                                      {"package.json", "{}"}})) {
            const bool is_root = each.folder.empty();
            if (is_root ? !each.visible_below.empty() : each.visible_below == "w" && each.folder != "w") {
                visible += (visible.empty() ? "" : " ") + (is_root ? "root" : each.folder.substr(2));
            }
        }
        EXPECT_EQ(visible, listed) << text;
    }
}

// The names of a package, the folders of its modules and what it requires.
std::string stated(const std::string& file, const std::string& text) {
    const resolve::Package found = package({{file, text}});
    std::string all = found.name;
    for (const auto& root : found.roots) {
        all += " in " + root;
    }
    for (const auto& dependency : found.dependencies) {
        all += " needs " + dependency;
    }
    return all;
}

TEST(Manifests, StateWhatTheyStateInEveryForm) {
    for (const auto& [file, text, expected] : std::vector<std::array<std::string, 3>>{
             {"go.mod", "// module no\r\nmodule \"m.org/q\" // yes\r\n", "m.org/q"},
             {"go.mod", "module (\n\tm.org/b\n)\nexclude (\n\tno.org/x v1\n)\nretract v1\nrequire (\n\n\t// none\n)",
              "m.org/b"},
             {"go.mod", "module `m`\nreplace no.org/x => ../x\nrequire a.org/x v1 // indirect", "m needs a.org/x"},
             {"Cargo.toml", "[workspace]\nmembers = ['a']\n[workspace.dependencies]\nno = '1'", ""},
             {"Cargo.toml", "[package]\nname = 'a-b'\n[lib]\nname = 'c'\n[dev-dependencies.d-e]\nversion = '1'",
              "c needs d_e"},
             {"Cargo.toml", "package = 1\nlib = []\nbin = 'x'\ntarget = 2\ndependencies = [1]\n[[test]]\npath = 3", ""},
             {"pyproject.toml", "\xEF\xBB\xBF[project]\r\nname = 'A.b'\r\ndependencies = ['x@https://y', 1]\r\n",
              "a-b needs x"},
             {"pyproject.toml",
              "[tool.poetry]\nname = 'p'\npackages = [{include = 'a', from = 'lib'}, 1]\n[tool.poetry.dependencies]\n"
              "python = '^3'\nD_e = '*'",
              "p in lib needs d-e"},
             {"pyproject.toml", "project = 1\ntool = 2\ndependency-groups = 'x'", ""},
             {"setup.cfg",
              "[metadata]\nname: no\n[options]\npackage_dir = =src\n[options.extras_require]\nx =\n  a>1\n"
              "  b[c]\n; d\n[",
              " in src needs a needs b"},
             {"setup.cfg", "  name = no\n[metadata]\n  name = no\nname = yes\n", "yes"},
             {"package.json", "\xEF\xBB\xBF{\"name\": \"a//b\", \"dependencies\": {\"c/*\": \"1\",},}",
              "a//b needs c/*"},
             {"package.json", R"({"name": {}, "dependencies": ["a"], "exports": 1, "imports": []})", ""},
             {"pom.xml",
              "<project><groupId> g </groupId><artifactId>a</artifactId><dependencies><dependency><artifactId>b"
              "</artifactId></dependency></dependencies></project>",
              "g:a"},
             {"pom.xml",
              "<project><dependencies><groupId>g</groupId><artifactId>a</artifactId></dependencies></project>", ""}}) {
        EXPECT_EQ(stated(file, text), expected) << file << ":\n" << text;
    }
}

TEST(Manifests, OfTypeScriptAreReadInALimitedTimeHoweverTheyExtendOneAnother) {
    const auto repeated = [](const std::string& text) {
        std::string list = text;
        for (int number = 0; number < 400; ++number) {
            list += ", " + text;
        }
        return "[" + list + "]";
    };
    const std::string options = R"("compilerOptions": {"baseUrl": ".", "paths": {"a": ["b"]}}})";
    EXPECT_EQ(package({{"tsconfig.json", R"({"extends": )" + repeated(R"("./tsconfig")") + ", " + options}}).aliases,
              (std::map<std::string, Strings>{{"a", {"b"}}}));
    const resolve::Package found =
        package({{"tsconfig.json", R"({"references": )" + repeated(R"({"path": "./other.json"})") + ", " + options},
                 {"other.json", R"({"extends": )" + repeated(R"("./tsconfig.json")") + "}"}});
    EXPECT_EQ(found.aliases.at("a"), Strings{"b"});
    EXPECT_LT(found.roots.size(), 400U);
}

TEST(Manifests, AreNotReadWhereALinkLeadsOutAPipeWaitsOrTooMuchStands) {
    const TemporaryFolder folder;
    folder.write("outside.json", R"({"name": "outside"})");
    folder.write("checkout/large/package.json", R"({"name": "large"})" + std::string(1'048'576, ' '));
    folder.write("checkout/whole/package.json", R"({"name": "whole"})" + std::string(1'000'000, ' '));
    for (const char* const name : {"link", "pipe", "none", "folder/package.json"}) {
        std::filesystem::create_directories(folder / "checkout" + "/" + name);
    }
    std::filesystem::create_symlink("../../outside.json", folder / "checkout/link/package.json");
    ASSERT_EQ(mkfifo((folder / "checkout/pipe/package.json").c_str(), 0600), 0);
    Strings paths;
    for (const std::string name : {"folder", "large", "link", "none", "pipe", "whole"}) {
        paths.push_back(name + "/package.json");
    }
    std::string names;
    for (const resolve::Package& found : packages_of(Checkout(folder / "checkout"), paths)) {
        names += found.folder + ":" + found.name + " ";
    }
    EXPECT_EQ(names, "folder: large: link: none: pipe: whole:whole ");
}

TEST(Manifests, NameFilesBelowTheCheckoutOnly) {
    using Path = std::optional<std::string>;
    for (const auto& [folder, path, expected] :
         std::vector<std::tuple<std::string, std::string, Path>>{{"a", "../b", "b"},
                                                                 {"a", "..", ""},
                                                                 {"a", "../../a", std::nullopt},
                                                                 {"", "..", std::nullopt},
                                                                 {"a/b", "./c//d/", "a/b/c/d"},
                                                                 {"a", "/b", std::nullopt},
                                                                 {"a", "", "a"},
                                                                 {"", ".", ""},
                                                                 {"a", "b/../../c", "c"},
                                                                 {"a", "...", "a/..."},
                                                                 {"", "..a", "..a"}}) {
        EXPECT_EQ(joined(folder, path), expected) << folder << " and " << path;
    }
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
