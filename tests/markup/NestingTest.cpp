#include "MarkupDiagnoser.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <map>
#include <string>

namespace Kesh::Tests {

namespace {

struct SCase
{
    const char* text;
    const char* expected; ///< code and span, 0-based
};

class Nesting : public ::testing::Test
{
protected:
    void Expect(std::initializer_list<SCase> cases)
    {
        for (const auto& [text, expected] : cases)
            EXPECT_EQ(m_diagnoser.Describe(text, 2100, 2199), expected) << text;
    }

    CMarkupDiagnoser m_diagnoser;
};

std::string Repeated(std::string_view piece, std::size_t times)
{
    std::string text;
    text.reserve(piece.size() * times);
    for (; times > 0; --times)
        text += piece;
    return text;
}

} // namespace

// Each mistake beside something correct that looks like it.
TEST_F(Nesting, FindsWhatDoesNotNest)
{
    Expect({
        {"<ul><li>a<li>b</ul>", ""},
        {"<ul><li>a</span></ul>", "2101 0:9-0:16"},
        {"<section><div>a</section>", "2102 0:14-0:15"},
        {"<section><p>a</section>", ""},
        {"<b><i>a</b></i>", "2103 0:7-0:11"},
        {"<b><i>a</i></b>", ""},
        {"<div><h2>a</h3></div>", "2104 0:10-0:15"},
        {"<div><h2>a</h3></h2></div>", "2101 0:10-0:15"},
        {"<p>a<br></br>b</p>", "2105 0:8-0:13"},
        {"<div/><svg><g/></svg><my-tag></my-tag>", ""},
        {"<form/>a</form>", ""},
        {"<p>a<ul><li>b</ul></p>", "2107 0:4-0:8"},
        {"<p>a<ul><li>b</ul><p>c</p>", ""},
        {"<p><span>a</span></p>", ""},
        {"<a>b<a>c</a>", "2108 0:4-0:7"},
        {"<a>b<a>c</a></a>", "2108 0:4-0:7"},
        {"<h1>a<h2>b</h2>", "2108 0:5-0:9"},
        {"<table><tr>a<td>b</table>", "2109 0:11-0:12"},
        {"<table><tr><div>a</div><p>b</p></tr></table>", "2110 0:11-0:16"},
        {"<table> <tr> <td>a</table>", ""},
        {"<html><body>a<body>b</html>", "2111 0:13-0:19"},
        // A mistyped name is an error of its own, once.
        {"<dvi>a</div>", ""},
        {"<div>a</dvi>", "2104 0:6-0:12"},
        {"<div><mark>a</div>", "2102 0:11-0:12"},
        // What begins or ends elsewhere.
        {"a</div></body></html>", ""},
        {"<html><body><div>a", ""},
        {"<html><body><div>a</body></html>", "2102 0:17-0:18"},
        {"<html><body>a</div></body></html>", "2101 0:13-0:19"},
    });
}

TEST_F(Nesting, FollowsTheBranchesOfATemplate)
{
    Expect({
        // Branches that agree, in both syntaxes.
        {"<?php if ($a): ?><div class=a><?php else: ?><div><?php endif ?>x</div>", ""},
        {"<?php if ($a) { ?><div><?php } elseif ($b) { ?><div><?php } else { ?><div><?php } ?>x</div>", ""},
        {"<?php switch ($a) { case 1: ?><b><?php break; default: ?><b><?php } ?>x</b>", ""},
        {"<?php switch ($a): case 1: case 2: ?><b><?php break; default: ?><b><?php endswitch ?>x</b>", ""},
        {"<?php if ($a) echo '<div>'; else echo '<div>'; ?>x</div>", ""},
        // Two statements under one condition, and under its opposite.
        {"<i><?php if ($w): ?><b><u><?php endif ?>x<?php if ($w): ?></u></b><?php endif ?></i>", ""},
        {"<i><?php if ($w): ?><b><?php endif ?>x<?php if (!$w): ?><?php else: ?></b><?php endif ?></i>", ""},
        {"<i><?php if ($a == 1): ?><b><?php else: ?><u><?php endif ?>x"
         "<?php if ($a != 1): ?></u><?php else: ?></b><?php endif ?></i>",
         ""},
        {"<i><?php if ($w): ?><b><?php endif ?>x<?php if ($w): ?></u><?php endif ?></i>", "2104 0:55-0:59"},
        // Open in one case, closed in all or in none.
        {"<i><?php if ($w): ?><b><?php endif ?>x</b></i>", "2112 0:38-0:42"},
        {"<i><?php if ($w): ?><b><?php endif ?>x</i>", "2113 0:37-0:38"},
        {"<i><?php if ($w): ?><b>x</b><?php else: ?><b>y<?php endif ?></i>", "2113 0:45-0:46"},
        {"<i><b><?php if ($w): ?>x</b><?php else: ?>y<?php endif ?></i>", "2113 0:42-0:43"},
        // Conditions that nobody can compare.
        {"<i><?php if ($w): ?><b><?php endif ?>x<?php if ($v): ?></b><?php endif ?></i>", ""},
        {"<?php if ($a): ?><b><?php elseif ($b): ?><b><?php endif ?>x<?php if ($a || $b): ?></b><?php endif "
         "?>",
         ""},
        // End tags in a branch that nothing around it has begun; a part of a document may end its elements.
        {"<form><?php if ($a): ?>x</div><?php endif ?></form>", "2101 0:24-0:30"},
        {"<form><?php if ($a): f() ?>x</div><?php endif ?></form>", ""},
        {"<?php if ($a): ?>x</h2></h2><?php endif ?>", "2101 0:18-0:23 2101 0:23-0:28"},
        {"<?php if ($a): ?><div>x</div></div><?php endif ?>", ""},
        {"<?php foreach ($a as $b): if ($b): ?>x</em><?php endif; endforeach ?>", "2101 0:38-0:43"},
        {"<?php foreach ($a as $b): if ($b): ?></em><?php endif ?><em><?php endforeach ?></em>", ""},
        // A piece of text that is not ended ends nowhere else.
        {"<div><h2>x", "2102 0:9-0:10"},
        {"<div><?php f() ?><a>x<?php if ($a): ?><em>y<?php endif ?>", "2113 0:38-0:42"},
        // Loops.
        {"<ul><?php foreach ($a as $b): ?><li>x<?php endforeach ?></ul>", ""},
        {"<tr><?php foreach ($a as $b): ?></tr><tr><?php endforeach ?></tr>", ""},
        {"<i><?php foreach ($a as $b): ?><b>x<?php endforeach ?></i>", "2113 0:34-0:35"},
        {"<?php foreach ($a as $b) { ?><ul><?php } ?>x<?php foreach ($a as $b) { ?></ul><?php } ?>", ""},
        // Branches that are left.
        {"<i><?php if ($a) { ?><b>x<?php return; } ?></i>", ""},
        {"<?php while ($a) { ?><i><?php if ($b) { ?></i><?php continue; } ?>x</i><?php }", ""},
        // Templates for scripts between PHP.
        {"<i><# if ( data.a ) { #><b class=x><# } else { #><b><# } #>{{ data.b }}</b></i>", ""},
        {"<i><# _.each( data.a, function( b ) { #><b><?php f() ?></b><# }); #></i></b>", "2101 0:72-0:76"},
        {"<i><# if ( data.a ) { #><b>x<# } #></i>", "2113 0:27-0:28"},
        {"<i><# if ( data.a ) { #><?php if ($a): ?><b><# } #><?php endif ?></i></u>", ""},
        // Functions stand for themselves.
        {"<?php function open() { ?><div><?php } function close() { ?></div><?php }", ""},
        {"<?php function open() { ?><div><?php }", "2115 0:26-0:31"},
        {"<?php function close() { ?></div><?php }", "2116 0:27-0:33"},
        {"<?php $f = function () { echo '<ul><li></div></ul>'; };", "2101 0:39-0:45"},
        // Statements inside of a tag, and those that tear one.
        {"<p <?php if ($a): ?>class=b<?php endif ?>>x</p>", ""},
        {"<?php if ($a): ?><p class=a<?php else: ?><p<?php endif ?>>x</p>", ""},
        {"<<?= $tag ?> class=a>x</<?= $tag ?>>", ""},
        {"<h<?= $n ?>>x</h<?= $n ?>>", ""},
    });
}

TEST_F(Nesting, ReadsWhatIsPrinted)
{
    Expect({
        {"<?php echo '<ul>', '<li>', $x, '</div></ul>';", "2101 0:32-0:38"},
        {"<?php echo \"<i>\\n<b class=\\\"$c\\\">x</i>\\n\";", "2102 0:33-0:34"},
        {"<?php print <<<E\n<i><b>$x</i>\nE;", "2102 1:7-1:8"},
        {"<?php printf('<i class=\"%s\"><b>%d%%</i>', $a, $b);", "2102 0:34-0:35"},
        {"<i><?= '<b>' . $x ?></b></i>", ""},
        // What is not printed as it is written, and what is not known.
        {"<?php echo f('<i><b></i>'), $a ? '<i><b></i>' : '';", ""},
        {"<?php echo '<div'; echo ' class=a'; echo '>x</div>';", ""},
        {"<ul><?= implode('</li>', $a) . '</li>' ?></ul>", ""},
        {"<?php $o->printf('<i><b></i>'); $s = '<i><b></i>';", ""},
        {"<?php echo '<li>', f('<em>' . $a) . '</em>', '</li></b>';", ""},
        {"<select><option a=''<?= $a ? ' b>' : '>' ?><?= '<option>' ?></select></b>", "2101 0:69-0:73"},
        // XML is not HTML.
        {"<?php echo '<?xml version=\"1.0\"?>' ?><rss><link>a</link><a><b></a></rss>", ""},
    });
}

// Where the whole does not come out even, the indentation tells which tag is meant.
TEST_F(Nesting, IsGuidedByIndentation)
{
    Expect({
        {"<div>\n  <div>\n    <b>x</b>\n  <div>\n    y\n  </div>\n</div>\n", "2102 2:11-2:12"},
        {"<div>\n  <div>\n    x\n  </div>\n    </div>\n</div>\n", "2101 4:4-4:10"},
        {"<ul>\n    <li>x</li>\n    <li>y\n        z\n    </ol>\n</ul>\n", "2114 2:8-2:9"},
        // Uneven, but even enough.
        {"<div>\n<div>\n    x\n  </div>\n    </div>\n", ""},
    });
}

// What is offered mends the text: tried on a copy of it.
TEST_F(Nesting, FixesMendWhatTheyAreOfferedFor)
{
    const struct
    {
        const char* text;
        const char* mended;
    } cases[] = {
        {"<section><div>a</section>", "<section><div>a</div></section>"},
        {"<section>\n<div>\n<b>a</b>\n</section>", "<section>\n<div>\n<b>a</b></div>\n</section>"},
        {"<div><H2>a</h3></div>", "<div><H2>a</H2></div>"},
        {"<ul><li>a</span></ul>", "<ul><li>a</ul>"},
        {"<p>a<br></br>b</p>", "<p>a<br>b</p>"},
        {"<i><?php if ($w): ?><b>x<?php endif ?></i>", "<i><?php if ($w): ?><b>x</b><?php endif ?></i>"},
        {"<b><em>a</b></em>", "<b><em>a</em></b>"},
        {"<ul>\n    <li>x</li>\n    <li>y\n        z\n    </ol>\n</ul>\n",
         "<ul>\n    <li>x</li>\n    <li>y<ol>\n        z\n    </ol>\n</ul>\n"},
        {"<i><?php if ($w): ?><b><?php endif ?>x</b></i>",
         "<i><?php if ($w): ?><b><?php endif ?>x<?php if ($w): ?></b><?php endif ?></i>"},
        {"<i><?php if ($v) { f(); } if ($w['x'] > 1) { ?><b><?php } ?>x</b></i>",
         "<i><?php if ($v) { f(); } if ($w['x'] > 1) { ?><b><?php } ?>x<?php if ($w['x'] > 1): "
         "?></b><?php endif ?></i>"},
    };
    for (const auto& [text, mended] : cases) {
        const auto found = m_diagnoser.Diagnose(text);
        ASSERT_EQ(found.size(), 1u) << text;
        ASSERT_EQ(found[0].details.fixes.size(), 1u) << text;
        std::string copy = text;
        std::vector<CodeAnalyzer::STextEdit> edits = found[0].details.fixes[0].edits;
        std::reverse(edits.begin(), edits.end());
        for (const CodeAnalyzer::STextEdit& edit : edits) {
            const auto offset = [&](const SyntaxParser::CIterator& place) {
                std::size_t line = 0;
                for (std::int64_t i = 0; i < place.y; ++i)
                    line = copy.find('\n', line) + 1;
                return line + static_cast<std::size_t>(place.x);
            };
            const std::size_t begin = offset(edit.span.start);
            copy.replace(begin, offset(edit.span.end) - begin,
                         std::string(edit.text.begin(), edit.text.end()));
        }
        EXPECT_EQ(copy, mended);
        EXPECT_EQ(m_diagnoser.Describe(copy), "") << copy;
    }
}

// Where it is not known what the start tag depends on, nothing is offered.
TEST_F(Nesting, OffersNoConditionThatMayNotBeTheSame)
{
    for (const char* text : {"<i><?php if ($v): ?><?php elseif ($w): ?><b><?php endif ?>x</b></i>",
                             "<i><?php foreach ($v as $w): ?><b><?php endforeach ?>x</b></i>",
                             "<i><?php if ($v): ?><?php else: ?><b><?php endif ?>x</b></i>",
                             "<i><?php switch ($v) { case 1: ?><b><?php } ?>x</b></i>"}) {
        for (const CodeAnalyzer::SDiagnostic& found : m_diagnoser.Diagnose(text, 2112, 2112))
            EXPECT_TRUE(found.details.fixes.empty()) << text;
    }
}

// The place that belongs to a mistake is named with it, and what was found and is due.
TEST_F(Nesting, NamesTheOtherPlace)
{
    const struct
    {
        const char* text;
        const char* related; ///< where the related place begins
        std::map<std::string, std::wstring> arguments;
    } cases[] = {
        {"<section>\n<div>a\n</section>", "1:0", {{"expected", L"</div>"}, {"found", L"</section>"}}},
        {"<b><i>a</b></i>", "0:3", {{"expected", L"</i>"}, {"found", L"</b>"}}},
        {"<a>b<a>c</a>", "0:0", {{"name", L"<a>"}, {"outer", L"<a>"}}},
        {"<p>a\n<ul><li>b</ul>\n</p>", "2:0", {{"name", L"<ul>"}}},
    };
    for (const auto& [text, related, arguments] : cases) {
        const auto found = m_diagnoser.Diagnose(text);
        ASSERT_EQ(found.size(), 1u) << text;
        const CodeAnalyzer::SDetails& details = found[0].details;
        ASSERT_EQ(details.related.size(), 1u) << text;
        const SyntaxParser::CIterator start = details.related[0].pos.start;
        EXPECT_EQ(std::to_string(start.y) + ":" + std::to_string(start.x), related) << text;
        for (const auto& [name, value] : arguments) {
            const std::wstring* given = details.Find(name);
            ASSERT_NE(given, nullptr) << text << " " << name;
            EXPECT_EQ(*given, value) << text << " " << name;
        }
    }
}

// Anything above linear time takes longer than a test may.
TEST_F(Nesting, HoldsOnAnyText)
{
    for (const auto& [head, piece, tail] :
         {std::array{"", "<div>", ""}, std::array{"", "</div>", ""}, std::array{"<p>", "<div>", "</p>"},
          std::array{"", "<p><a><b>", "</a>"}, std::array{"<table>", "<tr>x", ""},
          std::array{"", "<?php if ($a): ?><b>", ""}, std::array{"", "<?php if ($a) { ?></b>", ""},
          std::array{"", "<?php function() { ?><b>", ""},
          std::array{"", "<?php switch ($a) { case 1: ?><b>", "}"},
          std::array{"<b>", "<?php foreach ($a as $b): ?></b><b>", ""}})
        EXPECT_LT(m_diagnoser.Diagnose(head + Repeated(piece, 500000) + tail).size(), 500010u) << piece;
}

} // namespace Kesh::Tests
