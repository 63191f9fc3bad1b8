#pragma once

#include "Markup/OpenElements.h"

#include <cstdint>
#include <map>
#include <span>
#include <unordered_set>
#include <vector>

namespace Kesh::CodeAnalyzer {

enum class ENestingFault : std::uint8_t {
    Stray,            ///< `at` is an end tag that fits nothing
    Unclosed,         ///< `other` is not closed; `at` is the tag, or the text's end (NoEvent), that shows it
    Crossed,          ///< the end tag `at` comes before that of `other`
    Mismatched,       ///< the end tag `at` stands where one for `other` is due
    VoidEnd,          ///< `at` ends what has no content
    SelfClosing,      ///< `at` has a slash that does nothing; the tokenizer tells it
    BlockInParagraph, ///< the block `at` has ended the paragraph whose end tag is `other`
    Alone,            ///< `at` stands in `other`, which is of its kind
    TextInTable,      ///< the text `at` stands in `other`
    ElementInTable,   ///< likewise the element
    Twice,            ///< `at` comes after `other`, and there is only one
    OneBranch,        ///< `other` is opened in some branches only; `at` closes it in all
    HalfOpen,         ///< a function leaves `other` open, and nothing in the document closes such an element
    HalfClosed,       ///< likewise the end tag `at`
    LeftInBranch      ///< `other` is left open at the end of a branch, and closed in none
};

struct SNestingFault
{
    ENestingFault fault;
    std::uint32_t at;
    std::uint32_t other = NoEvent;
    std::uint32_t scope = 0; ///< of functions: which one, 0 being the document
};

/// What a function, or the document, leaves open at its end, and the end tags in it that have no start.
struct SLeftOver
{
    std::vector<std::uint32_t> open;
    std::vector<std::uint32_t> closed;
    bool unknown = false; ///< it cannot be told

    bool IsEven() const { return !unknown && open.empty() && closed.empty(); }
};

/// What may be done about tags that leave the whole unbalanced: by how lines are indented, so many end tags
/// of each name count as lost or as too many.
struct SIndentBudget
{
    std::map<std::wstring, std::uint32_t> lost;
    std::map<std::wstring, std::uint32_t> extra;

    bool IsEmpty() const { return lost.empty() && extra.empty(); }
};

struct SVerdict
{
    std::vector<SNestingFault> faults;
    std::vector<SLeftOver> scopes; ///< the document, and its functions in the order of their beginnings
};

/// Follows the elements that are open through the branches of a text, as its author sees them: an element
/// lasts from its start tag to its end tag, or to where one that may be left out is due. What cannot be told
/// is taken as right. Linear; recursion-free but for the depth of what conditional elements hold.
class CNestingJudge
{
public:
    CNestingJudge(const CNestingEvents& events, const SyntaxParser::IMarkupPlaces& places,
                  std::vector<SIndentBudget> budgets);

    SVerdict Judge();

private:
    /// A branch, a function or the whole.
    struct SSequence
    {
        SEffect effect;
        std::vector<std::uint32_t>
            reopened; ///< faults of elements that were given up: their end tags may come
        bool isScope = false;
        std::uint32_t scope = 0;
        bool foreign = false; ///< begins in svg or math
        bool inLoop = false;  ///< whose next turn may end what this one begins
    };
    struct SStatement
    {
        EBranching branching = EBranching::Choice;
        bool always = false; ///< one of the branches is taken for sure
        std::vector<SCondition> conditions;
        std::vector<SEffect> branches;
    };
    using TOpen = std::vector<SOpenItem>;

    const SNestingEvent& Event(std::uint32_t event) const { return m_events.All()[event]; }
    const std::wstring& Name(std::uint32_t event) const { return *Event(event).lower; }
    bool Has(const SOpenItem& item, std::uint32_t flag) const
    {
        return item.IsElement() && (Event(item.event).flags & flag) != 0;
    }
    bool IsOptional(const SOpenItem& item) const;
    bool Fits(std::uint32_t open, std::uint32_t close) const;
    SSequence& Here() { return m_sequences.back(); }
    TOpen& Open() { return m_sequences.back().effect.opens; }
    bool IsForeign() const;

    void OnOpen(std::uint32_t event);
    void EndOptional(std::uint32_t event);
    void EndByBlock(std::uint32_t event);
    void CheckAlone(std::uint32_t event);
    void CheckTable(std::uint32_t event);
    void CheckTwice(std::uint32_t event);
    void Indent(std::uint32_t event);

    void OnUnknown(bool calls);
    void OnClose(std::uint32_t event);
    bool CloseKnown(std::uint32_t event);
    void CloseUnknown(std::uint32_t event);
    bool CloseReopened(std::uint32_t event);
    bool CloseConditional(SOpenItem& item, std::uint32_t event);
    std::size_t ByIndent(std::size_t found, std::uint32_t event);
    void GiveUp(SOpenItem& item, std::uint32_t at);
    void LeaveOpen(const TOpen& items, std::uint32_t at);

    void OnFlow(const SFlowMark& mark);
    void BeginSequence(bool isScope);
    void EndBranch();
    void LeavePhrase(const TOpen& branch);
    bool IsLeftSomewhere(const std::wstring* name);
    void SettleCloses(SEffect& branch, bool inLoop);
    bool IsOpenIn(const TOpen& open, std::uint32_t close, std::size_t& reach) const;
    bool IsOpenAround(std::uint32_t close) const;
    const SOpenItem* NextAround() const;
    void EndStatement();
    void EndLoop(SStatement& statement);
    void Apply(SEffect effect);
    void ApplyChoice(SStatement& statement);
    bool CloseByCondition(SStatement& statement, SConditional& open);
    bool CloseInSome(SStatement& statement);
    bool AgreeAll(std::vector<SEffect>& branches);
    bool AgreeOpen(std::span<const SOpenItem> a, std::span<const SOpenItem> b) const;
    std::span<const SOpenItem> WithoutOptional(const TOpen& open) const;
    void MakeUnknown();

    void Report(ENestingFault fault, std::uint32_t at, std::uint32_t other = NoEvent);
    void SettleStrays(const TOpen& open);
    void EndScopeOf(SSequence& sequence);

    const CNestingEvents& m_events;
    const SyntaxParser::IMarkupPlaces& m_places;
    std::vector<SIndentBudget> m_budgets; ///< by scopes; may be fewer
    std::vector<SSequence> m_sequences;
    std::vector<SStatement> m_statements;
    std::map<std::wstring, std::uint32_t> m_once;   ///< html, head and body, as they have come
    std::unordered_set<const std::wstring*> m_left; ///< names that branches leave open; made on demand
    bool m_hasLeft = false;
    SVerdict m_verdict;
};

} // namespace Kesh::CodeAnalyzer
