#include "Components/CAErrorKinds.h"

#include "Grammar/GrammarMessages.h"

namespace Kesh::CodeAnalyzer {

const char* ErrorMessageKey(std::int32_t code)
{
    switch (code) {
    case 101: return "Expression error";
    case 102: return "Missing ';'";
    case 103: return "Left and right operands for operator are identical";
    case 201: return "Error in function name";
    case 202: return "Error in function parameter";
    case 204: return "Missing '{'";
    case 251: return "Syntax error in the IF statement";
    case 252: return "ElSE or ELSEIF has no IF statement";
    case 253: return "You have operator '=' in condition. Do you mean '=='?";
    case 254: return "IF and ELSEIF statements have same conditions";
    case 301: return "Syntax error in the FOREACH statement";
    case 302: return "FOREACH $key have the same name as parent FOREACH $key";
    case 303: return "FOREACH $value have the same name as parent FOREACH $value";
    case 351: return "Syntax error in the SWITCH statement";
    case 401: return "Syntax error in the WHILE statement";
    case 451: return "Syntax error in the FOR statement";
    case 501: return "Syntax error in the CATCH statement";
    case 551: return "Syntax error in the CLASS statement";
    case 601: return "Syntax error in the NAMESPACE statement";
    case 602: return "Syntax error in the USE statement";
    case 901: return "Odd semicolon";
    case 2001: return "Illegal HTML tag name";
    case 2002: return "Illegal HTML tag attribute name";
    case 2501: return "Illegal HTML tag name"; // an element name is a tag name in a style sheet too
    case 2502: return "Illegal CSS style attribute name";
    default: break;
    }
    const char* key = GrammarMessageKey(code);
    return key ? key : "Udefined error";
}

} // namespace Kesh::CodeAnalyzer
