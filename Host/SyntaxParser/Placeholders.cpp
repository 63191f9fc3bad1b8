#include "SyntaxParser/Placeholders.h"

#include <algorithm>
#include <iterator>

namespace Kesh::SyntaxParser {

namespace {

/// Engines' placeholders are short; what opens one and closes much later is something else.
constexpr std::size_t MaxSize = 2000;

struct SBrackets
{
    std::wstring_view open;
    std::wstring_view close;
};

constexpr SBrackets Brackets[] = {
    {L"{{--", L"--}}"}, {L"{{{", L"}}}"}, {L"{{", L"}}"}, {L"{!!", L"!!}"}, {L"{%", L"%}"},
    {L"{#", L"#}"},     {L"<%", L"%>"},   {L"<#", L"#>"}, {L"{*", L"*}"},
};
/// Of any other tag of Smarty.
constexpr SBrackets SmartyTag = {L"{", L"}"};

bool BeginsSmartyTag(wchar_t c)
{
    return c == L'$' || c == L'/' || c == L'"' || (c >= L'a' && c <= L'z');
}

class CPlaceholderFinder
{
public:
    CPlaceholderFinder(CMarkupText& text, bool isSmarty)
        : m_text(text), m_scanned(text.Scanned({0, text.Size()})), m_isSmarty(isSmarty)
    {
    }

    bool FillAll()
    {
        bool found = false;
        for (std::size_t i = FindSign(0); i < m_scanned.size(); i = FindSign(i)) {
            const std::size_t end = FindEnd(i);
            if (end == std::wstring_view::npos) {
                ++i;
                continue;
            }
            std::fill(m_text.Scan() + i, m_text.Scan() + end, CMarkupText::Island);
            found = true;
            i = end;
        }
        return found;
    }

private:
    static constexpr std::size_t NotSought = static_cast<std::size_t>(-1);

    struct SSign
    {
        wchar_t sign;
        std::size_t next = NotSought;
    };

    // Where one may begin, from `i` on.
    std::size_t FindSign(std::size_t i)
    {
        std::size_t nearest = m_scanned.size();
        for (SSign& sign : m_signs) {
            if (sign.next < i || sign.next == NotSought)
                sign.next = std::min(m_scanned.find(sign.sign, i), m_scanned.size());
            nearest = std::min(nearest, sign.next);
        }
        return nearest;
    }

    std::size_t FindEnd(std::size_t begin)
    {
        const std::wstring_view rest = m_scanned.substr(begin, 4);
        for (std::size_t kind = 0; kind < std::size(Brackets); ++kind)
            if (rest.size() > 1 && rest[1] == Brackets[kind].open[1] &&
                rest.starts_with(Brackets[kind].open) && (Brackets[kind].open != L"{*" || m_isSmarty))
                return FindClose(begin, kind, Brackets[kind]);
        if (m_isSmarty && rest.size() > 1 && rest[0] == L'{' && BeginsSmartyTag(rest[1]))
            return FindClose(begin, std::size(Brackets), SmartyTag);
        return std::wstring_view::npos;
    }

    // Remembers where the next one of a kind closes: many may open before.
    std::size_t FindClose(std::size_t begin, std::size_t kind, const SBrackets& brackets)
    {
        const std::size_t from = begin + brackets.open.size();
        std::size_t& close = m_closes[kind];
        if (close < from)
            close = std::min(m_scanned.find(brackets.close, from), m_scanned.size());
        if (close == m_scanned.size() || close - begin > MaxSize)
            return std::wstring_view::npos;
        return close + brackets.close.size();
    }

    CMarkupText& m_text;
    std::wstring_view m_scanned;
    bool m_isSmarty;
    SSign m_signs[2] = {{L'{'}, {L'<'}};
    std::size_t m_closes[std::size(Brackets) + 1] = {};
};

} // namespace

bool FillPlaceholders(CMarkupText& text, bool isSmarty)
{
    return CPlaceholderFinder(text, isSmarty).FillAll();
}

} // namespace Kesh::SyntaxParser
