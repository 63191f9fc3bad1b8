// Values by property: what the standards allow, what they do not, and how wrong ones are shown.

#include "markup/StyleFixture.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {
namespace {

/// Values with bars between them.
struct SProperty
{
    const char* name;
    const char* right;
    const char* wrong;
};

std::vector<std::string> Split(const std::string& values)
{
    std::vector<std::string> list;
    for (std::size_t begin = 0; begin < values.size();) {
        const std::size_t end = std::min(values.find(" | ", begin), values.size());
        list.push_back(values.substr(begin, end - begin));
        begin = end + 3;
    }
    return list;
}

std::string Declared(const char* property, const std::string& value)
{
    return std::string("a{") + property + ":" + value + "}";
}

void Expect(std::initializer_list<SProperty> properties)
{
    for (const SProperty& property : properties) {
        const auto check = [&](const std::string& value) {
            return CheckStyle(Base::CCommonString::FromUtf8(Declared(property.name, value)));
        };
        for (const std::string& value : Split(property.right))
            EXPECT_EQ(PrintFound(check(value)), "") << Declared(property.name, value);
        const auto begin = static_cast<std::int32_t>(std::string("a{").size());
        for (const std::string& value : Split(property.wrong)) {
            const auto found = check(value);
            EXPECT_EQ(found.size(), 1U) << Declared(property.name, value) << " " << PrintFound(found);
            for (const SDiagnostic& one : found) {
                EXPECT_EQ(one.error.type, SeverityError) << Declared(property.name, value);
                EXPECT_GE(one.error.pos.start.x, begin) << Declared(property.name, value);
            }
        }
    }
}

TEST(StyleValues, OfBoxes)
{
    Expect({
        {"margin", "0 | auto | -1px | 1px 2em 3% auto | calc(1px + 2%) | 1px 2px 3px",
         "1 | red | 1px 2px 3px 4px 5px | 1px,2px"},
        {"margin-inline", "auto | 1px 2px", "1px 2px 3px | none"},
        {"padding", "0 | 1px 2% | min(1px, 2em)", "-1px | auto | 1px / 2px"},
        {"width",
         "auto | 10px | 50% | min-content | max-content | fit-content | fit-content(10px) | stretch | "
         "calc(100% - var(--x)) | clamp(1rem, 2vw, 3rem) | 0",
         "10 | none | 1px 2px | -5px | 5 px"},
        {"max-width", "none | 10em | 100%", "auto | 1px 1px"},
        {"height", "100vh | 100dvh | 1lh | 50cqw", "100hv | tall"},
        {"aspect-ratio", "auto | 1 | 16/9 | 16 / 9 | auto 4/3", "16:9 | 1px | 1/2/3"},
        {"box-sizing", "border-box | content-box", "padding-bx | border box"},
        {"overflow", "hidden | auto scroll | clip visible", "none | hidden hidden hidden"},
        {"position", "static | sticky | absolute | -webkit-sticky", "center | absolut"},
        {"inset", "0 | auto | 1px 2% 3px auto", "1 | none"},
        {"z-index", "auto | 0 | -1 | 999 | calc(1 + 1)", "1.5 | 1px | top"},
        {"float", "left | none | inline-start", "center | middle"},
        {"clear", "both | none", "all | left right"},
        {"visibility", "visible | collapse", "none | show"},
        {"vertical-align", "middle | -2px | 10% | text-bottom | super", "middle 1px top | 2"},
        {"display",
         "block | inline flow-root | inline-grid | contents | list-item block | table-cell | -ms-grid",
         "inline-blok | flexbox | block flex grid"},
    });
}

TEST(StyleValues, OfBordersAndBackgrounds)
{
    Expect({
        {"border",
         "none | 0 | 1px solid | solid #fff 1px | thin dotted rgba(0,0,0,.5) | medium none | 1px solid "
         "currentcolor",
         "1px 2px solid | 1 solid red | solid dashed | 1px, solid"},
        {"border-width", "1px 2px 3px 4px | thin thick", "1% | 2 | thn"},
        {"border-style", "solid | dotted dashed double groove", "wavy | 1px"},
        {"border-color", "red | red blue transparent #123", "1px | redd"},
        {"border-radius", "1px | 50% | 1px 2px 3px 4px | 1px 2px / 3px 4px | 10px 5% / 20px",
         "1px / | -1px | auto | 1px 2px 3px 4px 5px"},
        {"border-collapse", "collapse | separate", "none"},
        {"border-spacing", "1px | 1px 2px", "10% | 1px 2px 3px"},
        {"border-image",
         "url(a.png) 30 round | linear-gradient(red, blue) 1 | none | url(a) 27 23 / 50px 30px / 1rem round "
         "space",
         "30px round blue"},
        {"outline", "none | 1px solid red | auto | thick double", "1px sold red | 1px 1px"},
        {"box-shadow", "none | 1px 1px | inset 0 0 3px 1px #000 | 0 1px 2px rgba(0, 0, 0, 0.5), 0 0 1px red",
         "1px | 1px 1px 1px 1px 1px | 0 1px 2px 3px red blue | 1 1px"},
        {"background",
         "none | red | url(a.png) | url('a b') no-repeat center / cover | #fff url(a) 0 0 repeat-x fixed | "
         "linear-gradient(red, blue), #fff | url(a) top left, url(b) bottom right | 0 0 / 10px 20px "
         "content-box",
         "red blue | url(a) url(b) | repeat-z | center / | red, blue"},
        {"background-color",
         "transparent | #abcd | hsl(120deg 50% 50%) | color(display-p3 1 0 0) | oklch(50% 0.1 180)",
         "none | #ab | rgb(1, 2)"},
        {"background-image",
         "none | url(a), url(b) | image-set('a' 1x, 'b' 2x) | conic-gradient(from 45deg, red, blue) | "
         "repeating-linear-gradient(45deg, red 0 10px, blue 10px 20px) | radial-gradient(circle at 50% 50%, "
         "red, blue 50%)",
         "a.png | linear-gradient(red blue) | linear-gradient(45, red, blue)"},
        {"background-position", "0 0 | center | left 10px top 20% | 50% | right 3em bottom, 0 0",
         "left left | 1px 2px 3px | middle"},
        {"background-size", "cover | auto | 10px 20% | 50% auto, contain", "full | 1px 2px 3px | -1px"},
        {"background-repeat", "repeat | no-repeat | repeat-x | round space", "norepeat | repeat-x repeat-y"},
        {"background-clip", "text | border-box | padding-box, content-box", "border"},
        {"object-fit", "cover | scale-down", "stretch | fill contain"},
        {"object-position", "50% 50% | right 10px top 20%", "right right | right 10px top"},
        {"opacity", "0 | .5 | 1 | 50% | 1e-1", "half | 1px | 0.5 0.5"},
        {"mask", "none | url(a.svg) center / contain no-repeat | linear-gradient(#000, transparent)",
         "centre"},
        {"filter", "none | blur(5px) | drop-shadow(0 0 1px red) grayscale(50%) | url(#a) | brightness(1.2)",
         "blur(5) | blur(red) | blur(1px, 2px) | brightness(a) blur(1px)"},
        {"clip-path",
         "none | circle(50%) | polygon(0 0, 100% 0, 50% 100%) | inset(1px 2px round 3px) | url(#a)",
         "circle(red) | polygon(0 0 0)"},
    });
}

TEST(StyleValues, OfTextAndFonts)
{
    Expect({
        {"color",
         "red | RED | #fff | #FFFF | #a1b2c3 | #a1b2c3d4 | rgb(0 0 0 / 50%) | rgba(1, 2, 3, .4) | hsla(1, "
         "2%, 3%, 1) | "
         "currentColor | transparent | color-mix(in srgb, red 50%, blue) | light-dark(red, blue) | Canvas | "
         "lab(50% 0 0) | rgb(from red r g b / 1)",
         "#ggg | #12345 | redd | rgb(1, 2, 3, 4, 5) | 0 | rgb(1 2, 3)"},
        {"font",
         "12px a | italic bold 12px/30px Georgia, serif | caption | small-caps 80% 'A B' | 1em/1.2 a b, c",
         "12px | bold 12px | 12 a | italic italic 12px a"},
        {"font-family", "a | 'A B', c, sans-serif | A B C | system-ui", "a,, b | 'a' 'b' | 1a"},
        {"font-size", "12px | 1.2em | larger | medium | xx-small | xxx-large | calc(1rem + 1vw)",
         "12 | big | -1px"},
        {"font-weight", "bold | 400 | bolder | 1000 | 1", "heavy | 400px | bold bold"},
        {"font-style", "italic | oblique 10deg", "slanted | oblique 10"},
        {"font-variant", "normal | small-caps | common-ligatures tabular-nums", "small-cap"},
        {"font-feature-settings", "normal | 'liga' 0 | \"kern\", 'smcp' on", "liga"},
        {"font-variation-settings", "normal | 'wght' 400", "'wght'"},
        {"line-height", "normal | 1.5 | 20px | 150% | 0", "1.5.5 | tall | -1 | 1,5"},
        {"letter-spacing", "normal | -1px | .1em", "1 | wide"},
        {"text-align", "left | start | justify | match-parent | -webkit-center", "middle | left right"},
        {"text-decoration", "none | underline | underline wavy red 2px | line-through overline",
         "underlined | none underline"},
        {"text-transform", "uppercase | none | capitalize full-width", "upper | 1"},
        {"text-indent", "1em | -9999px | 10% hanging", "1 | em"},
        {"text-shadow", "none | 1px 1px | 1px 1px 2px red, 0 0 1em blue", "1px | red"},
        {"text-overflow", "ellipsis | clip", "elipsis | dots"},
        {"white-space", "nowrap | pre-wrap | normal | break-spaces", "no-wrap | prewrap"},
        {"word-break", "break-all | keep-all | break-word", "break"},
        {"overflow-wrap", "anywhere | break-word", "break-all"},
        {"quotes", "none | auto | '<' '>' | '\\201C' '\\201D' '\\2018' '\\2019'", "'<' | double"},
        {"content",
         "none | 'a' | '\\2014' | attr(data-x) | url(a) | counter(x) '. ' | open-quote | 'a' / 'alt' | "
         "counters(a, '.') | \"\"",
         "a | 1 | counter()"},
        {"list-style", "none | square | inside url(a) | lower-alpha outside | '-'",
         "square circle disc | 1px | out side in"},
        {"counter-reset", "none | a | a 1 b -2", "1 | a 1.5"},
        {"hyphens", "auto | manual", "yes"},
        {"writing-mode", "vertical-rl | horizontal-tb", "vertical"},
    });
}

TEST(StyleValues, OfLayout)
{
    Expect({
        {"flex", "1 | none | auto | 1 1 0 | 0 0 auto | 2 30% | 1 1 calc(1px + 2%) | 1 0",
         "1 1 1 1 | auto auto | flex | 1px 2px"},
        {"flex-flow", "row wrap | column | wrap-reverse", "row column | horizontal"},
        {"flex-grow", "0 | 1.5", "-1 | 1px"},
        {"justify-content", "center | space-between | flex-start | safe center | start | normal | left",
         "middle | space-betwen | baseline"},
        {"align-items", "center | baseline | first baseline | stretch | flex-end | unsafe end",
         "middle | space-between"},
        {"align-self", "auto | center | last baseline", "top"},
        {"place-items", "center | start end | normal stretch", "center center center | middle"},
        {"gap", "1px | 1px 2% | normal | 0", "1 | auto | 1px 2px 3px"},
        {"order", "0 | -1", "first | 1.5"},
        {"grid-template-columns",
         "none | 1fr | 1fr 2fr | repeat(3, 1fr) | repeat(auto-fill, minmax(100px, 1fr)) | [a] 1fr [b c] auto "
         "| "
         "minmax(0, 1fr) fit-content(20%) | subgrid | 100px repeat(2, [x] 1fr) min-content",
         "1fr, 2fr | repeat(1fr) | minmax(1fr, 100px) | repeat(3 1fr) | fr"},
        {"grid-template-areas", "none | 'a b' 'c d' | \"a a\"", "a b"},
        {"grid-template", "none | 'a b' 1fr 'c d' 2fr / 1fr 2fr | 1fr / auto", "1fr 2fr /"},
        {"grid-area", "a | 1 / 2 / 3 / 4 | span 2 | auto | 1 / span 3", "1 2 | 1 / / 2 | 1px"},
        {"grid-column", "1 / -1 | span 2 | a | 2 / span a | auto / span 2", "1 / 2 / 3 | 1px"},
        {"grid-auto-flow", "row | dense | column dense", "rows | row column"},
        {"columns", "2 | 10em | auto 3 | 2 10em", "2 3 | 10em 2em"},
        {"column-rule", "1px solid red | none", "1px sollid red"},
        {"break-inside", "avoid | avoid-page", "none"},
        {"table-layout", "fixed | auto", "static"},
        {"caption-side", "bottom | top", "left right"},
        {"resize", "both | none", "all"},
        {"scroll-snap-type", "none | x mandatory | both proximity", "mandatory x"},
        {"scroll-margin", "1px | 1px 2px", "1% | auto"},
    });
}

TEST(StyleValues, OfMotionAndTheRest)
{
    Expect({
        {"transform",
         "none | rotate(45deg) | translate(-50%, 10px) scale(1.5) | matrix(1, 0, 0, 1, 0, 0) | "
         "translate3d(0, 0, 0) | "
         "rotate(.5turn) skewX(10grad) | perspective(10px) rotate3d(1, 1, 1, 45deg) | scale(50%)",
         "rotate(45) | rotate(45px) | translate(1) | rotae(1deg) | scale(1px) | rotate(1deg), scale(1)"},
        {"transform-origin", "center | 0 0 | 50% 50% 1px | left top", "1 1 | left right | bottom 10px right"},
        {"translate", "none | 10px | 50% 10px 1em", "1 | 1px 2px 3px 4px"},
        {"rotate", "45deg | x 45deg | 1 0 0 1turn | none", "45 | 45deg 45deg"},
        {"transition",
         "none | all 1s | opacity .3s ease-in-out 100ms | color 1s, width 2s linear | transform 1s "
         "cubic-bezier(.1, .7, 1, .1) | "
         "all 0s | opacity 1s steps(4, end) | -webkit-transform 1s | display 1s allow-discrete",
         "all 1 | opacity 1s 2s 3s | color 1sec | opacity 1s eas | all 0"},
        {"transition-property", "all | none | a, b | --x", "1s | all none"},
        {"transition-timing-function",
         "ease | linear, ease-in | steps(2) | cubic-bezier(0, 0, 1, 1) | linear(0, 0.5 50%, 1)",
         "cubic-bezier(0, 0, 1) | easein | steps(a)"},
        {"animation",
         "none | a 1s | a 1s infinite alternate | 3s ease-in 1s 2 reverse both paused a | a 1s, b 2s | a 1s "
         "steps(2, start) infinite",
         "a 1s, , b | a 1s infinte b"},
        {"animation-iteration-count", "infinite | 2.5 | 1, 2", "-1 | twice"},
        {"animation-fill-mode", "both | none, forwards", "froward"},
        {"cursor", "pointer | url(a.cur), auto | url(a) 2 2, pointer | -webkit-grab | zoom-in | not-allowed",
         "hand1 | url(a) | pointer, auto"},
        {"pointer-events", "none | auto | visiblePainted", "no"},
        {"user-select", "none | text", "nothing"},
        {"appearance", "none | auto | button", "off"},
        {"will-change", "auto | transform, opacity | scroll-position", "1"},
        {"touch-action", "manipulation | pan-x pan-y | none", "pan"},
        {"accent-color", "auto | red", "1px"},
        {"color-scheme", "light dark | normal | only light", "1px"},
        {"contain", "layout paint | strict | none", "layout strict"},
        {"container", "a / inline-size | none | a", "/ size | a / / size"},
        {"isolation", "isolate | auto", "isolated"},
        {"mix-blend-mode", "multiply | normal", "multiplied"},
        {"fill", "none | red | url(#a) | currentColor | context-fill", "#ggg | 1px 2px"},
        {"stroke-width", "1 | 2px | 1%", "1 2"},
        {"stroke-dasharray", "none | 1 2 | 5, 3 | 1px 2%", "a"},
        {"all", "initial | unset | revert", "none"},
        {"orphans", "2 | 3", "0.5"},
        {"page-break-after", "always | avoid", "alway"},
        {"zoom", "1 | 150% | normal", "big"},
        {"speak", "none | normal", "loud | 1"},
        {"size", "auto", ""},
        {"image-rendering", "pixelated | crisp-edges | -moz-crisp-edges", "sharp"},
        {"tab-size", "4 | 2em", "4% | four"},
    });
}

TEST(StyleValues, WhereEveryPropertyTakesThem)
{
    Expect({
        {"top",
         "inherit | INITIAL | unset | revert | revert-layer | var(--a) | var(--a, 1px) | env(a) | attr(b "
         "type(<length>)) | "
         "calc(1px + var(--a)) | max(1px, 2%, 3em) | calc((1px + 2%) * 3 / 2) | calc(pi * 1px) | abs(-1px) | "
         "round(1.5px, 1px) | "
         "1px !important | 1px ! important | sin(45deg) | 1px/**/ | /**/1px | 1PX | +1px | -.5em | 1e3px | "
         "calc(1px - -2px)",
         "inherit 1px | min() | calc(1px +) | 1px inherit | 1px 2px | calc(1px) 1px | (1px)"},
        {"--a", "anything ( goes ) | {x:y} | | 1 2 3 | ;", ""},
        // Those of one browser or of old ones are not judged.
        {"-webkit-box-shadow", "0 0 1px red | whatever", ""},
        {"filter",
         "alpha(opacity=50) | gray | Blur(strength=5) | xray() | flipH() | "
         "progid:DXImageTransform.Microsoft.gradient(startColorstr='#80000000')",
         ""},
        {"width", "expression(document.body.clientWidth) | -moz-available | -webkit-fill-available", ""},
    });
}

} // namespace
} // namespace Kesh::CodeAnalyzer
