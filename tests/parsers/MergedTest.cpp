#include "CheckPhp.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <utility>

namespace Kesh::Tests {

using CodeAnalyzer::SCAError;

namespace {

/// The warnings of a text, as "line:column code"; all of it is parsed for the sake of what is put before it.
std::string Warnings(CPhpCheck& check, const std::string& text, bool withWarningBefore)
{
    std::string found;
    bool isFirst = withWarningBefore;
    for (const SCAError& error : check.Errors((withWarningBefore ? "<?php if (1); ?>\n" : "") + text)) {
        if (error.type == CodeAnalyzer::SeverityError || std::exchange(isFirst, false))
            continue;
        found += std::to_string(error.pos.start.y - withWarningBefore) + ":" +
                 std::to_string(error.pos.start.x) + " " + std::to_string(error.code) + "\n";
    }
    EXPECT_FALSE(isFirst) << text;
    return found;
}

/// Statements at random out of what the statement parsers warn of, few names, in every way to write a body.
class CRandomStatements
{
public:
    explicit CRandomStatements(unsigned seed) : m_random(seed) {}

    std::string Block(int depth)
    {
        std::string text;
        for (unsigned i = 0; i <= m_random() % 3; ++i)
            text += Statement(depth);
        return text;
    }

private:
    template <std::size_t Size> std::string OneOf(const char* const (&choices)[Size])
    {
        return choices[m_random() % Size];
    }
    std::string Name() { return OneOf({"$a", "$b", "$c"}); }
    std::string Condition() { return "(" + OneOf({"$a", "$b", " $a ", "f($a)", "$a == [1, 2]"}) + ")"; }

    std::string Statement(int depth)
    {
        if (depth == 0)
            return OneOf({"f(); ", "$a = 1; ", "echo $a, $b; ", "?>text<?php ", "{ } ", "return; ", "; ",
                          "$a = function() { if ($a) { } elseif ($a) { } }; "});
        switch (m_random() % 16) {
        case 0: return If(depth, false);
        case 1: return If(depth, true);
        case 2: return "foreach " + LoopHead() + Body(depth, "endforeach");
        case 3: return "while " + Condition() + Body(depth, "endwhile");
        case 4: return "for (;;)" + Body(depth, "endfor");
        case 5: return "do { " + Block(depth - 1) + "} while " + Condition() + "; ";
        case 6:
        case 7:
        case 8:
        case 9: return If(depth, false);
        case 10:
        case 11:
        case 12: return "foreach " + LoopHead() + Body(depth, "endforeach");
        case 13: return "switch ($a) { case 1: " + Block(depth - 1) + "default: " + Block(depth - 1) + "} ";
        case 14: return "try { " + Block(depth - 1) + "} catch (A $a) { " + Block(depth - 1) + "} ";
        default: return "f(function() { " + Block(depth - 1) + "}); ";
        }
    }

    std::string LoopHead()
    {
        const std::string key = m_random() % 2 ? Name() + " => " : "";
        return "($x as " + key + OneOf({"", "&", " "}) + Name() + OneOf({"", " "}) + ")";
    }

    std::string Body(int depth, const std::string& endWord)
    {
        switch (m_random() % 5) {
        case 0: return "; ";
        case 1: return ": " + Block(depth - 1) + endWord + "; ";
        case 2: return " " + Statement(depth - 1);
        default: return " { " + Block(depth - 1) + "} ";
        }
    }

    std::string If(int depth, bool withEndWord)
    {
        const std::string open = withEndWord ? ": " : " { ";
        const std::string close = withEndWord ? "" : "} ";
        if (!withEndWord && m_random() % 3 == 0)
            return "if " + Condition() + " " + Statement(depth - 1) +
                   OneOf({"", "else f(); ", "elseif ($a) f(); else f(); ", "else if ($a) f(); "});
        std::string text = "if " + Condition() + open + Block(depth - 1) + close;
        for (unsigned i = 0; i < m_random() % 3; ++i)
            text += OneOf({"elseif ", withEndWord ? "elseif " : "else if "}) + Condition() + open +
                    Block(depth - 1) + close;
        if (m_random() % 2)
            text += withEndWord ? "else: " + Block(depth - 1)
                                : "else" + OneOf({" { f(); } ", "; ", " f(); ", " if ($b) f(); "});
        return text + (withEndWord ? "endif; " : "");
    }

    std::mt19937 m_random;
};

} // namespace

// The statement parsers' errors before the grammar's first one are false; at it the grammar's is better;
// warnings stay.
TEST(Merged, MakesOneListOfBoth)
{
    struct SCase
    {
        const char* text;
        const char* alone;  ///< the statement parsers
        const char* merged; ///< with the grammar
    };
    static constexpr SCase Cases[]{
        {"try { } catch (A | B $e) { }", "501 0:17-0:18", ""},
        {"function() { };", "201 0:8-0:9", ""},
        {"if ($a) { } elseif ($a) { }", "w254 0:4-0:6 w254 0:20-0:22", "w254 0:4-0:6 w254 0:20-0:22"},
        {"f($a $b);", "101 0:5-0:7", "1007 0:3-0:4"},
        {"if ($a); f($a $b);", "101 0:14-0:16 w901 0:7-0:8", "1007 0:12-0:13 w901 0:7-0:8"},
        // Warnings by parser, those of `if` in two turns.
        {"while ($a); if ($b) { } elseif ($b) { } if ($c); f(1 2);",
         "101 0:53-0:54 w901 0:47-0:48 w254 0:16-0:18 w254 0:32-0:34 w901 0:10-0:11",
         "1007 0:51-0:52 w901 0:47-0:48 w254 0:16-0:18 w254 0:32-0:34 w901 0:10-0:11"},
        {"try { } catch (A | B $e) { }\nf(1;\n", "501 0:17-0:18", "1002 1:2-1:3"},
        {"class A { function f() { } function f() { } }", "", "1156 0:36-0:37"},
    };
    CPhpCheck check;
    for (const auto& [text, alone, merged] : Cases) {
        check.SetGrammar(false);
        EXPECT_EQ(check.Check(text), alone) << text;
        check.SetGrammar(true);
        EXPECT_EQ(check.Check(text), merged) << text;
    }
    // What came before is nothing to the next check, also when the check is turned off in between.
    EXPECT_EQ(check.CheckAfter({"<?php class {", "<?php if ("}, "f();"), "");
}

// What the grammar accepts is mostly not parsed twice; that must never cost a warning.
TEST(Merged, LosesNoWarning)
{
    CPhpCheck check;
    check.SetGrammar(true);
    std::size_t warned = 0;
    const auto expectSame = [&](const std::string& text, const std::string& name) {
        const std::string found = Warnings(check, text, false);
        warned += !found.empty();
        ASSERT_EQ(found, Warnings(check, text, true)) << name;
    };
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const std::string text = "<?php " + CRandomStatements(seed).Block(4);
        ASSERT_NO_FATAL_FAILURE(expectSame(text, text));
    }
    EXPECT_GT(warned, 500U);
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("/usr/share/php")) {
        if (entry.path().extension() != ".php")
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        ASSERT_NO_FATAL_FAILURE(
            expectSame({std::istreambuf_iterator<char>(file), {}}, entry.path().string()));
        ++files;
    }
    EXPECT_GT(files, 300U) << "install php-twig and php-symfony-console";
}

} // namespace Kesh::Tests
