#include "CheckPhp.h"

#include <gtest/gtest.h>

namespace Kesh::Tests {

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
        {"if ($a); f($a $b);", "101 0:14-0:16 w901 0:7-0:8", "w901 0:7-0:8 1007 0:12-0:13"},
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

} // namespace Kesh::Tests
