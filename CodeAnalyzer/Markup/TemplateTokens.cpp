#include "Markup/TemplateTokens.h"

#include "Kesh/SyntaxParser/ISPDocument.h"

#include <array>
#include <boost/pointer_cast.hpp>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EPhpTokenKind;
using SyntaxParser::ITokenSource;

namespace {

constexpr std::size_t KindCount = static_cast<std::size_t>(EPhpTokenKind::Count);

constexpr std::array<bool, KindCount> MakeRelevant()
{
    using enum EPhpTokenKind;
    std::array<bool, KindCount> relevant{};
    for (const EPhpTokenKind kind :
         {InlineHtml, OpenTagEcho, CloseTag,  OpenRound,   CloseRound,     OpenSquare, CloseSquare,
          OpenBrace,  CloseBrace,  CodeBrace, DollarBrace, AttributeStart, Semicolon,  Colon,
          Question,   Break,       Case,      Catch,       Class,          Continue,   Declare,
          Default,    Do,          Echo,      Else,        Elseif,         Enddeclare, Endfor,
          Endforeach, Endif,       Endswitch, Endwhile,    Enum,           Exit,       Finally,
          For,        Foreach,     Function,  Goto,        HaltCompiler,   If,         Interface,
          Namespace,  New,         Return,    Switch,      Throw,          Trait,      Try,
          While})
        relevant[static_cast<std::size_t>(kind)] = true;
    return relevant;
}

constexpr std::array<bool, KindCount> IsRelevant = MakeRelevant();

} // namespace

void CTemplateTokens::Follow(SyntaxParser::ISPDocument& document)
{
    const auto source =
        boost::dynamic_pointer_cast<ITokenSource>(document.GetComponent(L"ITokenSource").lock());
    if (source)
        source->AddTokenHandler(this);
}

bool CTemplateTokens::BeginTokens()
{
    m_tokens.clear();
    m_names = false;
    return true;
}

void CTemplateTokens::AddToken(const SyntaxParser::SPhpToken& token)
{
    // A reserved word may name a member.
    if (IsRelevant[static_cast<std::size_t>(token.kind)] &&
        !(m_names && ClassOf(token.kind) == SyntaxParser::EPhpTokenClass::Word))
        m_tokens.emplace_back(token);
    m_names = token.kind == EPhpTokenKind::Arrow || token.kind == EPhpTokenKind::NullsafeArrow ||
              token.kind == EPhpTokenKind::DoubleColon;
}

void CTemplateTokens::AddTokens(const SyntaxParser::SPhpToken* tokens, std::size_t count)
{
    for (const auto* token = tokens; token != tokens + count; ++token)
        AddToken(*token);
}

} // namespace Kesh::CodeAnalyzer
