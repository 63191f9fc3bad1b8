#include "markup/StyleFixture.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {
namespace {

using SyntaxParser::EStyleKind;

struct SCase
{
    const char* text;
    const char* found;
};

void Expect(std::initializer_list<SCase> cases, EStyleKind kind = EStyleKind::Sheet)
{
    for (const SCase& c : cases)
        EXPECT_EQ(PrintFound(CheckStyle(Base::CCommonString::FromUtf8(c.text), kind)), c.found) << c.text;
}

/// The text after the first fix of all that is found.
std::string Fixed(const std::string& utf8)
{
    std::wstring text = Base::CCommonString::FromUtf8(utf8);
    const auto found = CheckStyle(text);
    for (auto one = found.rbegin(); one != found.rend(); ++one) {
        if (one->details.fixes.empty())
            continue;
        const STextEdit& edit = one->details.fixes[0].edits[0];
        EXPECT_EQ(edit.span.start.y, 0) << utf8; // texts of one line
        text.replace(static_cast<std::size_t>(edit.span.start.x),
                     static_cast<std::size_t>(edit.span.end.x - edit.span.start.x), edit.text);
    }
    return Base::CCommonString::ToUtf8(text);
}

TEST(Styles, TokensAndBrackets)
{
    Expect({
        {"a{b:c}/* d", "2503@6,0-10,0"},
        {"a{color:red;content:'x;\n top:0}", "2504@20,0-23,0"},
        {"a{content:url('x);\n top:0}", "2504@14,0-18,0"},
        {"a[b='c]{top:0}\nd{top:0}", "2504@4,0-14,0"},
        // What follows in the line is inside out.
        {"a{content:'x}b{content:'y'}c{content:'z'}", "2504@10,0-24,0"},
        {"a{background:url(b c)}", "2505@13,0-21,0"},
        {"@media print{b{top:0}", "2506@12,0-13,0"},
        {"a{color:rgb(0,0,0;top:0}", "2507@8,0-12,0"},
        {"a{color:rgb((0,0,0);top:0}", "2507@8,0-12,0"},
        {"a[b{top:0}", "2507@1,0-2,0"},
        {"a{color:rgb(0,0,0));top:0}", "2508@18,0-19,0"},
        {"a{top:0}}b{top:0}", "2508@8,0-9,0"},
        {"a{top:0};b{top:0}", "2508@8,0-9,0"},
        {"a{{top:0}b{top:0}", "2508@2,0-3,0"},
        {"a{top:0;}{top:0}", "2508@9,0-10,0"},
        {"a}top:0}b{top:0}", "2508@1,0-2,0"},
        {"a{filter:progid:X.Y(a='#1',b=2);width:expression(c;d)}", ""},
    });
}

TEST(Styles, LostBraces)
{
    Expect({
        // Indentation tells.
        {"a {\n  top: 0;\nb {\n  top: 0;\n}\n", "2512@9,1-9,1"},
        {"@media print {\n  a {\n    top: 0;\n  b {\n    top: 0;\n  }\n}\nc {\n}\n",
         "2512@11,2-11,2 ?2562@2,7-1,8"},
        {"@media print {\n  a {\n    top: 0;\n  }\nb {\n  top: 0;\n}\n", "2512@3,3-3,3"},
        {"@media print {\n  a {\n    top: 0;\n  }\n  }\n}\n", "2508@2,4-3,4"},
        // What may stand where tells.
        {"a{top:0;b{top:0}", "2512@8,0-8,0"},
        {"a{top:0 .b{top:0}", "2512@7,0-7,0"},
        {"a{top:0;@font-face{src:url(x)}", "2512@8,0-8,0"},
        {"a top:0;left:0}b{top:0}", "2511@1,0-1,0"},
        {"@media print{a:hover top:0}}b{top:0}", "2511@20,0-20,0"},
        {"@font-face font-family:x;src:url(x)}", "2511@10,0-10,0"},
        {"@media print\n a{top:0}\n}", "2511@12,0-12,0"},
        {"a{top:0} top:0;left:0} b{top:0}", "2514@9,0-12,0"},
        {"@media print;", "2511@12,0-12,0"},
    });
}

TEST(Styles, Declarations)
{
    Expect({
        {"a{top:0\nleft:0}", "2509@7,0-7,0"},
        {"a{top:0 left:0}", "2509@7,0-7,0"},
        {"a{color:red\nleft:1xp}", "2509@11,0-11,0 2543@6,1-8,1"},
        {"a{color:redleft:0}", "2509@11,0-11,0"},
        {"a{top:0, left:0}", "2509@8,0-8,0"},
        {"a{top:0\n&:hover{left:0}}", "2509@7,0-7,0"},
        {"@import 'x'\na{top:0}", "2509@11,0-11,0"},
        {"a{--x:1\n--y:2}", "2509@7,0-7,0"},
        {"a{--x:a:b;--y:{c:d};--z:}", ""},
        {"a{top 0;left:0}", "2510@5,0-5,0"},
        {"a{top;0;left:0}", "2510@5,0-5,0"},
        {"a{top::0}", "2513@6,0-7,0"},
        {"a{;;top:0;;}", ""},
        {"a{12;top:0}", "2513@2,0-4,0"},
        {"a{top:;left:0}", "2515@2,0-5,0"},
        {"a{color:red!important}b{color:red ! IMPORTANT}", ""},
        {"a{color:red !importent;top:0 !;left:0 important}", "2546@12,0-22,0 2546@29,0-30,0 2546@38,0-47,0"},
        {"a{color:red!ie;*zoom:1;_top:0;top:0\\9}", ""},
        {"a{font-family:b,,c;margin:,0}", "2513@16,0-17,0 2513@26,0-27,0"},
    });
    Expect({{"top:0;left:1xp", "2543@12,0-14,0"}, {"color:red", ""}, {"top 0", "2510@3,0-3,0"}, {"", ""}},
           EStyleKind::Attribute);
}

TEST(Styles, Selectors)
{
    Expect({
        {"a b>c+d~e,*.f#g[h],i|j,*|*,|k:hover::before:not(.l,m):nth-child( 2N + 1 of n){top:0}", ""},
        {"[a=b],[a~='b'],[a|=b i],[*|a],[x|a^=b]{top:0}", ""},
        {":is(),:where(a,):has(> b),::slotted(c),::-webkit-x,:-moz-y(z),:host-context(d){top:0}", ""},
        {"a{&:hover,> b,& c,.d &{top:0}}", ""},
        {"a,,b{top:0}", "2521@2,0-3,0"},
        {"a,{top:0}", "2521@1,0-2,0"},
        {"a > > b{top:0}", "2521@4,0-5,0"},
        {"> a{top:0}", "2521@0,0-1,0"},
        {"a..b{top:0}", "2521@1,0-2,0"},
        {"a. b{top:0}", "2521@1,0-2,0"},
        {".1a{top:0}#1a{top:0}", "2521@0,0-3,0 2521@10,0-13,0"},
        {"[a=1]{top:0}[a b]{top:0}[=a]{top:0}", "2521@3,0-4,0 2521@15,0-16,0 2521@25,0-26,0"},
        {":not(){top:0}:nth-child(a){top:0}:nth-of-type(1 of a){top:0}",
         "2521@1,0-5,0 2521@24,0-25,0 2521@48,0-52,0"},
        {"a:hovr{top:0}a:placeholder{top:0}a:not{top:0}", "2522@1,0-6,0 2522@14,0-26,0 2522@34,0-38,0"},
        {"a:before{top:0}a:is(b:hovr){top:0}", "2522@21,0-26,0"},
        {"@keyframes x{from,50%{top:0}to{top:0}}", ""},
        {"@keyframes x{form{top:0}50{top:0}}", "2523@13,0-17,0 2523@24,0-26,0"},
        {"a::-wbkit-x{top:0}", "?2563@3,0-11,0"},
    });
}

TEST(Styles, AtRules)
{
    Expect({
        {"@charset 'x';@import url(a) layer(b) supports(top:0) print;@namespace a 'b';@layer c,d;", ""},
        {"@media screen and (min-width:1px) and (orientation:portrait),not print,(400px<=width<700px)"
         "{a{top:0}}",
         ""},
        {"@media (min-resolution:2dppx) or (not (hover)),only screen{a{top:0}}", ""},
        {"@supports (top:0) and (not (display:grid)) and selector(:has(a)){a{top:0}}", ""},
        {"@container x (min-width:1px) and style(--a:b){a{top:0}}", ""},
        {"@layer a{b{@media print{top:0}}}@scope (.a) to (.b){img{top:0}}@starting-style{a{top:0}}", ""},
        {"@property --a{syntax:'*';inherits:false}@view-transition{navigation:auto}", ""},
        {"@page a:first{margin:1cm;@top-left{content:'b'}}@-ms-viewport{width:device-width}", ""},
        {"@font-face{font-family:'a';src:url(b) format('c');unicode-range:U+0025-00FF,u+4??}", ""},
        {"@meida print{a{top:0}}", "2531@0,0-6,0"},
        {"@media scren{a{top:0}}", "2533@7,0-12,0"},
        {"@media screen an (hover){a{top:0}}", "2532@14,0-16,0"},
        {"@media (min-widht:1px){a{top:0}}@media (min-width:1xp){a{top:0}}", "2533@8,0-17,0 2543@51,0-53,0"},
        {"@media (orientation:landscap){a{top:0}}", "2534@20,0-28,0"},
        {"@media (hover) and (width) or (height){a{top:0}}", "2532@27,0-29,0"},
        {"@supports top:0{a{top:0}}", "2532@10,0-13,0"},
        {"@font-face x{src:url(a)}@keyframes{from{top:0}}", "2532@11,0-12,0 2532@24,0-34,0"},
        {"@font-face{src:url(a);color:red;font-display:swop}", "?2535@22,0-27,0 2541@45,0-49,0"},
        // What was right, or wrong, once is judged by where it stands again.
        {"a{color:red}@font-face{src:url(a);color:red}b{color:rde}c{color:rde}",
         "?2535@34,0-39,0 2541@52,0-55,0 2541@64,0-67,0"},
        {"a{top:0}@import 'b';", "?2536@8,0-19,0"},
        {"@-wbkit-keyframes x{from{top:0}}", "?2563@1,0-17,0"},
    });
}

TEST(Styles, Values)
{
    Expect({
        {"a{display:blok;display:INLINE-flex}", "2541@10,0-14,0"},
        {"a{border:1px soild red;margin:1px 2px 3px 4px 5px}", "2541@13,0-18,0 2541@46,0-49,0"},
        {"a{width:-1px;opacity:50%;z-index:1.5;line-height:1.5;margin:-1px}", "2541@8,0-12,0 2541@33,0-36,0"},
        {"a{width:10;margin:0;transition:all 0}", "2541@8,0-10,0 2541@35,0-36,0"},
        {"a{color:rgb(1,2);color:rgba(1,2,3,.5);color:hsl(1deg 2% 3%/4)}", "2542@14,0-15,0"},
        {"a{color:rbg(1,2,3);transform:rotat(1deg)}", "2541@8,0-11,0 2541@29,0-34,0"},
        {"a{color:#ff;fill:#ggg;top:0;background:#FFFF}", "2544@8,0-11,0 2544@17,0-21,0"},
        {"a{top:1xp;left:1e3px;right:1E3}", "2543@7,0-9,0 2541@27,0-30,0"},
        {"a{width:calc(100% - (2px + 1em)*3);height:calc(1px+2px);top:calc(1px +2px);left:calc(1px 2px)}",
         "2545@50,0-54,0 2545@69,0-73,0 2541@89,0-92,0"},
        {"a{width:calc();height:min(1px,);top:clamp(1px,2vw,3px);color:calc(1)}",
         "2542@8,0-13,0 2513@29,0-30,0 2541@61,0-65,0"},
        {"a{color:var(--x) soild;width:env(a,1px);margin:var(--y,);top:inherit;left:revert-layer}", ""},
        {"a{font:12px/1.5 'A',serif;background:url(a) no-repeat 0 0/cover,#fff;grid-template:[a] 1fr/auto}",
         ""},
        {"a{font:12px/;content:'a' attr(b) counter(c);animation:x 1s 2s ease-in both;flex:1 1 0%}",
         "2542@11,0-12,0"},
        {"a{display:-webkit-box;-webkit-foo:bar;foo:bar;width:-webkit-calc(1px + 2px);mso-x:y}", ""},
        {"a{display:-wbkit-box;background:-o-linnear-gradient(red,blue)}", "?2563@10,0-20,0 2541@35,0-51,0"},
        {"a{--x:0 1erm rga(0,0,0);--y:var(--z,#0g0)}", "?2543@9,0-12,0 ?2541@13,0-16,0 ?2544@36,0-40,0"},
        {"a{--x:1xp;--y:#ff00;--z:#ff000;--w:#home}", "?2543@7,0-9,0 ?2544@24,0-30,0"},
    });
}

TEST(Styles, Warnings)
{
    Expect({
        {"a{color:red;top:0;color:blue}", "?2561@18,0-23,0"},
        {"a{color:red;color:rgba(0,0,0,.5);width:1px;width:1rem;height:1px;height:calc(1px + 1px)}", ""},
        {"a{display:block;display:flex;color:red;color:red!important;b{color:red}}", ""},
        {"a{}b{ \n}c{/**/}", "?2562@1,0-3,0 ?2562@4,0-1,1"},
    });
}

TEST(Styles, PhpStandsForAnything)
{
    Expect({
        {"<?= 1 ?>{top:<?= 2 ?>;<?= 3 ?>:1xp;<?= 4 ?>left:0}", ""},
        {"a{<?= 1 ?>}b{<?= 2 ?>;top:0<?= 3 ?>px;color:#<?= 4 ?>}<?= 5 ?>c{top:0}", ""},
        {"a{<?php if (1) { ?>top:0;<?php } ?> left:1xp}", "2543@42,0-44,0"},
        {"@media <?= 1 ?>{a{top:0}}@<?= 2 ?> x{b{top:0}}.c<?= 3 ?> d:<?= 4 ?>,e[<?= 5 ?>]{top:0}", ""},
        {"a{background:url(<?= 1 ?> b);content:'<?= 2 ?>", "2506@1,0-2,0"},
        {"a{border:<?= 1 ?> soild;margin:rgb(<?= 2 ?>}", "2507@31,0-35,0"},
    });
}

TEST(Styles, OtherLanguagesAreLeftAlone)
{
    Expect({
        {"$a:1;b{width:$a;c..d{top:blok}}", ""},
        {"@mixin a{b{colr:1}}c{@include a;display:blok}", ""},
        {"@a:1;b{width:@a;display:blok}", ""},
        {"a{display:__x__;width:~'b'}", ""},
    });
    // Templates of scripts.
    Expect({{"{{ w }}", ""}, {"width:{{{ a ? b : c }}}px", ""}, {"<# if (a) { #>top:0<# } #>", ""}},
           EStyleKind::Attribute);
}

TEST(Styles, FixesMendThem)
{
    const std::pair<const char*, const char*> cases[] = {
        {"a{top:0 left:0}", "a{top:0; left:0}"},
        {"a{color:redleft:0}", "a{color:red;left:0}"},
        {"a{display:blok}", "a{display:block}"},
        {"a{color:rbg(1,2,3)}", "a{color:rgb(1,2,3)}"},
        {"a{top:1xp}", "a{top:1x}"},
        {"a{top:1pxx}", "a{top:1px}"},
        {"a{color:red !importent}", "a{color:red !important}"},
        {"a:hoover{top:0}", "a:hover{top:0}"},
        {"a:nott(b){top:0}", "a:not(b){top:0}"},
        {"a:placeholder{top:0}", "a::placeholder{top:0}"},
        {"@meida print{a{top:0}}", "@media print{a{top:0}}"},
        {"@media (min-widht:1px){a{top:0}}", "@media (min-width:1px){a{top:0}}"},
        {"a top:0}", "a { top:0}"},
        {"a{top 0}", "a{top: 0}"},
        {"a{top::0}", "a{top:0}"},
        {"a{top:0}}", "a{top:0}"},
        {"@import 'x' @import 'y';", "@import 'x'; @import 'y';"},
        {"a{display:-wbkit-box}", "a{display:-webkit-box}"},
        {"a{width:calc(1px+ 2px)}", "a{width:calc(1px + 2px)}"},
        {"a{width:calc(1px -2px)}", "a{width:calc(1px - 2px)}"},
        {"a{width:calc(2px* 3 -1px)}", "a{width:calc(2px* 3 - 1px)}"},
        {"a{background:url(b c.png)}", "a{background:url(\"b c.png\")}"},
        {"a{color:rgb(0,0,0;top:0}", "a{color:rgb(0,0,0);top:0}"},
        {"a[b{top:0}", "a[b]{top:0}"},
        {"@media (min-width:1px{a{top:0}}", "@media (min-width:1px){a{top:0}}"},
        {"a{top:0} /* b", "a{top:0} /* b */"},
        {"@media print{a{top:0}", "@media print{a{top:0}}"},
        {"a{color:red;top:0;color:blue}", "a{top:0;color:blue}"},
        {"a{}b{top:0}", "b{top:0}"},
    };
    for (const auto& [text, mended] : cases) {
        EXPECT_EQ(Fixed(text), mended);
        EXPECT_NE(PrintFound(CheckStyle(Base::CCommonString::FromUtf8(text))), "") << text;
    }
}

TEST(Styles, MessagesSayWhatIsAllowed)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"a{display:blok}", L"'blok' is no value of 'display', did you mean 'block'?"},
        {L"a{top:red}", L"'red' is no value of 'top'; allowed: "},
        {L"a{width:calc(1px+2px)}", L"'+' and '-' need blanks on both sides in 'calc'()"},
        {L"@media print x{a{top:0}}", L"Unexpected 'x' in '@media'"},
    };
    for (const auto& [text, message] : cases) {
        const auto found = CheckStyle(text);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(MessageOf(found[0]).substr(0, std::wstring_view(message).size()), message);
    }
}

TEST(Styles, AnyDepthAndLengthIsLinear)
{
    constexpr std::size_t Many = 30000;
    const auto repeat = [](std::wstring_view part) {
        std::wstring text;
        for (std::size_t i = 0; i < Many; ++i)
            text += part;
        return text;
    };
    for (const wchar_t* part :
         {L"a{", L"}", L"(", L"a:(", L"[", L"{", L"a:b c:d ", L"a{top:calc(", L"a\n", L"'x\n", L"a{b:c(';\n",
          L"a:not(", L"@media (", L"/**/", L"a,", L"b:url(x y ", L"a b:c;", L":"}) {
        CheckStyle(repeat(part));
        CheckStyle(repeat(part), EStyleKind::Attribute);
        CheckStyle(L"a{width:" + repeat(part));
    }
}

} // namespace
} // namespace Kesh::CodeAnalyzer
