// Which names are locals, by the scopes that are open.
#include "tests/host/syntax/syntax_text.h"

#include "host/syntax/syntax_builder.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host::syntax {
namespace {

constexpr std::uint32_t ANY_LINE = 1;

Token value_token(std::string_view name, std::uint32_t line = ANY_LINE) {
    return {.name = name, .line = line};
}

ExpressionId class_named(SyntaxBuilder& builder, std::string_view name) {
    return builder.add({Operation::FOREIGN, 0, 0, builder.name(name)});
}

// A builder in the body of a function `f`, in a scope of locals.
SyntaxBuilder in_function(Visibility visibility) {
    SyntaxBuilder builder(visibility);
    builder.open(builder.declare({.name = builder.name("f"), .kind = Kind::FUNCTION}));
    builder.open_local();
    return builder;
}

TEST(SyntaxBuilder, EqualExpressionsNamesAndListsAreKeptOnce) {
    SyntaxBuilder builder(Visibility::FROM_DECLARATION);
    const ExpressionId a = builder.look_up("a", Space::VALUE);
    EXPECT_EQ(builder.look_up("a", Space::VALUE), a);
    EXPECT_NE(builder.look_up("a", Space::TYPE), a);
    const std::array both{a, builder.instance(a)};
    EXPECT_EQ(builder.list(both), builder.list(both));
    EXPECT_EQ(builder.list({}), 0);
    const Syntax syntax = builder.finish();
    EXPECT_EQ(syntax.names.size(), 2);
    EXPECT_EQ(syntax.name(0), "");
    EXPECT_EQ(syntax.name(1), "a");
    EXPECT_EQ(syntax.expressions.size(), 4);  // with the unknown one
    EXPECT_EQ(syntax.lists, (std::vector<ExpressionId>{0, 2, both[0], both[1]}));
}

TEST(SyntaxBuilder, WhatIsUnknownIsNoAlternative) {
    SyntaxBuilder builder(Visibility::FROM_DECLARATION);
    const ExpressionId a = class_named(builder, "a");
    const ExpressionId b = class_named(builder, "b");
    EXPECT_EQ(builder.one_of({}), UNKNOWN);
    EXPECT_EQ(builder.one_of(std::array{UNKNOWN, UNKNOWN}), UNKNOWN);
    EXPECT_EQ(builder.one_of(std::array{a, UNKNOWN, a}), a);
    EXPECT_EQ(builder.one_of(std::array{a, b, UNKNOWN, a}),
              builder.add(Operation::ONE_OF, builder.list(std::array{a, b})));
    EXPECT_EQ(builder.instance(UNKNOWN), UNKNOWN);
}

TEST(SyntaxBuilder, TokensInOneRoleAreCountedFromTheFirst) {
    SyntaxBuilder builder(Visibility::FROM_DECLARATION);
    const ExpressionId a = builder.use(value_token("a", 3));
    builder.use(value_token("a", 5));
    builder.use({.name = "a", .line = 7, .role = Role::CALL, .arguments = 1});
    builder.use({.name = "a", .line = 8, .role = Role::CALL, .arguments = 2});
    builder.use_member(a, value_token("b", 9));
    builder.look_up("c", Space::VALUE);
    EXPECT_EQ(mentions_of(builder.finish()), "3 value a x2\n7 call a\n8 call a\n9 value a.b\n");
}

TEST(SyntaxBuilder, TokensStandWithTheirMentionsWithoutThoseOfLocals) {
    SyntaxBuilder builder = in_function(Visibility::WHOLE_SCOPE);
    for (const auto& [name, offset] : std::vector<std::pair<std::string_view, std::uint32_t>>{
             {"local", 1}, {"a", 2}, {"b", 3}, {"a", 4}, {"local", 5}, {"b", 6}, {"a", 7}}) {
        builder.use({.name = name, .offset = offset, .line = 10 - offset});
    }
    builder.bind("local", UNKNOWN);
    builder.close();
    const Syntax syntax = builder.finish();
    EXPECT_EQ(syntax.places, (std::vector<TokenPlace>{{2, 8}, {4, 6}, {7, 3}, {3, 7}, {6, 4}}));
    EXPECT_EQ(mentions_of(syntax), "3 value f/a x3\n4 value f/b x2\n") << "the first line, in whatever order they come";
}

TEST(SyntaxBuilder, FromItsDeclarationOnALocalHidesWhatIsAround) {
    SyntaxBuilder builder = in_function(Visibility::FROM_DECLARATION);
    builder.use(value_token("a", 1));
    builder.bind("a", builder.instance(class_named(builder, "A")));
    EXPECT_EQ(builder.use(value_token("a", 2)), builder.instance(class_named(builder, "A")));
    builder.open_local();
    EXPECT_TRUE(builder.is_local("a") && !builder.is_bound("a"));
    builder.bind("a", UNKNOWN);
    builder.bind("b", UNKNOWN);
    EXPECT_EQ(builder.use(value_token("a", 3)), UNKNOWN);
    builder.close();
    EXPECT_NE(builder.use(value_token("a", 4)), UNKNOWN);
    builder.bind("a", builder.instance(class_named(builder, "B")));  // the last holds
    EXPECT_EQ(builder.use(value_token("a", 5)), builder.instance(class_named(builder, "B")));
    builder.use(value_token("b", 6));
    builder.close();
    EXPECT_FALSE(builder.is_local("a"));
    builder.use(value_token("a", 7));
    EXPECT_EQ(mentions_of(builder.finish()), "1 value f/a x2\n6 value f/b\n");
}

TEST(SyntaxBuilder, InItsWholeScopeALocalIsNoMentionAlsoAboveIt) {
    SyntaxBuilder builder = in_function(Visibility::WHOLE_SCOPE);
    builder.use(value_token("a", 1));
    builder.open_local();
    builder.use_member(builder.use(value_token("a", 2)), value_token("m", 2));
    builder.use(value_token("b", 3));
    builder.bind("b", UNKNOWN);
    builder.close();
    builder.use(value_token("b", 4));
    builder.bind("a", class_named(builder, "A"));
    builder.bind("a", class_named(builder, "B"));
    builder.close();
    builder.use(value_token("a", 5));
    EXPECT_EQ(mentions_of(builder.finish()), "2 value local(one_of(foreign foreign)).m\n4 value f/b\n5 value f/a\n");
}

TEST(SyntaxBuilder, AValueOfWhichNothingIsKnownMayBeAny) {
    SyntaxBuilder builder = in_function(Visibility::WHOLE_SCOPE);
    builder.bind("a", class_named(builder, "A"));
    builder.bind("a", UNKNOWN);
    builder.use_member(builder.use(value_token("a")), value_token("m"));
    EXPECT_EQ(mentions_of(builder.finish()), "1 value local(?).m\n");
}

TEST(SyntaxBuilder, ALocalThatStandsForAnImportOrADeclarationIsAMentionOfThat) {
    for (const Visibility visibility : {Visibility::FROM_DECLARATION, Visibility::WHOLE_SCOPE}) {
        SyntaxBuilder builder = in_function(visibility);
        const Import import{.module = builder.name("m"), .original = builder.name("o")};
        builder.bind("a", builder.add(Operation::IMPORT, builder.import(import)));
        builder.bind("b", builder.add(Operation::DECLARATION, 0));
        builder.use(value_token("a", 1));
        builder.use(value_token("b", 2));
        EXPECT_EQ(mentions_of(builder.finish()), "1 value import(m o)\n2 value @f\n");
    }
}

TEST(SyntaxBuilder, AReleasedNameIsLookedUpOutsideOfItsScope) {
    for (const bool is_bound_around : {false, true}) {
        SyntaxBuilder builder = in_function(Visibility::WHOLE_SCOPE);
        if (is_bound_around) {
            builder.bind("a", class_named(builder, "A"));
        }
        builder.open_local();
        builder.bind("a", class_named(builder, "B"));
        builder.release("a");
        builder.use_member(builder.use(value_token("a", 2)), value_token("m", 3));
        EXPECT_EQ(mentions_of(builder.finish()),
                  is_bound_around ? "3 value local(foreign).m\n" : "2 value f/a\n3 value f/a.m\n");
    }
}

TEST(SyntaxBuilder, ANameIsBoundInALocalScopeFurtherOut) {
    SyntaxBuilder builder = in_function(Visibility::WHOLE_SCOPE);
    builder.open_local();
    builder.open(builder.declare({.name = builder.name("C"), .kind = Kind::TYPE, .is_hidden = true}));
    builder.open_local();
    EXPECT_EQ(builder.local_depth(), 3);
    builder.bind_in(1, "a", UNKNOWN);  // the scope of C holds no locals, and does not count
    builder.bind_in(2, "b", UNKNOWN);
    builder.bind_in(3, "c", UNKNOWN);  // there is none so far out
    builder.close();
    builder.close();
    builder.use(value_token("a", 1));
    builder.close();
    builder.use(value_token("a", 2));
    builder.use(value_token("b", 3));
    builder.use(value_token("c", 4));
    EXPECT_EQ(mentions_of(builder.finish()), "2 value f/a\n4 value f/c\n");
}

TEST(SyntaxBuilder, TheFileHasNoLocals) {
    SyntaxBuilder builder(Visibility::FROM_DECLARATION);
    builder.bind("a", UNKNOWN);
    builder.use(value_token("a"));
    EXPECT_EQ(builder.around(), NO_DECLARATION);
    EXPECT_EQ(mentions_of(builder.finish()), "1 value a\n");
}

}  // namespace
}  // namespace host::syntax
