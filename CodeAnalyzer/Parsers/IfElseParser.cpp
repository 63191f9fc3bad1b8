#include "Parsers/IfElseParser.h"

#include "Base/CommonString.h"
#include "Kesh/CodeAnalyzer/Catalog.h"

#include <deque>
#include <map>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CIterator;
using SyntaxParser::CRegion;
using SyntaxParser::SScheme;
using SyntaxParser::STextChange;

CIfElseParser::CIfElseParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                             CParentParser* parent)
    : CContainerParser(defs, reader, parent), m_conditionParser(defs, reader, this)
{
}

void CIfElseParser::BeforeParse(const STextChange& change)
{
    m_state = IfState;
    m_lastHanded = {-1, -1};
    m_chains.clear();
    m_openChains.clear();
    m_condStart = {};
    m_condText = nullptr;
    m_warnings.clear();
    m_conditionParser.ForgetTexts();
    if (m_exact) { // an `if` of an earlier pass is not taken up again
        m_resume.clear();
        m_conditionParser.BeforeParse(change);
    }
}

int CIfElseParser::StatementStartRegion(CRegion* region)
{
    if (IsKeyword(region, L"if")) {
        m_chains.emplace_back();
        m_openChains.push_back({&m_chains.back(), 0});
        m_state = IfState;
        return true;
    }
    if (IsKeyword(region, L"endif")) {
        PopChain();
        return false;
    }
    const bool isElse = IsKeyword(region, L"else");
    if (!isElse && !IsKeyword(region, L"elseif"))
        return false;
    if (m_openChains.empty()) {
        m_parent->OnStructureError(Code::ElseWithoutIf, region, 1);
        return false;
    }
    m_state = isElse ? ElseState : IfState;
    return true;
}

void CIfElseParser::DispathRegion(CRegion* region)
{
    switch (m_state) {
    case IfState: HandleIfState(region); break;
    case ConditionStartState: HandleConditionStartState(region); break;
    case ConditionState: m_conditionParser.DispathRegion(region); break;
    case AfterCondState: HandleAfterCondState(region); break;
    case ElseState: HandleElseState(region); break;
    case ContinueState: HandleContinueState(region); break;
    default: break;
    }
}

// 0: the `(` of a condition.
void CIfElseParser::HandleIfState(CRegion* region)
{
    if (IsOpening(region, L'(')) {
        m_condStart = region->end;
        m_condText = region->text.data() ? region->text.data() + region->text.size() : nullptr;
        m_state = ConditionStartState;
    } else if (!IsNonSignificantRegion(region)) {
        Error(Code::IfError, region);
    }
}

// 1: the first region of the condition.
void CIfElseParser::HandleConditionStartState(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    if (m_conditionParser.StatementStartRegion(region))
        m_state = ConditionState;
    else
        Error(Code::IfError, region);
}

// 2: the condition has ended.
void CIfElseParser::OnStructureEnd(CRegion* region, int /*redispatch*/)
{
    if (!IsClosing(region, L')')) {
        Error(Code::IfError, region);
        return;
    }
    if (!m_openChains.empty()) {
        SCondition condition{{m_condStart, region->start}, {}};
        if (m_condText && region->text.data() >= m_condText)
            condition.text = {m_condText, static_cast<std::size_t>(region->text.data() - m_condText)};
        m_openChains.back().chain->push_back(condition);
    }
    m_state = AfterCondState;
    if (m_exact)
        m_resume.push_back({ContinueState, {}, nullptr});
}

// 3: after the condition: `;`, `:` or the body.
void CIfElseParser::HandleAfterCondState(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    if (IsToken(region, PhpToken::Semicolon)) {
        WarnOddSemicolon(region);
        PopResume();
        m_state = ContinueState;
    } else if (IsSymbol(region, L":")) {
        PopResume();
        if (!m_openChains.empty())
            m_openChains.back().alternative = 1;
        m_parent->OnStructureEnd(region, 0);
    } else {
        if (!m_exact)
            m_resume.assign(1, {ContinueState, {}, nullptr});
        m_parent->OnParsingContinue(region, 1);
    }
}

// 4: after `else`.
void CIfElseParser::HandleElseState(CRegion* region)
{
    if (IsNonSignificantRegion(region))
        return;
    if (IsKeyword(region, L"if")) {
        m_state = IfState;
        return;
    }
    if (!m_openChains.empty() && !m_openChains.back().alternative)
        PopChain();
    if (IsToken(region, PhpToken::Semicolon)) {
        WarnOddSemicolon(region);
        return;
    }
    m_lastHanded = region->start;
    m_parent->OnStructureEnd(region, 1);
}

// 5: after the body of a branch.
void CIfElseParser::HandleContinueState(CRegion* region)
{
    if (IsNonSignificantRegion(region) || region->start == m_lastHanded)
        return;
    if (IsKeyword(region, L"elseif")) {
        m_state = IfState;
    } else if (IsKeyword(region, L"else")) {
        m_state = ElseState;
    } else if (IsKeyword(region, L"endif")) {
        PopChain();
        m_parent->OnStructureEnd(region, 1);
    } else if (!m_openChains.empty() && m_openChains.back().alternative) {
        if (m_exact)
            m_resume.push_back({ContinueState, {}, nullptr});
        m_parent->OnParsingContinue(region, 0);
    } else {
        PopChain();
        m_parent->OnStructureEnd(region, 1);
    }
}

void CIfElseParser::RestoreForContinue()
{
    m_state = m_resume.empty() ? ContinueState : m_resume.back().state;
    if (m_state == ConditionState) {
        if (m_exact) {
            m_condStart = m_resume.back().condStart;
            m_condText = m_resume.back().condText;
        }
        m_conditionParser.RestoreForContinue();
    }
    PopResume();
}

void CIfElseParser::PopResume()
{
    if (m_exact && !m_resume.empty())
        m_resume.pop_back();
}

// The condition holds a closure whose body may hold conditions of its own.
void CIfElseParser::OnParsingContinue(CRegion* region, int offer)
{
    if (!m_exact)
        m_resume.clear();
    m_resume.push_back({ConditionState, m_condStart, m_condText});
    m_parent->OnParsingContinue(region, offer);
}

void CIfElseParser::OnStructureError(int code, CRegion* region, int /*skipToEnd*/)
{
    m_parent->OnStructureError(code, region, 1);
}

void CIfElseParser::OnError()
{
    if (m_exact)
        m_resume.clear();
}

void CIfElseParser::PopChain()
{
    if (!m_openChains.empty())
        m_openChains.pop_back();
}

void CIfElseParser::Error(int code, CRegion* region)
{
    m_state = IfState;
    m_parent->OnStructureError(code, region, 1);
}

void CIfElseParser::AfterParse()
{
    std::set<CIterator> reported;
    for (const TChain& chain : m_chains)
        WarnEqualConditions(chain, reported);
    CContainerParser::AfterParse();
}

// Each text that occurs twice or more is reported where it first occurs, then at its repetitions.
void CIfElseParser::WarnEqualConditions(const TChain& chain, std::set<CIterator>& reported)
{
    if (chain.size() < 2)
        return;
    // Texts of different length are never read: a condition may hold most of the document.
    const auto shorterFirst = [](std::wstring_view a, std::wstring_view b) {
        return a.size() != b.size() ? a.size() < b.size() : a < b;
    };
    std::map<std::wstring_view, std::vector<std::size_t>, decltype(shorterFirst)> places(shorterFirst);
    std::vector<const std::vector<std::size_t>*> order;
    std::deque<std::wstring> copies;
    for (std::size_t i = 0; i < chain.size(); ++i) {
        std::wstring_view text = chain[i].text;
        if (!text.data())
            text = copies.emplace_back(m_reader->GetText(chain[i].span.start, chain[i].span.end));
        auto& found = places[CCommonString::Trim(text)];
        if (found.empty())
            order.push_back(&found);
        found.push_back(i);
    }
    for (const auto* same : order) {
        if (same->size() < 2)
            continue;
        for (std::size_t i : *same) {
            if (reported.insert(chain[i].span.start).second)
                AddWarning(chain[i].span, Code::EqualConditions);
        }
    }
}

} // namespace Kesh::CodeAnalyzer
