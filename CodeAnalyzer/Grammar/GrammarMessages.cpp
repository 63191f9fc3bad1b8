#include "Grammar/GrammarMessages.h"

#include "Grammar/GrammarCodes.h"

namespace Kesh::CodeAnalyzer {

const char* GrammarMessageKey(std::int32_t code)
{
    switch (code) {
    case Code::MissingSemicolon: return "Missing ';' at the end of the statement";
    case Code::MissingCloseRound: return "Missing ')'";
    case Code::MissingCloseSquare: return "Missing ']'";
    case Code::MissingCloseBrace: return "Missing '}'";
    case Code::MissingOpenRound: return "Missing '('";
    case Code::MissingOpenBrace: return "Missing '{' before the body";
    case Code::MissingComma: return "Missing ','";
    case Code::MissingColon: return "Missing ':'";
    case Code::MissingDoubleArrow: return "Missing '=>'";
    case Code::MissingAssign: return "Missing '='";
    case Code::MissingOperand: return "Missing value";
    case Code::MissingOperator: return "Missing operator between two values";
    case Code::MissingName: return "Missing name";
    case Code::MissingVariable: return "Missing variable";
    case Code::MissingWord: return "Missing keyword";
    case Code::MissingEndWord: return "Missing end of the block";
    case Code::OddCloseRound: return "Odd ')': no '(' is open";
    case Code::OddCloseSquare: return "Odd ']': no '[' is open";
    case Code::OddCloseBrace: return "Odd '}': no '{' is left for it";
    case Code::OddComma: return "Odd ','";
    case Code::OddOperator: return "Odd operator";
    case Code::WordOutOfPlace: return "Keyword in the wrong place";
    case Code::BranchWithoutStatement: return "Branch or end without the statement it belongs to";
    case Code::MemberOutsideClass: return "Class member outside of a class";
    case Code::StatementInClass: return "Statement between the members of a class";
    case Code::OutOfPlace: return "This cannot follow here";
    case Code::UnfinishedFile: return "The file ends in the middle of a statement";
    case Code::StringWithoutEnd: return "String without end";
    case Code::CommentWithoutEnd: return "Comment without end";
    case Code::HeredocWithoutEnd: return "Here-document without end";
    case Code::HeredocIndent: return "Line of the here-document indented less than its end";
    case Code::BadNumber: return "Malformed number";
    case Code::BadCharacter: return "Character that PHP does not know";
    case Code::BadEscape: return "Escape sequence that names no character";
    case Code::TooNew: return "Not in this PHP version yet";
    case Code::TooOld: return "No longer in this PHP version";
    case Code::NotAssignable: return "Nothing can be assigned to this";
    case Code::ThisAssigned: return "$this cannot be assigned to";
    case Code::AppendRead: return "[] has nothing to be read";
    case Code::NullsafeWritten: return "Writing through ?-> is not possible";
    case Code::MixedKeys: return "Some elements have keys, some have none";
    case Code::EmptyList: return "Empty list of targets";
    case Code::HoleInArray: return "Empty element in an array";
    case Code::ListAsValue: return "list() is no value";
    case Code::SpreadInList: return "Spread operator in a list of targets";
    case Code::IssetOfValue: return "isset() takes variables only";
    case Code::NotUnsettable: return "This cannot be unset";
    case Code::LeaveOutsideLoop: return "BREAK or CONTINUE outside of a loop";
    case Code::LeaveDepth: return "BREAK or CONTINUE with a number that fits no loop";
    case Code::LabelMissing: return "GOTO a label that does not exist";
    case Code::GotoIntoBlock: return "GOTO into a loop, a switch or a finally block";
    case Code::LabelTwice: return "Label defined twice";
    case Code::DefaultTwice: return "Second DEFAULT";
    case Code::TryAlone: return "TRY without CATCH or FINALLY";
    case Code::LeaveFinally: return "Jump out of a finally block";
    case Code::ReturnValue: return "RETURN or YIELD does not fit the return type";
    case Code::YieldOutside: return "YIELD outside of a function";
    case Code::NestedTernary: return "Nested conditions need brackets";
    case Code::NamespaceNotFirst: return "NAMESPACE is not the first statement";
    case Code::NamespaceStyles: return "Code or namespaces beside namespaces in braces";
    case Code::NamespaceNested: return "Namespace inside of a namespace";
    case Code::DeclareMisused: return "DECLARE does not work so or here";
    case Code::NameInUse: return "Name already in use in this file";
    case Code::HaltInside: return "__halt_compiler inside of a block";
    case Code::ModifierConflict: return "Modifiers that exclude one another";
    case Code::ModifierMisused: return "Modifier not allowed here";
    case Code::BodyMissing: return "Method without a body";
    case Code::BodyNotAllowed: return "Body of an abstract method";
    case Code::AbstractInConcrete: return "Abstract method in a class that is not abstract";
    case Code::MethodTwice: return "Method defined twice";
    case Code::PropertyTwice: return "Property defined twice";
    case Code::ConstantTwice: return "Constant defined twice";
    case Code::FunctionTwice: return "Function defined twice";
    case Code::ReservedName: return "Reserved name";
    case Code::ParameterTwice: return "Parameter named twice";
    case Code::ReservedVariable: return "Variable that PHP keeps for itself";
    case Code::VariadicMisused: return "Variadic parameter is not the last or has a default";
    case Code::PromotionMisused: return "Property declared by a parameter that cannot do so";
    case Code::TypeNotAllowed: return "Type not allowed here";
    case Code::TypeRedundant: return "Type contained in another";
    case Code::DefaultOfOtherType: return "Default value of another type";
    case Code::NotConstantValue: return "Value must be constant here";
    case Code::EnumRule: return "Case or type that the enumeration cannot have";
    case Code::MemberNotAllowed: return "Member not allowed in this kind of class";
    case Code::MagicMethod: return "Magic method declared in another way than PHP calls it";
    case Code::LexicalVariable: return "Variable already named by the closure";
    case Code::ArgumentOrder: return "Argument after one that must come last";
    case Code::NoClassHere: return "Class word without a class or parent to stand for";
    case Code::ReadonlyRule: return "Readonly property without type, static or with a default";
    case Code::HookRule: return "Hook that is neither GET nor SET";
    case Code::ClosureOfNew: return "(...) makes no closure of this";
    default: return nullptr;
    }
}

} // namespace Kesh::CodeAnalyzer
