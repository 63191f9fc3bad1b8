// Selectors, at-rules and their conditions: what the standards allow, and where the rest is shown.

#include "markup/StyleFixture.h"

#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {
namespace {

/// A text with what is wrong between angle quotes, and the code.
struct SCase
{
    const char* text;
    int code; ///< 0: nothing is
};

void Expect(const char* before, std::initializer_list<SCase> cases, const char* behind)
{
    for (const SCase& test : cases) {
        std::wstring text = Base::CCommonString::FromUtf8(std::string(before) + test.text + behind);
        const std::size_t begin = text.find(L'\x00AB');
        if (begin != std::wstring::npos)
            text.erase(begin, 1);
        const std::size_t end = text.find(L'\x00BB');
        if (end != std::wstring::npos)
            text.erase(end, 1);
        ASSERT_EQ(test.code != 0, begin != std::wstring::npos && end != std::wstring::npos) << test.text;
        const auto found = CheckStyle(text);
        ASSERT_EQ(found.size(), test.code != 0 ? 1U : 0U) << test.text << " " << PrintFound(found);
        if (test.code == 0)
            continue;
        const SCAError& error = found[0].error;
        EXPECT_EQ(error.code, test.code) << test.text << " " << PrintFound(found);
        EXPECT_EQ(error.pos.start.x, static_cast<std::int32_t>(begin)) << test.text << PrintFound(found);
        EXPECT_EQ(error.pos.end.x, static_cast<std::int32_t>(end)) << test.text << PrintFound(found);
    }
}

TEST(StyleRules, Selectors)
{
    Expect(
        "",
        {
            {"a", 0},
            {"*", 0},
            {"a b > c + d ~ e", 0},
            {"a>b+c~d", 0},
            {".a.b#c[d]:hover::after", 0},
            {"\\31 a, .\\31 0, #\\#", 0},
            {".ä, #ö, ü", 0},
            {"[a=b i], [a=\"b\" s], [a^='b'], [a$=b], [a*=b], [a|=b], [a~=b]", 0},
            {"a:nth-child(odd), a:nth-child(even), a:nth-child(3), a:nth-child(-n+3), a:nth-child( 2n - 1 )",
             0},
            {"a:nth-child(n), a:nth-last-of-type(+3n-2), a:nth-child(2n of .b, c)", 0},
            {"a:not(.b, #c):is(d, e f):where(g > h):has(> i, + j)", 0},
            {":root, :host, :host(.a), ::slotted(b), ::part(c d)", 0},
            {"a:lang(de), a:lang('de-*', en), a:dir(rtl)", 0},
            {"a::before, a::first-line, a::-webkit-scrollbar-thumb:hover, a::-moz-x, a::cue(b)", 0},
            {"a:before, a:after, a:first-letter", 0},
            {"input:-ms-input-placeholder, ::-ms-clear, :-moz-ui-invalid", 0},
            {"::view-transition-group(a), ::highlight(b), :state(c), :active-view-transition", 0},
            {"a:focus-visible, a:focus-within, a:any-link, a:user-invalid, a:popover-open, a:modal", 0},
            {"svg|a, *|b, |c", 0},
            {"html/**/body, a /* b */ > c", 0},
            {"a,«,»b", 2521},
            {"«,»a", 2521},
            {"a >«>» b", 2521},
            {"a«>»", 2521},
            {"a«::befor»", 2522},
            {"a«:hovr»", 2522},
            {"a«:nth-chid(»2)", 2522},
            {"a:not(b«:hovr»)", 2522},
            {"a«.».b", 2521},
            {"a«#»", 2521},
            {"«#1a»", 2521},
            {"a:nth-child(«2x»)", 2521},
            {"a[b=«=»c]", 2521},
            {"a&.b, &:hover", 0},
        },
        "{top:0}");
}

TEST(StyleRules, NestedSelectors)
{
    Expect("a{",
           {
               {"&:hover{top:0}", 0},
               {"& b, c &{top:0}", 0},
               {"> b{top:0} + c{top:0} ~ d{top:0}", 0},
               {"b{top:0} .c{top:0} #d{top:0} [e]{top:0} :is(f){top:0} *{top:0}", 0},
               {"top:0; b{left:0} right:0", 0},
               {"@media print{top:0} @supports (top:0){b{top:0}} @layer c{top:0} @container (width > "
                "1px){top:0}",
                0},
               {"b:hover{top:0}", 0},
               {"&.b{top:0} &::after{top:0} &&{top:0}", 0},
               {"b«:hovr»{top:0}", 2522},
               {"&,«,»b{top:0}", 2521},
           },
           "}");
}

TEST(StyleRules, Media)
{
    Expect("@media ",
           {
               {"all", 0},
               {"screen, print", 0},
               {"only screen and (max-width: 600px)", 0},
               {"not all and (monochrome)", 0},
               {"(min-width: 30em) and (max-width: calc(50em - 1px))", 0},
               {"(width >= 600px) and (width < 900px)", 0},
               {"(400px <= width <= 700px)", 0},
               {"(orientation: landscape) or (not (hover: hover))", 0},
               {"(prefers-color-scheme: dark), (prefers-reduced-motion), (forced-colors: active)", 0},
               {"(-webkit-min-device-pixel-ratio: 1.5), (min-resolution: 144dpi), "
                "(min--moz-device-pixel-ratio: 2)",
                0},
               {"(aspect-ratio: 16/9) and (min-aspect-ratio: 1 / 1)", 0},
               {"screen and (-ms-high-contrast: active)", 0},
               {"((min-width: 1px) and (hover)) or (color)", 0},
               {"(min-width: 0\\0)", 0},
               {"(scripting: none) and (update: fast) and (pointer: coarse) and (any-hover)", 0},
               {"(color-gamut: p3) and (dynamic-range: high) and (display-mode: standalone)", 0},
               {"«scren»", 2533},
               {"screen and («min-widt»: 1px)", 2533},
               {"(min-width: 1«xp»)", 2543},
               {"(orientation: «portrat»)", 2534},
               {"(prefers-color-scheme: «drak»)", 2534},
               {"screen «an» (color)", 2532},
               {"(hover) and (color) «or» (width)", 2532},
           },
           "{a{top:0}}");
}

TEST(StyleRules, OtherConditions)
{
    Expect(
        "",
        {
            {"@supports (display: grid){a{top:0}}", 0},
            {"@supports not (display: grid){a{top:0}}", 0},
            {"@supports (top: 0) and (left: 0) and (not (right: 0)){a{top:0}}", 0},
            {"@supports selector(a > b) or font-tech(color-COLRv1){a{top:0}}", 0},
            {"@supports (--a: b) or (-webkit-x: y){a{top:0}}", 0},
            {"@supports ((top: 0) or (left: 0)) and (right: 0){a{top:0}}", 0},
            {"@supports (display: whatever){a{top:0}}", 0},
            {"@container (min-width: 1px){a{top:0}}", 0},
            {"@container a (width > 1px) and (not (height < 2px)){a{top:0}}", 0},
            {"@container a style(--b: c) or (orientation: portrait){a{top:0}}", 0},
            {"@layer a, b.c;", 0},
            {"@layer{a{top:0}}@layer a{b{top:0}}", 0},
            {"@scope{a{top:0}}@scope (a){b{top:0}}@scope (a) to (b, c){d{top:0}}", 0},
            {"@import 'a';@import url(b) layer;@import url('c') layer(d) supports(top: 0) screen and "
             "(color);",
             0},
            {"@namespace 'a';@namespace b url(c);", 0},
            {"@keyframes a{from{top:0}50%, 75.5%{top:0}to{top:0}}@keyframes 'b'{to{top:0}}", 0},
            {"@-webkit-keyframes a{0%{top:0}100%{top:0}}", 0},
            {"@font-face{font-family:a;src:local(b), url(c) format('woff2');font-weight:100 "
             "900;font-display:swap}",
             0},
            {"@counter-style a{system:cyclic;symbols:'a' 'b';suffix:' '}", 0},
            {"@property --a{syntax:'<length>';inherits:true;initial-value:1px}", 0},
            {"@page{margin:1cm}@page :first{margin:0}@page a:left{size:A4 landscape}", 0},
            {"@page{@bottom-right{content:counter(page)}}", 0},
            {"@font-feature-values a{@styleset{b:1}}@font-palette-values --a{font-family:b;base-palette:1}",
             0},
            {"@document url(a){b{top:0}}@-moz-document url-prefix(){a{top:0}}@viewport{width:device-width}",
             0},
            {"@starting-style{a{top:0}}@position-try --a{top:0}@view-transition{navigation:auto}", 0},
            {"«@medai» print{a{top:0}}", 2531},
            {"«@font-fcae»{src:url(a)}", 2531},
            {"@supports «display»: grid{a{top:0}}", 2532},
            {"«@keyframes»{to{top:0}}", 2532},
            {"@keyframes a{«form»{top:0}}", 2523},
            {"@keyframes a{«50»{top:0}}", 2523},
            {"@font-face{font-family:a;src:url(b);font-display:«swp»}", 2541},
            {"@property --a{syntax:'*';inherits:«maybe»}", 2541},
        },
        "");
}

TEST(StyleRules, RecoverBehindEachMistake)
{
    // One slip each; what stands around it is right, and stays silent.
    const std::pair<const char*, const char*> cases[] = {
        {"a{top:0}\nb{left 0;right:0}\nc{top:0}", "2510@6,1-6,1"},
        {"a{top:0}\nb{left:0;;right:0;}\nc..d{top:0}\ne{top:0}", "2521@1,2-2,2"},
        {"@media print{\n a{colour:red;top:1xp}\n b{top:0}\n}\nc{top:0}", "2543@19,1-21,1"},
        {"a{background:url(x\ny{top:0}\n}", "2505@13,0-1,2"},
        {"a{top:0;\n  /* b */ left:0\n  right:0}\nc{top:0}", "2509@16,1-16,1"},
        {"a{top:0}\n@media (min-width:1px{\n b{top:0}\n}\nc{top:0}", "2507@7,1-8,1"},
        {"a{b:hover{top:0}c{top:0}}\n", ""},
        {"a{width:calc(1px + (2px * 3);top:0}\nb{top:0}", "2507@8,0-13,0"},
        {"a:not(.b{top:0}\nc{top:0}", "2507@2,0-6,0"},
        {"a{content:\"x;\n top:0}\nb{content:\"y\"}", "2504@10,0-13,0"},
        {"a{top:0} <!-- b{top:0} -->", ""},
        {"a{top:0;} } b{top:0}", "2508@10,0-11,0"},
        {"a{--b:{c:d};top:0}\ne{--f:(;top:0}", "2507@6,1-7,1"},
    };
    for (const auto& [text, found] : cases)
        EXPECT_EQ(PrintFound(CheckStyle(Base::CCommonString::FromUtf8(text))), found) << text;
}

TEST(StyleRules, VendorsNamesAreTheirs)
{
    Expect("",
           {
               {"a{-webkit-foo:bar;-moz-osx-font-smoothing:grayscale;-ms-x:y;-o-z:1;-khtml-a:b;mso-c:d}", 0},
               {"a{display:-webkit-box;display:-ms-flexbox;width:-moz-calc(1px + 2px)}", 0},
               {"a{background:-webkit-linear-gradient(top, red, blue)}", 0},
               {"a{background:-webkit-gradient(linear, left top, left bottom, from(red), to(blue))}", 0},
               {"@-ms-viewport{width:device-width}@-moz-keyframes a{to{top:0}}", 0},
               {"a::-webkit-foo, a:-moz-bar, a::-ms-baz{top:0}", 0},
               {"@media (-webkit-foo: 1){a{top:0}}", 0},
           },
           "");
}

} // namespace
} // namespace Kesh::CodeAnalyzer
