#include "markup/MarkupTestText.h"

#include <gtest/gtest.h>

namespace Kesh::SyntaxParser {
namespace {

struct SCase
{
    const char* text;
    const char* tree;
};

void ExpectTrees(std::initializer_list<SCase> cases)
{
    for (const SCase& c : cases)
        EXPECT_EQ(PrintHtml(BuildTrees(c.text, EMarkup::Html).html), c.tree) << c.text;
}

TEST(HtmlTree, NestsAsHtmlDoes)
{
    ExpectTrees({
        {"<div><b>x</b><i></i></div><hr>", "div(b i) hr"},
        {"<br>a<img src=x><b></b>", "br img(@src) b"},
        {"<p>a<p>b<div>c</div>", "p p div"},
        {"<p><span>a<p>b", "p(span) p"},
        {"<p><button><p>x</button>y<p>", "p(button(p)) p"},
        {"<ul><li>a<li>b<ul><li>c</ul><li>d</ul><p>", "ul(li li(ul(li)) li) p"},
        {"<li><div><p><li>", "li(div(p)) li"},
        {"<dl><dt>a<dd>b<dt>c</dl>", "dl(dt dd dt)"},
        {"<select><optgroup><option>a<option>b<optgroup><option>c</select>",
         "select(optgroup(option option) optgroup(option))"},
        {"<ruby>a<rb>b<rt>c<rp>d<rtc>e<rt>f</ruby>", "ruby(rb rt rp rtc(rt))"},
        {"<h1>a<h2>b</h2><h3>", "h1 h2 h3"},
        {"<head><title></title><body><p></body>", "head(title) body(p)"},
        {"<head><meta><div>", "head(meta) div"},
        {"<a>x<a>y", "a a"},
        {"<button>x<button>y", "button button"},
        // Formatting elements end alone, blocks inside them stay open.
        {"<b><p>x</b><i></i></p>", "b(p(i))"},
        {"<b><span>x</b><i>", "b(span) i"},
        // Stray and misplaced end tags.
        {"</div></p><b></i>x</b>", "b"},
        {"<div><span></div><p>", "div(span) p"},
        {"<span><div></span><b></b></div>", "span(div(b))"},
        {"<DIV></div><Div></DIV>", "DIV Div"},
        {"<div/><br/><b>", "div(br b)"},
        {"<foo/><x:y/><b>", "foo x:y b"},
    });
}

TEST(HtmlTree, NestsTables)
{
    ExpectTrees({
        {"<table><tr><td>a<td>b<tr><th>c</table><p>", "table(tr(td td) tr(th)) p"},
        {"<table><thead><tr><td>a<tbody><tr><td>b</table>", "table(thead(tr(td)) tbody(tr(td)))"},
        {"<table><caption>x<colgroup><col><col><tr>", "table(caption colgroup(col col) tr)"},
        {"<table><tr><td><table><tr><td>x</table><td>y", "table(tr(td(table(tr(td))) td))"},
        {"<table><tr><td><div></td><td>", "table(tr(td(div) td))"},
        {"<table><tr><td><p></table><b>", "table(tr(td(p))) b"},
        {"<div></td></tr></table><b>", "div(b)"},
        // A fragment, which the document around it completes.
        {"<tr><td>a<td>b</tr><tr><td>", "tr(td td) tr(td)"},
    });
}

TEST(HtmlTree, ReadsRawText)
{
    ExpectTrees({
        {"<script>if (a<b) x('<p></q>')</script><b>", "script b"},
        {"<textarea><p></textarea ><b>", "textarea b"},
        {"<title>a<b></TITLE><b>", "title b"},
        {"<style>a>b{} </sty </styles ></style><b>", "style b"},
        {"<script><!-- <script>1</script> <p> --></script><b>", "script b"},
        {"<script><!-- 1 </script><b>", "script b"},
        {"<script><!--> <script></script><b>", "script b"},
        {"<xmp><p></xmp><plaintext><b></plaintext><i>", "xmp plaintext"},
        {"<iframe><p></iframe><noscript><p></noscript>", "iframe noscript(p)"},
        {"<textarea><p>", "textarea"},
    });
}

TEST(HtmlTree, ReadsForeignContent)
{
    ExpectTrees({
        {"<svg viewBox='0'><g><path d='x'/><circle/></g></svg><p>", "svg(@viewBox g(path(@d) circle)) p"},
        {"<svg><foreignObject><p>a<p>b</p></foreignObject><g/></svg>", "svg(foreignObject(p p) g)"},
        {"<svg><title>a<b></b></title><image/><a/></svg>", "svg(title(b) image a)"},
        {"<svg><g><p>x", "svg(g) p"},
        {"<svg><g><title>x</svg><p>", "svg(g(title)) p"},
        {"<svg><style>a{}</style><script/><g/></svg>", "svg(style script g)"},
        {"<svg><![CDATA[<p>]]><g/></svg>", "svg(g)"},
        {"<math><mi/><mrow><mtext><b></b></mtext></mrow></math><p>", "math(mi mrow(mtext(b))) p"},
        {"<math><annotation-xml><svg><g/></svg></annotation-xml></math>", "math(annotation-xml(svg(g)))"},
    });
}

TEST(HtmlTree, SkipsWhatIsNoTag)
{
    ExpectTrees({
        {"<!DOCTYPE html><?xml version='1.0'><b>", "b"},
        {"<!-- <p> --><b><!--><i><!---></i><!-- --!><u><!-- -- > <q>", "b(i u)"},
        {"<!--[if IE]><p><![endif]--><![if !IE]><b><![endif]>", "b"},
        {"<!--!> <p> --><b>", "b"},
        {"a < b <3 <= <> </> </ p> </3><b>", "b"},
        {"<![CDATA[ <p> > ]]><b>", "b"},
        {"<b <i>", "b(i)"},
        {"<b class=\"x\" <i", "b(@class i)"},
    });
}

TEST(HtmlTree, ReadsAttributes)
{
    ExpectTrees({
        {"<a b c=1 d='>' e=\">\" f = g/h i/>", "a(@b @c @d @e @f @i)"},
        {"<a href=x/><b>", "a(@href b)"},
        {"<p a=1 a=2 =x ='y'>", "p(@a @a @=x)"},
        {"<a href=x?b=c&d='e'>", "a(@href)"},
        {"<p a=\"x\"b='y'c=\"", "p(@a @b @c)"},
        {"<p @click=a :class=b v-on:click.x=c xlink:href=d>", "p(@@click @:class @v-on:click.x @xlink:href)"},
        {"<p class=x></p class=y><b>", "p(@class) b"},
    });
}

TEST(HtmlTree, TellsCustomTags)
{
    ExpectTrees({
        {"<my-tag foo><b></my-tag><i>", "+my-tag(~@foo b) i"},
        {"<My-Tag.x>", "+My-Tag.x"},
        {"<font-face a/><annotation-xml>", "font-face(@a) annotation-xml"},
        {"<jdoc:include type=\"x\" /><o:p>", "jdoc:include(@type) o:p"},
    });
}

TEST(HtmlTree, ReadsAroundIslands)
{
    ExpectTrees({
        {"<? '<p>' ?><b><? '</b>' ?><i>", "b(i)"},
        {"<h<?= 1 ?> id=a>x</h<?= 1 ?>><p>", "~h<?= 1 ?>(~@id) p"},
        {"<<?= $t ?> class=x>y</<?= $t ?>><p>", "~<?= $t ?>(~@class) p"},
        {"<li<? c() ?>>a</li><li<? c() ?>><b></b></li><li>", "~li<? c() ?> ~li<? c() ?>(b) li"},
        {"<input<? c() ?>><b>", "~input<? c() ?> b"},
        {"<div <?= $a ?> class=x><b>", "div(@class b)"},
        {"<div class=\"x\"<?= $a ?>><div <? if(1): ?> id=x <? endif ?>>", "div(@class div(@id))"},
        {"<p data<?= 1 ?>=x <?= 1 ?>y=z <?= $n ?>=q a=1>", "p(~@data<?= 1 ?> ~@<?= 1 ?>y ~@<?= $n ?> @a)"},
        {"<a href=\"<?= f(\"x\", '>') ?>\" id=<?= $i ?> class=a<?= \">\" ?>b><i>", "a(@href @id @class i)"},
        {"<p <? if(1){ ?>class=\"a\"<? } else { ?>class=\"b\"<? } ?> id=x>",
         "p(~@<? if(1){ ?>class ~@<? } else { ?>class @id)"},
        {"<!-- <? '-->' ?> <p> --><b>", "b"},
        {"<script<?= $n ?>>'<p>' <? '</script>' ?></script><b>", "~script<?= $n ?> b"},
        {"<? if(1): ?><div class=a><? else: ?><div><? endif ?><b></b></div><p>", "div(@class div(b) p)"},
        {"<? if(1): ?><body class=a><? else: ?><body><? endif ?><p></body>", "body(@class body p)"},
        {"<my-<?= $t ?>>", "~my-<?= $t ?>"},
        {"<b>a</<? b ?>", "b"},
    });
}

TEST(HtmlTree, ReadsAroundPlaceholders)
{
    ExpectTrees({
        {"<p {{ $a->b(['c' => 'd']) }} id=x><b>", "p(@id b)"},
        {"<p {if $a > 1}class=\"x\"{/if} {$b}><b>", "p(~@{if $a > 1}class b)"},
        {"<p <# if ( a > b ) { #> id=x <# } #> <%= c > d %>><b>", "p(@id b)"},
        {"<p title=\"{{ f(\"x\") }}\" {% if a %}id='{{{ \"'\" }}}'{% endif %} a={{ b > c }}d><b>",
         "p(@title ~@{% if a %}id @a b)"},
        {"<p data-{{ x y }}=z>", "p(~@data-{{ x y }})"},
        {"<h{{ n }} a></h{{ n }}><b>", "~h{{ n }}(~@a) b"},
        {"<p @if ($a > f(1)) id=x @else id=y @endif @class(['a' => $b])@click=c @end><b>",
         "p(@id @id ~@@class(['a' => $b])@click @@end b)"},
        // Ordinary braces.
        {"<p onclick=\"if (a) { b('}') }\" id='{{'><b a={>{x}", "p(@onclick @id b(@a))"},
        {"<p title='{{' id=\"x\n}}\"><b {>", "p(@title @id b(@{))"},
    });
}

TEST(HtmlTree, LeavesXmlToXml)
{
    ExpectTrees({
        {"<? echo '<?xml version=1' ?>\n<!-- x -->\n<rss a=b><title>x</title><p/></rss><b>",
         "~rss(~@a ~title ~p) b"},
        {"<? echo '<?xml version=1' ?><html><foo>", "html(foo)"},
        {"<p><?xml ?><foo>", "p(~foo)"},
        {"<? '<?xml ' ?><p></p><foo>", "p foo"},
    });
}

TEST(HtmlTree, GivesSpansInCharacters)
{
    const struct
    {
        const char* text;
        const char* span; ///< of the last node
    } cases[] = {
        {"<p>", "0,0-2,0"},
        {"\xF0\x9F\x98\x80\xC3\xA9<div class=x>", "7,0-12,0"},
        {"a\r\nb\rc <p\n  id=x>", "2,2-4,2"},
        {"<? a\n\n b ?> <p>", "6,2-8,2"},
        {"<p id=\"a\n<? \n ?>b\" class>", "6,2-11,2"},
        {"<p x<? \n ?>y>", "3,0-4,1"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PrintSpan(BuildTrees(c.text, EMarkup::Html).html.nodes.back().span), c.span) << c.text;
}

} // namespace
} // namespace Kesh::SyntaxParser
