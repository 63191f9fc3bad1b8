#include "SyntaxParser/TextReader.h"

#include "Base/Exception.h"
#include "SyntaxParser/SourceText.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

CTextReader::CTextReader(std::wstring text) : m_storage(std::move(text)), m_size(m_storage.size()) {}

void CTextReader::Decode(std::string_view bytes)
{
    SSourceFormat format;
    m_size = DecodeInto(m_storage, bytes, format);
    m_hasMark = BeginsWithMark(bytes);
    m_lineStarts.clear();
    Reset();
}

void CTextReader::SetText(const std::wstring& text)
{
    m_storage = text;
    m_size = m_storage.size();
    m_hasMark = false;
    m_lineStarts.clear();
    Reset();
}

void CTextReader::Reset()
{
    m_next = 0;
}

bool CTextReader::NextChar()
{
    if (m_next >= m_size)
        return false;
    ++m_next;
    return true;
}

bool CTextReader::PrevChar()
{
    if (m_next <= 1)
        return false;
    --m_next;
    return true;
}

wchar_t CTextReader::ReadChar()
{
    return m_next == 0 ? L'\0' : m_storage[m_next - 1];
}

CIterator CTextReader::GetPos()
{
    if (m_next == 0)
        return {-1, 0};
    const auto& starts = LineStarts();
    const auto line = std::upper_bound(starts.begin(), starts.end(), m_next - 1) - starts.begin() - 1;
    return {static_cast<std::int64_t>(m_next - 1 - starts[static_cast<std::size_t>(line)]), line};
}

void CTextReader::SetPos(CIterator pos)
{
    m_next = Offset(pos);
}

std::wstring CTextReader::GetText(CIterator from, CIterator to)
{
    if (to < from)
        throw Base::CCriticalError("from <= to", __LINE__, "Host/SyntaxParser/TextReader");
    const std::size_t begin = Offset(from);
    return std::wstring(View().substr(begin, Offset(to) - begin));
}

std::wstring CTextReader::GetFirstString()
{
    return std::wstring(View().substr(0, View().find(L'\n')));
}

CIterator CTextReader::GetEnd()
{
    const auto& starts = LineStarts();
    return {static_cast<std::int64_t>(m_size - starts.back()), static_cast<std::int64_t>(starts.size()) - 1};
}

const std::vector<std::size_t>& CTextReader::LineStarts()
{
    if (m_lineStarts.empty()) {
        m_lineStarts.push_back(0);
        for (std::size_t at = 0; (at = View().find(L'\n', at)) != std::wstring::npos;)
            m_lineStarts.push_back(++at);
    }
    return m_lineStarts;
}

std::size_t CTextReader::Offset(CIterator pos)
{
    const auto& starts = LineStarts();
    const auto line = static_cast<std::size_t>(pos.y);
    if (pos.x < 0 || pos.y < 0 || line >= starts.size() ||
        static_cast<std::size_t>(pos.x) > m_size - starts[line])
        throw Base::CCriticalError("pos in text", __LINE__, "Host/SyntaxParser/TextReader");
    return starts[line] + static_cast<std::size_t>(pos.x);
}

} // namespace Kesh::SyntaxParser
