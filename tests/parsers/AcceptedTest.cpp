#include "CheckPhp.h"

#include <gtest/gtest.h>

namespace Kesh::Tests {

namespace {

// Correct PHP of all ages; none of it may be reported.
const char* const Accepted[] = {
    // expressions
    "static $a = f(function() { return 1; })->b, $c = [g([1]) => 2, (h(array(3))) => 4];",
    "php(1); PHP('a')->b(); if ($a) php(); Php::f(); PHP; $a = php(2) + PHP; new Php(3); static $x = php(4);",
    "switch (php) { case PHP: f(); case Php::A: g(); } if (php) f(); while (Php::b()) g(); for (php; PHP, "
    "php; "
    "php) f(); foreach (php as $b) {} const A = PHP; static $y = PHP; class Php extends PHP { public php $z "
    "= "
    "Php::A; function f(php $a, ?Php $b = PHP): php {} }",
    "static $x = f(1), $y = [g()]; const Y = A; function h() { static $z = new A(1); }",
    "$a = 1; $b = $a + 2 * 3 ** 4; $c .= 'x'; $d <<= 1; $e ?\?= $f ?\? 2; $g = $a <=> $b;",
    "f(); f($a,); f(...$a); f(...); $x = f(...)($y); f(name: 1, array: 2, class: 3, default: $x ? 1 : 2);",
    "$a->b()->c['x'][0]->d(1)(2); $a?->b?->c(); A::b()::$c['x']::D; $o::class; $a->{'x' . $y}[1]; "
    "$a->$b->$$c;",
    "new A; new A(); new $a; new $a->b['c']($d); new (f())(1); new static; new \\A\\B; (new A)->b(); new "
    "A->b;",
    "$x = [1, 'a' => 2, ...$y, [3, 4], 'k' => ['x' => 1], fn() => 1,]; [$a, , $b] = $c; ['k' => $v, [$w]] = "
    "$d;",
    "list(, $a, list($b), 'k' => $c) = $d; list($a,,$b,) = $c; array(1, 'a' => array(2, 3), 4 => 5,);",
    "$a = [f([1]) => 2, $x[0] => 3, (g([1])) => 4]; $b = array(array('a' => 1), 'b' => $c ? array(1) : [2]);",
    "$s = \"a {$a['b']} $c[d] ${e} {$f->g(\"h\")} \\\" end\" . 'it\\'s'; $t = `ls {$a[\"b\"]}`; \"f\"(1); "
    "'a'[0];",
    "(int) $a; (string)$a . (float) 1.5; (array)$x; (object) ['a' => 1]; (binary)$x; (bool)!$a; "
    "(unset)$a;",
    "$x = (array(1, 2)); $y = (string::class); $z = (object::f()); $w = (int)(float)'1';",
    "$a = .5 + 1. + 1e3 + 1_000.5e-3 + 0x1F + 0b11 + 0o17 + 017; $s = 1 . 2 . 3 . '.' . 4; $t = 1.5.'x';",
    "$a = $b ? $c : $d; $a = $b ?: $c; $x = $a ? [1] : array(2); $y = $a ? f(1) : g(b: 2); $z = !$a "
    "instanceof B;",
    "$a = -$b + ~$c - +$d; $i++; ++$i; $a = $i-- - --$j; @f(); $r = &$a; $x = &$y['z']; $o = &new A;",
    "$$a = 1; $$$b = 2; ${'c' . $d} = 3; ${$e}['x'] = 4; $s{0} = 'x'; $a->s{1}; $f = \"x\"; $x = $$y['z'];",
    "$a and $b or $c xor $d; $a AND f() OR die('x'); $x = true && FALSE || NULL; if (!isset($a) or "
    "empty($b)) exit;",
    "echo 1, 'a', $b; echo(1), 2; echo (1) + 2, f(); print 'a'; print('a') . 'b'; print (int) $x; echo -1, "
    "!$a;",
    "exit; exit(); exit(1); die; die('x'); $a or die(); $b ?? exit(2); f() || exit;",
    "include 'a.php'; include('b.php'); include_once dirname(__FILE__) . '/c'; require (A) . 'b'; $x = "
    "require 'd';",
    "return; return 1; return $a ? 1 : 2; return [1]; return function() {}; return new class {}; return "
    "yield 1;",
    "while (1) { break; continue; break 2; continue 2; } while (1) break; do continue; while (0);",
    "isset($a, $b['c'], $d->e,); unset($a, $b); unset($c,); empty($x); eval('1;'); $x = isset($a) ? "
    "empty($b) : 1;",
    "throw new A('b'); $x = $y ?? throw new A; $f = fn() => throw $e; $a or throw new B(f(function() { "
    "return 1; }));",
    "if ($a) { throw new E(f(function() { g(); return 1; })); } else { h(); }",
    "$x = match(true) { 1, 2 => 'a', $a > 3, => f(), default => throw new E, }; match($y) {}; echo match(1) "
    "{ 1 => 2 };",
    "$x = ['a' => match($b) { 1 => 'x', default => [1 => 2] }, 'c' => 3]; f(match($a) { 'x' => 1 }, 2); "
    "match($x); $q;",
    "$f = fn($x) => $x + 1; $g = fn&(array $x = [1, 2], ?int ...$y): int|string|null => [$x => 1]; fn() => "
    "fn() => 1;",
    "['a' => fn(): array => ['b' => 1], 'c' => static fn() => 2]; f(fn($x) => $x, static function() { "
    "return; });",
    "static fn() => 1; static function() {}; $a = static function(): static { return new static; }; clone "
    "$a; clone($b);",
    "$f = function() {}; $g = function & ($a, &$b = array(1), B ...$c) use (&$d, $e,): ?\\A\\B { $x = 1; "
    "return $x; };",
    "f(function() { if (1) { g(function() { return 1; }); } }, 2); (function() { return 1; })(); [function() "
    "{}, 'm'];",
    "$o = new class(1, f(2)) extends A implements B, \\C { public $x = 1; function f() { return new class "
    "{}; } };",
    "f(new class { function g() { if (1) { return 2; } } }, 3); $x = (new class {})->y; return new readonly "
    "class {};",
    "function g() { $x = yield; yield 1; yield 'k' => 2; $y = (yield $a) + 1; yield from f(); $z = yield "
    "from [1]; }",
    "$h = <<<EOT\na $b {$c['d']}\nEOT;\n$n = <<<'X'\n  x\n  X . 'y'; f(<<<\"A\"\n A\n, 2); return <<<Z\nZ;\n",
    "goto end; end: $a = 1; foo: if ($a) { goto foo; } x: while (0) f(); y: { f(); }",
    "namespace\\f(); \\strlen('x'); A\\B\\c(); $x = \\A\\B::C; $y = A \\ B \\ c(); namespace\\A::b();",
    "self::f(); parent::__construct(); static::$x[1]++; A::{$b}(); A::$b(); $a::$b::c; A::class; $a::{'x'};",
    "$x = $a === null ? A::B : C::D['e']; $y = $a?->b ?? $c?->d['e'] ?? null; $z = $a |> f(...) |> g(...);",
    "if ($a = f() and !$b) x(); $a = b() or c(); !$x && y(); $x = $y = $z = 1; $a = $b += $c -= 2; $f($x)[0] "
    "= 1;",
    // statements
    "if ($a) f(); elseif ($b) g(); else if ($c) h(); else i(); if ($a): f(); elseif ($b): g(); else: h(); "
    "endif;",
    "if ($a) if ($b) f(); else g(); else h(); if ($a) { } else { if ($b) f(); } IF ($a) {} ELSEIF ($b) {} "
    "ELSE {}",
    "while ($a) f(); while ($a): f(); g(); endwhile; while ($a): endwhile; do f(); while ($a); do { } while "
    "($b);",
    "while (f(function() { while (1) { g(); } return [1 => 2]; })) { }",
    "for ($i = 0, $j = f(1, 2); $i < 3 && $j; $i++, --$j) { } for (;;) { break; } for ($i = 0; ; ): f(); "
    "endfor;",
    "for ($i = 0; f(function() { for (;;) { } }); $i++) { }",
    "foreach ($a as $b) f(); foreach ($a as $k => &$v) { } foreach (f() as list($a, $b)) { } foreach ([1] as "
    "[$c, $d]) {}",
    "foreach ($a as ['id' => $id, 'n' => [$n]]) { } foreach ($a as $k => ['x' => $y]): f(); g(); endforeach; "
    "h();",
    "foreach (clone $a as $this->x) { } foreach ($a AS $b['c']) { } foreach (f(function() { foreach ($a as "
    "$b) {} }) as $c) f();",
    "foreach ($a as $b): endforeach; foreach ($a as $b): if ($b) { f(); } endforeach; foreach (new A as $b) "
    "{}",
    "switch ($a) { case 1: case 'x': case B::C: f(); break; case -1: { g(); } case (1 + 2); default: h(); }",
    "switch ($a): case 1: f(); endswitch; switch (true) { case $a ? 1 : 2: case $b ?: 3: f(); break; case "
    "foo(1): }",
    "switch ($a) { case f(function() { switch ($b) { case 1: return 2; } }): g(); default; }",
    "try { f(); } catch (A $e) { } catch (\\B\\C $e) { } finally { } try { throw $x; } finally { g(); }",
    "declare(strict_types=1); declare(ticks=1) { f(); } declare(ticks = 1): g(); enddeclare; if ($a) { "
    "declare(ticks=1); }",
    "global $a, $b, $$c, ${'d' . $e}; static $a, $b = 1, $c = array(1, 2), $d = [A::B => -1 * 2 + self::C];",
    "static $x = <<<E\nE; static $y = A ? B : C; static $z = (1 + 2) * 3 . 'x'; static $f = f(1)->g(); "
    "static $o = new A(1);",
    "static $q = function() { return 1; }, $r = fn() => 2; static $s = A ?: B, $t = !C && D['x'] ?? null;",
    "const A = 1, B = A . 'x' . self::C; const D = [1, 2][0], E = 1 + 2 * (3 - 4), F = A ? B : C; const L = "
    "\\X\\Y;",
    "GLOBAL $a; STATIC $b; CONST C = 1; Function F() { RETURN 1; } Echo 1; FOREACH ($a AS $b) { CONTINUE; }",
    "function f() {} function &g(array $a = array(1, array(2)), ?B &$c = null, int ...$d): void { } function "
    "h(): ?\\A {}",
    "function list_() {} function f(#[A(1, [2])] int|(A&B)|null $x = A::B->c, callable $y = null): "
    "(A&B)|null { }",
    "function f(): static { } function g() : int | string { } function h(): /* c */ array { } function i(): "
    "never {}",
    // declarations
    "namespace A; use B; use B\\C as D, E; use function B\\f; use const B\\C; use F\\{G, H as I, J\\K,}; use "
    "function L\\{m};",
    "namespace A\\B { f(); } namespace { g(); } use A\\{function f, const C, D as E};",
    "class A { } abstract class B extends \\C\\D implements E, \\F\\G { } final class H { } readonly class I "
    "{ }",
    "final readonly class A {} abstract readonly class B {} interface I extends A, B { const X = 1; function "
    "f(); }",
    "trait T { use A, B { A::f insteadof B; B::g as protected h; i as private; B::j as k; } use C; abstract "
    "function l(); }",
    "class A { const B = 1, C = 'x'; public const D = 1; final protected const int E = 1; const array F = "
    "[1]; }",
    "class A { const LIST = 1, CLASS_ = 2, DEFAULT = 3; const ?B FOR = null; const A|B|null X = null; const "
    "static_ = 1; }",
    "class A { var $a; var int $b = 1; public $c, $d = array(1, 'k' => 2); protected static ?B $e = null; "
    "private $f; }",
    "class A { public readonly int $a; readonly string $b; readonly ?B $c; final int $d = 1; protected(set) "
    "string $e; }",
    "class A { public private(set) readonly A|B|null $x; static int $y; static public $z = 1 + self::A; "
    "public array $w; }",
    "class A { public function __construct(private readonly int $x = 1, protected ?A $y = new B(1), public "
    "$z = []) {} }",
    "class A { public string $x { get => $this->y . 'a'; set(string $v) { $this->y = $v; } } public $z = 1 { "
    "get; set; } }",
    "class A { abstract public int $x { get; set; } public int $y { &get { return $this->z; } final set => "
    "f($value); } }",
    "class A { function __construct(public int $x { get => 1; set { f(); } }, $y) {} function f() { return "
    "1; } }",
    "class A { abstract protected function f(); final public static function &g($a): self { } function "
    "list() {} }",
    "class A { function class() { $this->class->function->new(); A::for(); } static function print() {} "
    "const if = 1; }",
    "enum Suit: string implements A { case Hearts = 'H'; case Default = 'd'; const X = self::Hearts; "
    "function f() {} }",
    "enum E { case A; case B; public static function g(): self { return match($x) { self::A => 1, default => "
    "2 }; } }",
    "$enum = 1; function enum() {} enum(); class Enum {} $x->enum; new Enum; f(enum: 1); function match_() "
    "{} $x = fn;",
    "#[A] function f() {} #[A, B(1, 'x]')] class C { #[D(fn: 1)] public $x; #[E]\n const F = 1; } $f = #[G] "
    "fn() => 1;",
    "interface A { public string $x { get; } public function f(int $a): static; const B = 1; }",
    "function f() { static $a; return static::b(); } class A { static function f() { static $x = 1; return "
    "static fn() => 1; } }",
    "abstract class A { abstract function f($a = array(1, 2), $b = self::C); } if (!class_exists('A')) { "
    "class A { } }",
    "class A { function &g(): int|string { } function php() { return $this->php()->php; } } $x = "
    "Php::php(PHP); fn &() => 1;",
    "enum A: string { case Print = 'p'; case Echo = 'e'; case clone = 'c'; case New = 'n'; case Php; case "
    "Self; }",
    "class A { use B { b as print; include as c; B::require insteadof C; throw as protected new; } public "
    "$y; }",
    "class A { use B { } function f(): int|string {} readonly (B&C)|null $x; function readonly() {} }",
    "use A\\{B, C, function d}; function e(): int|string {} $x = new class { use B; function f(): int|string "
    "{} };",
    "static $a = 'x'[0]; class A { public $d = 'x'['0']; const E = [1, 2][0] . 'a'[1]; } const A = 'abc'[1];",
    "function g() { $z = yield ?\? $x; $z = yield . $x; yield and $x; $z = yield or die; yield instanceof A; "
    "}",
    "if (<<<A\nx\nA == $b) {} while (<<<'A'\nx\nA) {} switch (<<<\"A\"\nx\nA) { case <<<A\nb\nA: f(); }",
    "foreach (<<<A\nx\nA as $b) {} $x = b<<<A\nx\nA; $y = f(b<<<'A'\nx\nA, B<<<\"A\"\nA);",
    "switch (1) { case fn(): int => 1: break; case $a ? fn(): int|string => 2 : 3: f(); }",
    "echo \"${a[\"b\"]}\"; $z = \"${f(\"x\")}\" . \"${'x\"y'}\" . \"\\${a\" . \"$\" . \"{$a[\"x\"]}\";",
    "switch ($a) { case $f = function(): int { return 1; }: x(); case $x ?: A::B: f(); case $a ?: $b ?: 1 . "
    "2: }",
    "switch (1) { case f(function() { switch ($a) { case 1: g(); } }) ? 1 : 2: case $a ? 1 : ($b ?: 2): h(); "
    "}",
    "class A { function __construct(public int $x { #[A] get => 1; SET { f(); } }, $y { final get; &get {} "
    "}) {} }",
    "namespace print; use A\\namespace\\B; function f(): php {} namespace class { function g(): ?Php {} }",
    "const A = B ?: C, D = 1 <=> -2, E = [1] + [2], F = ~1 | 2; static $a = -1 + -2, $b = !C && D, $e = "
    "A::B->c;",
    // tags
    "<?php use A ?> x <?php function f(): int|string {} function g() { throw new E ?> x <?php } f(); $a;",
    "<?php if ($a): ?> x <?php elseif ($b): ?> y <?php else: ?> z <?php endif; ?>",
    "<?php foreach ($a as $b): ?> <li><?= $b, 1 ?></li> <?php endforeach ?> <?php while ($x): ?> q <?php "
    "endwhile; ?>",
    "<?php if ($a) { ?> x <?php } else { ?> y <?php } ?> <?= f(1) ?> <?= $a ? 'b' : 'c'; ?> <? echo 1 ?>",
    "<?php for ($i = 0; $i < 3; $i++): ?> x <?php endfor; foreach ($a as $b) { ?> y <?php } switch ($a): "
    "case 1: ?> z <?php endswitch ?>",
    "<?xml version=\"1.0\"?>\n<a><?php echo $x // c ?></a> <?php # d ?> <?php /* e */ ?>",
    "<?php function f() { ?> x <?php } class A { function g() { ?> y <?php return 1; } } ?> ) } ] <?php f();",
    "<?php namespace A ?> x <?php use B\\C ?> <?php static $b = 1 ?> <?php const C = 1 ?> "
    "<?php return",
    "<?php\n__halt_compiler(); ?> $a = = ; <?php if (",
    "<?PHP Echo 1 ?><?php ?><?=1?>",
};

/// Correct PHP that a parser reports by what it remembers of the statement around: one place for each kind of
/// statement, and a region that ends a statement is offered again. With the grammar all is followed exactly.
struct SMisread
{
    const char* text;
    const char* alone;
};
const SMisread Misread[] = {
    // An ending region is offered once more for each statement that it has ended.
    {"do if ($a) f(); while ($b);", "w901 0:26-0:27"},
    {"do for (;;) f(); while ($b);", "w901 0:27-0:28"},
    {"if ($y) { if ($x) { if ($a) f(); if ($b) g(); } } elseif ($x) { }", "w254 0:14-0:16 w254 0:58-0:60"},
    {"while ($a) while ($b) f(); if ($c) { } elseif ($d) { }", ""},
    // A block is no part of the `switch` before it.
    {"if ($a) switch ($b) { case 1: f(); } else g();", "252 0:37-0:41"},
    {"if ($a) foreach ($b as $c) switch ($d) { case 1: f(); } else g();", "252 0:56-0:60"},
    {"do switch ($a) { case 1: f(); } while ($b);", "401 0:15-0:16 w901 0:42-0:43"},
    // What is resumed by the way is resumed for nothing.
    {"if ($q) { if ($r) { foreach ($a as $b): f(); endforeach; } more(); } else { }",
     "252 0:69-0:73 w901 0:55-0:56"},
    {"$q = f(function() { foreach ($a as $b): foreach ($c as $d): f(); endforeach; endforeach; });",
     "101 0:75-0:76"},
    // One `if` is remembered, and the condition of one.
    {"if (f(function($x) { if ($x) { return 1; } return 4; })) { } elseif ($b) { } else { }",
     "252 0:61-0:67"},
    {"function f() { if ($o): if ($x): if ($y) f(); endif; else: g(); endif; }", "252 0:53-0:57"},
    // Only `;` ends these.
    {"<?php global $a ?>", "101 0:16-0:18"},
    {"<?php do { } while ($a) ?>", "102 0:24-0:26"},
    {"do ; while ($a);", "w901 0:15-0:16"},
    // Loops by name.
    {"foreach ($a as $v) try { f(); } catch (A $e) {} foreach ($b as $v) {}",
     "w303 0:15-0:17 w303 0:63-0:65"},
};

} // namespace

TEST(Accepted, CorrectProgramsPass)
{
    CPhpCheck php;
    for (const char* text : Accepted)
        EXPECT_EQ(php.Check(text), "") << text;
}

TEST(Accepted, NestingIsFollowedExactlyWithTheGrammar)
{
    CPhpCheck php;
    for (const SMisread& test : Misread) {
        php.SetGrammar(false);
        EXPECT_EQ(php.Check(test.text), test.alone) << test.text;
        php.SetGrammar(true);
        EXPECT_EQ(php.Check(test.text), "") << test.text;
    }
}

} // namespace Kesh::Tests
