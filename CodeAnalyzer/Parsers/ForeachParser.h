#pragma once

#include "Parsers/ContainerParser.h"
#include "Parsers/SubExpressionParsers.h"

#include <set>
#include <tuple>
#include <unordered_map>

namespace Kesh::CodeAnalyzer {

/// `foreach`, with braces, a single statement or `:`. Warns when a loop reuses a name of a loop around it.
class CForeachParser : public CContainerParser
{
public:
    CForeachParser(SyntaxParser::CDefRegions* defs, boost::shared_ptr<SyntaxParser::IReader> reader,
                   CParentParser* parent);

    void DispathRegion(SyntaxParser::CRegion* region) override;
    int StatementStartRegion(SyntaxParser::CRegion* region) override;
    void BeforeParse(const SyntaxParser::STextChange& change) override;
    void RestoreForContinue() override;
    void OnError() override;

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;

protected:
    enum EState {
        ForeachState = 0,
        ConditionStartState = 1,
        ConditionState = 2,
        KeyValState = 3,
        ValueState = 5,
        AfterConditionState = 7,
        AfterBodyState = 8,
        EndforeachState = 9,
        KeyValExpressionState = 10,
        ValueExpressionState = 11
    };

    struct TForeachData
    {
        std::wstring keyName; ///< empty without `=>`
        std::wstring valueName;
        SyntaxParser::SScheme keySpan;
        SyntaxParser::SScheme valueSpan;
    };
    /// A node of the tree of loops; its place in m_loops is its identity.
    struct SLoop
    {
        TForeachData data;
        std::size_t depth = 0;
    };
    struct SBody
    {
        std::size_t loop;
        int alternative; ///< 1 after `:`
    };
    /// A suspension of this parser: for the body of which loop, and where that is in m_bodyStack.
    struct SFrame
    {
        std::size_t loop = 0;
        std::size_t place = 0;
    };
    /// The loops of one name, in the order in which they began.
    using TNames = std::unordered_map<std::wstring, std::vector<std::size_t>>;
    using TSpan = std::tuple<std::int64_t, std::int64_t, std::int64_t, std::int64_t>;

    void HandleForeachState(SyntaxParser::CRegion* region);
    void HandleConditionState(SyntaxParser::CRegion* region);
    void HandleKeyValState(SyntaxParser::CRegion* region);
    void HandleValueState(SyntaxParser::CRegion* region);
    void HandleAfterConditionState(SyntaxParser::CRegion* region);
    void HandleAfterBodyState(SyntaxParser::CRegion* region);
    void HandleEndforeachState(SyntaxParser::CRegion* region);

    void HandlePartEnd(SyntaxParser::CRegion* region);
    void StartPart(SyntaxParser::CRegion* region, int next);
    std::wstring PartText(SyntaxParser::CRegion* end) const;
    void AddForeachTreeNode();
    std::size_t NearestAround(TNames& names, const std::wstring& name) const;
    void WarnSameName(const SyntaxParser::SScheme& outer, const SyntaxParser::SScheme& inner, int code);
    void Warn(const SyntaxParser::SScheme& span, int code);
    void FollowAfterCondition(SyntaxParser::CRegion* region);
    void FollowAfterBody(SyntaxParser::CRegion* region);
    void HandOn(SyntaxParser::CRegion* region, SFrame frame);
    bool IsEndforeach(SyntaxParser::CRegion* region) const;
    void CloseAlternative(SyntaxParser::CRegion* region);
    void PopBody();
    void SetCurrent(std::size_t loop);
    void End(SyntaxParser::CRegion* region, int redispatch);
    void Error(SyntaxParser::CRegion* region);

    std::vector<SLoop> m_loops;      ///< [0] is the root, outside any loop
    std::size_t m_current = 0;       ///< the innermost loop whose header or body is being parsed
    std::vector<std::size_t> m_path; ///< from the root to m_current
    TNames m_keys;
    TNames m_values;
    std::vector<SBody> m_bodyStack; ///< loops whose body is being parsed, above an entry for the root
    // Where nesting is followed exactly:
    std::vector<SFrame> m_frames; ///< innermost last
    SFrame m_ended;               ///< of the body that a statement has just ended in
    bool m_handed = false;        ///< the last region was handed on, and no parser is known to have taken it

    SyntaxParser::CIterator m_partStart; ///< of the key or value being read
    SyntaxParser::CIterator m_partEnd;
    const wchar_t* m_partText = nullptr; ///< the text at m_partStart, if the source holds it in one piece
    TForeachData m_data;                 ///< of the loop whose header is being read
    std::set<TSpan> m_warnedSpans;
    int m_state = ForeachState;
    CForeachConditionParser m_conditionParser;
    CForeachValueParser m_valueParser;
};

} // namespace Kesh::CodeAnalyzer
