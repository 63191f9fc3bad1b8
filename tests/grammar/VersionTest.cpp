#include "Diagnose.h"

#include "Grammar/PhpFeatures.h"

#include <QString>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string_view>

namespace Kesh::Tests {

namespace {

/// What came to PHP or went from it: a row of PhpFeatures.def.
struct SFeatureRow
{
    const char* name;
    int since; ///< 0: the oldest version has it
    int until; ///< 0: the newest has it
    bool hasOwnRule;
    const char* text;
    const char* with;
    const char* without;
};
constexpr SFeatureRow Rows[] = {
#define PHP_FEATURE(name, since, until, text, with, without)                                                 \
    {#name, since, until, false, text, with, without},
#define PHP_GONE(name, until, text, with, without) {#name, 0, until, true, text, with, without},
#include "Grammar/PhpFeatures.def"
#undef PHP_GONE
#undef PHP_FEATURE
};
constexpr int Versions[]{503, 504, 505, 506, 700, 701, 702, 703, 704, 800, 801, 802, 803, 804, 805};

std::string Tagged(const std::string& program)
{
    return "<?php\n" + program;
}

std::string VersionText(int version)
{
    return std::to_string(version / 100) + "." + std::to_string(version % 100);
}

} // namespace

// The programs pass in the versions that have the feature; in others the check says what is too new and since
// when, or that it is gone, and beside the right version nothing else.
TEST(Versions, TellsWhatAVersionHasNot)
{
    CDiagnoser diagnoser;
    for (const SFeatureRow& row : Rows) {
        const std::string program = Tagged(row.with);
        const std::wstring feature(row.text, row.text + std::string_view(row.text).size());
        if (!row.hasOwnRule) {
            EXPECT_TRUE(diagnoser.Diagnose(program).empty()) << row.name << ": without a version";
        }
        for (const int version : Versions) {
            const bool has = version >= row.since && (row.until == 0 || version < row.until);
            const auto& found = diagnoser.Diagnose(program, version);
            EXPECT_EQ(found.empty(), has) << row.name << " in " << version;
            const bool isLast = *std::upper_bound(Versions, std::end(Versions) - 1, version) == row.since;
            if (has || row.hasOwnRule || !(isLast || version == row.until))
                continue;
            ASSERT_EQ(found.size(), 1U) << row.name << " in " << version;
            EXPECT_EQ(found[0].error.code, isLast ? 1091 : 1092) << row.name << " in " << version;
            const std::wstring* named = found[0].details.Find("feature");
            EXPECT_TRUE(named && *named == feature) << row.name << " in " << version;
        }
    }
}

// The PHP that is there takes the same ones.
TEST(Versions, SaysOfTheVersionThatIsThereWhatPhpSays)
{
    const QTemporaryDir folder;
    std::vector<std::string> files;
    for (const SFeatureRow& row : Rows)
        for (const char* program : {row.with, row.without}) {
            files.push_back(folder.filePath(QString::number(files.size()) + ".php").toStdString());
            WriteBytes(files.back(), Tagged(program));
        }
    const std::vector<SPhpVerdict> verdicts = AskPhp(files);
    for (std::size_t i = 0; i < std::size(Rows); ++i) {
        const SFeatureRow& row = Rows[i];
        const bool has = PhpVersion() >= row.since && (row.until == 0 || PhpVersion() < row.until);
        EXPECT_EQ(verdicts[2 * i].accepts, has) << row.name;
        EXPECT_TRUE(verdicts[2 * i + 1].accepts) << row.name;
    }
}

// What looks like the feature and has it not passes in every version that has the rest of it.
TEST(Versions, LeavesOutWhatOnlyLooksLikeIt)
{
    CDiagnoser diagnoser;
    for (const SFeatureRow& row : Rows) {
        EXPECT_TRUE(diagnoser.Diagnose(Tagged(row.without)).empty()) << row.name << ": without a version";
        const auto last = row.since == 0
                              ? std::begin(Versions)
                              : std::lower_bound(std::begin(Versions), std::end(Versions), row.since) - 1;
        for (auto version = last; version != std::end(Versions); ++version)
            EXPECT_TRUE(diagnoser.Diagnose(Tagged(row.without), *version).empty())
                << row.name << " in " << *version;
    }
}

// Further programs that have a feature; without a version all of them pass.
TEST(Versions, KnowsFurtherForms)
{
    struct SVersionCase
    {
        const char* text;
        int since; ///< the first version that takes it; 0: the oldest
        int until; ///< the first that does not any more; 0: none
    };
    static constexpr SVersionCase Cases[]{
        {"class A { public string $b { get => 'x'; set(string $v) { $this->b = $v; } } }", 804, 0},
        {"interface A { public string $b { get; } }", 804, 0},
        {"abstract class A { abstract public string $b { get; } }", 804, 0},
        {"class A { function __construct(public string $b { get => 'x'; }) { } }", 804, 0},
        {"$a = new class { }->b;", 804, 0},
        {"exit(...);", 804, 0},
        {"$a = $b |> strlen(...) |> g(...);", 805, 0},
        {"class A { const B = static function () { return 1; }; const C = f(...); const D = (int) '1'; }",
         805, 0},
        {"class A { function f($a = A::f(...)) { } }", 805, 0},
        {"class A { public $b = [(string) 1]; }", 805, 0},
        {"clone(...);", 805, 0},
        {"$a = clone($b, ...$c);", 805, 0},
        {"class A { function __construct(final public readonly int $b) { } }", 805, 0},
        {"class A { public private(set) string $b; }", 804, 0},
        {"class A { public static private(set) int $b; }", 805, 0},
        {"enum A: string { case B = 'b'; const C = self::B; }", 801, 0},
        {"enum A { const B = self::C?->value; case C; }", 802, 0},
        {"function f(int|null|true $a) { }", 802, 0},
        {"class A { public ?false $b; }", 802, 0},
        {"function f(int|null|false $a) { }", 800, 0},
        {"function f() { static $a = new B; }", 801, 0},
        {"function f() { static $a = 1 + 2; }", 506, 0},
        {"$a = match (true) { $b, $c => 1, default => 2 };", 800, 0},
        {"function f(int|string $a) { }", 800, 0},
        {"__FUNCTION__->a;", 800, 0},
        {"A::B::c();", 800, 0},
        {"\"a$b\"->c();", 800, 0},
        {"$a = \\A\\List\\B::c();", 800, 0},
        {"namespace for;", 800, 0},
        {"namespace Enum\\Match\\Readonly;", 0, 0},
        {"$a = \"$b?->c\";", 0, 0},
        {"unset($a, $b,);", 703, 0},
        {"null instanceof A;", 703, 0},
        {"f(<<<A\n  b\n  A);", 703, 0},
        {"$a = <<<'A'\n  b\n  A;\n", 703, 0},
        {"f(<<<A\nb\nA\n);", 0, 0},
        {"foreach ($a as [$b]) { }", 701, 0},
        {"[$a, $b] = f();", 701, 0},
        {"use A\\{B, C};", 700, 0},
        {"'f'();", 700, 0},
        {"(function () { })();", 700, 0},
        {"$a->b::c();", 700, 0},
        {"f()::c();", 700, 0},
        {"A::list();", 700, 0},
        {"class A { const FOR = 1; }", 700, 0},
        {"'abc'[0]->d;", 700, 0},
        {"function f() { return yield 1; }", 700, 0},
        {"function f() { return 2; yield 1; }", 700, 0},
        {"const A = [1, 2 . 'b'];", 506, 0},
        {"class A { const B = array(1); }", 506, 0},
        {"A::B[0];", 506, 0},
        {"class A { public $b = self::C ? 1 : 2; }", 506, 0},
        {"function f($a = (1)) { }", 506, 0},
        {"array(1)[0];", 505, 0},
        {"static::class;", 505, 0},
        {"function f() { $a = yield; f(yield 1); if (yield 2) { } yield 3; }", 505, 0},
        {"$a->f()[0]->b;", 504, 0},
        {"(new A)[0];", 504, 0},
        {"const A = -1; class B { public $c = array('a' => self::D, +1, \\E); }", 0, 0},
        {"$a->list(); $a->for; $a['b'](); A::$b(); $a->b['c'](); $a[0]::b(); $$a::b(); new $a->b;", 0, 0},
        {"function f() { static $a; if ($b) { static $a; } }", 0, 803},
        {"$f = function () use ($a) { static $a; };", 0, 803},
        {"class Match { function match() { return match(1); } }", 0, 800},
    };
    for (const auto& [text, since, until] : Cases) {
        EXPECT_EQ(Describe(text), "") << text;
        for (const int version : Versions) {
            const bool valid = version >= since && (until == 0 || version < until);
            EXPECT_EQ(Describe(text, version).empty(), valid)
                << version << ": " << text << Describe(text, version);
        }
    }
}

namespace {

/// A program as a cell of a table, whose lines Markdown would join.
std::string Cell(const std::string& program)
{
    std::string cell = "`";
    for (const char c : program.substr(0, program.find_last_not_of('\n') + 1))
        cell += c == '\n' ? "`<br>`" : c == '|' ? std::string("\\|") : std::string(1, c);
    return cell + "`";
}

void AddTable(std::string& page, const std::string& title, const std::vector<const SFeatureRow*>& rows)
{
    if (rows.empty())
        return;
    page += "\n| " + title + " | Example | Beside it |\n|---|---|---|\n";
    for (const SFeatureRow* row : rows) {
        std::string text;
        for (const char* c = row->text; *c; ++c)
            text += (*c == '|' || *c == '*' || *c == '_' || *c == '[' || *c == '<' ? "\\" : "") +
                    std::string(1, *c);
        page += "| " + text + " | " + Cell(row->with) + " | " + Cell(row->without) + " |\n";
    }
}

std::string VersionPage()
{
    std::string page = ReadBytes(SOURCE_DIR "/docs/php-versions.md");
    page.erase(page.find("\n## "));
    for (const int version : Versions) {
        std::vector<const SFeatureRow*> came;
        std::vector<const SFeatureRow*> gone;
        for (const SFeatureRow& row : Rows) {
            if (row.since == version)
                came.push_back(&row);
            if (row.until == version)
                gone.push_back(&row);
        }
        if (came.empty() && gone.empty())
            continue;
        page += "\n## PHP " + VersionText(version) + "\n";
        AddTable(page, "New", came);
        AddTable(page, "Gone", gone);
    }
    return page;
}

} // namespace

TEST(Versions, AreWhatTheirPageSays)
{
    const std::string path = SOURCE_DIR "/docs/php-versions.md";
    const std::string page = VersionPage();
    if (std::getenv("WRITE_DOCS"))
        WriteBytes(path, page);
    EXPECT_EQ(ReadBytes(path), page) << "with WRITE_DOCS=1 this test writes the page";
}

} // namespace Kesh::Tests
