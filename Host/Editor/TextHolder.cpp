#include "Editor/TextHolder.h"

#include <algorithm>

namespace Kesh::Editor {

void CMemoryText::SetText(const std::wstring& text)
{
    Edit(text);
    m_modified = false;
}

void CMemoryText::Edit(const std::wstring& text)
{
    m_text = text;
    m_modified = true;
    m_change(nullptr);
}

std::wstring CMemoryText::GetText(const std::wstring& lineBreak)
{
    return JoinLines(m_text, lineBreak);
}

int CMemoryText::GetLinesCount()
{
    return static_cast<int>(std::count(m_text.begin(), m_text.end(), L'\n')) + 1;
}

std::wstring JoinLines(const std::wstring& text, const std::wstring& lineBreak)
{
    if (lineBreak == L"\n")
        return text;
    std::wstring joined;
    for (const wchar_t c : text) {
        if (c == L'\n')
            joined += lineBreak;
        else
            joined += c;
    }
    return joined;
}

} // namespace Kesh::Editor
