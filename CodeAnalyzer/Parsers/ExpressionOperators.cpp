#include "Base/CommonString.h"
#include "Parsers/ExpressionStatementParser.h"

#include <algorithm>
#include <cstdint>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;
using SyntaxParser::SScheme;

namespace {

/// An operator of up to three characters as a number; 0 for anything longer.
constexpr std::uint64_t Key(std::wstring_view text)
{
    if (text.size() > 3)
        return 0;
    std::uint64_t key = 0;
    for (wchar_t c : text)
        key = key << 21 | static_cast<std::uint64_t>(c);
    return key;
}

template <std::size_t... Sizes> bool IsOneOf(std::wstring_view text, const wchar_t (&... operators)[Sizes])
{
    const std::uint64_t key = Key(text);
    return ((key == Key({operators, Sizes - 1})) || ...);
}

template <std::size_t... Sizes> bool LowersToOneOf(std::wstring_view text, const wchar_t (&... words)[Sizes])
{
    return (CCommonString::LowersTo(text, {words, Sizes - 1}) || ...);
}

constexpr int OpenBracketPriority = 10;

} // namespace

int CExpressionStatementParser::IsBinaryOperator(CRegion* region)
{
    if (IsToken(region, PhpToken::Text))
        return IsOneOf(TrimmedText(region), L"||", L"&&", L"==", L"===", L"!=", L"!==", L"<>", L">", L"<",
                       L">=", L"<=", L"?", L":");
    if (IsToken(region, PhpToken::Dot))
        return true;
    // The words in capitals can never equal a lowered text; they belong to the list all the same.
    if (IsToken(region, PhpToken::Keyword) || IsToken(region, PhpToken::Word))
        return LowersToOneOf(TrimmedText(region), L"instanceof", L"and", L"AND", L"or", L"OR", L"xor",
                             L"XOR");
    return false;
}

int CExpressionStatementParser::IsBinaryOperatorCanBeAssign(CRegion* region)
{
    if (IsToken(region, PhpToken::Text))
        return IsOneOf(TrimmedText(region), L"+", L"-", L"*", L"/", L"%", L"&", L"|", L"^", L"<<", L">>",
                       L"**");
    return IsToken(region, PhpToken::Dot);
}

int CExpressionStatementParser::IsPrefixOperator(CRegion* region)
{
    if (IsToken(region, PhpToken::Text))
        return IsOneOf(TrimmedText(region), L"++", L"--", L"!", L"-", L"+", L"~", L"@", L"&");
    if (IsToken(region, PhpToken::PrefixWord))
        return true;
    // In lower case only.
    if (IsToken(region, PhpToken::Keyword) || IsToken(region, PhpToken::Word))
        return Equals(TrimmedText(region), L"clone");
    return false;
}

int CExpressionStatementParser::IsSuffixOperator(CRegion* region)
{
    return IsToken(region, PhpToken::Text) && IsOneOf(TrimmedText(region), L"++", L"--");
}

int CExpressionStatementParser::IsFuncStyleKeyword(CRegion* region)
{
    return IsToken(region, PhpToken::Keyword) &&
           LowersToOneOf(TrimmedText(region), L"isset", L"empty", L"eval", L"list", L"unset");
}

int CExpressionStatementParser::IsNoNeedParamsFuncKeyword(CRegion* region)
{
    if (IsToken(region, PhpToken::ArgumentWord))
        return true;
    if (IsToken(region, PhpToken::Keyword) || IsToken(region, PhpToken::Word) ||
        IsExtra(region, PhpExtra::CalledWord))
        return LowersToOneOf(TrimmedText(region), L"exit", L"echo", L"print", L"die", L"continue");
    return false;
}

int CExpressionStatementParser::IsTypeRegion(CRegion* region)
{
    if (!IsToken(region, PhpToken::Word) && !IsToken(region, PhpToken::Keyword))
        return false;
    return LowersToOneOf(TrimmedText(region), L"int", L"integer", L"float", L"double", L"real", L"string",
                         L"object", L"array", L"bool", L"boolean", L"binary", L"unset");
}

int CExpressionStatementParser::GetOperatorPriority(std::wstring_view op)
{
    if (IsOneOf(op, L"="))
        return 1;
    if (IsOneOf(op, L"+", L"-", L"||"))
        return 5;
    if (IsOneOf(op, L"*", L"/", L"&&"))
        return 6;
    if (IsOneOf(op, L"(", L"["))
        return OpenBracketPriority;
    return -1;
}

void CExpressionStatementParser::AddOperator(CRegion* region)
{
    AddOperator(TrimmedText(region));
}

void CExpressionStatementParser::AddOperator(std::wstring_view op)
{
    auto& operators = m_data.operators;
    auto& operands = m_data.operands;
    if (!IsOneOf(op, L")", L"]")) {
        const int priority = GetOperatorPriority(op);
        while (!operators.empty() && operands.size() >= 2) {
            const int top = operators.back().second;
            if (top >= OpenBracketPriority || priority > top)
                break;
            ReduceOnce();
        }
        operators.emplace_back(op, priority);
        return;
    }

    const bool isRound = IsOneOf(op, L")");
    const std::wstring_view opener(isRound ? L"(" : L"[", 1);
    bool reduced = false;
    while (!operators.empty() && operands.size() >= 2 && operators.back().first != opener) {
        ReduceOnce();
        reduced = true;
    }
    if (operators.empty())
        return;
    if (operators.back().first == opener)
        operators.pop_back();
    if (!isRound && reduced && !operands.empty())
        operands.pop_back();
    if (!operands.empty()) {
        m_data.currentOperand = operands.back();
        operands.pop_back();
    }
}

void CExpressionStatementParser::AddBinaryOperator(CRegion* region)
{
    PushOperand();
    AddOperator(region);
}

void CExpressionStatementParser::PushOperand()
{
    if (!m_data.startRecorded)
        return;
    m_data.operands.push_back({m_data.start.start, m_data.lastEnd});
    m_data.startRecorded = false;
}

void CExpressionStatementParser::ReduceOnce()
{
    auto& operands = m_data.operands;
    const SScheme right = operands.back();
    operands.pop_back();
    const SScheme left = operands.back();
    operands.back().end = right.end;
    m_data.subExpressions.push_back({left, right, std::move(m_data.operators.back().first)});
    m_data.operators.pop_back();
}

// A `,` or `=>` ends an element: its operations are reduced and its operand is nobody's.
void CExpressionStatementParser::EndElement()
{
    PushOperand();
    const std::size_t outside = m_data.brackets.empty() ? 0 : m_data.brackets.back().operandsOutside;
    while (m_data.operands.size() >= outside + 2 && !m_data.operators.empty() &&
           m_data.operators.back().second < OpenBracketPriority)
        ReduceOnce();
    m_data.operands.resize(std::min(outside, m_data.operands.size()));
}

} // namespace Kesh::CodeAnalyzer
