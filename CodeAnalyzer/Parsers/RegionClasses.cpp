#include "Parsers/RegionClasses.h"

#include "Base/CommonString.h"

#include <algorithm>
#include <cstring>
#include <mutex>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;
using SyntaxParser::ISynRegion;
using SyntaxParser::SPhpRegionDefs;
using enum ERegionClass;

namespace {

ERegionClass ClassOfSign(wchar_t sign)
{
    switch (sign) {
    case L'\t':
    case L'\n':
    case L' ': return Blank;
    case L'+':
    case L'-':
    case L'&': return Sign;
    case L'*':
    case L'/':
    case L'%':
    case L'|':
    case L'^': return Operator;
    case L'<':
    case L'>':
    case L'?': return Relation;
    case L'!':
    case L'~':
    case L'@': return Negation;
    case L':': return Colon;
    case L'\\': return Backslash;
    default: return Other;
    }
}

ERegionClass ClassOfSigns(std::wstring_view text)
{
    struct SSigns
    {
        std::wstring_view text;
        ERegionClass kind;
    };
    static constexpr SSigns all[] = {
        {L"::", DoubleColon}, {L"&&", Relation}, {L"||", Relation}, {L"===", Relation},
        {L"!==", Relation},   {L"==", Relation}, {L"!=", Relation}, {L"++", Step},
        {L">=", Relation},    {L"<=", Relation}, {L"--", Step},     {L"...", Ellipsis},
        {L"<<", Operator},    {L">>", Operator}, {L"**", Operator}, {L"<>", Relation},
    };
    for (const SSigns& signs : all)
        if (text[0] == signs.text[0] && text == signs.text)
            return signs.kind;
    return Other;
}

ERegionClass ClassOfPlain(std::wstring_view text)
{
    const ERegionClass first = ClassOfSign(text[0]);
    if (text.size() == 1)
        return first;
    if (first != Blank)
        return ClassOfSigns(text);
    const bool allBlank = std::all_of(text.begin() + 1, text.end(),
                                      [](wchar_t c) { return c == L' ' || c == L'\t' || c == L'\n'; });
    return allBlank ? Blank : Other;
}

ERegionClass ClassOfWord(std::wstring_view text)
{
    const auto is = [text](std::wstring_view word) { return CCommonString::LowersTo(text, word); };
    switch (CCommonString::AsciiLower(text[0])) {
    case L'a': return is(L"and") ? WordOperator : Word;
    case L'c': return text == L"clone" ? PrefixWord : is(L"continue") ? Other : Word;
    case L'd': return is(L"die") ? Other : Word;
    case L'e': return is(L"exit") || is(L"echo") ? Other : Word;
    case L'i': return is(L"instanceof") ? WordOperator : Word;
    case L'o': return is(L"or") ? WordOperator : Word;
    case L'p': return is(L"php") || is(L"print") ? Other : Word; // the first is blank
    case L'x': return is(L"xor") ? WordOperator : Word;
    default: return static_cast<char32_t>(text[0]) < 0x80 ? Word : Other;
    }
}

ERegionClass ClassOfCalledWord(std::wstring_view text)
{
    const auto is = [text](std::wstring_view word) { return CCommonString::LowersTo(text, word); };
    const bool special = is(L"match") || is(L"list") || is(L"exit") || is(L"die") || is(L"echo") ||
                         is(L"print") || is(L"continue");
    return special ? Other : CalledWord;
}

ERegionClass ClassOfKeyword(std::wstring_view text)
{
    struct SKeyword
    {
        std::wstring_view text;
        ERegionClass kind;
    };
    static constexpr SKeyword all[] = {
        {L"return", ReturnWord}, {L"array", ArrayWord},         {L"isset", CalledWord},
        {L"echo", EchoWord},     {L"empty", CalledWord},        {L"break", BreakWord},
        {L"unset", CalledWord},  {L"eval", CalledWord},         {L"and", WordOperator},
        {L"or", WordOperator},   {L"instanceof", WordOperator}, {L"xor", WordOperator},
        {L"print", PrintWord},   {L"clone", PrefixWord},
    };
    for (const SKeyword& keyword : all)
        if (CCommonString::LowersTo(text, keyword.text))
            return keyword.kind != PrefixWord || text == keyword.text ? keyword.kind : Other;
    return OtherKeyword;
}

// Those that need an argument.
ERegionClass ClassOfArgumentWord(std::wstring_view text)
{
    if (text == L"=")
        return EchoWord;
    const wchar_t first = CCommonString::AsciiLower(text[0]);
    return first == L'i' || first == L'r' ? PrintWord : Other; // `include` and `require`
}

} // namespace

CRegionClasses::CRegionClasses(const SPhpRegionDefs& defs) : m_defs(defs)
{
    const auto fixed = [this](const ISynRegion* definition, ERegionClass kind) {
        Add(definition, ERule::Fixed, kind);
    };
    for (std::size_t i = 1; i < std::size(defs.CommentDefs); ++i)
        fixed(defs.CommentDefs[i], Blank);
    fixed(defs.TagDefs[2], StatementEnd);
    fixed(defs.VarDefs[3], Variable);
    fixed(defs.TokenDefs[5], StringStart);
    fixed(defs.TokenDefs[8], Comma);
    fixed(defs.TokenDefs[9], Arrow);
    fixed(defs.TokenDefs[10], StatementEnd);
    fixed(defs.TokenDefs[11], KeyArrow);
    fixed(defs.TokenDefs[14], Assign);
    fixed(defs.TokenDefs[15], PrefixWord);
    fixed(defs.TokenDefs[20], Number);
    fixed(defs.TokenDefs[21], Carried);
    Add(defs.TokenDefs[1], ERule::Plain, Other);
    Add(defs.TokenDefs[2], ERule::Keyword, Other);
    Add(defs.TokenDefs[3], ERule::Opening, Other);
    Add(defs.TokenDefs[4], ERule::Closing, Other);
    Add(defs.TokenDefs[16], ERule::Argument, Other);
    Add(defs.TokenDefs[17], ERule::Word, Other);
    Add(defs.TokenDefs[19], ERule::Word, Other);
    Add(defs.ExtraDefs[3], ERule::CalledWord, Other);
}

std::shared_ptr<const CRegionClasses> CRegionClasses::Shared(const SPhpRegionDefs& defs)
{
    static std::mutex mutex;
    static std::shared_ptr<const CRegionClasses> last;
    const std::lock_guard lock(mutex);
    if (!last || std::memcmp(&last->m_defs, &defs, sizeof defs) != 0)
        last = std::make_shared<CRegionClasses>(defs);
    return last;
}

void CRegionClasses::Add(const ISynRegion* definition, ERule rule, ERegionClass fixed)
{
    if (!definition)
        return;
    std::size_t i = Hash(definition);
    while (m_slots[i].definition)
        i = (i + 1) % Slots;
    m_slots[i] = {definition, rule, fixed};
}

ERegionClass CRegionClasses::FromText(ERule rule, const CRegion& region)
{
    const std::wstring_view text = region.text;
    if (text.empty())
        return Other;
    if (rule == ERule::Plain)
        return ClassOfPlain(text);
    if (text.size() != CCommonString::Trim(text).size())
        return Other;
    switch (rule) {
    case ERule::Opening: return text.back() == L'(' ? RoundOpen : text.back() == L'[' ? SquareOpen : Other;
    case ERule::Closing: return text.back() == L')' ? RoundClose : text.back() == L']' ? SquareClose : Other;
    case ERule::Word: return ClassOfWord(text);
    case ERule::CalledWord: return ClassOfCalledWord(text);
    case ERule::Argument: return ClassOfArgumentWord(text);
    case ERule::Keyword: return ClassOfKeyword(text);
    default: return Other;
    }
}

} // namespace Kesh::CodeAnalyzer
