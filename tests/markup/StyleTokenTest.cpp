#include "markup/StyleFixture.h"

#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {
namespace {

using SyntaxParser::EStyleTokenKind;
using SyntaxParser::SStyleToken;

/// A letter for each kind, in the order of EStyleTokenKind.
constexpr std::string_view Letters = "ifa#sSuUnpdx_c<>:;,[]()"
                                     "{}";

/// "i(a) _ n(1)": tokens whose text says more than their kind with it; "!" ends one that is unfinished.
std::string PrintTokens(const std::string& utf8)
{
    const std::wstring text = Base::CCommonString::FromUtf8(utf8);
    CStyleHandler handler(SyntaxParser::EStyleKind::Sheet);
    PassStyle(text, SyntaxParser::FindIslands(text), handler);
    std::string printed;
    std::size_t end = 0;
    for (const SStyleToken& token : handler.tokens) {
        EXPECT_EQ(token.span.begin, end) << utf8;
        EXPECT_FALSE(token.span.IsEmpty()) << utf8;
        end = token.span.end;
        const bool isPlain = token.kind >= EStyleTokenKind::Colon || token.kind == EStyleTokenKind::Space;
        printed +=
            (printed.empty() ? "" : " ") + std::string(1, Letters[static_cast<std::size_t>(token.kind)]);
        if (!isPlain)
            printed += '|' +
                       Base::CCommonString::ToUtf8(text.substr(token.span.begin, end - token.span.begin)) +
                       '|';
        printed += token.unfinished ? "!" : "";
    }
    EXPECT_EQ(end, text.size()) << utf8;
    return printed;
}

TEST(StyleTokens, AreThoseOfTheStandard)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"a{b:c}", "i|a| { i|b| : i|c| }"},
        {" \t\r\n\f,;[](", "_ , ; [ ] ("},
        // Names.
        {"--x -y -\xC3\xA4 _z -- -1x", "i|--x| _ i|-y| _ i|-\xC3\xA4| _ i|_z| _ i|--| _ d|-1x|"},
        {"a\\:b \\31 23 \\", "i|a\\:b| _ i|\\31 23| _ x|\\|"},
        {"\\\na", "x|\\| _ i|a|"},
        {"@media @ @-x @1", "a|@media| _ x|@| _ a|@-x| _ x|@| n|1|"},
        {"#fff #1a # #\\31", "#|#fff| _ #|#1a| _ x|#| _ #|#\\31|"},
        // Numbers.
        {"1 1.5 .5 +.5 -1e3 1e+3px 1.e3 1e",
         "n|1| _ n|1.5| _ n|.5| _ n|+.5| _ n|-1e3| _ d|1e+3px| _ n|1| x|.| i|e3| _ d|1e|"},
        {"10% 10px 1-- 1--x 2-1", "p|10%| _ d|10px| _ d|1--| _ d|1--x| _ n|2| n|-1|"},
        // Strings.
        {"'a' \"b'\" 'a\\'b' 'a\\\nb'", "s|'a'| _ s|\"b'\"| _ s|'a\\'b'| _ s|'a\\\nb'|"},
        {"'a\nb'c", "S|'a| _ i|b| s|'c|!"},
        {"\"a\\", "s|\"a\\|!"},
        // URLs.
        {"url(a.png) URL( 'a' ) url( a )", "u|url(a.png)| _ f|URL(| _ s|'a'| _ ) _ u|url( a )|"},
        {"url(a b)c url(a'b)", "U|url(a b)| i|c| _ U|url(a'b)|"},
        {"url(a", "u|url(a|!"},
        {"url(a\\) b", "U|url(a\\) b|!"},
        {"u\\rl(a)", "f|u\\rl(| i|a| )"},
        // Comments and the rest.
        {"a/**/b/* c", "i|a| c|/**/| i|b| c|/* c|!"},
        {"<!-- --> <a a-->b", "<|<!--| _ >|-->| _ x|<| i|a| _ i|a--| x|>| i|b|"},
        // PHP is a letter.
        {"a<?= 1 ?>b{<?= 2 ?>:1<?= 3 ?>}", "i|a<?= 1 ?>b| { i|<?= 2 ?>| : d|1<?= 3 ?>| }"},
        {"#<?= 1 ?> '<?= \"'\" ?>'", "#|#<?= 1 ?>| _ s|'<?= \"'\" ?>'|"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(PrintTokens(text), expected) << text;
}

} // namespace
} // namespace Kesh::CodeAnalyzer
