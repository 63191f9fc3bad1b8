#include "Diagnose.h"

#include "Checks/CAGrammarCheck.h"
#include "Diagnostics/Messages.h"
#include "Kesh/SyntaxParser/ITokenSource.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <gtest/gtest.h>
#include <random>

namespace Kesh::Tests {

namespace {

struct SCase
{
    const char* text;
    const char* expected; ///< code and span, 0-based
};

std::string Repeated(std::string_view piece, std::size_t times)
{
    std::string text;
    text.reserve(piece.size() * times);
    for (; times > 0; --times)
        text += piece;
    return text;
}

/// The tokens of a text, as "line:column text" each.
class CTokenLister final : public SyntaxParser::ITokenHandler
{
public:
    std::vector<std::string> List(std::string_view text)
    {
        const auto document = SyntaxParser::MakeSPDocument(
            boost::make_shared<SyntaxParser::CTextReader>(SyntaxParser::DecodeSource(text)),
            {L"/a.php", L"PHPSPDocFactory"});
        boost::dynamic_pointer_cast<SyntaxParser::ITokenSource>(
            document->GetComponent(L"ITokenSource").lock())
            ->AddTokenHandler(this);
        document->Parse(true);
        return std::move(m_tokens);
    }

    const std::vector<std::string>& Tokens() const { return m_tokens; }

    bool BeginTokens() override
    {
        m_tokens.clear();
        return true;
    }
    void AddToken(const SyntaxParser::SPhpToken& token) override
    {
        m_tokens.push_back(std::to_string(token.start.y) + ":" + std::to_string(token.start.x) + " " +
                           std::string(token.text.begin(), token.text.end()));
    }
    void EndTokens(SyntaxParser::CIterator end) override
    {
        m_tokens.push_back(std::to_string(end.y) + ":" + std::to_string(end.x));
    }

private:
    std::vector<std::string> m_tokens;
};

} // namespace

// What is no PHP is still cut into pieces that follow one another.
TEST(Grammar, GetsEveryPieceOnceAndInOrder)
{
    const struct
    {
        const char* text;
        std::vector<std::string> tokens;
    } cases[] = {
        {"<?php\n$a *==\n'x'", {"0:0 <?php", "1:0 $a", "1:3 *=", "1:5 =", "2:0 'x'", "2:3"}},
        {"<?php \"$a[1+1]\"",
         {"0:0 <?php", "0:6 \"", "0:7 $a", "0:9 [", "0:10 1", "0:11 +", "0:12 1]", "0:14 \"", "0:15"}},
        // An attribute never closed, with a string and a comment never closed.
        {"<?#['\n/*", {"0:0 <?", "0:2 #[", "0:4 '", "1:0 /*", "1:2"}},
        {"<?php \"$a[\nb\"", {"0:0 <?php", "0:6 \"", "0:7 $a", "0:9 [", "0:10 \n", "1:0 b", "1:1 \"", "1:2"}},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(CTokenLister().List(text), tokens) << text;
}

// A second cut of a text is the first one.
TEST(Grammar, CutsAnewAsBefore)
{
    const std::wstring code = L" $a = 'x\ny' . \"z {$b['c']} $d[0]\" . `e` # f\n/* g */ #[H('i')]\n"
                              L"<<<J\n k $l->m\n J . (int) 1 <=> 2; ?>\n<b><?= n ?>'<? yield\nfrom 'o";
    const std::string text = "<?php" + std::string(code.begin(), code.end());
    const auto document = SyntaxParser::MakeSPDocument(
        boost::make_shared<SyntaxParser::CTextReader>(SyntaxParser::DecodeSource(text)),
        {L"/a.php", L"PHPSPDocFactory"});
    const auto source = boost::dynamic_pointer_cast<SyntaxParser::ITokenSource>(
        document->GetComponent(L"ITokenSource").lock());
    CTokenLister lister;
    std::vector<std::string> first = lister.List(text);
    first.erase(first.begin()); // the opening tag
    first.pop_back();           // the end
    lister.BeginTokens();
    for (const SyntaxParser::SPhpToken& token : source->Cut(code, {5, 0}))
        lister.AddToken(token);
    EXPECT_EQ(lister.Tokens(), first);
}

// Where the mistake is and what it is called, each beside something correct that looks like it.
TEST(Grammar, NamesWhatIsMissingOrTooMuch)
{
    static constexpr SCase Cases[]{
        {"$a = 1\n$b = 2;", "1001 0:5-0:6"},
        {"$a = 1 ?>x<?php $b = 2;", ""},
        // What is to be inserted goes behind the token before it, however far away the next one is.
        {"foo()\n\n    bar();", "1001 0:4-0:5"},
        {"foo() // why\n/* not */\nbar();", "1001 0:4-0:5"},
        {"f(1\n\n\n;", "1002 3:0-3:1"},
        {"f(1\n\n\n$a = 2;", "1002 0:2-0:3"},
        {"$a = [1\n\n\n$b = 2;", "1003 0:6-0:7"},
        {"<?php\nif ($a) {\n  f();\n\n\n", "1004 2:5-2:6"},
        {"class A\n\n\n    public $b; }", "1006 0:6-0:7"},
        {"f(1, g(2);\n$b = 3;", "1002 0:8-0:9"},
        {"if ($a { f(); }", "1002 0:5-0:6"},
        {"$a = [1, [2];", "1003 0:11-0:12"},
        {"foreach ($a as $b { }", "1002 0:16-0:17"},
        {"function f() return 1; }", "1006 0:11-0:12"},
        {"f($a, , $b);", "1024 0:6-0:7"},
        {"f($a, $b,);", ""},
        {"$a = $b +;", "1011 0:9-0:10"},
        {"$a = $b $c;", "1012 0:8-0:10"},
        {"$a = 'x' 'y';", "1012 0:9-0:12"},
        {"class { }", "1013 0:6-0:7"},
        {"try { } catch (E $) { }", "1035 0:17-0:18"},
        {"do { } ($a);", "1015 0:5-0:6"},
        {"f());", "1021 0:3-0:4"},
        {"$a = 1];", "1022 0:6-0:7"},
        {"else { }", "1032 0:0-0:4"},
        {"public $a;", "1033 0:0-0:6"},
        {"$a = 'abc", "1051 0:5-0:9"},
        {"f('abc\n$a = 'def';\n", "1051 0:2-0:3"},
        {"$a = \"x $b[0 y\";", "1056 0:12-0:13"},
        {"$a = 1__0;", "1055 0:5-0:9"},
        {"class A extend B { }", "1017 0:8-0:14"},
        {"fucntion f() { }", "1017 0:0-0:8"},
        {"class A { protetced $a = 1; public $b; }", "1017 0:10-0:19"},
        {"if ($a) { f(); } elsei ($b) { g(); }", "1017 0:17-0:22"},
        {"function f($a, $b\n{\n    g();\n}\n", "1002 1:0-1:1"},
        {"$a = ['b' = 1];", "1018 0:10-0:11"},
        {"$a = array('b' = 1);", "1018 0:15-0:16"},
        {"for ($i = 0, $i < 3, $i++) { }", "1018 0:11-0:12"},
        {"for ($i = 0, $i < 3; $i++) { }", "1018 0:11-0:12"},
        {"for ($i = 0; $i < 3, $i++) { }", "1001 0:24-0:25"},
        {"for ($i = 0, $j = f(1, 2); $i < 3) { }", "1001 0:32-0:33"},
        // A string that ends nowhere, or too late, is told of where it begins.
        {"$a = 1;\n$b = \"abc $c;\nf();\n", "1051 1:5-1:6"},
        {"$a = `abc;\nf();\n", "1051 0:5-0:6"},
        {"$a = \"abc;\n$b = 1;\nf(\"x\", \"y\");\n", "1051 0:5-0:6"},
        {"$a = \"a $b['c'] d\";", "1056 0:11-0:12"},
        // One of a list of elements is what is wrong.
        {"$a = [1, , 2, , 3];", "1107 0:9-0:10 1107 0:14-0:15"},
        {"[, $a, , $b] = $c; list(, $a) = $b;", ""},
        {"['a' => $b, $c[f(1, 2)], 'd' => $e] = $f;", "1105 0:12-0:14"},
        {"list($a, 'b' => $c) = $d;", "1105 0:9-0:12"},
        // What closes nothing more is no matter of what closed before.
        {"<?php\nfunction f() {\n  if (1) {\n    g();\n", "1004 3:7-3:8"},
        {"class A { function f(); { return 1; } function g() { } }", "1153 0:22-0:23"},
        {"isset(f($a);", "1002 0:10-0:11"},
    };
    for (const auto& [text, expected] : Cases)
        EXPECT_EQ(Describe(text), expected) << text;
}

// What mends a key in quotes in a string, and a list of parts that commas tell apart.
TEST(Grammar, OffersWhatMendsIt)
{
    using CodeAnalyzer::STextEdit;
    const struct
    {
        const char* text;
        std::vector<STextEdit> edits;
    } cases[] = {
        {"<?php $a = \"a $b['c'] d\";", {{{{14, 0}, {21, 0}}, L"{$b['c']}"}}},
        {"<?php for ($i = 0, $i < 3, $i++) { }", {{{{17, 0}, {18, 0}}, L";"}, {{{25, 0}, {26, 0}}, L";"}}},
    };
    for (const auto& [text, edits] : cases) {
        const auto found = Diagnose(text);
        ASSERT_EQ(found.size(), 1U) << text;
        ASSERT_EQ(found[0].details.fixes.size(), 1U) << text;
        EXPECT_EQ(found[0].details.fixes[0].edits, edits) << text;
    }
    const auto open = Diagnose("<?php $a = \"b\n$c;\n");
    ASSERT_EQ(open.size(), 1U);
    ASSERT_EQ(open[0].details.related.size(), 1U);
    EXPECT_EQ(open[0].details.related[0].pos.start, (SyntaxParser::CIterator{0, 2}));
}

// An unclosed or odd brace is where the indentation says, not where PHP notices.
TEST(Grammar, FindsBracesByIndentation)
{
    static constexpr SCase Cases[]{
        {"<?php\nfunction f()\n{\n    if ($a) {\n        g();\n    h();\n}\n", "1004 4:11-4:12"},
        {"<?php\nclass A\n{\n    function f()\n    {\n        g();\n\n    function h()\n    {\n    }\n}\n",
         "1004 5:11-5:12"},
        {"<?php\nclass A\n{\n    function f()\n    {\n        g();\n        }\n        h();\n    }\n"
         "    public function i()\n    {\n    }\n}\n",
         "1023 6:8-6:9"},
        {"<?php\nif ($a) {\n  f();\n", "1004 2:5-2:6"},
        // Also behind an error of another kind.
        {"<?php\nclass A\n{\n    function f()\n    {\n        g(1;\n    }\n    function h($a, $a)\n    {\n"
         "        if (1) {\n            i();\n        j();\n    }\n    function k()\n    {\n    }\n}\n",
         "1002 5:10-5:11 1004 10:15-10:16"},
    };
    for (const auto& [text, expected] : Cases)
        EXPECT_EQ(Describe(text), expected) << text;
    const auto unclosed = Diagnose(Cases[0].text);
    ASSERT_EQ(unclosed.size(), 1U);
    const CodeAnalyzer::SDetails& details = unclosed[0].details;
    ASSERT_EQ(details.related.size(), 1U);
    EXPECT_EQ(details.related[0].pos.start, (SyntaxParser::CIterator{12, 3}));
    ASSERT_EQ(details.fixes.size(), 1U);
    EXPECT_EQ(details.fixes[0].edits,
              (std::vector<CodeAnalyzer::STextEdit>{{{{12, 4}, {12, 4}}, L"\n    }"}}));
}

// A second slip is found, and nothing that follows from the first.
TEST(Grammar, GoesOnAfterAnError)
{
    static constexpr SCase Cases[]{
        {"f(1;\ng();\nh(2;\n", "1002 0:2-0:3 1002 2:2-2:3"},
        {"$a = ;\n$b = 1;\nif () { f(); }\n", "1011 0:5-0:6 1011 2:4-2:5"},
        {"foo bar baz quux;\n$a = 1;\n$b = = 2;\n", "1035 0:4-0:7 1025 2:5-2:6"},
        // What has lost its frame is not told of each of its members.
        {"<?php\nclass A {\n  function f() { g(); } }\n\n  public function h() { }\n"
         "  private $a = 1;\n  public $b;\n}\n",
         "1033 4:2-4:8"},
        {"<?php\ncase 1: f(); break;\ncase 2: g(); break;\n}\nf(1;\n", "1032 1:0-1:4 1002 4:2-4:3"},
        {"$['a'] = [\n  1,\n];\n$['b'] = [\n  2,\n];\n", "1014 0:1-0:2 1014 3:1-3:2"},
        {"<?php\nclass A {\n  function f( { g(); }\n  function h() { return 1 }\n}\n",
         "1002 2:12-2:13 1001 3:24-3:25"},
        // Where a quote is lost or too many, strings and code change places only up to there.
        {"$a = ['one => 'x', 'two' => 'y'];\n$b = 'c';\nf('d', 'e'));\n", "1051 0:6-0:7 1021 2:11-2:12"},
        {"$a[one'] = 'Klik hier';\n$b['two'] = 'c';\n$c['three'] = f('d';\n", "1051 0:6-0:7 1002 2:18-2:19"},
        {"$a = f(one two', 'x');\n$b = 'c';\n$c = 'd';\n$c = f('d';\n", "1051 0:14-0:15 1002 3:9-3:10"},
        {"$a = 'one;\n\n$b = f(1;\n", "1051 0:5-3:0 1002 2:7-2:8"},
        {"if ($a) {\n    f(\"b $a);\n    g($b['c'], \"d $b\");\n}\n$c = h('d';\n",
         "1051 1:6-1:7 1002 4:9-4:10"},
        {"<?php\nclass A extends\" B\n{\n    public $c;\n\n    public function f($a)\n    {\n        return "
         "g(\"b\", $a;\n    }\n}\n",
         "1051 1:15-1:16 1002 7:23-7:24"},

        // Braces, by how the lines are indented.
        {"<?php\nfunction f()\n{\n    if ($a)\n        g();\n        h();\n    } else {\n        i(1);\n    "
         "}\n"
         "    j(2;\n}\n",
         "1006 3:10-3:11 1002 9:6-9:7"},
        {"<?php\nforeach ($a as $b)\n    g();\n    h();\n}\n$a = 1;\nf(2;\n", "1006 1:17-1:18 1002 6:2-6:3"},
        {"<?php\nfunction f()\n{\n    while ($a) {}\n        g();\n        h();\n    }\n    i(1);\n}\n$a = "
         "1;\n$b = 2;\nj(2;\n",
         "1023 3:16-3:17 1002 11:2-11:3"},
        {"<?php\nfunction f()\n{\n    if ($a) { {\n        g();\n    }\n    h();\n}\n\nfunction j()\n{\n}\n",
         "1035 3:14-3:15"},
        {"<?php\nclass A\n{\n    function f()\n    {\n        if ($a) {\n            g();\n        } }\n     "
         "   "
         "h();\n        i();\n    }\n\n    public $b;\n}\n",
         "1023 7:10-7:11"},
        {"<?php\nclass A\n{\n    function f()\n    {\n        if ($a) {\n            g();\n\n        h(1;\n  "
         "      i(2);"
         "\n    }\n\n    public function j()\n    {\n    }\n}\n",
         "1004 6:15-6:16 1002 8:10-8:11"},
        {"$sql = 'SELECT a,\n  b\nFROM c' d;\n", "1012 2:8-2:9"},
    };
    for (const auto& [text, expected] : Cases)
        EXPECT_EQ(Describe(text), expected) << text;
}

// While a line is typed, what is said is about that line, however far away the next one is.
TEST(Grammar, SpeaksOfTheLineThatIsTyped)
{
    static constexpr SCase Cases[]{
        {"if ($b) {\n    $a =\n}\n\nf();\n", "1011 1:7-1:8"},
        {"if ($b) {\n    return $\n}\n\nf();\n", "1014 1:11-1:12"},
        {"$\n\nreturn $b;\n", "1014 0:0-0:1"},
        {"$this->\n\nreturn $b;\n", "1014 0:6-0:7"},
        {"<?php class A {\n    public\n\n    // why\n    public $b;\n}\n", "1014 1:9-1:10"},
        {"<?php class A {\n    public function\n\n    public function f() { }\n}\n", "1013 1:18-1:19"},
        {"<?php class A {\n    public function g\n\n    public function f() { }\n}\n", "1005 1:20-1:21"},
        {"namespace\n\nuse A\\B;\n\nf();\n", "1013 0:8-0:9"},
        {"do\nif ($a) {\n    f();\n}\n\n$b = 1;\n", "1006 0:1-0:2"},
        {"do {\nif ($a) {\n    f();\n}\n\n$b = 1;\n", "1004 0:3-0:4"},
        {"try\n$a = f();\n$b = 1;\n", "1006 0:2-0:3"},
        {"<?php\nfunction f() {\n    try {\n    $a = f();\n}\n\nfunction g() {\n}\n", "1004 2:8-2:9"},
        {"$f = function ($a)\n$b = 1;\nf();\n", "1006 0:17-0:18"},
        {"<?php\nfunction f() {\n    if ($a) { g\n    h();\n}\n\nfunction i() {\n}\n", "1001 2:14-2:15"},
        {"<?php\nclass A {\n    const B\n\n    public function f() { }\n}\n", "1010 2:10-2:11"},
        {"<?php\nclass A {\n    function g($a,\n\n    public function f() { }\n}\n", "1002 2:17-2:18"},
    };
    for (const auto& [text, expected] : Cases)
        EXPECT_EQ(Describe(text), expected) << text;
}

// Nothing of one text is left when the next one is checked.
TEST(Grammar, TellsOfEachTextWhatItTellsOfItAlone)
{
    // A brace that the indentation asks for, and a slip right behind the place where the parse goes on.
    static constexpr const char* Second =
        "<?php\n$a = 1;\n$b = 2;\nclass A {\n    public function f() {\n        if (1) {\n            x();\n "
        "   }\n"
        "    public function g() {\n        $z = 5 $y;\n        return 2;\n    }\n}\n";
    EXPECT_EQ(Describe(Second), "1004 6:15-6:16 1012 9:15-9:17");

    std::vector<std::string> texts{Second, "<?php\n$a = 1\n$b = 2;\n"};
    std::string lacking = Second;
    lacking.erase(lacking.find(';'), 1);
    texts.push_back(lacking);
    static constexpr const char* Pieces[]{
        "$a = 1;\n", "$a = 1\n", "f(1;\n",    "if ($a) {\n", "    g();\n", "}\n", "class A {\n",
        "    }\n",   "[1, ",     "function ", "h() {\n",     "$x $y;\n",   "'z",  "foo bar baz quux;\n"};
    std::mt19937 random(11);
    for (int i = 0; i < 200; ++i) {
        std::string text = "<?php\n";
        for (int k = 0; k < 12; ++k)
            text += Pieces[random() % std::size(Pieces)];
        texts.push_back(std::move(text));
    }
    CDiagnoser diagnoser;
    for (int i = 0; i < 2000; ++i) {
        const std::string& before = texts[random() % texts.size()];
        const std::string& text = texts[random() % texts.size()];
        diagnoser.Diagnose(before);
        ASSERT_EQ(diagnoser.Describe(text), CDiagnoser().Describe(text)) << text << "\nbehind\n" << before;
    }
}

// One record for a place, which says who asks for the version that does not do.
TEST(Grammar, SaysWhichVersionIsNeededAndWhoAsksForAnother)
{
    struct SVersionCase
    {
        const char* text;
        int version;
        const wchar_t* from;
        std::vector<std::wstring> messages;
    };
    const SVersionCase cases[] = {
        {"<?php readonly class A { }",
         702,
         L"composer.json",
         {L"A readonly class needs PHP 8.2; composer.json asks for 7.2"}},
        {"<?php enum A { }", 800, L"--php-version", {L"An enum needs PHP 8.1; --php-version asks for 8.0"}},
        {"<?php enum A { }", 800, L"", {L"An enum needs PHP 8.1; the version here is 8.0"}},
        {"<?php class A { public $b { get => 1; set { } } }",
         803,
         L"code-analyzer.json",
         {L"A property hook needs PHP 8.4; code-analyzer.json asks for 8.3"}},
        {"<?php class A { function __construct(public $b { get; set; }) { } }",
         803,
         L"",
         {L"A property hook needs PHP 8.4; the version here is 8.3"}},
        {"<?php class A { function __construct(final public $b) { } }",
         704,
         L"",
         {L"A final property declared by a parameter needs PHP 8.5; the version here is 7.4"}},
        {"<?php ['x' => &$a] = $b;",
         503,
         L"",
         {L"A reference in a list needs PHP 7.3; the version here is 5.3"}},
        {"<?php class A { public ?int $a; public ?int $b; }",
         700,
         L"",
         {L"The type of a property needs PHP 7.4; the version here is 7.0",
          L"The type of a property needs PHP 7.4; the version here is 7.0"}},
        {"<?php $a = $b{0};", 800, L"composer.json", {L"An offset in braces is gone since PHP 8.0"}},
    };
    CDiagnoser diagnoser;
    for (const auto& [text, version, from, messages] : cases) {
        std::vector<std::wstring> said;
        for (const auto& [error, stops, details] : diagnoser.Diagnose(text, version, from))
            said.push_back(CodeAnalyzer::MessageOf({error, details}));
        EXPECT_EQ(said, messages) << text;
    }
}

TEST(Grammar, RefusesUnknownVersions)
{
    CodeAnalyzer::CCAGrammarCheck check;
    check.SetEnabled(true);
    for (const auto& [version, kept] :
         {std::pair(802, 802), {806, 802}, {502, 802}, {909, 802}, {0, 0}, {503, 503}}) {
        EXPECT_EQ(check.SetPhpVersion(version), version == kept) << version;
        EXPECT_EQ(check.GetChoice(L"a.php").phpVersion, kept) << version;
    }
    check.SetChoices([](const std::wstring&) { return CodeAnalyzer::SGrammarChoice{true, 999}; });
    EXPECT_EQ(check.GetChoice(L"a.php").phpVersion, 0) << "what a host has made up";
}

// Any nesting and any bytes: an answer in linear time, on the heap.
TEST(Grammar, StandsWhateverItIsGiven)
{
    constexpr std::size_t many = 1000000;
    for (const char* piece :
         {"(",          "[", "{",  "f(",      "\"{$a[",   "if ($a) {", "#[",     "$a = function () {",
          "<<<A\n{$a[", "}", ")",  "match (", "fn() => ", "class {",   "? :",    "/*",
          "'",          "`", "&$", "new ",    "${",       "\x01 ",     "\"$a b "})
        Diagnose("<?php " + Repeated(piece, many / std::string_view(piece).size()));
    EXPECT_TRUE(Diagnose("<?php $a = " + Repeated("(", many) + "1" + Repeated(")", many) + ";").empty());

    // What there may be one of each, and what jumps out of many blocks.
    const auto numbered = [](std::size_t count, const std::string& before, const std::string& after) {
        std::string list;
        for (std::size_t i = 0; i < count; ++i)
            list += (i ? "," : "") + before + std::to_string(i) + after;
        return list;
    };
    constexpr std::size_t names = 60000;
    const std::string parameters = numbered(names, "$p", "");
    std::string types = numbered(names, "T", "");
    std::replace(types.begin(), types.end(), ',', '|');
    EXPECT_TRUE(Diagnose("<?php function f(" + parameters + ") {}").empty());
    EXPECT_TRUE(Diagnose("<?php $f = function () use (" + parameters + ") {};").empty());
    EXPECT_TRUE(Diagnose("<?php function f(" + types + " $a) {}").empty());
    EXPECT_EQ(Diagnose("<?php function f(" + parameters + "," + parameters + ") {}").size(), names);
    EXPECT_EQ(Diagnose("<?php function f(T" + Repeated("|T", names) + " $a) {}").size(), names);
    EXPECT_EQ(Diagnose("<?php " + Repeated("$a[];", names) + Repeated("$b[0] = 1;", names)).size(), names);
    EXPECT_EQ(Diagnose("<?php " + Repeated("#[Attribute] ", names) + "class A {}").size(), names - 1);
    const std::string loops = Repeated("while (1) {", names);
    const std::string ends = Repeated("}", names);
    EXPECT_TRUE(Diagnose("<?php " + loops + Repeated("break 50000;", names) + ends).empty());
    EXPECT_TRUE(Diagnose("<?php x: " + loops + Repeated("goto x;", names) + ends).empty());
    Diagnose("<?php " + Repeated("(", names) + Repeated("x y z ", names) + Repeated("]", names) +
             "; = = =; [ ] (;");

    std::mt19937 random(7);
    for (int round = 0; round < 300; ++round) {
        std::string text = "<?php ";
        static constexpr const char* pieces[]{
            "$a", "f",  "(",      ")",      "{",  "}",     "[",   "]",    ";",  ",",
            "=",  "=>", "class",  "public", "if", "else",  "\"",  "'x'",  "{$", "${",
            "?>", "<?", "<<<X\n", "X\n",    "fn", "match", "use", "case", "::", "->"};
        for (int i = 0; i < 200; ++i)
            text += std::string(pieces[random() % std::size(pieces)]) + (random() % 3 ? " " : "\n");
        for (const auto& diagnostic : Diagnose(text))
            EXPECT_LE(diagnostic.error.pos.start, diagnostic.error.pos.end) << text;
    }
}

} // namespace Kesh::Tests
