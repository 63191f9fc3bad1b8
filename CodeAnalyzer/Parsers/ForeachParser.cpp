#include "Parsers/ForeachParser.h"

#include "Base/CommonString.h"
#include "Kesh/CodeAnalyzer/Catalog.h"

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CRegion;
using SyntaxParser::SScheme;
using SyntaxParser::STextChange;

CForeachParser::CForeachParser(SyntaxParser::CDefRegions* defs,
                               boost::shared_ptr<SyntaxParser::IReader> reader, CParentParser* parent)
    : CContainerParser(defs, reader, parent),
      m_conditionParser(defs, reader, this),
      m_valueParser(defs, reader, this)
{
}

void CForeachParser::BeforeParse(const STextChange& change)
{
    m_state = ForeachState;
    m_conditionParser.BeforeParse(change);
    m_valueParser.BeforeParse(change);
    m_loops.assign(1, SLoop());
    m_keys.clear();
    m_values.clear();
    m_warnedSpans.clear();
    m_data = {};
    m_partStart = m_partEnd = {};
    m_warnings.clear();
    OnError();
}

// Everything around has been given up.
void CForeachParser::OnError()
{
    m_bodyStack.assign(1, {0, 0});
    m_frames.clear();
    m_handed = false;
    m_path.assign(1, 0);
    m_current = 0;
}

int CForeachParser::StatementStartRegion(CRegion* region)
{
    if (IsKeyword(region, L"foreach")) {
        m_partStart = m_partEnd = {};
        m_data = {};
        m_state = ForeachState;
        return true;
    }
    if (IsKeyword(region, L"endforeach"))
        CloseAlternative(region);
    return false;
}

void CForeachParser::DispathRegion(CRegion* region)
{
    switch (m_state) {
    case ConditionState: m_conditionParser.DispathRegion(region); return;
    case KeyValExpressionState:
    case ValueExpressionState: m_valueParser.DispathRegion(region); return;
    default: break;
    }
    if (IsNonSignificantRegion(region))
        return;
    switch (m_state) {
    case ForeachState: HandleForeachState(region); break;
    case ConditionStartState: HandleConditionState(region); break;
    case KeyValState: HandleKeyValState(region); break;
    case ValueState: HandleValueState(region); break;
    case AfterConditionState: HandleAfterConditionState(region); break;
    case AfterBodyState: HandleAfterBodyState(region); break;
    case EndforeachState: HandleEndforeachState(region); break;
    default: break;
    }
}

// 0: the `(` of the header.
void CForeachParser::HandleForeachState(CRegion* region)
{
    if (IsOpening(region, L'('))
        m_state = ConditionStartState;
    else
        Error(region);
}

// 1: the first region of the iterated expression.
void CForeachParser::HandleConditionState(CRegion* region)
{
    if (m_conditionParser.StatementStartRegion(region))
        m_state = ConditionState;
    else
        Error(region);
}

// 2, 10 and 11: the expression being read has ended.
void CForeachParser::OnStructureEnd(CRegion* region, int /*redispatch*/)
{
    if (m_state != ConditionState)
        HandlePartEnd(region);
    else if (IsKeyword(region, L"as"))
        m_state = KeyValState;
    else if (!IsNonSignificantRegion(region))
        Error(region);
}

// 3: the first region of the key or the value.
void CForeachParser::HandleKeyValState(CRegion* region)
{
    StartPart(region, KeyValExpressionState);
}

// 5: the first region of the value after a key.
void CForeachParser::HandleValueState(CRegion* region)
{
    StartPart(region, ValueExpressionState);
}

void CForeachParser::StartPart(CRegion* region, int next)
{
    if (!m_valueParser.StatementStartRegion(region)) {
        Error(region);
        return;
    }
    m_partStart = region->start;
    m_partText = region->text.data();
    m_state = next;
}

// 10 and 11: the key has ended at `=>`, or the value at `)`.
void CForeachParser::HandlePartEnd(CRegion* region)
{
    if (IsToken(region, PhpToken::DoubleArrow)) {
        m_partEnd = region->start;
        m_data.keyName = PartText(region);
        m_data.keySpan = {m_partStart, m_partEnd};
        m_state = ValueState;
    } else if (IsClosing(region, L')')) {
        m_partEnd = region->start;
        m_data.valueName = PartText(region);
        m_data.valueSpan = {m_partStart, m_partEnd};
        m_partStart = m_partEnd = {};
        AddForeachTreeNode();
        m_handed = false;
        m_state = AfterConditionState;
    } else if (!IsNonSignificantRegion(region)) {
        Error(region);
    }
}

std::wstring CForeachParser::PartText(CRegion* end) const
{
    const wchar_t* const endText = end->text.data();
    if (m_partText && endText)
        return std::wstring(
            CCommonString::Trim({m_partText, static_cast<std::size_t>(endText - m_partText)}));
    return std::wstring(CCommonString::Trim(m_reader->GetText(m_partStart, m_partEnd)));
}

// 7: after the header. What no parser takes, such as the `:`, comes back here, and the next region is handed
// on.
void CForeachParser::HandleAfterConditionState(CRegion* region)
{
    if (m_exact) {
        FollowAfterCondition(region);
    } else if (IsToken(region, PhpToken::Semicolon)) {
        WarnOddSemicolon(region);
        End(region, 0);
    } else {
        m_bodyStack.push_back({m_current, IsSymbol(region, L":") ? 1 : 0});
        m_parent->OnParsingContinue(region, 1);
    }
}

// A region that comes back belongs to the body it was handed to, and the next one is handed on in its place.
void CForeachParser::FollowAfterCondition(CRegion* region)
{
    const bool inBody = m_handed;
    if (inBody)
        m_frames.pop_back();
    if (IsToken(region, PhpToken::Semicolon)) {
        WarnOddSemicolon(region);
        SetCurrent(m_bodyStack.back().loop);
        End(region, 0);
        return;
    }
    if (!inBody)
        m_bodyStack.push_back({m_current, IsSymbol(region, L":") ? 1 : 0});
    HandOn(region, {m_current, m_bodyStack.size() - 1});
}

void CForeachParser::HandOn(CRegion* region, SFrame frame)
{
    m_frames.push_back(frame);
    m_handed = true;
    m_parent->OnParsingContinue(region, 1);
}

void CForeachParser::RestoreForContinue()
{
    m_state = AfterBodyState;
    m_handed = false;
    m_ended = {};
    if (!m_frames.empty()) {
        m_ended = m_frames.back();
        m_frames.pop_back();
    }
}

// 8: after a statement of the body. The loop ends there, unless the body is a loop with a `:` body.
void CForeachParser::HandleAfterBodyState(CRegion* region)
{
    if (m_exact) {
        FollowAfterBody(region);
        return;
    }
    if (m_bodyStack.size() == 1) {
        End(region, 1);
        return;
    }
    const bool isAlternative = m_bodyStack.back().alternative;
    if (isAlternative && !IsEndforeach(region)) {
        m_parent->OnParsingContinue(region, 1);
        return;
    }
    PopBody();
    End(region, isAlternative ? 0 : 1);
}

// In lower case only.
bool CForeachParser::IsEndforeach(CRegion* region) const
{
    return IsRegion(region, Php().TokenDefs[PhpToken::Keyword], L"endforeach", 0);
}

void CForeachParser::FollowAfterBody(CRegion* region)
{
    if (m_handed) { // nobody has taken the last region of the body
        m_frames.pop_back();
        m_handed = false;
    }
    const std::size_t place = m_ended.place;
    const bool isOpen = place > 0 && place < m_bodyStack.size() && m_bodyStack[place].loop == m_ended.loop;
    if (!isOpen) { // `endforeach` has closed the loop
        End(region, 1);
        return;
    }
    const bool isInnermost = place + 1 == m_bodyStack.size();
    const bool isEnd = IsEndforeach(region);
    const bool isAlternative = m_bodyStack.back().alternative;
    if (isAlternative && !isEnd) {
        if (isInnermost) // the statements that follow are parsed one by one until `endforeach`
            End(region, 1);
        else // the body is a loop with such a body
            HandOn(region, m_ended);
        return;
    }
    if (isAlternative)
        PopBody();
    // With the loop that was its body this one ends too.
    while (m_bodyStack.size() > place && !m_bodyStack[place].alternative)
        PopBody();
    End(region, isAlternative ? 0 : 1);
}

// 9: the `;` after `endforeach`; no state leads here.
void CForeachParser::HandleEndforeachState(CRegion* region)
{
    if (IsToken(region, PhpToken::Semicolon)) {
        End(region, 0);
    } else {
        m_state = ForeachState;
        m_parent->OnStructureError(Code::UnendedStatement, region, 1);
    }
}

// The statements of a `:` body were parsed one by one; `endforeach` ends the loop that they were in.
void CForeachParser::CloseAlternative(CRegion* region)
{
    while (m_bodyStack.size() > 1 && !m_bodyStack.back().alternative)
        PopBody();
    if (m_bodyStack.size() == 1)
        return;
    PopBody();
    m_parent->OnStructureEnd(region, 0);
}

// What follows a body belongs to the loop around it.
void CForeachParser::PopBody()
{
    m_bodyStack.pop_back();
    SetCurrent(m_bodyStack.back().loop);
}

void CForeachParser::SetCurrent(std::size_t loop)
{
    m_current = loop;
    m_path.resize(m_loops[loop].depth + 1);
}

void CForeachParser::AddForeachTreeNode()
{
    const std::size_t ofKey = NearestAround(m_keys, m_data.keyName);
    const std::size_t ofValue = NearestAround(m_values, m_data.valueName);
    // The nearer loop first.
    if (ofValue > ofKey)
        WarnSameName(m_loops[ofValue].data.valueSpan, m_data.valueSpan, Code::SameValue);
    if (ofKey > 0)
        WarnSameName(m_loops[ofKey].data.keySpan, m_data.keySpan, Code::SameKey);
    if (ofValue > 0 && ofValue <= ofKey)
        WarnSameName(m_loops[ofValue].data.valueSpan, m_data.valueSpan, Code::SameValue);

    const std::size_t loop = m_loops.size();
    m_keys[m_data.keyName].push_back(loop);
    m_values[m_data.valueName].push_back(loop);
    m_loops.push_back({std::move(m_data), m_loops[m_current].depth + 1});
    m_data = {};
    m_path.push_back(loop);
    m_current = loop;
}

// The innermost loop around the present one that has this name; 0 when there is none.
std::size_t CForeachParser::NearestAround(TNames& names, const std::wstring& name) const
{
    if (name.empty())
        return 0;
    std::vector<std::size_t>& loops = names[name];
    // A loop that has left the path never comes back to it.
    while (!loops.empty()) {
        const std::size_t depth = m_loops[loops.back()].depth;
        if (depth < m_path.size() && m_path[depth] == loops.back())
            return loops.back();
        loops.pop_back();
    }
    return 0;
}

void CForeachParser::WarnSameName(const SScheme& outer, const SScheme& inner, int code)
{
    if (!m_warnedSpans.count({outer.start.x, outer.start.y, outer.end.x, outer.end.y}))
        Warn(outer, code);
    Warn(inner, code);
}

void CForeachParser::Warn(const SScheme& span, int code)
{
    m_warnedSpans.insert({span.start.x, span.start.y, span.end.x, span.end.y});
    AddWarning(span, code);
}

void CForeachParser::End(CRegion* region, int redispatch)
{
    m_state = ForeachState;
    m_parent->OnStructureEnd(region, redispatch);
}

void CForeachParser::Error(CRegion* region)
{
    m_state = ForeachState;
    m_parent->OnStructureError(Code::ForeachError, region, 1);
}

} // namespace Kesh::CodeAnalyzer
