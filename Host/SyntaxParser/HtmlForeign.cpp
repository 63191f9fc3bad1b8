#include "SyntaxParser/HtmlForeign.h"

#include "SyntaxParser/HtmlTags.h"

#include <string>

namespace Kesh::SyntaxParser {

bool CHtmlForeign::Open(std::wstring_view lower, bool selfClosing, bool isStyledFont)
{
    const std::uint32_t flags = GetTagFlags(lower);
    const bool wasForeign = IsForeign();
    if (wasForeign && (flags & TagLeavesForeign || isStyledFont))
        LeaveForeign();
    if (IsForeign()) {
        const std::uint32_t holder = m_levels.back().role == ERole::Svg ? TagSvgHolder : TagMathHolder;
        if (selfClosing)
            return true;
        if (lower == L"svg")
            Push(ERole::Svg, lower);
        else if (flags & holder && lower != L"annotation-xml") // which holds HTML only if it says so
            Push(ERole::Holder, lower);
        return true;
    }
    if (lower == L"svg" || lower == L"math") {
        if (!selfClosing)
            Push(lower == L"svg" ? ERole::Svg : ERole::Math, lower);
        return true;
    }
    if (!m_levels.empty() && !(flags & TagVoid))
        ++m_levels.back().open;
    return false;
}

void CHtmlForeign::Close(std::wstring_view lower)
{
    if (m_levels.empty())
        return;
    const auto known = m_counts.find(std::wstring(lower));
    if (known != m_counts.end() && known->second != 0) {
        const std::size_t left = known->second - 1;
        while (known->second != left)
            Pop();
    } else if (IsForeign()) {
        if (lower == L"p" || lower == L"br")
            LeaveForeign();
    } else if (m_levels.back().open != 0) {
        --m_levels.back().open;
    }
}

void CHtmlForeign::Push(ERole role, std::wstring_view lower)
{
    const auto count = m_counts.try_emplace(std::wstring(lower)).first;
    ++count->second;
    m_levels.push_back({role, count->first});
}

void CHtmlForeign::Pop()
{
    --m_counts[std::wstring(m_levels.back().name)];
    m_levels.pop_back();
}

void CHtmlForeign::LeaveForeign()
{
    while (IsForeign())
        Pop();
}

} // namespace Kesh::SyntaxParser
