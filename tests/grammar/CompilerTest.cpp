#include "Diagnose.h"

#include <gtest/gtest.h>

namespace Kesh::Tests {

// What PHP's compiler rejects, not its parser: where it is and what it is called, each beside something alike
// that is right.
TEST(Compiler, FindsWhatBreaksARuleOfTheLanguage)
{
    static constexpr struct
    {
        const char* text;
        const char* expected; ///< code and span, 0-based
    } Cases[]{
        {"#[Attribute] #[A] #[A] class B {}", ""},
        {"#[Attribute, Attribute] class B {}", "1181 0:13-0:22"},
        {"namespace N; use Attribute as X; #[X] #[\\Attribute] class B {}", "1181 0:40-0:50"},
        {"namespace N; #[Attribute] #[Attribute] class B {}", ""},
        {"class B { #[Attribute] function f() {} }", "1182 0:12-0:21"},
        {"class B { #[ReturnTypeWillChange] function f(#[SensitiveParameter] $a) {} }", ""},
        {"class B { function __construct(#[ReturnTypeWillChange] public $a) {} }", "1182 0:33-0:53"},
        {"#[A(static function (#[B] $a) {})] #[SensitiveParameter] class C {}", "1182 0:37-0:55"},
        {"#[AllowDynamicProperties] trait B {}", "1182 0:2-0:24"},
        {"#[AllowDynamicProperties] class B {}", ""},
        {"class A { function f() { if (1) { class B {} } } }", "1183 0:40-0:41"},
        {"class A { function f() { function g() { class B {} } return new class {}; } }", ""},
        {"function f() { new static; }", "1175 0:19-0:25"},
        {"function f() { return $a instanceof static; }", "1175 0:36-0:42"},
        {"$f = function () { return new static; };", ""},
        {"function &f() { yield from g(); }", "1130 0:16-0:26"},
        {"function &f() { yield 1; return function () { yield from g(); }; }", ""},
        {"$a = [&f()];", "1101 0:7-0:8"},
        {"$a = [...[1], ...2];", "1112 0:14-0:17"},
        {"$a = [...$b, ...2];", ""},
        {"new (1 + 1);", "1184 0:5-0:6"},
        {"new ('A' . 'B');", ""},
        {"([])::f();", "1184 0:0-0:1"},
        {"class A { use T { f as abstract g; } }", "1152 0:23-0:31"},
        {"echo 1; declare(encoding='UTF-8');", "1144 0:16-0:24"},
        {"use A\\{function list};", "1031 0:16-0:20"},
        {"use A\\{B, function private};", "1031 0:19-0:26"},
        {"use A\\{function f, const C, function g};", ""},
        {"use function private;", "1031 0:13-0:20"},
        {"0 && yield; 1 || (2 + yield);", ""},
        {"1 && yield;", "1131 0:5-0:10"},
        {"trait T { function f(int $a = __TRAIT__) {} }", "1168 0:30-0:39"},
        {"; declare(strict_types=1);", "1144 0:10-0:22"},
        {"namespace namespace;", "1161 0:10-0:19"},
        {"function f((A&B)|A $a) {}", "1167 0:11-0:12"},
        {"function f((A&B)|(A&C) $a) {}", ""},
        {"use N\\A; function f(A|\\N\\A $a) {}", "1167 0:20-0:21"},
        {"function f(iterable|Traversable $a) {}", "1167 0:11-0:19"},
        {"function f(int $a = 5 / 2) {}", "1168 0:20-0:21"},
        {"function f(int $a = 4 / 2, float $b = 5 / 2) {}", ""},
        {"function f(int $a = 'abc'[1]) {}", "1168 0:20-0:25"},
        {"function f(array $a = PHP_OS === 'Linux' ? [] : [1]) {}", ""},
        {"function f(int $a = 9223372036854775808) {}", "1168 0:20-0:39"},
        {"class A { const B = 'b'; public int $c = self::B; }", "1168 0:41-0:45"},
        {"class A { const B = [1]; public array $c = self::B; }", ""},
        {"class A { function __get(int $a) {} }", "1172 0:19-0:24"},
        {"class A { function __get(?string $a) {} function __call($a, iterable $b) {} }", ""},
        {"function StrLen() {}", "1160 0:9-0:15"},
        {"namespace N; function strlen() {}", ""},
        {"if (1) { function strlen() {} }", ""},
        {"enum /* what */ A {}", ""},
    };
    for (const auto& [text, expected] : Cases)
        EXPECT_EQ(Describe(text), expected) << text;
}

TEST(Compiler, KnowsVersions)
{
    const char* overridden = "class A { function f() {} } class B extends A { #[Override] function f() {} }";
    EXPECT_EQ(Describe(overridden, 803), "");
    EXPECT_EQ(Describe("enum /* what */ A {}", 802), "1018 0:16-0:17");
    EXPECT_EQ(Describe("enum /* what */ A {}", 804), "");
    EXPECT_EQ(Describe("#[AllowDynamicProperties] enum A {}", 802), "");
    EXPECT_EQ(Describe("#[AllowDynamicProperties] enum A {}", 804), "1182 0:2-0:24");
    for (const char* lost :
         {"class A { #[\\Override] function f() {} }",
          "class A { private function f() {} } class B extends A { #[Override] function f() {} }",
          "interface A { #[Override] function f(); }"}) {
        EXPECT_EQ(Describe(lost, 803).substr(0, 4), "1213") << lost;
        EXPECT_EQ(Describe(lost, 802), "") << lost;
    }
    for (const char* unknown :
         {"class A extends B { #[Override] function f() {} }", "trait A { #[Override] function f() {} }",
          "class A { use T; #[Override] function f() {} }"})
        EXPECT_EQ(Describe(unknown, 803), "") << unknown;
    EXPECT_EQ(Describe("function array_is_list() {}", 800), "");
    EXPECT_NE(Describe("function array_is_list() {}", 801), "");
    EXPECT_EQ(Describe("class A { function __get(int $a) {} }", 704), "");
    EXPECT_EQ(Describe("#[SensitiveParameter] class A {}", 801), "");
}

} // namespace Kesh::Tests
