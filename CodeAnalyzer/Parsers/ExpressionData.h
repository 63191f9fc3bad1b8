#pragma once

#include "Kesh/SyntaxParser/Position.h"

#include <string>
#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The states of the expression parser.
enum EExpressionState {
    AssignExprState = 0,
    AfterWordStartState = 1,
    UOperandState = 2,
    BinarOpState = 3,
    BinarAssignOpState = 4,
    FuncCallStartState = 5,
    PseudoFuncCallStartState = 6,
    FuncCallParamsState = 7,
    FuncCallNoBrParamsState = 8,
    FuncState = 9,
    ChainState = 10,
    ChainArrowState = 11,
    NumberState = 12,
    FloatCommaNumberState = 13,
    ExpNumberState = 14,
    NumberDotState = 15,
    DottedNumberState = 16,
    StringState = 17,
    BacktickState = 18,
    StringEndState = 19,
    DotState = 20,
    ArrayState = 21,
    ArrayKeyState = 22,
    OpenRoundBrState = 23,
    TypeOperatorState = 24,
    ArrayTypeOperatorState = 25,
    ReturnState = 26,
    BreakState = 27,
    BreakArgState = 28,
    BreakAfterArgState = 29,
    StreamState = 30,
    DollarState = 31,
    VarDollarState = 32,
    AnonymousFunctionState = 33,
    AnonymousClassState = 34,
    MayBeFuncCallState = 35,
    ExpressionStateCount
};

/// One reduced binary operation.
struct SSubExpr
{
    SyntaxParser::SScheme left;
    SyntaxParser::SScheme right;
    std::wstring op;
};

/// What an open bracket of an expression is for; decides what a `,` in it means.
enum class EBracket { Group, Call, List, ArrayCall, ArrayLiteral, Index, Brace, MatchHead, MatchBody };

struct SOpenBracket
{
    EBracket kind;
    SyntaxParser::SScheme start; ///< where the operand that it is part of begins
    std::size_t operandsOutside; ///< operands that were on the stack when it opened
};

/// Whether a keyword that takes an argument without brackets has to get one.
enum class EArgument { Optional, Required, InBrackets };

/// All that an expression in progress knows; saved whole while statements nested in it are parsed.
struct SExpressionData
{
    int state = AssignExprState;
    int roundDepth = 0;
    int squareDepth = 0;
    int braceDepth = 0;
    int arrayConstructs = 0;      ///< open `array(`
    int squareArrays = 0;         ///< open `[` literals
    std::vector<int> roundMarks;  ///< round-bracket depth at which each `array(` began
    std::vector<int> squareMarks; ///< square-bracket depth at which each `[` literal began
    bool keyArrowSeen = false;    ///< a `=>` was seen in the current array element
    std::vector<std::pair<std::wstring, int>> operators; ///< pending, with their priorities
    std::vector<SyntaxParser::SScheme> operands;
    SyntaxParser::SScheme currentOperand;
    std::vector<SSubExpr> subExpressions; ///< in the order in which they were reduced
    SyntaxParser::SScheme start;          ///< the region that opened the expression
    int embeddedKind = 0;                 ///< 0: a closure is being read, 1: an anonymous class

    bool startRecorded = true; ///< cleared after each operator: the next operand sets `start`

    std::vector<SOpenBracket> brackets; ///< innermost last
    bool operandDue = false;            ///< an argument list or a match body has just opened
    bool commaAllowed = false;          ///< an `echo` list: a `,` outside brackets continues it
    bool matchHead = false;             ///< `match (...)` has just closed: its body follows
    EArgument argument = EArgument::Optional;
    EBracket nextCall = EBracket::Call; ///< what the `(` after the word just read opens

    SyntaxParser::CIterator lastEnd; ///< end of the last region that carried code
    bool lineBreakSeen = false;      ///< since lastEnd
    bool indexable = false;          ///< the region at lastEnd may be followed at once by `{`, as in $s{0}
};

} // namespace Kesh::CodeAnalyzer
