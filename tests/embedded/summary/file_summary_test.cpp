#include "workers/wiki/file_summary.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

std::string summary(const std::string& content) {
    std::vector<std::string> lines;
    std::istringstream stream(content);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return wiki::file_summary(lines);
}

std::string repeated(const std::string& text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) {
        result += text;
    }
    return result;
}

void expect(const std::vector<std::pair<std::string, std::string>>& cases) {
    for (const auto& [content, expected] : cases) {
        EXPECT_EQ(summary(content), expected) << content;
    }
}

TEST(FileSummary, TheFirstParagraphOfEveryKindOfCommentLosesItsMarks) {
    expect({
        {"// Sorts\n// \t  rows.\n//\n// Slowly.", "Sorts rows."},
        {"/* Sorts. */ int a;", "Sorts."},
        {"/**\n * Sorts\n * rows.\n *\n * Slowly.\n **/", "Sorts rows."},
        {"# Sorts.\n\n# Slowly.", "Sorts."},
        {";;; sort.el --- Sorts  -*- lexical-binding: t -*-", "sort.el --- Sorts"},
        {R"("""Sorts.""")", "Sorts."},
        {"r'''\nSorts rows\n==========\nSlowly.\n'''", "Sorts rows"},
        {"ur\"\"\"Sorts rows,\n\nunclosed", "Sorts rows,"},
        {"//===-- sort.h - Sorts ------*- C++ -*-===//\n", "sort.h - Sorts"},
        {"##############\n# Sorts rows #\n##############", "Sorts rows"},
        {"// | Sorts rows |", "Sorts rows"},
        {"/* Sorts rows     *\n * slowly.        *\n */", "Sorts rows slowly."},
        {"# ===Sorts rows---", "Sorts rows"},
        {"# ==Sorts rows--", "==Sorts rows--"},
    });
}

TEST(FileSummary, EveryKindOfCommentEndsWhereItDoes) {
    for (const char* content : {"//! Sorts.\nf();", "-- Sorts.\nf();", "--[[ Sorts.\n]] f();", "<!-- Sorts. -->\n<p>",
                                "{- Sorts. -}\nmodule A"}) {
        EXPECT_EQ(summary(content), "Sorts.") << content;
    }
}

TEST(FileSummary, WhatSaysNothingAboutTheFileIsPassedOver) {
    expect({
        {"#!/bin/sh\n# -*- coding: utf-8 -*-\n# vim: et\n# Sorts.", "Sorts."},
        {"# pylint: disable=x\n# Sorts.", "Sorts."},
        {"/** prettier */\n// Sorts.", "Sorts."},
        {"/* eslint-disable a,\n   b */\n'use strict';\n/** Sorts. */", "Sorts."},
        {"/// <reference types=\"node\" />\n// @ts-check\n// Sorts.", "Sorts."},
        {"//go:build linux\n// +build linux\n\n// Package sort sorts.\npackage sort", "Package sort sorts."},
        {"#ifndef A_H\n#define A_H\n#define B_H 1\n#pragma once\n\n/* Sorts. */", "Sorts."},
        {"<?php\nnamespace A;\n/** Sorts. */", "Sorts."},
        {"// ------\n// sort.c\n// ------\n// Sorts.", "Sorts."},
        {"/**/ /***/ // Sorts.", "Sorts."},
        {"# Author: A\n# Created by A\n# $Id: a.sh$\n# @(#) a.sh\n# SPDX-License-Identifier: MIT\n# Sorts.", "Sorts."},
    });
}

TEST(FileSummary, ALicenceIsPassedOverAndWhatStandsAroundItIsNot) {
    expect({
        {"/* Copyright (C) 2020 A\n   This file is free.\n\n   This software comes as is. */\n/* Sorts. */", "Sorts."},
        {"/* Sorts.\n   Copyright (C) 2020 A */", "Sorts."},
        {"# Copyright 2020 A\n#\n# Sorts.", "Sorts."},
        {"/* This Source Code Form is subject to the Mozilla Public\n * License, v. 2.0. */\n// Sorts.", "Sorts."},
        {"# Copyright A\n#\n# or\n\n# Sorts.", "Sorts."},
        {"// Permission is hereby\n" + repeated("// given to all\n", 100) + "//\n// Keep this notice.\n\n// Sorts.",
         "Sorts."},
        {"# Checks licences.", "Checks licences."},
    });
}

TEST(FileSummary, CodeNotesHeadingsAndBannersSayNothing) {
    for (const char* line : {"import { a } from \"./a.js\";",
                             "import type { A } from 'a'",
                             "export * from \"a\"",
                             "import a.b",
                             "from a import b, c",
                             "const a = 1",
                             "a.b = c",
                             "x := 1",
                             "a.b(c, d)",
                             "return (a);",
                             "if (a) {",
                             "}",
                             "def a(b):",
                             "TODO: clean up",
                             "FIXME a b",
                             "XXX what is this",
                             "HACK(a): b",
                             ": list of words",
                             "TYPES",
                             "Levels",
                             "This file is distributed under the same license as A."}) {
        EXPECT_EQ(summary(std::string("# ") + line + "\n\n# Sorts."), "Sorts.") << line;
        EXPECT_EQ(summary(std::string("// ") + line + "\n\n// Sorts."), "Sorts.") << line;
    }
    expect({
        {"/**\n * # HashSet\n *\n * Sorts.\n */", "Sorts."},
        {"// Imports what is needed;\n// from there.", "Imports what is needed; from there."},
        {"# Let there be = signs (and more).", "Let there be = signs (and more)."},
        {"# Todos of a user", "Todos of a user"},
        {"# \xE6\x95\xB4\xE7\x90\x86", "\xE6\x95\xB4\xE7\x90\x86"},
    });
}

TEST(FileSummary, TagsEndAParagraphAndOnlyDescribingOnesGiveTheirText) {
    expect({
        {"/**\n * @fileoverview Sorts\n * rows.\n * @author A\n */", "Sorts rows."},
        {"/// \\file sort.h\n/// \\brief Sorts.", "Sorts."},
        {"/**\n * @internal\n * Sorts.\n * @param a rows\n */", "Sorts."},
        {"/** @module a\n */\n/** Sorts. */", "Sorts."},
        {"/** @param a the\n rows */\nf();", ""},
        {"\"\"\"\n:copyright: me\n\n:mod:`a` sorts.\n\"\"\"", ":mod:`a` sorts."},
        {"/** @desc{Sorts rows.} */", "{Sorts rows.}"},
        {"/** @desc[Sorts rows.] */", "[Sorts rows.]"},
        {"/** @some-more_words a\n */\n/** Sorts. */", "Sorts."},
        {"# @brief: Sorts.", "Sorts."},
        {"# @a.b sorts rows.", "@a.b sorts rows."},
        {"# :brief sorts rows.", ":brief sorts rows."},
        {"# @ sorts rows.", "@ sorts rows."},
    });
}

TEST(FileSummary, CodeEndsTheSearch) {
    for (const char* content :
         {"", "\n", "int a; // Sorts.", "import a\n# Sorts.", "#include <a>\n// Sorts.", "#define A 10\n// Sorts.",
          "# define A\n", ";(f)() // Sorts.", "#menu {\n", "#[derive(A)]\n/// Sorts.", "/* */ f(); // Sorts."}) {
        EXPECT_EQ(summary(content), "") << content;
    }
}

TEST(FileSummary, AtMost160CodePointsCutAtAWord) {
    const std::string e_acute = "\xC3\xA9";
    const std::string word = repeated(e_acute, 9);
    EXPECT_EQ(summary("// " + repeated(e_acute, 160)), repeated(e_acute, 160));
    EXPECT_EQ(summary("// " + repeated(e_acute, 161)), repeated(e_acute, 157) + "...");
    EXPECT_EQ(summary("// " + repeated(word + " ", 17)), repeated(word + " ", 14) + word + "...");
    EXPECT_EQ(summary("// " + repeated("a", 157) + " bcd"), repeated("a", 157) + "...");
    EXPECT_EQ(summary("// a" + repeated("\xA9", 200)), "a" + repeated("\xA9", 156) + "...");
}

TEST(FileSummary, OnlyTheBeginningOfAnEndlessLineIsRead) {
    const std::vector<std::string> lines{"/*!", repeated("***** ", 1'000) + "sorts", "Sorts. */"};
    EXPECT_EQ(wiki::file_summary(lines), "Sorts.");
    const auto padded = [](const std::string& text, std::size_t length) {
        return "//" + std::string(length - 2 - text.size(), ' ') + text;
    };
    EXPECT_EQ(summary(padded("Sorts rows.", 4096)), "Sorts rows.");
    EXPECT_EQ(summary(padded("Sorts rows.", 4097)), "Sorts rows");
    const std::string e_acute = "\xC3\xA9";
    EXPECT_EQ(summary(padded("Sorts rows " + e_acute, 4097)), "Sorts rows");
    EXPECT_EQ(summary(std::string(5'000, '\x80') + "\n// Sorts."), "Sorts.");
}

}  // namespace
