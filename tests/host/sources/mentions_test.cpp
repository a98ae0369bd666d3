// Which names of a source mean what it imports.

#include "host/sources/outline.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>

namespace host::sources {
namespace {

// The links of a source of Python as "name<original<module mentions", with the names behind each mention and "!" where
// others may have them.
std::string links(const std::string& text) {
    static const std::atomic<bool> never = false;
    const Outline outline = outline_of(text, *understood_language("", "a.py"), never).value();
    std::string list;
    for (const Link& each : outline.links) {
        list += (list.empty() ? "" : "; ") + each.name + "<" + each.original + "<" + each.module;
        for (const auto& [members, count] : each.mentions) {
            list += " " + members + std::to_string(count);
        }
        list += each.is_exported ? "!" : "";
    }
    return list;
}

TEST(Mentions, ImportsOfPythonAreLinks) {
    EXPECT_EQ(links("import a.b\nimport c.d as e\nfrom .f import g, h as i\nfrom . import j\nfrom k import *\n"),
              "a<<a!; e<<c.d!; g<g<.f!; i<h<.f!; j<j<.!; <<k!");
    EXPECT_EQ(links("if a:\n  from b import c\ndef f():\n  from d import e\n  e"), "c<c<b!; e<e<d 1");
}

TEST(Mentions, ANameMeansWhatTheInnermostScopeAroundItBinds) {
    const auto mentions = [](const std::string& text) { return links("from m import f as _\n" + text); };
    EXPECT_EQ(mentions("_(_, a=_)\nx = [_ for y in _]\n@_\ndef g(a: _ = _) -> _: return _"), "_<f<m 10!");
    EXPECT_EQ(mentions("x._\ng(_=1)\nimport _\n"), "_<f<m!; _<<_!");
    EXPECT_EQ(mentions("_.a.b_1()\n_ .a\n_.a.b_1"), "_<f<m 1 a.b_12!");
    EXPECT_EQ(mentions("def g(_): _\ndef h(a, _=1, *b): _\nlambda _: _\n[_ for _ in x]\n"), "_<f<m!");
    EXPECT_EQ(mentions("def g():\n  _\n  a, _ = b\ndef h():\n  for _ in x: _\n  (_ := 1)\n"), "_<f<m!");
    EXPECT_EQ(mentions("def g():\n  with a as _: pass\n  def h(): return _\n"), "_<f<m!");
    EXPECT_EQ(mentions("class A:\n  _ = 1\n  b = _\n  def m(self): return _\n"), "_<f<m 1!");
    EXPECT_EQ(mentions("def _(): pass\n_"), "_<f<m!") << "nobody knows which";
    EXPECT_EQ(mentions("from m import f as _\n_"), "_<f<m 1!; _<f<m!") << "the same twice";
}

}  // namespace
}  // namespace host::sources
