// What names of Python mean: modules, attributes, special methods.
#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace host::resolve {
namespace {

TEST(Python, NamesAreFollowedThroughModulesAndPackages) {
    EXPECT_EQ(resolved({{"p/__init__.py", "from .a import A as B\nfrom .b import *\n"},
                        {"p/a.py", "class A:\n    x = 1\n"},
                        {"p/b.py", "def f(): pass\n"},
                        {"use.py", "import os\nimport p.a\nfrom p import B, f, g\nB.x\nf()\np.a.A\nos.A\nA\n"}}),
              "p/__init__.py: import A of p/a.py, 1 from line 1\n"
              "p/__init__.py: import p/a.py of p/a.py, 1 from line 1\n"
              "p/__init__.py: import p/b.py of p/b.py, 1 from line 2\n"
              "use.py: import p/__init__.py of p/__init__.py, 3 from line 2\n"
              "use.py: import A of p/a.py, 3 from line 3\n"
              "use.py: import A.x of p/a.py, 1 from line 4\n"
              "use.py: import p/a.py of p/a.py, 2 from line 2\n"
              "use.py: import f of p/b.py, 2 from line 3\n");
}

TEST(Python, AModuleHasOnlyThoseNamesThatItImports) {
    EXPECT_EQ(resolved({{"a.py", "class A: pass\nclass B: pass\n"},
                        {"m.py", "import os\nfrom a import A\n"},
                        {"use.py", "import m\nfrom m import A, B\nm.B\n"}}),
              "m.py: import A of a.py, 1 from line 2\n"
              "m.py: import a.py of a.py, 1 from line 2\n"
              "use.py: import A of a.py, 1 from line 2\n"
              "use.py: import m.py of m.py, 3 from line 1\n");
}

TEST(Python, AnAttributeThatABaseDeclaresIsThat) {
    EXPECT_EQ(resolved({{"a.py", "class A:\n"
                                 "    x: int\n"
                                 "    @property\n"
                                 "    def p(self): return 1\n"
                                 "    def f(self): self.y = 1\n"
                                 "class B(A):\n"
                                 "    def g(self):\n"
                                 "        self.x = self.y = self.p = 1\n"
                                 "        return self.x, self.y, self.p\n"}}),
              "a.py: local A of a.py, 1 from line 6\n"
              "a.py: local A.x of a.py, 1 from line 9\n"
              "a.py: local A.p of a.py, 1 from line 9\n"
              "a.py: local B.y of a.py, 1 from line 9\n");
}

TEST(Python, SpecialMethodsSayWhatOperationsGive) {
    EXPECT_EQ(resolved({{"a.py", "class A:\n"
                                 "    x = 1\n"
                                 "class B:\n"
                                 "    def __call__(self) -> A: ...\n"
                                 "    def __getitem__(self, key): return self()\n"
                                 "    def __iter__(self): yield A()\n"
                                 "    def __enter__(self): return self\n"
                                 "def f(b: B, c: dict[A, B]):\n"
                                 "    b().x, b[0].x\n"
                                 "    for a in b: a.x\n"
                                 "    with b as d: d().x\n"
                                 "    for a in c: a.x, c[a]().x\n"
                                 "    for a, d in c.items(): a.x, d().x\n"}}),
              "a.py: local A of a.py, 3 from line 4\n"
              "a.py: local A.x of a.py, 8 from line 9\n"
              "a.py: local B of a.py, 2 from line 8\n");
}

TEST(Python, WhatIsDefinedTwiceIsAmbiguous) {
    EXPECT_EQ(resolved({{"a.py", "try:\n"
                                 "    from json import f\n"
                                 "except ImportError:\n"
                                 "    def f(): pass\n"
                                 "if f:\n"
                                 "    def g(): pass\n"
                                 "else:\n"
                                 "    g = None\n"
                                 "class g: pass\n"
                                 "class C(g): pass\n"}}),
              "a.py: ambiguous f of a.py, 1 from line 5\n"
              "a.py: ambiguous g of a.py, 1 from line 10\n"
              "a.py: ambiguous g of a.py, 1 from line 10\n");
}

// Each text stands in use.py, beside m.py with a function x, which the first line imports.
TEST(Python, WhatBindsANameInAFunctionHidesWhatIsImported) {
    const std::vector<std::string> hiding{
        "[x for x in y]",
        "{x: x for x, z in y if x}",
        "(lambda x: x)(1)",
        "def f(x): return x",
        "def f(*x, **k): return x",
        "def f():\n    for x in []: x",
        "def f():\n    with open() as x: x",
        "def f():\n    try: pass\n    except E as x: x",
        "def f(v):\n    match v:\n        case [x, *rest]: x",
        "def f(v):\n    match v:\n        case {'k': x, **rest}: x",
        "def f(v):\n    match v:\n        case C(x=x): x",
        "def f():\n    if (x := 1): x",
        "def f():\n    print(x)\n    x = 1",
        "def f():\n    import x\n    x",
        "def f():\n    from other import x\n    x",
        "def f(x):\n    def g(): return x",
        "a.x; f(x=1)",
    };
    const std::vector<std::string> open{
        "[y for y in x]",
        "[x for y in z]",
        "(lambda y=x: y)(1)",
        "def f(y=x): pass",
        "class A:\n    def x(self): return x",
        "class A:\n    y = x",
        "def f():\n    global x\n    return g(y)",
    };
    const std::vector<std::string> local{
        "def f():\n    def x(): pass\n    return x",
        "def f():\n    class x: pass\n    return x",
        "def f():\n    def x(): x",
    };
    const std::vector<std::pair<std::string, const std::vector<std::string>*>> all{
        {"m.py:x m.py", &hiding}, {"m.py:x*2 m.py", &open}, {"m.py:x m.py use.py:x", &local}};
    for (const auto& [references, texts] : all) {
        for (const std::string& text : *texts) {
            EXPECT_EQ(targets_from("use.py", {{"m.py", "def x(): pass"}, {"use.py", "from m import x\n" + text}}),
                      references)
                << text;
        }
    }
}

TEST(Python, ALocalFunctionOrClassIsNoNameOfItsModule) {
    const std::string module = "def x(): pass\n"
                               "class T:\n"
                               "    def a(self): pass\n"
                               "def f():\n"
                               "    def x(): pass\n"
                               "    def hidden(): pass\n"
                               "    class T:\n"
                               "        def b(self): self.b()\n"
                               "    x()\n"
                               "    T().a()\n";
    EXPECT_EQ(targets_from("use.py", {{"m.py", module},
                                      {"use.py", "import m\nfrom m import *\nx()\nhidden()\nm.hidden\n"
                                                 "T().a()\nT().b()\nm.T"}}),
              "m.py:x m.py:T*3 m.py:T.a m.py*4");
    EXPECT_EQ(resolved({{"m.py", module + "def g(t: T): t.a(), t.b(), x()\n"}}),
              "m.py: local x of m.py, 1 from line 11\n"
              "m.py: local T of m.py, 1 from line 11\n"
              "m.py: local T.a of m.py, 1 from line 11\n"
              "m.py: local x of m.py, 1 from line 9\n"
              "m.py: local T of m.py, 1 from line 10\n"
              "m.py: local T.b of m.py, 1 from line 8\n");
}

TEST(Python, AnImportLeadsWhereItsPathDoesAndNowhereElse) {
    const std::map<std::string, std::string> sources{
        {"f.py", "def f(): pass"},
        {"p/__init__.py", "from .a import *\nfrom .b import *\ndef own(): pass\n"},
        {"p/a.py", "from .b import g as h\nfrom p import cyclic\ndef f(): pass\ndef own(): pass\n"},
        {"p/b.py", "def f(): pass\ndef g(): pass\n"},
        {"p/own.py", "def z(): pass"},
        {"p/q/store.py", "class Store: pass"},
        {"p/q/use.py", ""},
    };
    const std::vector<std::pair<std::string, std::string>> cases{
        {"from other.store import Store\nStore()", ""},
        {"import store.other\nstore.Store", "p/q/store.py:Store p/q/store.py*2"},
        {"from .store import Store", "p/q/store.py:Store p/q/store.py"},
        {"from ..b import g", "p/b.py:g p/b.py"},
        {"from ...f import f", "f.py:f f.py"},
        {"from ....f import f\nf()", ""},
        {"from .... import f\nf.f()", ""},
        {"from p import f\nf()", "p/__init__.py ?p/a.py:f*2 ?p/b.py:f*2"},
        {"from p import h, cyclic\nh()", "p/__init__.py p/b.py:g*2"},
        {"from p import own\nown()", "p/__init__.py:own*2 p/__init__.py"},
        {"from p.own import z\nz()", "p/own.py:z*2 p/own.py"},
        {"from p.gone import z\nz()", ""},
        {"try:\n    from fast import f\nexcept ImportError:\n    from f import f\nf()", "?f.py:f f.py:f f.py"},
    };
    for (const auto& [text, references] : cases) {
        std::map<std::string, std::string> changed = sources;
        changed["p/q/use.py"] = text;
        EXPECT_EQ(targets_from("p/q/use.py", changed), references) << text;
    }
}

TEST(Python, AMemberIsThatOfTheOneClassThatTheSourceStates) {
    const std::string classes = "class A:\n"
                                "    def f(self): pass\n"
                                "    @classmethod\n"
                                "    def make(cls): return cls()\n"
                                "class B:\n"
                                "    def f(self): pass\n"
                                "    def g(self): pass\n"
                                "class C(A, B):\n"
                                "    class In:\n"
                                "        def f(self): pass\n";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"def u(x: A): x.f()", "A.f"},
        {"def u(x: 'A'): x.f()", "A.f"},
        {"def u(x: Optional[A]): x.f()", "A.f"},
        {"def u(x: A | B): x.f()", "?A.f ?B.f"},
        {"def u(x: Union[B, A]): x.f()", "?A.f ?B.f"},
        {"def u(x: list[A]): x.f()", ""},
        {"def u(x: list[A]): x[0].f()", "A.f"},
        {"def u(x: dict[A, B]):\n    for k, v in x.items(): v.f()", "B.f"},
        {"def u(x): x.f()", ""},
        {"def u(x: ext.A): x.f()", ""},
        {"def u(A): A().f()", ""},
        {"def u(): x = A(); x = B(); x.f()", "?A.f ?B.f"},
        {"def u(x: C): x.f(); x.g()", "A.f B.g"},
        {"def u(x: C): x.In().f()", "C.In C.In.f"},
        {"def u(): A.make().f()", "A.f A.make"},
        {"class D(C):\n    def f(self): super().f()", "A.f"},
        {"class D(C):\n    def h(self): self.f(); A.f(self)", "A.f*2"},
        {"class D(C):\n    @staticmethod\n    def h(self): self.f()", ""},
    };
    for (const auto& [text, references] : cases) {
        const std::string use = "from typing import Optional, Union\nfrom m import A, B, C\n" + text;
        std::istringstream targets(targets_from("use.py", {{"m.py", classes}, {"use.py", use}}));
        std::string members;
        for (std::string target; targets >> target;) {
            const std::size_t file = target.find("m.py:");
            if (file != std::string::npos && target.find('.', file + 5) != std::string::npos) {
                members += (members.empty() ? "" : " ") + target.erase(file, 5);
            }
        }
        EXPECT_EQ(members, references) << text;
    }
}

TEST(Python, WhatAStubStatesMayBeMeantAsWell) {
    EXPECT_EQ(targets_from("a.py", {{"a.py", "from m import f\nf()\n"},
                                    {"m.py", "def f(): pass\ndef g(): pass\n"},
                                    {"m.pyi", "def f() -> None: ...\ndef g() -> None: ...\n"}}),
              "m.py:f*2 m.py ?m.pyi:f*2");
}

}  // namespace
}  // namespace host::resolve
