#pragma once

namespace Kesh::CodeAnalyzer {

/// What the statement parsers report.
enum EPhpErrorCode : int {
    ExpressionError = 101,
    MissingSemicolon = 102,
    FunctionNameError = 201,
    ParameterError = 202,
    MissingBrace = 204,
    IfError = 251,
    ElseWithoutIf = 252,
    EqualConditions = 254,
    ForeachError = 301,
    SameKey = 302,
    SameValue = 303,
    SwitchError = 351,
    WhileError = 401,
    ForError = 451,
    CatchError = 501,
    ClassError = 551,
    NamespaceError = 601,
    UseError = 602,
    OddSemicolon = 901
};

} // namespace Kesh::CodeAnalyzer
