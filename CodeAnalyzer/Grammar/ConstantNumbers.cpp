#include "Grammar/ConstantNumbers.h"

#include "Grammar/ConstantValues.h"
#include "Grammar/RuleScopes.h"

#include <limits>
#include <optional>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

constexpr std::uint32_t Numbers = TypeInt | TypeFloat;

/// The whole number that a literal is, with its sign.
std::optional<std::int64_t> NumberOf(const CGrammarTokens& tokens, const SGrammarValue& value)
{
    const bool isGroup = value.kind == EValue::Group;
    const EValue kind = isGroup ? value.inner : value.kind;
    if (value.extra != TypeInt || (kind != EValue::Literal && kind != EValue::SignedNumber))
        return {};
    const bool isSigned = kind == EValue::SignedNumber;
    const auto number = IntegerOf(tokens.Text(isGroup || isSigned ? value.bad : value.first));
    if (!number)
        return {};
    const auto positive = static_cast<std::int64_t>(*number);
    return isSigned && tokens[value.bad - 1].kind == K::Minus ? -positive : positive;
}

std::uint32_t TypeOfPower(std::int64_t base, std::int64_t exponent)
{
    if (exponent < 0)
        return TypeFloat;
    if (base >= -1 && base <= 1)
        return TypeInt;
    std::int64_t result = 1;
    for (; exponent > 0; --exponent)
        if (__builtin_mul_overflow(result, base, &result))
            return TypeFloat;
    return TypeInt;
}

std::uint32_t TypeOfIntegers(std::int64_t a, K op, std::int64_t b)
{
    std::int64_t result = 0;
    const auto fits = [](bool overflows) -> std::uint32_t { return overflows ? TypeFloat : TypeInt; };
    switch (op) {
    case K::Plus: return fits(__builtin_add_overflow(a, b, &result));
    case K::Minus: return fits(__builtin_sub_overflow(a, b, &result));
    case K::Times: return fits(__builtin_mul_overflow(a, b, &result));
    case K::Power: return TypeOfPower(a, b);
    case K::Modulo: return b == 0 ? 0U : TypeInt;
    case K::Divide:
        if (b == 0)
            return 0;
        if (b == -1)
            return fits(a == std::numeric_limits<std::int64_t>::min());
        return a % b == 0 ? TypeInt : TypeFloat;
    case K::ShiftLeft:
    case K::ShiftRight: return b < 0 ? 0U : TypeInt;
    default: return Numbers;
    }
}

bool IsArray(const SGrammarValue& value)
{
    return value.kind == EValue::ArrayLiteral ||
           (value.kind == EValue::Group && value.inner == EValue::ArrayLiteral);
}

/// What the elements of an array are is all known.
bool IsFoldedArray(const SGrammarValue& value)
{
    return IsArray(value) && !(value.flags & (NotConstant | HasNew | Unfolded));
}

} // namespace

std::uint32_t TypeOfCalculation(const CGrammarTokens& tokens, const SGrammarValue& a, K op,
                                const SGrammarValue& b)
{
    if (op == K::Plus && IsFoldedArray(a) && IsFoldedArray(b))
        return TypeArray;
    constexpr std::uint32_t numeric = Numbers | TypeBool | TypeNull;
    if (IsArray(a) || IsArray(b) || !a.extra || !b.extra || ((a.extra | b.extra) & ~numeric))
        return 0;
    const auto left = NumberOf(tokens, a);
    const auto right = NumberOf(tokens, b);
    if (left && right)
        return TypeOfIntegers(*left, op, *right);
    if (op == K::ShiftLeft || op == K::ShiftRight)
        return 0;
    if (op == K::Modulo) // what is no whole number is told of when the program runs
        return a.extra == TypeInt && b.extra == TypeInt ? static_cast<std::uint32_t>(TypeInt) : 0U;
    return a.extra == TypeFloat || b.extra == TypeFloat ? static_cast<std::uint32_t>(TypeFloat) : Numbers;
}

std::uint32_t TypeOfNumber(std::wstring_view text)
{
    constexpr std::size_t surelyShort = 16;
    const bool hex = text.size() > 1 && (text[1] | 0x20) == L'x';
    if (!hex && text.find_first_of(L".eE") != std::wstring_view::npos)
        return TypeFloat;
    return text.size() < surelyShort || IntegerOf(text) ? TypeInt : TypeFloat;
}

} // namespace Kesh::CodeAnalyzer
