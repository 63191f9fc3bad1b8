#include "SyntaxParser/LostQuotes.h"

#include "SyntaxParser/HtmlCursor.h"

namespace Kesh::SyntaxParser {

namespace {

constexpr std::size_t None = std::wstring_view::npos;

bool IsNameCharacter(wchar_t c)
{
    return CHtmlCursor::IsLetter(c) || CHtmlCursor::IsDigit(c) || c == L'-' || c == L'_' || c == L':' ||
           c == L'.' || c == L'@';
}

std::size_t BackOverSpaces(std::wstring_view value, std::size_t end)
{
    while (end > 0 && CHtmlCursor::IsSpace(value[end - 1]))
        --end;
    return end;
}

// Where the value ends before " name=", of which the quote that follows is the opening one.
std::size_t FindNameAtEnd(std::wstring_view value)
{
    std::size_t end = BackOverSpaces(value, value.size());
    if (end == 0 || value[end - 1] != L'=')
        return None;
    end = BackOverSpaces(value, end - 1);
    std::size_t begin = end;
    while (begin > 0 && IsNameCharacter(value[begin - 1]))
        --begin;
    const std::size_t spaces = BackOverSpaces(value, begin);
    return begin < end && spaces < begin ? spaces : None;
}

// Where a tag seems to end in the value, since others follow.
std::size_t FindTagEnd(std::wstring_view value)
{
    const std::size_t end = value.find(L'>');
    return end != None && value.find(L'<', end) != None ? end : None;
}

} // namespace

std::size_t FindLostQuote(std::wstring_view value, wchar_t next, bool isAtEnd)
{
    if (isAtEnd)
        return value.ends_with(MarkupIsland) ? None : std::min(value.find(L'>'), value.size());
    if (CHtmlCursor::IsSpace(next) || next == L'/' || next == L'>' || next == MarkupIsland)
        return None;
    const std::size_t tagEnd = FindTagEnd(value);
    return tagEnd != None ? tagEnd : FindNameAtEnd(value);
}

} // namespace Kesh::SyntaxParser
