#include "Parsers/ForParser.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CRegion;
using SyntaxParser::STextChange;

CForParser::CForParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                       CParentParser* parent)
    : CContainerParser(defs, reader, parent), m_expressionParser(defs, reader, this)
{
}

void CForParser::BeforeParse(const STextChange& change)
{
    m_state = ForState;
    m_part = 0;
    m_expressionParser.BeforeParse(change);
    m_warnings.clear();
}

int CForParser::StatementStartRegion(CRegion* region)
{
    if (!IsKeyword(region, L"for"))
        return false;
    m_state = ForState;
    return true;
}

void CForParser::DispathRegion(CRegion* region)
{
    if (m_state == ExpressionState) {
        m_expressionParser.DispathRegion(region);
        return;
    }
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case ForState: HandleForState(region); break;
    case FirstPartState: HandleFirstPartState(region); break;
    case SecondPartState: HandleSecondPartState(region); break;
    case ThirdPartState: HandleThirdPartState(region); break;
    case AfterCondiotionState: HandleAfterCondiotionState(region); break;
    case AfterBodyState: HandleAfterBodyState(region); break;
    default: break;
    }
}

// 0: the `(` of the header.
void CForParser::HandleForState(CRegion* region)
{
    if (IsOpening(region, L'('))
        m_state = FirstPartState;
    else
        Error(region);
}

// 1 to 3: an expression of a part, or the end of an empty part.
void CForParser::HandleFirstPartState(CRegion* region)
{
    m_part = 1;
    HandlePart(region, IsToken(region, PhpToken::Semicolon), SecondPartState);
}

void CForParser::HandleSecondPartState(CRegion* region)
{
    m_part = 2;
    HandlePart(region, IsToken(region, PhpToken::Semicolon), ThirdPartState);
}

void CForParser::HandleThirdPartState(CRegion* region)
{
    m_part = 3;
    HandlePart(region, IsClosing(region, L')'), AfterCondiotionState);
}

void CForParser::HandlePart(CRegion* region, bool empty, int next)
{
    if (empty)
        m_state = next;
    else if (m_expressionParser.StatementStartRegion(region))
        m_state = ExpressionState;
    else
        Error(region);
}

// 4: an expression has ended. The third part ends at a closing bracket of any kind.
void CForParser::OnStructureEnd(CRegion* region, int /*redispatch*/)
{
    if (IsToken(region, PhpToken::Comma))
        m_state = m_part;
    else if (IsToken(region, PhpToken::Semicolon) && m_part < 3)
        m_state = m_part + 1;
    else if (IsToken(region, PhpToken::Closing) && m_part == 3)
        m_state = AfterCondiotionState;
    else
        Error(region);
}

// 5: after the header.
void CForParser::HandleAfterCondiotionState(CRegion* region)
{
    if (IsToken(region, PhpToken::Semicolon)) {
        WarnOddSemicolon(region);
        End(region, 0);
    } else if (IsKeyword(region, L"endfor")) {
        End(region, 0);
    } else {
        m_parent->OnParsingContinue(region, 1);
    }
}

// 6: after the body.
void CForParser::HandleAfterBodyState(CRegion* region)
{
    End(region, 1);
}

void CForParser::RestoreForContinue()
{
    m_state = AfterBodyState;
}

void CForParser::End(CRegion* region, int redispatch)
{
    m_state = ForState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CForParser::Error(CRegion* region)
{
    m_state = ForState;
    m_parent->OnStructureError(Code::ForError, region, 1);
}

} // namespace Kesh::CodeAnalyzer
