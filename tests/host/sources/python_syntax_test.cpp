// What Python files state about names.
#include "tests/host/sources/outlined.h"
#include "tests/host/syntax/syntax_text.h"

#include "host/sources/outline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace host::sources {
namespace {

Outline python_names(const std::string& text) {
    return names_in("a.py", text);
}

// The mentions in the body of a function, without that of the parameter's type.
std::string python_mentions(const std::string& statements) {
    std::string text = "def f(s: Store, u):\n " + statements;
    for (std::size_t at = text.find('\n', text.find('\n') + 1); at != std::string::npos; at = text.find('\n', at + 1)) {
        text.insert(at + 1, " ");
    }
    const std::string mentions = mentions_of(*python_names(text).syntax);
    return mentions.substr(mentions.find('\n') + 1);
}

void expect_mentions(const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [statements, mentions] : cases) {
        EXPECT_EQ(python_mentions(statements), mentions) << statements;
    }
}

TEST(PythonSyntax, NamesOfLocalsAreNoMentionsAndTheirTypesAreKnown) {
    const std::string s = "local(of(Store'))";
    expect_mentions({
        {"s.x = u", "2 value " + s + ".x\n"},
        {"t.x\nt = T()", "2 value local(call(T)).x\n3 call T\n"},
        {"t: T = u\nt = u\nt.x", "2 type T'\n4 value local(of(T')).x\n"},
        {"a, (b, *c) = s.p\nb.x", "2 value " + s + ".p\n3 value local(" + s + ".p[1][0]).x\n"},
        {"for t in s: t.x", "2 value local(iterated(" + s + ")).x\n"},
        {"[t.x for t in s if t.y]", "2 value local(iterated(" + s + ")).y\n2 value local(iterated(" + s + ")).x\n"},
        {"with s.open() as t: t.x", "2 call " + s + ".open\n2 value local(call(call(" + s + ".open).__enter__)).x\n"},
        {"try: pass\nexcept (A, B) as e: e.x",
         "3 value A\n3 value B\n3 value local(of(iterated(of(tuple(type_of(A) type_of(B)))))).x\n"},
        {"match u:\n case T(x=v) as t if v.y: t.z\n case w: w.z\n case a.b: pass",
         "3 value T\n3 key of(T).x\n3 value local(of(T).x).y\n3 value local(of(T)).z\n4 value local(?).z\n"
         "5 value a\n5 value a.b\n"},
        {"(lambda t: t.x)(s)", "2 value local(?).x\n"},
        {"if (t := T()): t.x", "2 call T\n2 value local(call(T)).x\n"},
        {"def g(): return T\nv = g()\nv().x", "2 value T\n3 call @g\n4 value call(local(call(local(@g)))).x\n"},
        {"class C(D): n = T()\nC().n", "2 type D'\n2 call T\n3 call @C\n3 value call(local(@C)).n\n"},
        {"global u, t\nu = t", "2 value u\n2 value t x2\n"},
        {"from m import t\nt.x", "2 import import(m )\n2 import import(m t)\n3 value import(m t)\n"
                                 "3 value local(import(m t)).x\n"},
    });
}

// The declarations with their types, and the bases of classes.
std::string python_declarations(const std::string& text) {
    const syntax::Syntax syntax = *python_names(text).syntax;
    std::string all;
    for (const syntax::Declaration& declaration : syntax.declarations) {
        std::string bases;
        for (const syntax::ExpressionId base : syntax.list(declaration.bases)) {
            bases += " < " + text_of(syntax, base);
        }
        all += std::string(syntax.name(declaration.name)) + " " + text_of(syntax, declaration.type) + bases + "\n";
    }
    return all;
}

std::string type_of_variable(const std::string& annotation) {
    const std::string declared =
        python_declarations("from typing import *\nfrom typing import Optional as Opt, List, Type, "
                            "Union, Callable, Tuple, Literal, Annotated, Coroutine\n"
                            "import typing as t\nx: " +
                            annotation);
    return declared.substr(2, declared.size() - 3);
}

TEST(PythonSyntax, AnnotationsStateTypes) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"A", "of(A')"},
        {"'a.A'", "of(a.A')"},
        {"A | None", "of(one_of(A' foreign))"},
        {"Opt['A']", "of(A')"},
        {"t.Optional[A]", "of(A')"},
        {"Union[A, 'B']", "of(one_of(A' B'))"},
        {"List[A]", "of(list(A'))"},
        {"dict[str, List[A]]", "of(map(str' list(A')))"},
        {"Tuple[A, B]", "of(tuple(A' B'))"},
        {"Tuple[A, ...]", "of(list(A'))"},
        {"Type[A]", "of(type_of(A'))"},
        {"Callable[[A], B]", "of(function(B'))"},
        {"Coroutine[A, B, C]", "of(awaitable(C'))"},
        {"Literal['A']", "of(foreign)"},
        {"Annotated[A, 'B']", "of(A')"},
        {"A[B]", "of(A'<B'>)"},
        {"Sequence[A]", "of(Sequence'<A'>)"},  // a star hides whose it is
    };
    for (const auto& [annotation, type] : cases) {
        EXPECT_EQ(type_of_variable(annotation), type) << annotation;
    }
}

TEST(PythonSyntax, FunctionsGiveWhatTheyStateOrReturn) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"def f() -> A: return b", "f A'\n"},
        {"def f(a: A):\n if a: return a\n return B()", "f type_of(one_of(local(of(A')) call(B)))\n"},
        {"def f(a): return a.b if a else A", "f type_of(one_of(local(?).b A))\n"},
        {"async def f() -> A: pass", "f awaitable(A')\n"},
        {"def f():\n yield A()\n yield from b", "f list(type_of(one_of(call(A) iterated(b))))\n"},
        {"@overload\ndef f(a: int) -> A: ...\ndef f(a): ...", "f A'\n"},
        {"@contextmanager\ndef f() -> A: ...", "f @\n ?\n__enter__ type_of(iterated(of(A')))\n"},
    };
    for (const auto& [text, declared] : cases) {
        EXPECT_EQ(python_declarations(text), declared) << text;
    }
}

TEST(PythonSyntax, WhatIsFirstAssignedDeclares) {
    EXPECT_EQ(python_declarations("x = None\nx = A()\ndef f():\n global x\n x = B()\n"),
              "x one_of(foreign call(A) call(B))\nf foreign\n");
    const std::string text = "class C(B, metaclass=M):\n"
                             "    a: A = None\n"
                             "    def f(self, b: B):\n"
                             "        self.a = self.b = b\n"
                             "        self.b = C()\n"
                             "        self.late = 1\n"
                             "        b.c = 1\n"
                             "    late = 2\n"
                             "    @property\n"
                             "    def p(self) -> P: pass\n"
                             "    @p.setter\n"
                             "    def p(self, value): pass\n";
    EXPECT_EQ(python_declarations(text),
              "C ? < B'\na of(A')\nf foreign\nb one_of(local(of(B')) call(C))\nlate foreign\n"
              "p of(P')\n");
    EXPECT_EQ(mentions_of(*python_names(text).syntax),
              "1 type B' x2\n1 value M\n2 type A'\n4 value self.a\n5 call C\n5 value self.b\n6 value self.late\n"
              "7 value local(of(B')).c\n9 value property\n10 type P'\n11 value @p\n11 value @p.setter\n");
}

TEST(PythonSyntax, AClassSeesWhatItHasBoundSoFar) {
    EXPECT_EQ(mentions_of(*python_names("class C:\n a = a\n b = a\n c = [a for x in a]\n def f(self): a\n").syntax),
              "2 value a\n3 value @a x2\n4 value a\n5 value a\n");
}

TEST(PythonSyntax, KeywordsNameFieldsWhereTheClassHasNoConstructor) {
    EXPECT_EQ(mentions_of(*python_names("C(a=1)").syntax), "1 call C\n1 key C.().a\n");
    EXPECT_EQ(python_declarations("@dataclass\nclass C: a: int"), "C ?\n() @C\na of(int')\n");
    EXPECT_EQ(python_declarations("class C(NamedTuple):\n def __init__(self): pass"),
              "C ? < NamedTuple'\n() ?\n__init__ foreign\n");
}

TEST(PythonSyntax, ImportsBindNamesOrModules) {
    EXPECT_EQ(
        mentions_of(*python_names("import a.b, c as d\nfrom .e import f as g, h\nfrom . import i\nfrom j import *\n"
                                  "a.b.x\nd.x\n")
                         .syntax),
        "1 import import(a )\n1 import import(a ).b\n1 import import(c )\n2 import import(.e )\n"
        "2 import import(.e f)\n2 import import(.e h)\n3 import import(. i)\n4 import import(j )\n"
        "5 value a\n5 value a.b\n5 value a.b.x\n6 value d\n6 value d.x\n");
}

// The root of this tree is an error.
TEST(PythonSyntax, WhatIsDamagedIsReadAsFarAsItGoes) {
    const std::string mentions = mentions_of(*python_names("from m import a\ne,e(r,{:_(S*i(m").syntax);
    EXPECT_TRUE(mentions.starts_with("1 import import(m )\n1 import import(m a)\n")) << mentions;
}

TEST(PythonSyntax, WhatTheOutlineHasOutsideOfFunctionsIsDeclaredWhereItStands) {
    const Outline outline = python_names("a = 1\nb, c = 2, 3\ntype d = int\nclass e:\n f: int\n class g: h = 1\n"
                                         " def i(self): self.j = 1\nif a:\n def k(): pass\n");
    for (const SourceDeclaration& declaration : outline.declarations) {
        const auto found =
            std::ranges::find(outline.syntax->declarations, declaration.offset, &syntax::Declaration::offset);
        ASSERT_NE(found, outline.syntax->declarations.end()) << declaration.name;
        EXPECT_EQ(outline.syntax->name(found->name), declaration.name);
    }
    EXPECT_EQ(outline.declarations.size(), 11);
}

}  // namespace
}  // namespace host::sources
