#include "MarkupDiagnoser.h"

#include "Base/CommonString.h"
#include "Markup/OthersNames.h"

#include <gtest/gtest.h>

namespace Kesh::Tests {

namespace {

struct SCase
{
    const char* text;
    const char* expected; ///< code and span, 0-based
};

class HtmlProblems : public ::testing::Test
{
protected:
    void Expect(int first, int last, std::initializer_list<SCase> cases)
    {
        for (const auto& [text, expected] : cases)
            EXPECT_EQ(m_diagnoser.Describe(text, first, last), expected) << text;
    }
    /// A one-line text after the first fix of its first diagnostic.
    std::string Mend(std::string_view text, int first, int last)
    {
        std::wstring mended = Base::CCommonString::FromUtf8(text);
        const auto& found = m_diagnoser.Diagnose(text, first, last);
        if (found.empty() || found.front().details.fixes.empty())
            return "no fix";
        for (const CodeAnalyzer::STextEdit& edit : found.front().details.fixes.front().edits)
            mended.replace(edit.span.start.x, edit.span.end.x - edit.span.start.x, edit.text);
        return Base::CCommonString::ToUtf8(mended);
    }

    CMarkupDiagnoser m_diagnoser{L"/a.html", L"HTMLSPDocFactory"};
};

} // namespace

TEST_F(HtmlProblems, AreToldOncePerSlip)
{
    Expect(2003, 2099,
           {
               {"<p a=\"b c=\"d\" e=\"f\">", "2003 0:5-0:6"},
               {"<a b='c>d</a> <p e='f'>", "2003 0:5-0:6"},
               {"<p a='b'\n<i>c</i>", "2004 0:0-0:2"},
               {"<p a=1 b A=2>", "2005 0:9-0:10"},
               {"<p a=\"b\"c=\"d\">", "2006 0:8-0:9"},
               {"<p a=\"say \"b\" now\">", "2006 0:11-0:12"},
               {"<p a\"b\">", "2007 0:4-0:5"},
               {"<p a=b\">", "2008 0:6-0:7"},
               {"<p a==\"b\">", "2008 0:5-0:6"},
               {"<p =a>", "2009 0:3-0:4"},
               {"<p a=>", "2010 0:3-0:5"},
               {"<br/ a>", "2011 0:3-0:4"},
               {"<p></p a>", "2012 0:7-0:8"},
               {"<p></p/>", "2013 0:6-0:8"},
               {"<p>a<p b", "2015 0:4-0:5"},
               {"<p>a<", "2016 0:5-0:5"},
               {"<p>a</>", "2017 0:6-0:7"},
               {"<p>a < b</p>", "2018 0:6-0:7"},
               {"<p>a</p><!-- b", "2020 0:8-0:9"},
               {"<p>a</p><!-->", "2021 0:8-0:13"},
               {"<p>a</p><!-- b --!>", "2022 0:15-0:19"},
               {"<p>a</p><!-- b <!-- c -->", "2023 0:15-0:19"},
               {"<p>a</p><!- b -->", "2024 0:8-0:10"},
               {"<p><![CDATA[a]]>", "2025 0:3-0:12"},
               {"<p><svg><![CDATA[a", "2026 0:8-0:9"},
               {"<!DOCTYPE html", "2027 0:0-0:1"},
               {"<!DOCTYPE html PUBLIC a><p>", "2028 0:0-0:24"},
               {"<p>&nbps; &foo", "2029 0:3-0:9"},
               {"<p>&copy 1", "2030 0:3-0:8"},
               {"<p>&#;", "2031 0:3-0:5"},
               {"<p>&#x110000; &#0;", "2032 0:3-0:13 2032 0:14-0:18"},
               {"<script><!-- a</script", "2033 0:8-0:9"},
               {"<p>\x01\x02", "2034 0:3-0:4"},
           });
}

TEST_F(HtmlProblems, AreNotSeenWhereThereAreNone)
{
    Expect(2003, 2299,
           {
               {"<a href=\"?a=1&copy=2&b\" title='a > \"b\" <c>'>&amp;&#160;&#x20AC;&notin;</a>", ""},
               {"<!DOCTYPE html PUBLIC \"-//W3C//DTD XHTML 1.0 Strict//EN\"\n \"x.dtd\"><br/><img alt=a / >",
                "2011 1:25-1:26"},
               {"<!--[if IE]><p><![endif]--><![if !IE]><p><![endif]><!-- - -- a -->", ""},
               {"<?xml version='1.0'?><!DOCTYPE html><html><p>", ""},
               // XML, and what holds no tag of HTML.
               {"<?xml version='1.0'?><a b='<' c=d><![CDATA[e]]></a>", ""},
               {"a < b && c <= d; e &foo; f", ""},
               {"<p class=\"{{ a }}\" {{ b }} {% if c %}class=\"d\"{% endif %}>{{ e < f }}", ""},
               {"<p title=\"<x:y z=\"a\"/>\"><# if ( a < b ) { #>", ""},
           });
    CMarkupDiagnoser php;
    EXPECT_EQ(php.Describe("<p><?php echo <<<'A'\n<?php a\nA;\n?><? b ?>", 2003, 2299), "");
    EXPECT_EQ(php.Describe("<p><?php echo 'for (i = 0; i < 3; ++i)'; ?> a < b", 2003, 2299),
              "2018 0:47-0:48");
    EXPECT_EQ(php.Describe(
                  "<p <?= $a ?> class=b <?php if (1): ?> id=c <?php else: ?> id=d <?php endif ?>>&<?= 1 ?>;"
                  "<input type='<?= $t ?>' size=<?= 1 ?>x id='a <?= 2 ?>'><<?= $t ?>>",
                  2003, 2299),
              "");
}

TEST_F(HtmlProblems, JudgeValues)
{
    Expect(2200, 2299,
           {
               {"<input type=txet><input type=TEXT><input type=''>", "2201 0:12-0:16 2201 0:41-0:48"},
               {"<form method=put><form method=Post>", "2201 0:13-0:16"},
               {"<p dir=lft hidden=x contenteditable>", "2201 0:7-0:10 2201 0:18-0:19"},
               {"<iframe sandbox='allow-forms allow-scrpts'>", "2201 0:29-0:41"},
               {"<link rel='styleshet me x'><a rel=home target=_blnk><a target=x>",
                "2201 0:11-0:20 2201 0:46-0:51"},
               {"<script type=text/javascrpt></script><script type=text/x-a></script>", "2201 0:13-0:27"},
               {"<img width=10px height=50%><td colspan=-1><ol start=-1><meter value=.5>",
                "2202 0:11-0:15 2202 0:39-0:41"},
               {"<input checked=false required=true disabled=disabled>", "2203 0:15-0:20 2203 0:30-0:34"},
               {"<p id='a b'><p id=''><p id=é>", "2204 0:7-0:10 2204 0:15-0:20"},
               {"<a href='http:/a'><a href='http://a:b/'><a href='https://'>",
                "2205 0:9-0:16 2205 0:27-0:38 2205 0:49-0:57"},
               {"<a href=' //a b?c[]=d ' ><a href='http://a.b:80/c d'><a href=x:y><a href='http://[::1]:8/'>",
                ""},
               {"<font>a</font><font>b</font><td align=left><td align=right>", "2206 0:1-0:5 2207 0:32-0:37"},
               {"<svg><a type=x href='http:/a'/></svg><x-y type=txet id='a b'>", ""},
           });
}

TEST_F(HtmlProblems, AreMended)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<p a=\"b c=\"d\">", "<p a=\"b\" c=\"d\">"},
        {"<p a='b' <i>c</i>", "<p a='b'> <i>c</i>"},
        {"<p a=1 A=2>", "<p a=1>"},
        {"<p a=\"b\"c>", "<p a=\"b\" c>"},
        {"<p a=b\">", "<p a=\"b\">"},
        {"<p a=>", "<p a>"},
        {"<br/ a>", "<br a>"},
        {"<p></p a>", "<p></p >"},
        {"<p></p/>", "<p></p>"},
        {"<p>a < b</p>", "<p>a &lt; b</p>"},
        {"<p><!-- b", "<p><!-- b-->"},
        {"<p><!-- b --!>", "<p><!-- b -->"},
        {"<p>&nbps;", "<p>&nbsp;"},
        {"<p>&copy 1", "<p>&copy; 1"},
        {"<form method=psot>", "<form method=post>"},
        {"<img width=10px>", "<img width=10>"},
        {"<input a checked=false>", "<input a >"},
        {"<input required=true>", "<input required>"},
        {"<p class\"b\">", "<p class=\"b\">"},
        {"<p class='b' '>", "<p class='b' >"},
        {"<p =a>", "<p a>"},
        {"<p><!-- b <!-- c -->", "<p><!-- b  c -->"},
        {"<p><!- b -->", "<p><!-- b -->"},
        {"<p>&#;", "<p>&amp;#;"},
        {"<p id=' a b c '>", "<p id='a-b-c'>"},
        {"<p id=''>", "<p >"},
    };
    for (const auto& [text, mended] : cases) {
        EXPECT_EQ(Mend(text, 2003, 2299), mended) << text;
        EXPECT_EQ(m_diagnoser.Describe(mended, 2003, 2099), "") << mended;
    }
}

TEST_F(HtmlProblems, NamesOfOthersAreTheirs)
{
    for (const wchar_t* tag : {L"x:y", L"roundcube:label"})
        EXPECT_TRUE(CodeAnalyzer::IsPrefixed(tag));
    for (const wchar_t* tag : {L"xy", L":y", L"x:"})
        EXPECT_FALSE(CodeAnalyzer::IsPrefixed(tag));
    for (const wchar_t* name : {L"webkitAllowFullScreen", L"-moz-x", L"xmlns:xlink"})
        EXPECT_TRUE(CodeAnalyzer::IsVendorAttribute(name));
    for (const wchar_t* name : {L"moz", L"xml:foo", L"class"})
        EXPECT_FALSE(CodeAnalyzer::IsVendorAttribute(name));
}

} // namespace Kesh::Tests
