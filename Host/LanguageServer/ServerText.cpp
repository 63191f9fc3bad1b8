#include "LanguageServer/ServerText.h"

#include "Files/FileIO.h"
#include "SyntaxParser/SourceText.h"

#include <algorithm>
#include <utility>

namespace Kesh::LanguageServer {

namespace {

std::size_t SizeInUtf8(std::wstring_view text)
{
    std::size_t size = 0;
    for (const wchar_t c : text)
        size += 1 + (c >= 0x80) + (c >= 0x800) + (c >= 0x10000);
    return size;
}

} // namespace

void CServerText::SetText(const std::wstring& text)
{
    ReplaceAll(text);
    m_modified = false;
    m_change(nullptr);
}

std::wstring_view CServerText::Line(std::int64_t number) const
{
    if (number < 0 || number >= static_cast<std::int64_t>(m_starts.size()))
        return {};
    const auto index = static_cast<std::size_t>(number);
    const std::size_t end = index + 1 < m_starts.size() ? m_starts[index + 1] - 1 : m_text->size();
    return std::wstring_view(*m_text).substr(m_starts[index], end - m_starts[index]);
}

std::size_t CServerText::Offset(std::int64_t line, std::int64_t column) const
{
    if (line < 0)
        return 0;
    if (line >= static_cast<std::int64_t>(m_starts.size()))
        return m_text->size();
    return m_starts[static_cast<std::size_t>(line)] +
           static_cast<std::size_t>(
               std::clamp<std::int64_t>(column, 0, static_cast<std::int64_t>(Line(line).size())));
}

void CServerText::Replace(std::size_t from, std::size_t to, std::wstring_view text)
{
    to = std::max(from, to);
    Own().replace(from, to - from, text);
    // Lines in front stay, those behind move, those in between are found anew.
    const auto first = std::upper_bound(m_starts.begin(), m_starts.end(), from);
    const auto behind = std::upper_bound(first, m_starts.end(), to);
    for (auto start = behind; start != m_starts.end(); ++start)
        *start = *start - (to - from) + text.size();
    std::vector<std::size_t> starts;
    for (std::size_t at = text.find(L'\n'); at != std::wstring_view::npos; at = text.find(L'\n', at + 1))
        starts.push_back(from + at + 1);
    const auto place = m_starts.erase(first, behind);
    m_starts.insert(place, starts.begin(), starts.end());
    m_modified = true;
}

void CServerText::ReplaceAll(std::wstring text)
{
    m_text = std::make_shared<std::wstring>(std::move(text));
    m_isShared = false;
    m_modified = true;
    m_starts.assign(1, 0);
    for (std::size_t at = m_text->find(L'\n'); at != std::wstring::npos; at = m_text->find(L'\n', at + 1))
        m_starts.push_back(at + 1);
}

std::wstring& CServerText::Own()
{
    // Whether another thread still reads it cannot be asked without a race.
    if (std::exchange(m_isShared, false))
        m_text = std::make_shared<std::wstring>(*m_text);
    return *m_text;
}

bool CServerText::IsTooLarge() const
{
    constexpr std::size_t MostBytes = 4; // of a character
    return m_text->size() > Host::MaxFileBytes / MostBytes && SizeInUtf8(*m_text) > Host::MaxFileBytes;
}

void CServerText::Announce()
{
    m_change(nullptr);
}

std::wstring CServerText::GetText(const std::wstring& lineBreak)
{
    return IsTooLarge() ? std::wstring() : Editor::JoinLines(*m_text, lineBreak);
}

std::wstring TextFromUtf8(std::string_view utf8)
{
    // A byte order mark inside a text is a character of it.
    if (SyntaxParser::BeginsWithMark(utf8))
        return L'\uFEFF' + SyntaxParser::DecodeSource(utf8.substr(3));
    return SyntaxParser::DecodeSource(utf8);
}

} // namespace Kesh::LanguageServer
