#include "SPBase/reader.h"

#include "Base/Exception.h"

#include <algorithm>
#include <cstdint>

namespace Kesh::SyntaxParser {

namespace {

using Lines = std::vector<std::wstring>;

std::int64_t Length(const std::wstring& line)
{
    return static_cast<std::int64_t>(line.size());
}

/// Appends the columns `from` to `to` of a line, as far as it has them.
void AppendColumns(std::wstring& text, const std::wstring& line, std::int64_t from, std::int64_t to)
{
    from = std::clamp<std::int64_t>(from, 0, Length(line));
    to = std::clamp<std::int64_t>(to, from, Length(line));
    text.append(line, static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

/// `from` is not behind `to`, and both lie on lines of the text.
std::wstring Assemble(const Lines& lines, CIterator from, CIterator to)
{
    std::wstring text;
    const std::wstring& first = lines[static_cast<std::size_t>(from.y)];
    if (from.y == to.y) {
        AppendColumns(text, first, from.x, to.x);
        return text;
    }
    std::size_t length = 0;
    for (auto y = from.y; y <= to.y; ++y)
        length += lines[static_cast<std::size_t>(y)].size();
    text.reserve(length);

    AppendColumns(text, first, from.x, Length(first));
    for (auto y = from.y + 1; y < to.y; ++y)
        text += lines[static_cast<std::size_t>(y)];
    AppendColumns(text, lines[static_cast<std::size_t>(to.y)], 0, to.x);
    return text;
}

wchar_t CharAt(const Lines& lines, CIterator pos)
{
    if (pos.y < 0 || pos.y >= static_cast<std::int64_t>(lines.size()))
        return L'\0';
    const std::wstring& line = lines[static_cast<std::size_t>(pos.y)];
    return pos.x < 0 || pos.x >= Length(line) ? L'\0' : line[static_cast<std::size_t>(pos.x)];
}

} // namespace

CSimpleReader::CSimpleReader() : CSimpleReader(std::wstring()) {}

CSimpleReader::CSimpleReader(const std::wstring& text)
{
    SetString(text);
}

void CSimpleReader::SetString(const wchar_t* text)
{
    SetWhole(text);
}

void CSimpleReader::SetWhole(std::wstring_view whole)
{
    TakeWhole(std::wstring(whole));
}

void CSimpleReader::TakeWhole(std::wstring text)
{
    Clear();
    m_text = std::move(text);
    m_starts.push_back(0);
    if (m_text.find(L'\r') != std::wstring::npos)
        return DropReturns();
    for (std::size_t at = m_text.find(L'\n'); at != std::wstring::npos; at = m_text.find(L'\n', at + 1))
        m_starts.push_back(at + 1);
}

// One that no "\n" follows ends a line all the same, unless it is the last character.
void CSimpleReader::DropReturns()
{
    std::size_t size = 0;
    for (std::size_t at = 0; at < m_text.size(); ++at) {
        const wchar_t c = m_text[at];
        if (c != L'\r')
            m_text[size++] = c;
        if (c == L'\n' || (c == L'\r' && at + 1 < m_text.size() && m_text[at + 1] != L'\n'))
            m_starts.push_back(size);
    }
    m_text.resize(size);
}

void CSimpleReader::AddLine(const std::wstring& line)
{
    m_starts.push_back(m_text.size());
    m_text += line;
}

void CSimpleReader::Clear()
{
    Reset();
    m_text.clear();
    m_starts.clear();
}

std::wstring_view CSimpleReader::Line(std::int64_t number) const
{
    const auto index = static_cast<std::size_t>(number);
    const std::size_t end = index + 1 < m_starts.size() ? m_starts[index + 1] : m_text.size();
    return std::wstring_view(m_text).substr(m_starts[index], end - m_starts[index]);
}

std::size_t CSimpleReader::Offset(CIterator pos) const
{
    return m_starts[static_cast<std::size_t>(pos.y)] +
           static_cast<std::size_t>(std::clamp<std::int64_t>(pos.x, 0, Length(pos.y)));
}

void CSimpleReader::Reset()
{
    m_pos = {-1, 0};
}

bool CSimpleReader::NextChar()
{
    // It is the first line that tells an empty text, wherever the reader stands.
    if (m_starts.empty() || Line(0).empty())
        return false;
    if (m_pos.x + 1 != Length(m_pos.y)) {
        ++m_pos.x;
        return true;
    }
    if (m_pos.y + 1 >= LineCount() || Line(m_pos.y + 1).empty())
        return false;
    m_pos = {0, m_pos.y + 1};
    return true;
}

bool CSimpleReader::PrevChar()
{
    if (m_pos.x > 0) {
        --m_pos.x;
        return true;
    }
    if (m_pos.y == 0 || Line(m_pos.y - 1).empty())
        return false;
    --m_pos.y;
    m_pos.x = Length(m_pos.y) - 1;
    return true;
}

wchar_t CSimpleReader::ReadChar()
{
    if (m_pos.y < 0 || m_pos.y >= LineCount() || m_pos.x < 0 || m_pos.x >= Length(m_pos.y))
        return L'\0';
    return Line(m_pos.y)[static_cast<std::size_t>(m_pos.x)];
}

void CSimpleReader::SetPos(CIterator pos)
{
    if (pos.x != 0)
        m_pos = {pos.x - 1, pos.y};
    else if (pos.y != 0)
        m_pos = {Length(pos.y - 1) - 1, pos.y - 1};
    else
        Reset();
}

std::wstring CSimpleReader::GetText(CIterator from, CIterator to)
{
    if (to < from || from.y < 0)
        throw CCriticalError();
    if (to.y >= LineCount())
        throw Base::CCriticalError("nEnd.y < (int)m_string.size()", 124, "Lib/SPBase/reader");
    const std::size_t begin = Offset(from);
    return m_text.substr(begin, std::max(begin, Offset(to)) - begin);
}

std::wstring CSimpleReader::GetFirstString()
{
    if (m_starts.empty())
        return {};
    const std::wstring_view line = Line(0);
    const std::size_t first = line.find_first_not_of(L" \t\n");
    if (first == std::wstring_view::npos)
        return {};
    return std::wstring(line.substr(first, line.find_last_not_of(L" \t\n") - first + 1));
}

CIterator CSimpleReader::GetEnd()
{
    if (m_starts.empty())
        return {0, 0};
    return {Length(LineCount() - 1), LineCount() - 1};
}

CBackSimpleReader::CBackSimpleReader(const std::wstring& text)
{
    SetString(text);
}

void CBackSimpleReader::SetString(const std::wstring& text)
{
    m_string.clear();
    std::wstring* line = &m_string.emplace_back();
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::size_t run = std::min(text.find_first_of(L"\r\n", at), text.size()) - at;
        line->append(text, at, run);
        at += run;
        if (at < text.size() && text[at] == L'\n') {
            *line += L'\n';
            line = &m_string.emplace_back();
        }
    }
    Reset();
}

void CBackSimpleReader::Reset()
{
    m_pos = {Length(m_string.back()), static_cast<std::int64_t>(m_string.size()) - 1};
}

bool CBackSimpleReader::NextChar()
{
    if (m_pos.x != 0) {
        --m_pos.x;
        return true;
    }
    if (m_pos.y == 0)
        return false;
    --m_pos.y;
    m_pos.x = Length(m_string[static_cast<std::size_t>(m_pos.y)]) - 1;
    return true;
}

bool CBackSimpleReader::PrevChar()
{
    if (m_pos.x + 1 < Length(m_string[static_cast<std::size_t>(m_pos.y)])) {
        ++m_pos.x;
        return true;
    }
    if (m_pos.y + 1 >= static_cast<std::int64_t>(m_string.size()))
        return false;
    m_pos = {0, m_pos.y + 1};
    return true;
}

wchar_t CBackSimpleReader::ReadChar()
{
    return CharAt(m_string, m_pos);
}

void CBackSimpleReader::SetPos(CIterator pos)
{
    m_pos = {pos.x + 1, pos.y};
}

std::wstring CBackSimpleReader::GetText(CIterator from, CIterator to)
{
    // The column is bounded by the last line, whichever line `to` is on.
    if (to < from || from.y < 0 || to.y >= static_cast<std::int64_t>(m_string.size()) ||
        to.x > Length(m_string.back()))
        throw CCriticalError();
    return Assemble(m_string, from, to);
}

std::wstring CBackSimpleReader::GetText()
{
    std::wstring text;
    for (const std::wstring& line : m_string)
        text += line;
    return text;
}

std::wstring CBackSimpleReader::GetFirstString()
{
    return m_string.front();
}

} // namespace Kesh::SyntaxParser
