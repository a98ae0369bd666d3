// What names of Python mean: modules, attributes, special methods.
#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace host::resolve
