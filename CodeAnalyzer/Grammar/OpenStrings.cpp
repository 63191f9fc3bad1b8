#include "Grammar/OpenStrings.h"

#include "Grammar/RuleReport.h"

#include <string_view>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

std::vector<std::uint32_t> OpenStrings(const CGrammarTokens& tokens, std::uint32_t end)
{
    std::vector<std::uint32_t> open;
    for (std::uint32_t i = 0; i < end; ++i) {
        const K kind = tokens[i].kind;
        const K last = open.empty() ? K::End : tokens[open.back()].kind;
        switch (kind) {
        case K::Quote:
        case K::Backtick:
            if (last == kind)
                open.pop_back();
            else
                open.push_back(i);
            break;
        case K::HeredocStart:
        case K::CodeBrace:
        case K::DollarBrace: open.push_back(i); break;
        case K::OpenBrace:
            if (!open.empty())
                open.push_back(i);
            break;
        case K::HeredocEnd:
            if (last == K::HeredocStart)
                open.pop_back();
            break;
        case K::CloseBrace:
            if (last == K::OpenBrace || last == K::CodeBrace || last == K::DollarBrace)
                open.pop_back();
            break;
        default: break;
        }
    }
    return open;
}

std::uint32_t FindLateString(const CGrammarTokens& tokens, std::uint32_t stop)
{
    if (stop == 0)
        return NoToken;
    const SGrammarToken& before = tokens[stop - 1];
    std::uint32_t opening = stop - 1;
    if (before.kind == K::Quote) {
        const std::vector<std::uint32_t> open = OpenStrings(tokens, stop - 1);
        if (open.empty() || tokens[open.back()].kind != K::Quote)
            return NoToken;
        opening = open.back();
    } else if (before.kind != K::String && before.kind != K::BadEscape) {
        return NoToken;
    }
    const wchar_t* end = before.text + before.size;
    const std::wstring_view text(tokens[opening].text, static_cast<std::size_t>(end - tokens[opening].text));
    if (text.find(L'\n') == std::wstring_view::npos)
        return NoToken;
    // Directly behind it, or with code in it.
    const bool isCode = text.find(L";\n") != std::wstring_view::npos;
    return end == tokens[stop].text || isCode ? opening : NoToken;
}

} // namespace Kesh::CodeAnalyzer
