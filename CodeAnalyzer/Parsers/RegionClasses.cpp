#include "Parsers/RegionClasses.h"

#include "Base/CommonString.h"

#include <cstring>
#include <mutex>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;
using SyntaxParser::ISynRegion;
using SyntaxParser::PhpExtra;
using SyntaxParser::PhpTag;
using SyntaxParser::PhpToken;
using SyntaxParser::PhpVar;
using SyntaxParser::SPhpRegionDefs;
using enum ERegionClass;

namespace {

using TSigns = std::array<ERegionClass, 0x80>;

constexpr TSigns Signs(std::initializer_list<std::pair<const char*, ERegionClass>> all)
{
    TSigns signs;
    signs.fill(Other);
    for (const auto& [characters, kind] : all)
        for (const char* c = characters; *c; ++c)
            signs[static_cast<unsigned char>(*c)] = kind;
    return signs;
}

constexpr TSigns PlainSigns = Signs({{"\t\n ", Blank},
                                     {"+-&", Sign},
                                     {"*/%|^", Operator},
                                     {"<>?", Relation},
                                     {"!~@", Negation},
                                     {":", Colon},
                                     {"\\", Backslash}});
constexpr TSigns OpeningSigns = Signs({{"(", RoundOpen}, {"[", SquareOpen}});
constexpr TSigns ClosingSigns = Signs({{")", RoundClose}, {"]", SquareClose}});

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

// In ASCII. A Kelvin sign lowers to the "k" of "break", too: that one is left to the states.
template <std::size_t Size> bool Is(std::wstring_view text, const wchar_t (&word)[Size])
{
    bool equal = text.size() == Size - 1;
    for (std::size_t i = 0; equal && i < Size - 1; ++i)
        equal = CCommonString::AsciiLower(text[i]) == word[i];
    return equal;
}

ERegionClass ClassOfWord(std::wstring_view text)
{
    switch (CCommonString::AsciiLower(text[0])) {
    case L'a': return Is(text, L"and") ? WordOperator : Word;
    case L'c': return text == L"clone" ? PrefixWord : Is(text, L"continue") ? Other : Word;
    case L'd': return Is(text, L"die") ? Other : Word;
    case L'e': return Is(text, L"exit") || Is(text, L"echo") ? Other : Word;
    case L'i': return Is(text, L"instanceof") ? WordOperator : Word;
    case L'o': return Is(text, L"or") ? WordOperator : Word;
    case L'p': return Is(text, L"php") || Is(text, L"print") ? Other : Word; // the first is blank
    case L'x': return Is(text, L"xor") ? WordOperator : Word;
    default: return static_cast<char32_t>(text[0]) < 0x80 ? Word : Other;
    }
}

// A word to every rule but one: "php" begins nothing.
ERegionClass ClassOfConstant(std::wstring_view text)
{
    return Is(text, L"php") ? Other : Word;
}

ERegionClass ClassOfCalledWord(std::wstring_view text)
{
    const bool special = Is(text, L"match") || Is(text, L"list") || Is(text, L"exit") || Is(text, L"die") ||
                         Is(text, L"echo") || Is(text, L"print") || Is(text, L"continue");
    return special ? Other : CalledWord;
}

ERegionClass ClassOfKeyword(std::wstring_view text)
{
    switch (CCommonString::AsciiLower(text[0])) {
    case L'a': return Is(text, L"array") ? ArrayWord : Is(text, L"and") ? WordOperator : OtherKeyword;
    case L'b': return Is(text, L"break") ? BreakWord : OtherKeyword;
    case L'c': return text == L"clone" ? PrefixKeyword : OtherKeyword;
    case L'e':
        if (Is(text, L"echo"))
            return EchoWord;
        return Is(text, L"empty") || Is(text, L"eval") ? CalledWord : OtherKeyword;
    case L'i': return Is(text, L"isset") ? CalledWord : Is(text, L"instanceof") ? WordOperator : OtherKeyword;
    case L'o': return Is(text, L"or") ? WordOperator : OtherKeyword;
    case L'p': return Is(text, L"print") ? PrintWord : OtherKeyword;
    case L'r': return Is(text, L"return") ? ReturnWord : OtherKeyword;
    case L'u': return Is(text, L"unset") ? CalledWord : OtherKeyword;
    case L'x': return Is(text, L"xor") ? WordOperator : OtherKeyword;
    default: return OtherKeyword;
    }
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

constinit const std::array<TSigns, 3> CRegionClasses::SignsOf{PlainSigns, OpeningSigns, ClosingSigns};

CRegionClasses::CRegionClasses(const SPhpRegionDefs& defs) : m_defs(defs)
{
    const auto fixed = [this](const ISynRegion* definition, ERegionClass kind) {
        Add(definition, ERule::Fixed, kind);
    };
    for (std::size_t i = 1; i < std::size(defs.CommentDefs); ++i)
        fixed(defs.CommentDefs[i], Blank);
    fixed(defs.TagDefs[PhpTag::Closing], StatementEnd);
    fixed(defs.VarDefs[PhpVar::Variable], Variable);
    fixed(defs.TokenDefs[PhpToken::StringStart], StringStart);
    fixed(defs.TokenDefs[PhpToken::Comma], Comma);
    fixed(defs.TokenDefs[PhpToken::Arrow], Arrow);
    fixed(defs.TokenDefs[PhpToken::Semicolon], StatementEnd);
    fixed(defs.TokenDefs[PhpToken::DoubleArrow], KeyArrow);
    fixed(defs.TokenDefs[PhpToken::Assign], Assign);
    fixed(defs.TokenDefs[PhpToken::PrefixWord], PrefixWord);
    fixed(defs.TokenDefs[PhpToken::Number], Number);
    fixed(defs.TokenDefs[PhpToken::Dot], Carried);
    Add(defs.TokenDefs[PhpToken::Text], ERule::Plain, Other);
    Add(defs.TokenDefs[PhpToken::Keyword], ERule::Keyword, Other);
    Add(defs.TokenDefs[PhpToken::Opening], ERule::Opening, Other);
    Add(defs.TokenDefs[PhpToken::Closing], ERule::Closing, Other);
    Add(defs.TokenDefs[PhpToken::ArgumentWord], ERule::Argument, Other);
    Add(defs.TokenDefs[PhpToken::ConstantWord], ERule::Constant, Other);
    Add(defs.TokenDefs[PhpToken::Word], ERule::Word, Other);
    Add(defs.ExtraDefs[PhpExtra::CalledWord], ERule::CalledWord, Other);
}

std::shared_ptr<const CRegionClasses> CRegionClasses::Shared(const SPhpRegionDefs& defs)
{
    static std::mutex guard;
    static std::shared_ptr<const CRegionClasses> last;
    const std::lock_guard lock(guard);
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
        return IsBlank(text) ? Blank : ClassOfSigns(text);
    if (text.size() != CCommonString::Trim(text).size())
        return Other;
    switch (rule) {
    case ERule::Word: return ClassOfWord(text);
    case ERule::Constant: return ClassOfConstant(text);
    case ERule::CalledWord: return ClassOfCalledWord(text);
    case ERule::Argument: return ClassOfArgumentWord(text);
    case ERule::Keyword: return ClassOfKeyword(text);
    default: return Other;
    }
}

} // namespace Kesh::CodeAnalyzer
