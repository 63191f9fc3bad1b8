#include "SyntaxParser/HtmlCursor.h"

#include <algorithm>
#include <cwchar>

namespace Kesh::SyntaxParser {

bool CHtmlCursor::IsNext(std::wstring_view word, std::size_t ahead) const
{
    const std::size_t begin = std::min(m_at + ahead, m_text.size());
    return std::ranges::equal(m_text.substr(begin, word.size()), word,
                              [](wchar_t a, wchar_t b) { return Lower(a) == b; });
}

void CHtmlCursor::SkipAll(wchar_t c)
{
    // An island may be a whole file. Of what equals itself moved by one, each character is the same.
    constexpr std::size_t Block = 64;
    if (Peek() != c)
        return;
    while (m_at + Block < m_text.size() && std::wmemcmp(&m_text[m_at], &m_text[m_at + 1], Block) == 0)
        m_at += Block;
    while (Peek() == c)
        Skip();
}

void CHtmlCursor::ReportCharacters(std::size_t begin, bool mayBeNull)
{
    for (std::size_t i = begin; i < m_at; ++i) {
        const auto c = static_cast<char32_t>(m_written[i]);
        if (m_text[i] == MarkupIsland || (c >= 0x20 && c < 0x7F) || IsSpace(m_written[i]))
            continue;
        if (c == 0 && !mayBeNull)
            Report(EHtmlProblem::UnexpectedNullCharacter, {i, i + 1});
        else if (c != 0 && IsControl(c))
            Report(EHtmlProblem::ControlCharacterInInputStream, {i, i + 1});
        else if (IsSurrogate(c))
            Report(EHtmlProblem::SurrogateInInputStream, {i, i + 1});
        else if (IsNoncharacter(c))
            Report(EHtmlProblem::NoncharacterInInputStream, {i, i + 1});
    }
}

std::vector<SHtmlProblem>& CHtmlCursor::Problems()
{
    std::ranges::stable_sort(m_problems, {}, [](const SHtmlProblem& p) { return p.span.begin; });
    return m_problems;
}

} // namespace Kesh::SyntaxParser
