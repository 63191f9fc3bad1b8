#include "Diagnose.h"

#include "Diagnostics/Messages.h"

#include <gtest/gtest.h>

namespace Kesh::Tests {

namespace {

struct SCase
{
    const char* text;
    const char* expected; ///< code and span, 0-based
};

} // namespace

// What a class may not do with what it inherits, each beside something alike that is right.
TEST(Inheritance, HoldsClassesToTheirParents)
{
    static constexpr SCase Cases[]{
        {"interface I {} class A extends I {}", "1201 0:21-0:22"},
        {"trait T {} class A extends T {}", "1201 0:17-0:18"},
        {"class A extends Countable {}", "1201 0:6-0:7"},
        {"final class A {} class B extends A {}", "1202 0:23-0:24"},
        {"class A extends \\Closure {}", "1202 0:6-0:7"},
        {"namespace N; class A extends Closure {}", ""},
        {"namespace N; use Closure as C; class A extends C {}", "1202 0:37-0:38"},
        {"readonly class A {} class B extends A {}", "1203 0:26-0:27"},
        {"class A { final function f() {} } class B extends A { function F() {} }", "1204 0:63-0:64"},
        {"class A { private final function f() {} } class B extends A { function f() {} }", ""},
        {"class A { final const X = 1; } class B extends A { const X = 2; }", "1204 0:37-0:38"},
        {"class E extends Exception { function getLine() {} }", "1204 0:37-0:44"},
        {"class A { static function f() {} } class B extends A { function f() {} }", "1205 0:64-0:65"},
        {"class A { static $p; } class B extends A { public $p; }", "1205 0:29-0:30"},
        {"class A { private static $p; } class B extends A { public $p; }", ""},
        {"class A { function f() {} } abstract class B extends A { abstract function f(); }",
         "1206 0:75-0:76"},
        {"class A { function f() {} } class B extends A { private function f() {} }", "1207 0:65-0:66"},
        {"class A { protected function f() {} } class B extends A { function f() {} }", ""},
        {"class A { protected $p; }\nclass B extends A {\nprivate $p; }", "1207 1:6-1:7"},
        {"class A { const X = 1; } class B extends A { private const X = 1; }", "1207 0:31-0:32"},
        {"class A { public int $p; } class B extends A { public ?int $p; }", "1209 0:33-0:34"},
        {"class A { public $p; } class B extends A { public int $p; }", "1209 0:29-0:30"},
        {"class A { public int|null $p; } class B extends A { public ?int $p; }", ""},
        {"class E extends Exception { protected $line; }", "1209 0:6-0:7"},
        {"class A { function __construct(public int $p) {} } class B extends A { public $p; }",
         "1209 0:57-0:58"},
        {"class A { public int $p; } class B extends A { public readonly int $p; }", "1210 0:33-0:34"},
        {"abstract class A { abstract function f(); } class B extends A {}", "1211 0:50-0:51"},
        {"abstract class A { abstract function f(); } abstract class B extends A {} class C extends B {}",
         "1211 0:80-0:81"},
        {"abstract class A { abstract function f(); } class B extends A { function F() {} }", ""},
        {"class F extends FilterIterator {}", "1211 0:6-0:7"},
        {"class A { const int X = 1; const Y = 1; } class B extends A { const X = 1; const int Y = 1; }",
         "1212 0:48-0:49"},
    };
    for (const auto& [text, expected] : Cases)
        EXPECT_EQ(Describe(text), expected) << text;
}

// Methods of a child, each in the place of the parent's.
TEST(Inheritance, ComparesSignatures)
{
    const struct
    {
        const char* parent;
        const char* child;
        bool fits;
    } cases[] = {
        {"function f($a)", "function f($b = 1)", true},
        {"function f($a = 1)", "function f($a)", false},
        {"function f($a = 1, $b)", "function f($a, $b, $c = 1)", true},
        {"function f($a, $b)", "function f($a)", false},
        {"function f($a, $b)", "function f(...$a)", true},
        {"function f(...$a)", "function f($a = 1)", false},
        {"function f(int ...$a)", "function f(string $b = '', int ...$a)", false},
        {"function f(&$a)", "function f($a)", false},
        {"function &f()", "function f()", false},
        {"function f()", "function &f()", true},
        {"function f(int $a)", "function f(?int $a)", true},
        {"function f(int $a)", "function f(int $a = null)", true},
        {"function f(int $a = null)", "function f(int $a = 1)", false},
        {"function f(int $a)", "function f(int|string $a)", true},
        {"function f(int $a)", "function f(string $a)", false},
        {"function f(int $a)", "function f($a)", true},
        {"function f($a)", "function f(mixed $a)", true},
        {"function f($a)", "function f(int $a)", false},
        {"function f(bool $a)", "function f(false $a)", false},
        {"function f(array|\\Traversable $a)", "function f(iterable $a)", true},
        {"function f(): iterable", "function f(): array", true},
        {"function f(): iterable", "function f(): Iterator", true},
        {"function f(): object", "function f(): Countable", true},
        {"function f(): object", "function f(): Unknown", true},
        {"function f(): callable", "function f(): Closure", true},
        {"function f(): callable", "function f(): Countable", false},
        {"function f()", "function f(): int", true},
        {"function f(): int", "function f()", false},
        {"function f(): mixed", "function f(): void", false},
        {"function f(): int", "function f(): never", true},
        {"function f(): self", "function f(): static", true},
        {"function f(): static", "function f(): self", false},
        {"function f(): A", "function f(): B", true},
        {"function f(): Countable&Iterator", "function f(): Iterator", false},
        {"function f(): Iterator", "function f(): Countable&Iterator", true},
        {"function f(): (Countable&Iterator)|null", "function f(): null", true},
        {"function f(Unknown $a)", "function f(Other $a)", true},
        {"function f(Unknown $a)", "function f(unknown $a)", true},
        {"function f(#[X([1, 2])] int $a = [1, [2]][0])", "function f(#[X] string $a = PHP_EOL . (1))",
         false},
        {"function __construct(int $a)", "function __construct()", true},
    };
    for (const auto& [parent, child, fits] : cases) {
        const std::string text =
            std::string("class A { ") + parent + " {} } class B extends A { " + child + " {} }";
        EXPECT_EQ(Describe(text, 802).substr(0, 4), fits ? "" : "1208") << text;
    }
    EXPECT_EQ(Describe("abstract class A { abstract function __construct(int $a); }"
                       "class B extends A { function __construct(int $a) {} }"
                       "class C extends B { function __construct(string $a) {} }"),
              "1208 0:141-0:152");
    // What PHP only warns of.
    EXPECT_EQ(Describe("class A extends ArrayObject { function count(): string {} }"), "");
    EXPECT_EQ(Describe("class A extends ArrayObject { function count($a): int {} }"), "1208 0:39-0:44");
}

// Whatever may be otherwise when the program runs.
TEST(Inheritance, KeepsSilentOfWhatItCannotKnow)
{
    static constexpr const char* Cases[]{
        "class B extends A { private function f() {} } class A { function f() {} }",
        "if ($a) { final class A {} } class B extends A {}",
        "final class A {} if ($a) { class B extends A {} }",
        "final class A {} function f() { class A {} } class B extends A {}",
        "final class A {} $b = new class extends A {};",
        "class A implements I { function f() {} } class B extends A { private function f() {} }",
        "class A { use T; function f() {} } class B extends A { private function f() {} }",
        "class A { function f() {} } class B extends A implements I { private function f() {} }",
        "class A { function f() {} } class B extends A { private function f() {} function __toString() {} }",
        "class A { function f(X $a) {} function g() {} }"
        "class B extends A { function f(Y $a) {} private function g() {} }",
        "class A extends A {} class B extends A {}",
        "enum E {} class A extends E {}",
        "class A {} class B {} class A extends B {}",
        "class Closure {} class A extends Exception {} class B extends A {}",
        "interface I { const X = 1; } interface J extends I { const X = 2; }",
        "class B {} class A implements B {}",
    };
    for (const char* text : Cases)
        EXPECT_EQ(Describe(text, 802), "") << text;
}

TEST(Inheritance, KnowsVersions)
{
    const char* signature = "class A { function f() {} } class B extends A { function f($a) {} }";
    const char* abstractOne =
        "abstract class A { abstract function f(); } class B extends A { function f($a) {} }";
    const char* variance = "abstract class A { abstract function f(): Traversable; }"
                           "class B extends A { function f(): Iterator {} }";
    EXPECT_EQ(Describe(signature, 704), "");
    EXPECT_NE(Describe(signature, 800), "");
    EXPECT_NE(Describe(abstractOne, 503), "");
    EXPECT_NE(Describe(variance, 703), "");
    EXPECT_EQ(Describe(variance, 704), "");
    EXPECT_EQ(Describe("class A extends ArrayObject { function count($a) {} }", 704), "");
}

TEST(Inheritance, SaysWhatBothAre)
{
    const auto found =
        Diagnose("<?php\nclass A {\n  function f(int $a, array $b = [1, 2], string &...$c): ?self {}\n}\n"
                 "class B extends A {\n  static function f($a) {}\n}\n"
                 "class C extends A {\n  function f($a) {}\n}\n");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(CodeAnalyzer::MessageOf({found[0].error, found[0].details}),
              L"'B::f()' cannot be static, as 'A::f()' is not");
    EXPECT_EQ(CodeAnalyzer::MessageOf({found[1].error, found[1].details}),
              L"Declaration 'C::f($a)' is not compatible with "
              L"'A::f(int $a, array $b = [1, 2], string &...$c): ?self'");
    ASSERT_EQ(found[1].details.related.size(), 1U);
    EXPECT_EQ(found[1].details.related[0].pos.start.y, 2);
}

// However classes hang together, no text takes longer than its size asks for.
TEST(Inheritance, StandsWhateverItIsGiven)
{
    std::string chain = "<?php class C0 { function f() {} }";
    std::string star = "<?php abstract class C0 { ";
    for (int i = 0; i < 20000; ++i)
        star += "abstract function f" + std::to_string(i) + "();";
    star += "}";
    for (int i = 1; i < 20000; ++i) {
        const std::string n = std::to_string(i);
        chain += "class C" + n + " extends C" + std::to_string(i - 1) + " { function f() {} function g" + n +
                 "() {} }";
        star += "abstract class C" + n + " extends C0 { function g" + n + "() {} }";
    }
    EXPECT_EQ(Describe(chain), "");
    EXPECT_EQ(Describe(star), "");
    EXPECT_EQ(Describe("class A extends B {} class B extends C {} class C extends A {}"), "");
    for (const char* broken : {"class A { function f(int) {} } class B extends A { function f($a {} }",
                               "class A { function f( } class B extends A { function f($a = ) {} }",
                               "class A { public int|; } class B extends A { public $a"})
        EXPECT_NE(Describe(broken), "") << broken;
}

} // namespace Kesh::Tests
