#include "tests/host/resolve/resolved.h"

#include <gtest/gtest.h>

namespace host::resolve {
namespace {

TEST(Resolver, AMemberIsFoundByTheTypeThatTheSourceStates) {
    EXPECT_EQ(resolved({{"a/Store.java", "package a;\n"
                                         "public class Store {\n"
                                         "    Item first;\n"
                                         "    public Item find(int key) { return first; }\n"
                                         "}\n"
                                         "class Item { Item next; }\n"},
                        {"b/Use.java", "package b;\n"
                                       "import a.Store;\n"
                                       "class Use {\n"
                                       "    Object find(Store store, java.util.List other) {\n"
                                       "        other.find(1);\n"
                                       "        return store.find(1).next.next;\n"
                                       "    }\n"
                                       "}\n"}}),
              "a/Store.java: local Store.first of a/Store.java, 1 from line 4\n"
              "a/Store.java: local Item of a/Store.java, 3 from line 3\n"
              "b/Use.java: import Store of a/Store.java, 2 from line 2\n"
              "b/Use.java: import Store.find() of a/Store.java, 1 from line 6\n"
              "b/Use.java: import Item.next of a/Store.java, 2 from line 6\n");
}

// `var` takes the type of what refers to it: neither is known before the other.
TEST(Resolver, WhatRefersToItselfMeansNothingAndEndsSo) {
    EXPECT_EQ(resolved({{"A.java", "class A {\n"
                                   "    A next;\n"
                                   "    A turn(A a) {\n"
                                   "        var b = a.turn(a);\n"
                                   "        for (var c = b; ; ) { c = c.next; var d = d.next; }\n"
                                   "    }\n"
                                   "}\n"
                                   "class B extends C { int x; { y(); } }\n"
                                   "class C extends B { }\n"}}),
              "A.java: local A of A.java, 3 from line 2\n"
              "A.java: local A.next of A.java, 1 from line 5\n"
              "A.java: local A.turn() of A.java, 1 from line 4\n"
              "A.java: local B of A.java, 1 from line 9\n"
              "A.java: local C of A.java, 1 from line 8\n");
}

TEST(Resolver, OverloadsThatNothingTellsApartAreAmbiguous) {
    EXPECT_EQ(resolved({{"A.java", "class A {\n"
                                   "    static void f(int a) { f(1, 2); }\n"
                                   "    static void f(int a, int b) { f(unknown); }\n"
                                   "    static void f(String a) { }\n"
                                   "}\n"}}),
              "A.java: ambiguous A.f() of A.java, 1 from line 3\n"
              "A.java: local A.f() of A.java, 1 from line 2\n"
              "A.java: ambiguous A.f() of A.java, 1 from line 3\n");
}

}  // namespace
}  // namespace host::resolve
