#include "Markup/TemplateFlow.h"

#include "Markup/TemplateBrackets.h"

#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;
using enum SyntaxParser::EPhpTokenKind;
using TKind = SyntaxParser::EPhpTokenKind;

namespace {

/// Follows the statements by a stack of what is open.
class CFlowFinder
{
public:
    explicit CFlowFinder(const SyntaxParser::IMarkupPlaces& places) : m_places(places)
    {
        Push(EPlace::Block);
    }

    void Take(const CTemplateToken& token)
    {
        while (!TakeOnce(token)) {
        }
        m_lastEnd = token.End();
    }

    SFlow Finish()
    {
        while (m_open.size() > 1) {
            const EPlace place = m_open.back().place;
            m_sound = m_sound && (place == EPlace::After || place == EPlace::Expression);
            Close(m_open.back(), m_lastEnd);
        }
        return {std::move(m_marks), m_sound};
    }

private:
    enum class EPlace : std::uint8_t {
        Block,      ///< statements up to a brace, or to the word that ends an alternative syntax
        Cases,      ///< those of a switch
        CaseLabel,  ///< up to its colon
        ClassHead,  ///< up to its brace
        ClassBody,  ///< up to its brace: methods, and all else
        Function,   ///< from its word to its brace
        Expression, ///< up to the end of its statement
        Nested,     ///< brackets in an expression
        Head,       ///< a control structure before and in its parentheses
        Body,       ///< after them, or after a word that needs none
        After       ///< a control structure after a branch
    };
    enum class EControl : std::uint8_t { None, If, Loop, Do, Switch, Try, Plain };

    struct SPlace
    {
        EPlace place = EPlace::Block;
        EControl control = EControl::None;
        bool alternative = false;    ///< of a block: without braces
        bool isFunction = false;     ///< of a block: a scope of its own
        bool inExpression = false;   ///< of a class or function: the expression goes on behind it
        bool hasBranch = false;      ///< of a switch: one is open
        bool jumped = false;         ///< of a switch: the last statement of the case was a jump
        bool isElse = false;         ///< of a control structure: its branch needs no condition
        std::uint32_t depth = 0;     ///< of brackets
        std::uint32_t questions = 0; ///< of an expression: those that wait for their colon
        SyntaxParser::CIterator conditionBegin;
        SyntaxParser::CIterator conditionEnd;
    };

    void Push(EPlace place, EControl control = EControl::None)
    {
        m_open.emplace_back();
        m_open.back().place = place;
        m_open.back().control = control;
    }

    /// False: the token has closed a place, and counts in the one around it.
    bool TakeOnce(const CTemplateToken& token)
    {
        SPlace& top = m_open.back();
        switch (top.place) {
        case EPlace::Block: return InBlock(top, token);
        case EPlace::Cases: return InCases(top, token);
        case EPlace::CaseLabel: return InCaseLabel(top, token);
        case EPlace::ClassHead: return InClassHead(top, token);
        case EPlace::ClassBody: return InClassBody(token);
        case EPlace::Function: return InFunction(top, token);
        case EPlace::Expression: return InExpression(top, token);
        case EPlace::Nested: return InNested(top, token);
        case EPlace::Head: return InHead(top, token);
        case EPlace::Body: return InBody(top, token);
        case EPlace::After: return After(top, token);
        }
        return true;
    }

    bool InBlock(SPlace& top, const CTemplateToken& token)
    {
        const bool ends =
            top.alternative ? EndsAlternative(token.Kind()) || token.Kind() == Else || token.Kind() == Elseif
                            : token.Kind() == CloseBrace;
        if (!ends) {
            BeginStatement(token);
            return true;
        }
        if (m_open.size() == 1) {
            m_sound = false; // a brace too many
            return true;
        }
        const bool goesOn = top.alternative && !EndsAlternative(token.Kind());
        Close(top, token.Start());
        if (goesOn)
            return false;
        if (!m_open.empty() && m_open.back().place == EPlace::After && token.Kind() != CloseBrace) {
            Close(m_open.back(), token.End());
            EndStatement(token.End());
        }
        return true;
    }

    void BeginStatement(const CTemplateToken& token)
    {
        switch (token.Kind()) {
        case If: BeginControl(EControl::If, EBranching::Choice, token); return;
        case For:
        case Foreach:
        case While: BeginControl(EControl::Loop, EBranching::Loop, token); return;
        case Switch: BeginControl(EControl::Switch, EBranching::Choice, token); return;
        case Declare: Push(EPlace::Head, EControl::Plain); return;
        case Do: BeginControl(EControl::Do, EBranching::Loop, token); return;
        case Try: BeginControl(EControl::Try, EBranching::Attempt, token); return;
        case OpenBrace: Push(EPlace::Block); return;
        case Class:
        case Interface:
        case Trait:
        case Enum: Push(EPlace::ClassHead); return;
        case Namespace: Push(EPlace::Body, EControl::Plain); return;
        case Function: Push(EPlace::Function); return;
        case Return:
        case Exit:
        case Throw:
        case Break:
        case Continue:
        case Goto: BeginJump(token); return;
        case Else:
        case Elseif:
        case Catch:
        case Finally: m_sound = false; [[fallthrough]];
        case InlineHtml:
        case Semicolon:
        case CloseTag: EndStatement(token.End()); return;
        default:
            Push(EPlace::Expression);
            if (token.Kind() != Echo && token.Kind() != OpenTagEcho)
                TakeOnce(token);
        }
    }

    void BeginJump(const CTemplateToken& token)
    {
        const bool ofCase = m_open.back().place == EPlace::Cases;
        if (ofCase)
            m_open.back().jumped = true;
        if (!ofCase || token.Kind() != Break)
            Mark(SFlowMark::Exit, token.Start());
        Push(EPlace::Expression);
        m_isJump = true;
    }

    void BeginControl(EControl control, EBranching branching, const CTemplateToken& token)
    {
        Mark(SFlowMark::StatementBegin, token.Start(), branching);
        const bool hasHead = control != EControl::Do && control != EControl::Try;
        Push(hasHead ? EPlace::Head : EPlace::Body, control);
    }

    bool InCases(SPlace& top, const CTemplateToken& token)
    {
        if (token.Kind() == Case || token.Kind() == Default) {
            if (top.hasBranch && top.jumped) {
                Mark(SFlowMark::BranchEnd, token.Start());
                top.hasBranch = false;
            }
            top.isElse = top.isElse || token.Kind() == Default;
            Push(EPlace::CaseLabel);
            m_open.back().isElse = token.Kind() == Default;
            m_open.back().conditionBegin = token.End();
            return true;
        }
        if (token.Kind() == CloseBrace || token.Kind() == Endswitch) {
            Close(top, token.Start());
            Close(m_open.back(), token.End());
            EndStatement(token.End());
            return true;
        }
        BeginStatement(token);
        return true;
    }

    bool InCaseLabel(SPlace& top, const CTemplateToken& token)
    {
        if (Opens(token.Kind()) || OpensBrace(token.Kind())) {
            Push(EPlace::Nested);
        } else if (token.Kind() == Question) {
            ++top.questions;
        } else if (token.Kind() == Colon && top.questions > 0) {
            --top.questions;
        } else if (token.Kind() == Colon || EndsStatement(token.Kind())) {
            const SPlace label = top;
            m_open.pop_back();
            SPlace& cases = m_open.back();
            if (!cases.hasBranch)
                MarkBranch(token.End(), label.isElse, label.conditionBegin, token.Start());
            cases.hasBranch = true;
            cases.jumped = false;
        } else if (token.Kind() == CloseBrace) {
            m_open.pop_back();
            return false;
        }
        return true;
    }

    bool InClassHead(SPlace& top, const CTemplateToken& token)
    {
        if (Opens(token.Kind()))
            Push(EPlace::Nested);
        else if (token.Kind() == OpenBrace)
            top.place = EPlace::ClassBody;
        else if (EndsStatement(token.Kind()) || token.Kind() == CloseBrace)
            return Leave(token);
        return true;
    }

    bool InClassBody(const CTemplateToken& token)
    {
        if (token.Kind() == Function)
            Push(EPlace::Function);
        else if (Opens(token.Kind()) || OpensBrace(token.Kind()))
            Push(EPlace::Nested);
        else if (token.Kind() == CloseBrace)
            LeaveDeclaration(token.End());
        return true;
    }

    bool InFunction(SPlace& top, const CTemplateToken& token)
    {
        if (Opens(token.Kind())) {
            Push(EPlace::Nested);
        } else if (token.Kind() == OpenBrace) {
            top.place = EPlace::Block;
            top.isFunction = true;
            Mark(SFlowMark::ScopeBegin, token.End());
        } else if (EndsStatement(token.Kind()) || token.Kind() == CloseBrace || Closes(token.Kind())) {
            return Leave(token);
        }
        return true;
    }

    bool InExpression(SPlace& top, const CTemplateToken& token)
    {
        if (TakeNested(token))
            return true;
        if (token.Kind() == Question) {
            ++top.questions;
        } else if (token.Kind() == Colon) {
            if (top.questions == 0 && !m_isJump) { // a label
                m_open.pop_back();
                EndStatement(token.End());
            } else if (top.questions > 0) {
                --top.questions;
            }
        } else if (EndsStatement(token.Kind())) {
            m_open.pop_back();
            m_isJump = false;
            EndStatement(token.End());
        } else if (token.Kind() == CloseBrace) { // the `;` is missing
            m_sound = false;
            m_open.pop_back();
            m_isJump = false;
            EndStatement(token.Start());
            return false;
        }
        return true;
    }

    bool InNested(SPlace& top, const CTemplateToken& token)
    {
        if (Opens(token.Kind()) || OpensBrace(token.Kind()))
            ++top.depth;
        else if (TakeNested(token))
            return true;
        else if (Closes(token.Kind()) || token.Kind() == CloseBrace) {
            if (top.depth-- == 0)
                m_open.pop_back();
        }
        return true;
    }

    /// What begins inside of an expression.
    bool TakeNested(const CTemplateToken& token)
    {
        const bool afterNew = std::exchange(m_afterNew, token.Kind() == New);
        if (Opens(token.Kind()) || OpensBrace(token.Kind())) {
            Push(EPlace::Nested);
        } else if (token.Kind() == Function || (token.Kind() == Class && afterNew)) {
            Push(token.Kind() == Function ? EPlace::Function : EPlace::ClassHead);
            m_open.back().inExpression = true;
        } else {
            return false;
        }
        return true;
    }

    bool InHead(SPlace& top, const CTemplateToken& token)
    {
        if (Opens(token.Kind())) {
            if (top.depth++ == 0)
                top.conditionBegin = token.End();
        } else if (Closes(token.Kind())) {
            if (top.depth > 0 && --top.depth == 0) {
                top.conditionEnd = token.Start();
                top.place = EPlace::Body;
            }
        } else if (OpensBrace(token.Kind()) && top.depth > 0) {
            Push(EPlace::Nested);
        } else if (top.depth > 0) {
            TakeNested(token);
        } else if (EndsStatement(token.Kind()) || token.Kind() == CloseBrace) {
            return Leave(token); // no condition: a mistake
        }
        return true;
    }

    bool InBody(SPlace& top, const CTemplateToken& token)
    {
        if (top.control == EControl::Switch) {
            if (token.Kind() != OpenBrace && token.Kind() != Colon)
                return Leave(token);
            top.place = EPlace::After;
            Push(EPlace::Cases);
            return true;
        }
        if (top.isElse && token.Kind() == If) { // `else if` chains as `elseif` does
            top.isElse = false;
            top.place = EPlace::Head;
            return true;
        }
        if (top.control == EControl::Plain && token.Kind() != OpenBrace && token.Kind() != Colon) {
            if (EndsStatement(token.Kind()))
                return Leave(token);
            return true; // the rest of a namespace's name
        }
        const bool isBlock = token.Kind() == OpenBrace || token.Kind() == Colon;
        if (top.control != EControl::Plain)
            MarkBranch(isBlock ? token.End() : token.Start(), top.isElse, top.conditionBegin,
                       top.conditionEnd);
        top.place = EPlace::After;
        if (isBlock) {
            Push(EPlace::Block);
            m_open.back().alternative = token.Kind() == Colon;
        } else {
            BeginStatement(token);
        }
        return true;
    }

    bool After(SPlace& top, const CTemplateToken& token)
    {
        const auto next = [&](EPlace place, bool isElse) {
            top.place = place;
            top.isElse = isElse;
            top.conditionBegin = top.conditionEnd = token.End();
            return true;
        };
        if (top.control == EControl::If && !top.isElse) {
            if (token.Kind() == Elseif)
                return next(EPlace::Head, false);
            if (token.Kind() == Else)
                return next(EPlace::Body, true);
        }
        if (top.control == EControl::Try) {
            if (token.Kind() == Catch)
                return next(EPlace::Head, false);
            if (token.Kind() == Finally)
                return next(EPlace::Body, true);
        }
        const bool isDo = top.control == EControl::Do;
        const CIterator end = m_lastEnd;
        Close(top, end);
        if (isDo && token.Kind() == While) { // the rest of the statement
            Push(EPlace::Expression);
            return true;
        }
        EndStatement(end);
        return false;
    }

    /// A statement has ended, and with it the branches of which it is the whole.
    void EndStatement(CIterator end)
    {
        SPlace& top = m_open.back();
        if (top.place == EPlace::After && top.control != EControl::Switch)
            EndBranch(top, end);
    }

    void EndBranch(SPlace& control, CIterator end)
    {
        if (control.control != EControl::Plain)
            Mark(SFlowMark::BranchEnd, end);
        else {
            m_open.pop_back();
            EndStatement(end);
        }
    }

    /// Ends a place that the token does not belong to, which counts in the one around it unless it ends that.
    bool Leave(const CTemplateToken& token)
    {
        m_sound = m_sound && token.Kind() != CloseBrace;
        const bool inExpression = m_open.back().inExpression;
        Close(m_open.back(), token.Start());
        if (inExpression)
            return false;
        EndStatement(token.End());
        return token.Kind() != CloseBrace && !Closes(token.Kind());
    }

    void LeaveDeclaration(CIterator end)
    {
        const bool inExpression = m_open.back().inExpression;
        m_open.pop_back();
        if (!inExpression && m_open.back().place != EPlace::ClassBody)
            EndStatement(end);
    }

    /// Closes the innermost place, with the marks that are due.
    void Close(SPlace& top, CIterator at)
    {
        switch (top.place) {
        case EPlace::Block: CloseBlock(top, at); return;
        case EPlace::Cases:
            if (top.hasBranch)
                Mark(SFlowMark::BranchEnd, at);
            break;
        case EPlace::Head:
        case EPlace::Body:
        case EPlace::After:
            if (top.control != EControl::Plain)
                Mark(SFlowMark::StatementEnd, at);
            break;
        default: break;
        }
        m_open.pop_back();
    }

    void CloseBlock(const SPlace& block, CIterator at)
    {
        if (block.isFunction) {
            Mark(SFlowMark::ScopeEnd, at);
            LeaveDeclaration(at);
            return;
        }
        m_open.pop_back();
        EndStatement(at);
    }

    void Mark(SFlowMark::EKind kind, CIterator at, EBranching branching = EBranching::Choice)
    {
        m_marks.push_back({kind, branching, false, m_places.OffsetOf(at), {}});
    }

    void MarkBranch(CIterator at, bool always, CIterator conditionBegin, CIterator conditionEnd)
    {
        Mark(SFlowMark::BranchBegin, at);
        m_marks.back().always = always;
        m_marks.back().condition = {m_places.OffsetOf(conditionBegin), m_places.OffsetOf(conditionEnd)};
    }

    const SyntaxParser::IMarkupPlaces& m_places;
    std::vector<SPlace> m_open;
    std::vector<SFlowMark> m_marks;
    CIterator m_lastEnd;
    bool m_sound = true;
    bool m_afterNew = false;
    bool m_isJump = false;
};

} // namespace

SFlow FindFlow(const std::vector<CTemplateToken>& tokens, const SyntaxParser::IMarkupPlaces& places)
{
    CFlowFinder finder(places);
    for (const CTemplateToken& token : tokens) {
        if (token.Kind() == HaltCompiler)
            break;
        finder.Take(token);
    }
    return finder.Finish();
}

} // namespace Kesh::CodeAnalyzer
