#include "Base/CommonString.h"
#include "SyntaxParser/MarkupPass.h"
#include "markup/MarkupTestText.h"

#include <gtest/gtest.h>

namespace Kesh::SyntaxParser {

namespace {

/// What a pass hands on, in one line: tokens as their kind's letter and their text, islands as "#";
/// attributes in brackets, problems as "!name(text)", styles as "style(text)".
class CPrinter final : public IMarkupHandler
{
public:
    static std::string Of(std::string_view text, bool isSmarty = false)
    {
        const std::wstring wide = Base::CCommonString::FromUtf8(text);
        CPrinter printer;
        RunMarkupPass(wide, EMarkup::Html, FindIslands(wide), nullptr, {&printer}, {.isSmarty = isSmarty});
        return printer.m_result;
    }
    bool BeginMarkup(const IMarkupPlaces& places) override
    {
        m_places = &places;
        return true;
    }
    void AddHtml(const SHtmlToken& token) override
    {
        EXPECT_EQ(token.span.begin, m_end);
        m_end = token.span.end;
        constexpr const char* kinds[] = {"T", "<", "/", "C", "D", "X", "I"};
        std::string text = kinds[static_cast<std::size_t>(token.kind)];
        const bool isTag = token.kind == EHtmlTokenKind::StartTag || token.kind == EHtmlTokenKind::EndTag;
        text += Print(isTag ? token.name : token.span);
        for (const SHtmlAttribute& attribute : token.attributes)
            text +=
                "[" + Print(attribute.name) + (attribute.hasValue ? "=" + Print(attribute.value) : "") + "]";
        text += token.selfClosing ? "/" : "";
        Add(text + (token.unfinished ? "..." : ""));
    }
    void AddProblem(EHtmlProblem problem, SMarkupSpan span) override
    {
        Add("!" + std::string(NameOf(problem)) + "(" + Print(span) + ")");
    }
    void BeginStyle(EStyleKind, SMarkupSpan whole) override { Add("style(" + Print(whole) + ")"); }
    void AddStyle(const SStyleToken&) override {}
    void EndStyle() override {}
    void EndMarkup() override { EXPECT_EQ(m_end, m_places->Text().size()); }

private:
    std::string Print(SMarkupSpan span) const
    {
        std::wstring text(m_places->Text(span));
        std::ranges::replace(text, MarkupIsland, L'#');
        text.erase(std::unique(text.begin(), text.end(),
                               [](wchar_t a, wchar_t b) { return a == L'#' && b == L'#'; }),
                   text.end());
        return Base::CCommonString::ToUtf8(text);
    }
    void Add(const std::string& item) { m_result += (m_result.empty() ? "" : " ") + item; }

    const IMarkupPlaces* m_places = nullptr;
    std::size_t m_end = 0;
    std::string m_result;
};

} // namespace

// The rest of the standard is held against another tokenizer.
TEST(HtmlTokens, TakeIslandsAnywhere)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a<?= 1 ?>b<p>", "Ta I# Tb <p"},
        {"<<?= 1 ?> id=a></<?= 1 ?>><h<?= 1 ?>></h<?= 1 ?>>", "<#[id=a] /# <h# /h#"},
        // After the name of an element, attributes follow.
        {"<body<?= 1 ?>><P<?= 1 ?>class=a>", "<body[#] <P[#class=a]"},
        {"<p <?= '\">' ?> <?= 1 ?>a b<?= 1 ?>='c'<?= 1 ?>d=<?= 1 ?>e f=\"<?= '>\"' ?>\"<?= 1 ?>>",
         "<p[#][#a][b#=c][#d=#e][f=#][#]"},
        // What may be printed only under a condition is not doubled.
        {"<p a <?= 1 ?> a><p a b=<?= 1 ?> a>", "<p[a][#][a] !duplicate-attribute(a) <p[a][b=#][a]"},
        {"<script>if (<?= '</script>' ?> < 1) '</scrip'</script><textarea><?= 1 ?><p>&am</textarea>",
         "<script Tif (# < 1) '</scrip' /script <textarea T#<p>&am /textarea"},
        {"<!--<?= '-->' ?>--><!<?= 1 ?>><!DOCTYPE html <?= 1 ?>>", "C<!--#--> C<!#> D<!DOCTYPE html #>"},
        {"&<?= 1 ?>; &#<?= 1 ?>; &amp<?= 1 ?> &foo<?= 1 ?>; <br/<?= 1 ?>>",
         "T& I# T; &# I# T; &amp I# T &foo I# T;  <br[#]"},
        {"<p a='<?= 1", "<p[a=#]..."},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(CPrinter::Of(text), tokens) << text;
}

TEST(HtmlTokens, HandOnStyles)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<p style='a:b' STYLE=c:d style='' style='a&quot;'>",
         "style(a:b) style(c:d) !duplicate-attribute(STYLE) !duplicate-attribute(style) "
         "!duplicate-attribute(style) "
         "<p[style=a:b][STYLE=c:d][style=][style=a&quot;]"},
        {"<style>a{<?= 1 ?>}</style><style type=TEXT/css>b</style><style "
         "type=text/less>c</style><style></style>",
         "<style style(a{#}) Ta{#} /style <style[type=TEXT/css] style(b) Tb /style <style[type=text/less] Tc "
         "/style "
         "<style /style"},
        {"<svg><style>a<![CDATA[b]]></style><g><![CDATA[c]]></g></svg>",
         "<svg <style style(a) Ta style(b) X<![CDATA[b]]> /style <g X<![CDATA[c]]> /g /svg"},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(CPrinter::Of(text), tokens) << text;
}

TEST(HtmlTokens, TakePlaceholdersForIslands)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<p {{ a > b }} c=\"{% if d %}<{% end %}\">{# <b> #}<% e %>{{-- <i> }} --}}{!! f !!}",
         "<p[#][c=#<#] I#"},
        {"a {{ <b> } } {% <i>", "Ta {{  <b T } } {%  <i"},
        {"<?= '{{' ?> }} <b>", "I# T }}  <b"},
        {"{$a} {if $b}", "T{$a} {if $b}"},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(CPrinter::Of(text), tokens) << text;
    EXPECT_EQ(CPrinter::Of("{$a>b}{if $c}< {/if}{* <p> *}{ x }", true),
              "I# !invalid-first-character-of-tag-name( ) T<  I# T{ x }");
}

// The standard would take the rest for attributes, and report many errors where one slip is.
TEST(HtmlTokens, RecoverFromLostQuotesAndEnds)
{
    const std::pair<const char*, const char*> cases[] = {
        {"<a href=\"b c class=\"d\" e>", "!unclosed-attribute-value(\"b c) <a[href=b c][class=d][e]"},
        {"<a b='c d=''>", "!unclosed-attribute-value('c) <a[b=c][d=]"},
        {"<a b=\"<?= 1 ?> c=\"d\">", "!unclosed-attribute-value(\"#) <a[b=#][c=d]"},
        {"<a b=\"c>d</a> <p e=\"f\">", "!unclosed-attribute-value(\"c) <a[b=c] Td /a T  <p[e=f]"},
        {"<a b=\"c>d</a> say \"e\"", "!unclosed-attribute-value(\"c) <a[b=c] Td /a T say \"e\""},
        {"<a b='c>d", "!unclosed-attribute-value('c) <a[b=c] Td"},
        {"<a b=\"c d", "!unclosed-attribute-value(\"c d) <a[b=c d]..."},
        // Nothing is lost.
        {"<a b=\"<x:y z=\"c\"/>\" d=\"<x:y e='\">' f\">", "<a[b=<x:y z=\"c\"/>][d=<x:y e='\">' f]"},
        {"<a b=\"<i>c</i> d=\" e=\"f > g\">", "<a[b=<i>c</i> d=][e=f > g]"},
        {"<a b=\"c\"d=\"e\">", "!missing-whitespace-between-attributes(d) <a[b=c][d=e]"},
        {"<p a=\"b\"\n<i>c", "!unclosed-tag(<p a=\"b\") <p[a=b]... <i Tc"},
        {"<p<i>a</i</p>", "!unclosed-tag(<p) <p... <i Ta !unclosed-tag(</i) /i... /p"},
        {"<p It's=\" me<br>",
         "!unexpected-character-in-attribute-name(') !unclosed-attribute-value(\" me<br) <p[It's= me<br]"},
        {"<p It's me</p>", "!unclosed-tag(<p It's me) <p[It's][me]... /p"},
        {"<p a=b<!--c-->", "!unclosed-tag(<p a=b) <p[a=b]... C<!--c-->"},
        {"<p a < b>", "!unexpected-character-in-attribute-name(<) <p[a][<][b]"},
        // PHP may have printed the end, if it ends a string.
        {"<p <?= $a ? 'b>' : '>' ?> a</p>", "<p[#][a]... /p"},
        {"<p <?= 1 ?> a</p><p <?= 1 ?> a='b' <i>",
         "!unclosed-tag(<p # a) <p[#][a]... /p !unclosed-tag(<p # a='b') <p[#][a=b]... <i"},
    };
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(CPrinter::Of(text), tokens) << text;
}

// Each took quadratic time if anything were looked for again from every place.
TEST(HtmlTokens, TakeLinearTime)
{
    for (const char* piece :
         {"<",       "<!--",      "<p a",      " a='", "&a",          "&#1",      "</",
          "<!",      "<![CDATA[", "{{",        "{{x",  "<svg><desc>", "</desc>",  "<script><!--",
          "<title>", "--",        "<p {{a}} ", "{$a",  "<svg></a>",   "<p><?=1?>"}) {
        std::string text;
        while (text.size() < 200'000)
            text += piece;
        for (const std::string_view start : {"", "<p ", "<svg>", "<script><!--", "<!--", "<p a='", "<p a"})
            CPrinter::Of(std::string(start) + text, true);
    }
    CPrinter::Of("<<?= '" + std::string(400'000, 'x') + "' ?> a>", true);
}

} // namespace Kesh::SyntaxParser
