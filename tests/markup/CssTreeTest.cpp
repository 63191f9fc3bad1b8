#include "markup/MarkupTestText.h"

#include <gtest/gtest.h>

namespace Kesh::SyntaxParser {
namespace {

struct SCase
{
    const char* text;
    const char* names;
};

void ExpectNames(EMarkup markup, std::initializer_list<SCase> cases)
{
    for (const SCase& c : cases)
        EXPECT_EQ(PrintCss(BuildTrees(c.text, markup).css), c.names) << c.text;
}

TEST(CssTree, ReadsSelectors)
{
    ExpectNames(
        EMarkup::Css,
        {
            {"div.a#b[type=text] > p::before, LI:hover~a+b c{}", "e:div e:p e:LI e:a e:b e:c"},
            {".a .b,#c,*,:root,::selection,[x]{}", ""},
            {"a:not(div, .x > p):is(ul li):WHERE(b):-moz-any(i){}", "e:a e:div e:p e:ul e:li e:b e:i"},
            {":has(> img + p), ::slotted(span), :host(main){}", "e:img e:p e:span e:main"},
            {"li:nth-child(2n+1 of p):lang(de)::part(x)::highlight(y):dir(ltr){}", "e:li"},
            {"svg|a, *|b, |c, a|*, x||y{}", "e:a e:b e:c e:x e:y"},
            {"my-tag, font-face, -x, _y{}", "o:my-tag e:font-face o:-x o:_y"},
            {"x:-moz-any-link, y::-ms-z, a:hover{}", "o:x o:y e:a"},
            {"\\64 iv, d\\69v{}", "e:div e:div"},
            {"a/* b */c , d/**/{}", ""},
            {"html>/**/body/* x */{}", "e:html e:body"},
            {"a[title=\"}{\"], b[x='y' i]{}", "e:a e:b"},
            {"* html p, *+html q{}", "e:html e:p e:html e:q"},
            // No selectors: better no name than a wrong one.
            {"// remark\n.a p{color:red}", "p:color"},
            {"a $b{} 12px{} c{}", "e:c"},
        });
}

TEST(CssTree, ReadsDeclarations)
{
    ExpectNames(
        EMarkup::Css,
        {
            {"a{color:red;MARGIN : 0 ! important;;\n width:calc(1px + (2px))}",
             "e:a p:color p:MARGIN p:width"},
            {"a{background:url(x;y:z}{) red;content:\"};x:y\";top:0}", "e:a p:background p:content p:top"},
            {"a{background:url( \"a)b\" );top:0}", "e:a p:background p:top"},
            {"a{--x:{a:b;c:d};--y:;--Z : 1;top:0}", "e:a o:--x o:--y o:--Z p:top"},
            {"a{*zoom:1;_height:1px;-webkit-x:1;top:0}", "e:a o:*zoom o:_height p:-webkit-x p:top"},
            {"a{w\\idth:1px;c\\6f lor:red}", "e:a p:width p:color"},
            {"a{filter:progid:DXImageTransform.Microsoft.gradient(startColorstr='#0',end=1);top:0}",
             "e:a p:filter p:top"},
            {"a{color}b{:red;12:3;color red;#x:y;$v:1}c{top:0}", "e:a e:b e:c p:top"},
            {"a{content:\"x\n;top:0}b{}", "e:a p:content p:top e:b"},
            {"a{top:0/*;left:0*/;right:0}/*b{}", "e:a p:top p:right"},
            {"a{top:0", "e:a p:top"},
            {"a{top:0}}b{}", "e:a p:top e:b"},
            {"a{color: red\nb{top:0}", "e:a p:color p:top"},
            {"<!-- a{} --> b{} <![CDATA[ c{} ]]>", "e:a e:b e:c"},
            {"color: red; a{}", "e:a"},
        });
}

TEST(CssTree, ReadsNestedRules)
{
    ExpectNames(EMarkup::Css, {
                                  {"a{top:0;&:hover{left:0}b:hover{right:0}> c{}.d e,f &{}&g{}color:red}",
                                   "e:a p:top p:left e:b p:right e:c e:e e:f e:g p:color"},
                                  {"a{@media print{top:0;b{left:0}}@nest c &{}}", "e:a p:top e:b p:left e:c"},
                              });
}

TEST(CssTree, ReadsAtRules)
{
    ExpectNames(
        EMarkup::Css,
        {
            {"@charset \"x\";@import url(a.css) layer(b) supports(display:grid);@namespace svg url(x);a{}",
             "e:a"},
            {"@media screen and (min-width:1px){a{top:0}@supports (gap:1px) and selector(b > c){d{}}}",
             "e:a p:top e:d"},
            {"@layer x, y;@layer z{a{}}@container w (width>1px){b{}}@scope (.c) to "
             "(d){e{}}@starting-style{f{}}",
             "e:a e:b e:e e:f"},
            {"@keyframes x{from{top:0}50%,TO{left:0}entry 10%{}form{}}a{}",
             "e:from p:top e:TO p:left o:entry e:form e:a"},
            {"@-webkit-keyframes \"x\"{0.5%{top:0}}", "p:top"},
            {"@font-face{font-family:x;src:url(y)}@page toc:first{size:a4;@top-left{content:\"\"}margin:0}",
             "p:font-family p:src p:size p:content p:margin"},
            {"@property --x{syntax:'*';inherits:true}@counter-style c{system:cyclic}",
             "p:syntax p:inherits p:system"},
            {"@font-feature-values F{@styleset{nice:1}}@mixin m{foo:1;bar baz{qux:1}}a{}",
             "o:nice o:foo o:bar o:baz o:qux e:a"},
            {"@-ms-viewport{width:device-width}@-moz-document url-prefix(){a{}}", "p:width e:a"},
            {"@media{a{", "e:a"},
        });
}

TEST(CssTree, ReadsAroundIslands)
{
    ExpectNames(
        EMarkup::Css,
        {
            {"<? '}' ?> a{<? ';' ?> top:<?= '}' ?>;<? if(1){ ?> left:0; <? } ?>}b{}", "e:a p:top p:left e:b"},
            {"a{col<?= 1 ?>:red;<?= $p ?>:1;<?= $p ?>-x:1;top<? ?>:0;right:0}",
             "e:a o:col<?= 1 ?> o:<?= $p ?> o:<?= $p ?>-x o:top<? ?> p:right"},
            {"<?= $s ?>{top:0}<?= $s ?> a, h<?= 1 ?>, <?= $s ?>, b{}", "p:top e:a o:h<?= 1 ?> e:b"},
            {"a{<?= $d ?> top:0;<?= $d ?>left:0}", "e:a p:top o:<?= $d ?>left"},
            {"#a-<?= 1 ?> b, .c<?= 1 ?>:hover d, [x=<?= 1 ?>] e{}", "e:b e:d e:e"},
            {"@media (min-width:<?= 1 ?>px){a{background:url(<?= ')' ?>)}}", "e:a p:background"},
            {"@<?= $v ?>keyframes x{from{top:0}}a{}", "o:from o:top e:a"},
            {"@keyframes x{<?= 1 ?>%{top:0}to{}}", "p:top e:to"},
        });
}

TEST(CssTree, FindsCssInHtml)
{
    ExpectNames(EMarkup::Html,
                {
                    {"<style>a{top:0}</style>b{}<p style=\"left:0;right:1\">", "e:a p:top p:left p:right"},
                    {"<style type=\"TEXT/CSS\">a{}</style><style type=\"text/less\">b{}</style><style "
                     "type>c{}</style>",
                     "e:a e:c"},
                    {"<style type=\"<?= $t ?>\">a{}</style>", "e:a"},
                    {"<svg><style><![CDATA[a{}]]></style></svg>", "e:a"},
                    {"<p style='top:0' STYLE=left:0 class='a:b'>", "p:top p:left"},
                    {"<p style=\"font:&quot;a;b:c&quot;;top:0;content:'&amp;x';left:0&\">",
                     "p:font p:top p:content p:left"},
                    {"<p style=\"<?= $s ?>;top:<?= \"'\" ?>;<?= $p ?>:1\">", "p:top o:<?= $p ?>"},
                    {"<p style=\"top:0} left:0{;right:0\">", "p:top p:right"},
                    {"<p style='content:\"x'><p style='top:0'>", "p:content p:top"},
                    {"<jdoc:include style=\"a:b\"/>", ""},
                    {"<!-- <style>a{}</style> --><script>'<style>b{}</style>'</script>", ""},
                });
}

TEST(CssTree, GivesSpansInCharacters)
{
    const struct
    {
        const char* text;
        EMarkup markup;
        const char* span; ///< of the last name
    } cases[] = {
        {"\xF0\x9F\x98\x80{}\n\n a\n, div{}", EMarkup::Css, "2,3-5,3"},
        {"a{\n\tc\\6f lor : red}", EMarkup::Css, "1,1-9,1"},
        {"a{*zoom:1}", EMarkup::Css, "2,0-7,0"},
        {"<p id=x\nstyle=\"&quot;\xC3\xA9&quot;;\n top:0\">", EMarkup::Html, "1,2-4,2"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(PrintSpan(BuildTrees(c.text, c.markup).css.nodes.back().span), c.span) << c.text;
}

} // namespace
} // namespace Kesh::SyntaxParser
