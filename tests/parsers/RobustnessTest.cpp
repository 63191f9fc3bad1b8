#include "CheckPhp.h"

#include <gtest/gtest.h>
#include <random>

namespace Kesh::Tests {

namespace {

constexpr std::size_t Size = 1000000;

std::string Repeat(std::string_view text, std::size_t size = Size)
{
    std::string result = "<?php ";
    while (result.size() < size)
        result += text;
    return result;
}

/// Pieces that make the parsers change states, in any order.
const char* const Pieces[] = {"(",       ")",        "[",         "]",          "{",       "}",
                              ";",       ",",        ":",         "?",          "=>",      "=",
                              "->",      "::",       "+",         ".",          "&",       "...",
                              "$",       "$a",       "$$",        "foo",        "php",     "\\",
                              "1",       "'s'",      "\"d$e\"",   "`c`",        " ",       "\n",
                              "if",      "else",     "elseif",    "endif",      "while",   "do",
                              "for",     "foreach",  "as",        "endforeach", "switch",  "case",
                              "default", "function", "fn",        "class",      "new",     "extends",
                              "static",  "public",   "const",     "global",     "use",     "namespace",
                              "try",     "catch",    "throw",     "return",     "break",   "echo",
                              "match",   "array",    "list",      "isset",      "yield",   "clone",
                              "enum",    "readonly", "int",       "exit",       "?>",      "<?php ",
                              "<?= ",    "#[A]",     "/* */",     "// x\n",     "<<<A\nA", "declare",
                              "get",     "++",       "!",         "instanceof", "and",     "var",
                              "final",   "abstract", "interface", "trait",      "?->",     "__halt_compiler"};

std::string AnyPieces(std::mt19937& random)
{
    std::string any = "<?php ";
    for (std::size_t i = 0, length = 5 + random() % 60; i < length; ++i)
        (any += Pieces[random() % std::size(Pieces)]) += ' ';
    return any;
}

} // namespace

// Deeper than any stack: what recurses here does not come back.
TEST(Robustness, NestingWithoutEnd)
{
    CPhpCheck php;
    for (const char* text : {"(",
                             "[",
                             "{",
                             "if ($a) ",
                             "if ($a) { ",
                             "if (f(function() { ",
                             "while ($a) ",
                             "do ",
                             "foreach ($a as $b) ",
                             "foreach ($a as $b): ",
                             "for (;;) ",
                             "function f() { ",
                             "f(function() { ",
                             "new class { ",
                             "class A { ",
                             "switch ($a) { case 1: ",
                             "$a[",
                             "$a->{",
                             "${",
                             "array(",
                             "[1 => ",
                             "match($a) { 1 => ",
                             "fn() => ",
                             "!",
                             "$a = ",
                             "if ($a): ",
                             "if ($a) else ",
                             "else ",
                             "\"{$a[",
                             "#[",
                             "<<<A\n",
                             "/*",
                             "'",
                             "throw f(function() { ",
                             "static $a = [",
                             "namespace A { ",
                             "elseif ($a) "}) {
        php.Errors(Repeat(text));
        php.Errors(Repeat(text, Size / 2) + Repeat("} ", Size / 4) + Repeat(")} ", Size / 4));
    }
}

// The cost must not depend on how much of the document an earlier part of it has already taken.
TEST(Robustness, LongRunsOfTheSame)
{
    CPhpCheck php;
    std::string chain = "<?php if ($a) {}";
    std::string loops = "<?php ";
    for (int i = 0; chain.size() < Size; ++i) {
        chain += " elseif ($a == " + std::to_string(i % 5000) + ") {}";
        loops += "foreach ($a as $b" + std::to_string(i) + ") ";
    }
    EXPECT_FALSE(php.Errors(chain).empty());
    php.Errors(loops);
    for (const char* text : {"$a = 1;\n", "1 + ", "f($a, ", "$a . ", "[function() {}, ",
                             "if ($a) f(); else g();\n", "a:", "readonly ", "static /**/", "enum /* */",
                             "#[x\n", "endif; ", "}; ", "? : ", "foreach ($a as $b): endforeach; "})
        php.Errors(Repeat(text));
}

TEST(Robustness, AnyBytes)
{
    CPhpCheck php;
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        std::string text = "<?php ";
        while (text.size() < 2000)
            text += static_cast<char>(random());
        php.Errors(text);
    }
    for (std::string_view text : {std::string_view("<?php $a = \"\0\" . '\0'; \0 f($a $b);", 33),
                                  std::string_view("\xEF\xBB\xBF<?php\r\n$a = ;\r$b = ;"),
                                  std::string_view("<?"), std::string_view("<?php"), std::string_view("<?=")})
        php.Errors(text);
    // A byte order mark has no column, and every kind of line end makes a line.
    EXPECT_EQ(php.Check("\xEF\xBB\xBF<?php\r\n$a = ;\r$b = ;\n\xF0\x9F\x98\x80 $c;"),
              "101 1:5-1:6 101 2:5-2:6 101 3:2-3:4");
}

// With the grammar, what a text is reported for does not depend on what the user had typed before.
TEST(Robustness, EarlierStatesOfTheTextLeaveNoTrace)
{
    CPhpCheck php;
    php.SetGrammar(true);
    const std::string_view text = "<?php\n\n$x = 1;\n$y = 2 $z;\nif ($a) { f(); } else { g(); }\n";
    const std::string expected = "1012 3:7-3:9";
    ASSERT_EQ(php.Check(text), expected);
    for (std::string_view earlier :
         {"<?php if ($a) { f();", "<?php f(function() { g();", "<?php $f = new class { function g() {",
          "<?php while ($a) { for (;;) { foreach ($a as $b) {", "<?php switch ($a) { case 1: do {",
          "<?php class A { function f() { try {", "<?php foreach ($a as $b): if ($c):",
          "<?php namespace A { if (f(function() {", "<?php $a = [f(", "<?php if ($a", "<?php class A {"}) {
        EXPECT_EQ(php.CheckAfter({earlier}, text), expected) << earlier;
        EXPECT_EQ(php.CheckAfter({earlier, text}, text), expected) << earlier;
    }

    // A statement that the earlier text left unfinished must not be taken up again.
    const std::string_view states[] = {"<?php if($o): if($y) f",      "<?php if($o): if($y) f(); endif;",
                                       "<?php foreach ($a as $b): f", "<?php while ($a) f(); endwhile; }",
                                       "<?php f(function() { if ($a", "<?php do { f(); } while ($a); }"};
    for (std::string_view earlier : states)
        for (std::string_view later : states)
            EXPECT_EQ(php.CheckAfter({earlier}, later), php.Check(later)) << earlier << " then " << later;

    std::mt19937 random(3);
    for (int round = 0; round < 2000; ++round) {
        const std::string earlier = AnyPieces(random);
        ASSERT_EQ(php.CheckAfter({earlier}, text), expected) << earlier;
        const std::string later = AnyPieces(random);
        ASSERT_EQ(php.CheckAfter({earlier}, later), php.Check(later)) << earlier << " then " << later;
    }
}

// Without it, a statement that an earlier text has left unfinished is resumed.
TEST(Robustness, WithoutTheGrammarUnfinishedStatementsAreTakenUpAgain)
{
    struct SCase
    {
        const char* earlier;
        const char* later;
        const char* alone;
        const char* after;
    };
    static constexpr SCase Cases[]{
        {"<?php if ($o) { if ($y) f", "<?php f(); elseif ($a) { }", "252 0:11-0:17", ""},
        {"<?php if ($o) { f", "<?php if ($a); f(); } else { }", "252 0:22-0:26 w901 0:13-0:14",
         "w901 0:13-0:14"},
        {"<?php do { f", "<?php f(); } while ($a);", "w901 0:23-0:24", "w901 0:23-0:24"},
        {"<?php if ($o): if ($y) f", "<?php if ($o): if ($y) f();", "", "101 0:23-0:24"},
        {"<?php foreach ($a as $b) f", "<?php f(); ; $x = 1 2;", "101 0:20-0:21", "101 0:20-0:21"},
    };
    CPhpCheck php;
    for (const auto& [earlier, later, alone, after] : Cases) {
        php.SetGrammar(false);
        EXPECT_EQ(php.Check(later), alone) << later;
        EXPECT_EQ(php.CheckAfter({earlier}, later), after) << earlier << " then " << later;
        php.SetGrammar(true);
        EXPECT_EQ(php.CheckAfter({earlier}, later), php.Check(later)) << earlier << " then " << later;
    }
    // Whatever it is, it is there no more but by name: no text, no closure that it stood in.
    php.SetGrammar(false);
    std::mt19937 random(4);
    for (int round = 0; round < 100; ++round) {
        std::vector<std::string> texts(30);
        for (std::string& text : texts)
            text = AnyPieces(random);
        php.CheckAfter({texts.begin(), texts.end()}, texts.front());
    }
}

// Debug builds assert that no state moves to one that it may not move to.
TEST(Robustness, AnyOrderOfTokens)
{
    CPhpCheck php;
    std::mt19937 random(2);
    for (int round = 0; round < 3000; ++round) {
        std::string text = "<?php ";
        const std::size_t length = 5 + random() % 120;
        for (std::size_t i = 0; i < length; ++i) {
            text += Pieces[random() % std::size(Pieces)];
            if (random() % 2)
                text += ' ';
        }
        for (const CodeAnalyzer::SCAError& error : php.Errors(text)) {
            ASSERT_LE(error.pos.start, error.pos.end) << text;
            ASSERT_GE(error.pos.start.x, 0) << text;
        }
    }
}

} // namespace Kesh::Tests
