#include "SyntaxParser/HtmlReferences.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace Kesh::SyntaxParser {

namespace {

#include "html-references.inc"

/// The longest name that needs no semicolon.
constexpr std::size_t MaxBareName = 6;

bool IsLetterOrDigit(wchar_t c)
{
    return CHtmlCursor::IsLetter(c) || CHtmlCursor::IsDigit(c);
}

bool Has(std::span<const std::string_view> names, std::wstring_view name)
{
    const std::string narrow(name.begin(), name.end()); // letters and digits only
    return std::ranges::binary_search(names, narrow);
}

// How much of `word` is a name that needs no semicolon.
std::size_t MeasureBareName(std::wstring_view word)
{
    for (std::size_t size = std::min(word.size(), MaxBareName); size > 1; --size)
        if (Has(BareNames, word.substr(0, size)))
            return size;
    return 0;
}

void ReadNamed(CHtmlCursor& cursor, bool inAttribute)
{
    const std::size_t begin = cursor.At();
    std::size_t size = 1;
    while (IsLetterOrDigit(cursor.Peek(size)))
        ++size;
    const std::wstring_view word = cursor.Text({begin + 1, begin + size});
    const bool isClosed = cursor.Peek(size) == L';';
    if (isClosed && Has(ReferenceNames, word)) {
        cursor.Skip(size + 1);
        return;
    }
    if (const std::size_t bare = MeasureBareName(word)) {
        cursor.Skip(1 + bare);
        const wchar_t next = cursor.Peek();
        const bool isMeantAsText = inAttribute && (next == L'=' || IsLetterOrDigit(next));
        if (!isMeantAsText && next != MarkupIsland)
            cursor.Report(EHtmlProblem::MissingSemicolonAfterCharacterReference, {begin, cursor.At()});
        return;
    }
    cursor.Skip(size);
    if (isClosed && size > 1)
        cursor.Report(EHtmlProblem::UnknownNamedCharacterReference, {begin, cursor.At() + 1});
}

int DigitOf(wchar_t c, bool isHex)
{
    if (CHtmlCursor::IsDigit(c))
        return c - L'0';
    const wchar_t lower = CHtmlCursor::Lower(c);
    return isHex && lower >= L'a' && lower <= L'f' ? lower - L'a' + 10 : -1;
}

void JudgeNumber(CHtmlCursor& cursor, std::uint32_t number, SMarkupSpan span)
{
    if (number == 0)
        cursor.Report(EHtmlProblem::NullCharacterReference, span);
    else if (number > 0x10FFFF)
        cursor.Report(EHtmlProblem::CharacterReferenceOutsideUnicodeRange, span);
    else if (CHtmlCursor::IsSurrogate(number))
        cursor.Report(EHtmlProblem::SurrogateCharacterReference, span);
    else if (CHtmlCursor::IsNoncharacter(number))
        cursor.Report(EHtmlProblem::NoncharacterCharacterReference, span);
    else if (number == 0x0D ||
             (CHtmlCursor::IsControl(number) && !CHtmlCursor::IsSpace(static_cast<wchar_t>(number))))
        cursor.Report(EHtmlProblem::ControlCharacterReference, span);
}

void ReadNumeric(CHtmlCursor& cursor)
{
    const std::size_t begin = cursor.At();
    cursor.Skip(2);
    const bool isHex = cursor.Peek() == L'x' || cursor.Peek() == L'X';
    cursor.Skip(isHex ? 1 : 0);
    const std::size_t digits = cursor.At();
    std::uint32_t number = 0;
    for (int digit; (digit = DigitOf(cursor.Peek(), isHex)) >= 0; cursor.Skip())
        number =
            std::min<std::uint32_t>(number * (isHex ? 16 : 10) + static_cast<std::uint32_t>(digit), 0x110000);
    const wchar_t next = cursor.Peek();
    if (next == MarkupIsland)
        return;
    if (cursor.At() == digits) {
        cursor.Report(EHtmlProblem::AbsenceOfDigitsInNumericCharacterReference, {begin, digits});
        return;
    }
    if (next == L';')
        cursor.Skip();
    else
        cursor.Report(EHtmlProblem::MissingSemicolonAfterCharacterReference, {begin, cursor.At()});
    JudgeNumber(cursor, number, {begin, cursor.At()});
}

} // namespace

void ReadHtmlReference(CHtmlCursor& cursor, bool inAttribute)
{
    if (cursor.Peek(1) == L'#')
        ReadNumeric(cursor);
    else
        ReadNamed(cursor, inAttribute);
}

std::span<const std::string_view> GetHtmlReferenceNames()
{
    return ReferenceNames;
}

} // namespace Kesh::SyntaxParser
