#include "Grammar/FlowRules.h"

#include "Grammar/ConstantValues.h"

namespace Kesh::CodeAnalyzer {

// A block knows of those around it what a jump asks, so that no jump has to go through all of them.
void CFlowRules::OpenBlock(SBlock::EKind kind)
{
    SFunctionScope& scope = Function();
    SBlock block = scope.blocks[scope.block];
    block.kind = kind;
    block.defaultWord = NoToken;
    block.parent = scope.block;
    block.end = ~0U;
    scope.block = static_cast<std::uint32_t>(scope.blocks.size());
    if (kind == SBlock::Finally) {
        block.finally = scope.block;
        block.loops = 0;
    } else {
        block.inLoop = true;
        ++block.loops;
    }
    scope.blocks.push_back(block);
}

void CFlowRules::CloseBlock()
{
    SFunctionScope& scope = Function();
    scope.blocks[scope.block].end = static_cast<std::uint32_t>(scope.blocks.size());
    scope.block = scope.blocks[scope.block].parent;
}

void CFlowRules::DefaultCase(const SGrammarValue& word)
{
    SBlock& block = Function().blocks[Function().block];
    if (block.kind == SBlock::Switch && block.defaultWord != NoToken && IsFrom(GoneSince::DefaultTwice))
        Report(Code::DefaultTwice, word.first, FirstIs(block.defaultWord));
    else
        block.defaultWord = word.first;
}

void CFlowRules::Leave(const SGrammarValue& word)
{
    Leave(word, {word.first, 0, 0, 0, EValue::Nop, EValue::Other});
}

// `break` and `continue`, with how many loops they leave.
void CFlowRules::Leave(const SGrammarValue& word, const SGrammarValue& depth)
{
    std::uint64_t levels = depth.kind == EValue::Nop ? 1 : 0;
    const bool isGroup = depth.kind == EValue::Group;
    if ((isGroup ? depth.inner : depth.kind) == EValue::Literal)
        levels = IntegerOf(Text(!isGroup                    ? depth.first
                                : depth.flags & NotConstant ? depth.first + 1
                                                            : depth.bad))
                     .value_or(0);
    if (levels == 0) {
        if (IsFrom(GoneSince::LeaveComputed))
            Report(Code::LeaveDepth, depth);
        return;
    }
    const SBlock& block = Function().blocks[Function().block];
    if (levels <= block.loops)
        return;
    if (block.finally)
        Report(block.inLoop ? Code::LeaveFinally : Code::LeaveOutsideLoop, word);
    else
        Report(block.loops == 0 ? Code::LeaveOutsideLoop : Code::LeaveDepth, word);
}

void CFlowRules::Goto(const SGrammarValue& label)
{
    Function().jumps.push_back({label.first, Function().block});
}

void CFlowRules::Label(const SGrammarValue& label)
{
    const auto [at, isNew] =
        Function().labels.try_emplace(std::wstring(Text(label.first)), SJump{label.first, Function().block});
    if (!isNew)
        Report(Code::LabelTwice, label.first, FirstIs(at->second.token));
}

void CFlowRules::ResolveJumps(const SFunctionScope& scope)
{
    for (const SJump& jump : scope.jumps) {
        const auto label = scope.labels.find(std::wstring(Text(jump.token)));
        if (label == scope.labels.end()) {
            Report(Code::LabelMissing, jump.token);
            continue;
        }
        const std::uint32_t target = label->second.block;
        // Blocks are numbered as they begin, so those inside of one follow it up to its end.
        if (jump.block < target || jump.block >= scope.blocks[target].end)
            Report(Code::GotoIntoBlock, jump.token, {label->second.token, "The label is here"});
        else if (scope.blocks[jump.block].finally > target)
            Report(Code::LeaveFinally, jump.token);
    }
}

void CFlowRules::Return(const SGrammarValue& word)
{
    SFunctionScope& scope = Function();
    if (scope.hasReturnType)
        scope.emptyReturns.push_back(word.first);
}

void CFlowRules::Return(const SGrammarValue& word, const SGrammarValue& value)
{
    SFunctionScope& scope = Function();
    scope.valueReturn = word.first;
    if (scope.returnType == TypeVoid || scope.returnType == TypeNever)
        Report(Code::ReturnValue, word);
    if (scope.byReference)
        m_scopes.pending.Drop(value.first, NoToken);
}

// At the end of a function: only now it is known whether it is a generator, where `return;` is right.
void CFlowRules::CheckReturns(const SFunctionScope& scope)
{
    if (scope.yield && scope.valueReturn)
        m_scopes.Needs(EFeature::GeneratorReturn, scope.valueReturn);
    if (!scope.hasReturnType)
        return;
    if (scope.yield) {
        constexpr std::uint32_t generators = TypeMixed | TypeObject | TypeIterable | TypeTraversable;
        if (!(scope.returnType & generators))
            Report(Code::ReturnValue, scope.yield);
        return;
    }
    if (scope.returnType == TypeVoid)
        return;
    for (const std::uint32_t word : scope.emptyReturns)
        Report(Code::ReturnValue, word);
}

// What the other generator gives is no place.
void CFlowRules::YieldFrom(const SGrammarValue& word)
{
    if (Function().byReference && Function().inBody)
        Report(Code::YieldFromByReference, word);
}

void CFlowRules::YieldHere(const SGrammarValue& word)
{
    const bool from = Tokens()[word.first].kind == SyntaxParser::EPhpTokenKind::YieldFrom;
    Needs(from ? EFeature::YieldFrom : EFeature::Yield, word);
    SFunctionScope& scope = Function();
    if (!scope.inBody)
        return; // a default value: not constant anyway
    if (scope.kind == SFunctionScope::File)
        Report(Code::YieldOutside, word);
    else if (!scope.yield)
        scope.yield = word.first;
}

// With a value it was a statement, or stood alone in parentheses, before 7.0.
void CFlowRules::YieldValue(const SGrammarValue& word)
{
    YieldHere(word);
    const bool inBrackets =
        word.first > 0 && Tokens()[word.first - 1].kind == SyntaxParser::EPhpTokenKind::OpenRound;
    if (!inBrackets && !BeginsStatement(word.first))
        Needs(EFeature::YieldOperand, word);
}

bool CFlowRules::BeginsStatement(std::uint32_t word) const
{
    using K = SyntaxParser::EPhpTokenKind;
    if (word == 0)
        return true;
    switch (Tokens()[word - 1].kind) {
    case K::Semicolon:
    case K::OpenBrace:
    case K::CloseBrace:
    case K::CloseRound:
    case K::Colon:
    case K::Else:
    case K::Do:
    case K::OpenTag:
    case K::CloseTag:
    case K::InlineHtml: return true;
    default: return false;
    }
}

// Before 8.0 it was a statement.
void CFlowRules::ThrowHere(const SGrammarValue& word)
{
    if (!BeginsStatement(word.first))
        Needs(EFeature::ThrowExpression, word);
}

void CFlowRules::TryAlone(const SGrammarValue& word, const SGrammarValue& catches)
{
    if (catches.kind == EValue::Nop)
        Report(Code::TryAlone, word);
}

void CFlowRules::CatchType(const SGrammarValue& name)
{
    m_names.CheckNoClassWord(name);
}

void CFlowRules::CatchVariable(const SGrammarValue& variable)
{
    if (IsThis(variable.first))
        Report(Code::ReservedVariable, variable);
}

void CFlowRules::MatchHead(const SGrammarValue& word, const SGrammarValue& arguments)
{
    Needs(EFeature::Match, word);
    // What it takes looks like the arguments of a call to the grammar, and is one expression.
    if (arguments.flags & (Named | Unpacked | Several | NoneGiven | AsCallable))
        Report(Code::OutOfPlace, arguments.flags & Several ? arguments.extra : arguments.first);
    m_matchDefaults.push_back(NoToken);
}

void CFlowRules::DefaultArm(const SGrammarValue& word)
{
    if (m_matchDefaults.empty())
        return;
    if (m_matchDefaults.back() != NoToken)
        Report(Code::DefaultTwice, word.first, FirstIs(m_matchDefaults.back()));
    m_matchDefaults.back() = word.first;
}

void CFlowRules::EndMatch()
{
    if (!m_matchDefaults.empty())
        m_matchDefaults.pop_back();
}

} // namespace Kesh::CodeAnalyzer
