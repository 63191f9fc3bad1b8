#include "Grammar/ConstantValues.h"

#include "Grammar/RuleScopes.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

EKnown Truth(bool isTrue)
{
    return isTrue ? EKnown::True : EKnown::False;
}

// Any digit but 0 before an exponent, whose letter is one of the digits in hexadecimal numbers.
bool IsZero(std::wstring_view number)
{
    const bool isHex = number.size() > 1 && (number[1] | 0x20) == L'x';
    const bool hasBase = number.size() > 1 && number[0] == L'0' && !(number[1] >= L'0' && number[1] <= L'9');
    for (const wchar_t c : number.substr(hasBase && number[1] != L'.' && number[1] != L'_' ? 2 : 0)) {
        if (!isHex && (c | 0x20) == L'e')
            return true;
        if (c != L'0' && c != L'.' && c != L'_')
            return false;
    }
    return true;
}

bool IsEmptyText(std::wstring_view text)
{
    const std::size_t quote = text.find_first_of(L"'\"");
    const std::wstring_view content = quote == std::wstring_view::npos ? text : text.substr(quote + 1);
    return content.size() == 1 || (content.size() == 2 && content[0] == L'0');
}

// The constants of PHP itself that everybody knows; those of the program come later.
bool IsConstantOfPhp(std::wstring_view name)
{
    if (name.starts_with(L'\\'))
        name.remove_prefix(1);
    return name.starts_with(L"PHP_") || name.starts_with(L"E_") || name.starts_with(L"M_");
}

EKnown KnownLiteral(const CGrammarTokens& tokens, EValue kind, std::uint32_t token, std::uint32_t type)
{
    switch (kind) {
    case EValue::Literal:
        return type & (TypeInt | TypeFloat) ? Truth(!IsZero(tokens.Text(token))) : EKnown::Something;
    case EValue::Text: return Truth(!IsEmptyText(tokens.Text(token)));
    case EValue::Name:
        if (type == TypeNull)
            return EKnown::Null;
        if (type & TypeBool)
            return Truth(type == TypeTrue);
        return IsConstantOfPhp(tokens.Text(token)) ? EKnown::Something : EKnown::Nothing;
    case EValue::Magic: return EKnown::Something;
    default: return EKnown::Nothing;
    }
}

} // namespace

EKnown KnownOf(const CGrammarTokens& tokens, const SGrammarValue& value)
{
    if (value.flags & (NotConstant | HasNew))
        return EKnown::Nothing;
    const bool isGroup = value.kind == EValue::Group;
    const EValue kind = isGroup ? value.inner : value.kind;
    if (kind == EValue::ArrayLiteral)
        return Truth(value.flags & Filled);
    if (value.flags & (Truthy | Falsy))
        return Truth(value.flags & Truthy);
    if (value.flags & Folded)
        return EKnown::Something;
    if (kind == EValue::SignedNumber)
        return KnownLiteral(tokens, EValue::Literal, value.bad, value.extra);
    return KnownLiteral(tokens, kind, isGroup ? value.bad : value.first, value.extra);
}

std::optional<std::uint64_t> IntegerOf(std::wstring_view text)
{
    std::uint64_t base = 10;
    if (text.size() > 1 && text[0] == L'0') {
        const wchar_t letter = text[1] | 0x20;
        base = letter == L'x' ? 16 : letter == L'b' ? 2 : 8;
        text.remove_prefix(letter == L'x' || letter == L'b' || letter == L'o' ? 2 : 1);
    }
    std::uint64_t value = 0;
    for (const wchar_t c : text) {
        if (c == L'_')
            continue;
        const wchar_t letter = c | 0x20;
        const std::uint64_t digit = c >= L'0' && c <= L'9'             ? c - L'0'
                                    : letter >= L'a' && letter <= L'f' ? letter - L'a' + 10U
                                                                       : 99U;
        if (digit >= base || value > (0x7FFFFFFFFFFFFFFFU - digit) / base)
            return {};
        value = value * base + digit;
    }
    return value;
}

} // namespace Kesh::CodeAnalyzer
