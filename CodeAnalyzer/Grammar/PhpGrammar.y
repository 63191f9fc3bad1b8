/* The grammar of PHP 5.3 to 8.5. It only recognises: what is valid in some version passes, and an action tells the
   rules where a version or another rule of the language has to be asked for. No conflict is left to chance. */

%code requires {
#include "Grammar/GrammarValue.h"

struct phppstate;

namespace Kesh::CodeAnalyzer {
class CPhpRules;

/// Where the parser stood when it met what cannot follow.
struct SGrammarFault
{
    phppstate* parser = nullptr;
    std::int16_t* top = nullptr;
};
}
}

%code {
#include "Grammar/GrammarStack.h"
#include "Grammar/PhpGrammarParser.h"
#include "Grammar/PhpRules.h"

#include <array>

using namespace Kesh::CodeAnalyzer;
using enum EValue;

static void yyerror(CPhpRules& rules, SGrammarFault& fault, const char* message);
}

%define api.pure full
%define api.push-pull push
%define api.prefix {php}
%define api.token.prefix {T_}
%define api.token.raw
%define api.value.type {Kesh::CodeAnalyzer::SGrammarValue}
%parse-param {Kesh::CodeAnalyzer::CPhpRules& rules} {Kesh::CodeAnalyzer::SGrammarFault& fault}
%expect 0

%token End 0

%token InlineHtml Variable Number Identifier QualifiedName FullyQualifiedName RelativeName String MagicConstant
%token Cast VoidCast Quote Backtick HeredocStart HeredocEnd StringPart StringName StringVariable CodeBrace DollarBrace
%token OpenRound "(" CloseRound ")" OpenSquare "[" CloseSquare "]" OpenBrace "{" CloseBrace "}" OffsetBrace
%token AttributeStart Comma "," Semicolon ";" Colon ":" DoubleColon "::" Question "?" Arrow NullsafeArrow
%token DoubleArrow "=>" Backslash Ellipsis "..." Dollar At Assign "=" OpAssign CoalesceAssign Coalesce
%token BooleanOr BooleanAnd BitOr "|" BitXor BitAnd "&" BitAndBeforeVariable Equality Comparison Pipe Dot Shift
%token Additive Multiplicative Power Not Complement IncDec
%token Abstract And Array As Break Callable Case Catch Class Clone Const Continue Declare Default Do Echo Else Elseif
%token Empty Enddeclare Endfor Endforeach Endif Endswitch Endwhile Enum Eval Exit Extends Final Finally Fn For Foreach
%token Function Global Goto HaltCompiler If Implements Include Instanceof Insteadof Interface Isset List Match
%token Namespace New Or Print Access AccessSet Readonly Return Static Switch Throw Trait Try Unset Use Var While Xor
%token Yield YieldFrom

/* `match (...) {` is never a call that a brace follows. */
%precedence OldCall
%precedence "{"
%precedence Throw
%precedence ArrowFunction
%precedence Include
%left Or
%left Xor
%left And
%precedence Print
%precedence Yield
%precedence "=>"
%precedence YieldFrom
%precedence "=" OpAssign CoalesceAssign
%left "?" ":"
%right Coalesce
%left BooleanOr
%left BooleanAnd
%left "|"
%left BitXor
%left "&" BitAndBeforeVariable
%nonassoc Equality
%nonassoc Comparison
%left Pipe
%left Dot
%left Shift
%left Additive
%left Multiplicative
%precedence Not
%precedence Instanceof
%precedence Complement Cast At
%right Power
%precedence Clone
%precedence NoElse
%precedence Elseif
%precedence Else

%%

file:
    top_list
;

top_list:
    %empty
|   top_list statement          { rules.TopStatement($2); }
|   top_list declaration        { rules.TopStatement($2); }
|   top_list attributes declaration { rules.TopStatement($3); }
|   top_list top_only
;

top_only:
    HaltCompiler "(" ")" ";"    { rules.Halt($1); }
|   Namespace namespace_name ";" { rules.NamespaceStatement($1); }
|   Namespace namespace_name "{" { rules.BeginNamespace($1); } top_list "}" { rules.EndNamespace(); }
|   Namespace "{"               { rules.BeginNamespace($1); } top_list "}" { rules.EndNamespace(); }
|   Use uses ";"                { rules.Uses($1, ImportClass); }
|   Use Function uses ";"       { rules.Uses($1, ImportFunction); }
|   Use Const uses ";"          { rules.Uses($1, ImportConstant); }
|   Use use_prefix "{" group_uses comma_opt "}" ";" { rules.Uses($1, ImportClass); }
|   Use Function use_prefix "{" plain_group_uses comma_opt "}" ";" { rules.Uses($1, ImportFunction); }
|   Use Const use_prefix "{" plain_group_uses comma_opt "}" ";" { rules.Uses($1, ImportConstant); }
|   Const constants ";"         { rules.ConstStatement($1); }
|   attributes Const constants ";" { rules.Needs(805, $2); rules.ConstStatement($2); }
;

namespace_name:
    identifier
|   QualifiedName
;

uses:
    use_item
|   uses "," use_item
;

use_item:
    use_name                    { rules.UseItem($1, $1); }
|   use_name As Identifier      { rules.UseItem($1, $3); }
;

use_name:
    Identifier
|   QualifiedName
|   FullyQualifiedName
;

use_prefix:
    use_name Backslash          { rules.Needs(700, $2); }
;

plain_group_uses:
    group_item
|   plain_group_uses "," group_item
;

group_uses:
    group_use
|   group_uses "," group_use
;

group_use:
    group_item
|   Function group_item         { rules.RetypeUse(ImportFunction); }
|   Const group_item            { rules.RetypeUse(ImportConstant); }
;

group_item:
    group_name                  { rules.UseItem($1, $1); }
|   group_name As Identifier    { rules.UseItem($1, $3); }
;

group_name:
    Identifier
|   QualifiedName
;

comma_opt:
    %empty
|   ","                         { rules.Needs(702, $1); }
;

trailing_comma:
    %empty
|   ","
;

constants:
    constant
|   constants "," constant
;

constant:
    Identifier "=" expr         { rules.Constant($1, $3); }
;

inner_list:
    %empty
|   inner_list statement
|   inner_list inner_declaration
;

inner_declaration:
    declaration
|   attributes declaration
|   HaltCompiler "(" ")" ";"    { rules.Report(Code::HaltInside, $1); }
;

statement:
    "{" inner_list "}"
|   if_plain                    %prec NoElse
|   if_plain Else statement
|   if_colon Endif ";"
|   if_colon Else ":" inner_list Endif ";"
|   while_head statement        { rules.EndLoop(); }
|   while_head ":" inner_list Endwhile ";" { rules.EndLoop(); }
|   do_start statement While    { rules.EndLoop(); } "(" expr ")" ";"
|   for_head statement          { rules.EndLoop(); }
|   for_head ":" inner_list Endfor ";" { rules.EndLoop(); }
|   foreach_head statement      { rules.EndLoop(); }
|   foreach_head ":" inner_list Endforeach ";" { rules.EndLoop(); }
|   switch_head switch_body     { rules.EndSwitch(); }
|   Break ";"                   { rules.Leave($1); }
|   Break expr ";"              { rules.Leave($1, $2); }
|   Continue ";"                { rules.Leave($1); }
|   Continue expr ";"           { rules.Leave($1, $2); }
|   Return ";"                  { rules.Return($1); }
|   Return expr ";"             { rules.Return($1, $2); }
|   Global global_variables ";"
|   Static static_variables ";"
|   Echo expressions ";"        { $$.kind = Other; }
|   InlineHtml                  { $$.kind = Html; }
|   expr ";"
|   VoidCast expr ";"           { rules.Needs(805, $1); }
|   Unset "(" unset_targets trailing_comma ")" ";"
|   declare_head statement      { rules.EndDeclare($1, $2); $$.kind = DeclareStatement; }
|   declare_head ":" inner_list Enddeclare ";" { rules.EndDeclareBlock($1); $$.kind = DeclareStatement; }
|   ";"                         { $$.kind = Nop; }
|   try_block catches           { rules.TryAlone($1, $2); }
|   try_block catches Finally   { rules.BeginFinally(); } "{" inner_list "}" { rules.EndFinally(); }
|   Goto Identifier ";"         { rules.Goto($2); }
|   Identifier ":"              { rules.Label($1); }
;

if_plain:
    If "(" expr ")" statement
|   if_plain Elseif "(" expr ")" statement
;

if_colon:
    If "(" expr ")" ":" inner_list
|   if_colon Elseif "(" expr ")" ":" inner_list
;

while_head:
    While "(" expr ")"          { rules.BeginLoop(); }
;

do_start:
    Do                          { rules.BeginLoop(); }
;

for_head:
    For "(" expressions_opt ";" expressions_opt ";" expressions_opt ")" { rules.BeginLoop(); }
;

foreach_head:
    Foreach "(" expr As foreach_target ")" { rules.BeginLoop(); }
|   Foreach "(" expr As foreach_target "=>" foreach_target ")" { rules.ForeachKey($5); rules.BeginLoop(); }
;

foreach_target:
    primary                     { rules.Target($1); }
|   BitAndBeforeVariable primary { rules.ReferenceTarget($2); $$ = $2; $$.kind = Reference; }
|   "&" primary                 { rules.ReferenceTarget($2); $$ = $2; $$.kind = Reference; }
|   list_literal                { rules.Target($1); }
;

switch_head:
    Switch "(" expr ")"         { rules.BeginSwitch(); }
;

switch_body:
    "{" cases "}"
|   "{" ";" cases "}"
|   ":" cases Endswitch ";"
|   ":" ";" cases Endswitch ";"
;

cases:
    %empty
|   cases Case expr case_end inner_list
|   cases Default case_end { rules.DefaultCase($2); } inner_list
;

case_end:
    ":"
|   ";"
;

global_variables:
    simple_variable             { rules.GlobalVariable($1); }
|   global_variables "," simple_variable { rules.GlobalVariable($3); }
;

static_variables:
    static_variable
|   static_variables "," static_variable
;

static_variable:
    Variable                    { rules.StaticVariable($1); }
|   Variable "=" expr           { rules.StaticVariable($1); rules.StaticValue($3); }
;

unset_targets:
    primary                     { rules.UnsetTarget($1); }
|   unset_targets "," primary   { rules.UnsetTarget($3); }
;

declare_head:
    Declare "(" declarations ")"
;

declarations:
    declare_item
|   declarations "," declare_item
;

declare_item:
    Identifier "=" expr         { rules.DeclareItem($1, $3); }
;

try_block:
    Try "{" inner_list "}"
;

catches:
    %empty                      { $$.kind = Nop; }
|   catches Catch "(" catch_types ")" "{" { rules.Needs(800, $5); } inner_list "}" { $$.kind = Other; }
|   catches Catch "(" catch_types Variable ")" "{" { rules.CatchVariable($5); } inner_list "}" { $$.kind = Other; }
;

catch_types:
    class_name                  { rules.CatchType($1); }
|   catch_types "|" class_name  { rules.Needs(701, $2); rules.CatchType($3); }
;

expressions:
    expr
|   expressions "," expr
;

expressions_opt:
    %empty
|   expressions
;

declaration:
    Function ref Identifier     { rules.BeginFunction($1, $3); } function_rest { $$ = $3; $$.kind = FunctionDeclaration; }
|   Function ref Readonly       { rules.BeginFunction($1, $3); } function_rest { $$ = $3; $$.kind = FunctionDeclaration; }
|   class_start Identifier      { rules.BeginClass(ClassKind, $1, $2); } extends implements class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
|   Trait Identifier            { rules.Needs(504, $1); rules.BeginClass(TraitKind, $1, $2); } class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
|   Interface Identifier        { rules.BeginClass(InterfaceKind, $1, $2); } interface_extends class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
|   Enum Identifier             { rules.Needs(801, $1); rules.BeginClass(EnumKind, $1, $2); } enum_type implements class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
;

function_rest:
    "(" parameters ")" return_type "{" { rules.BeginBody($5); } inner_list "}" { rules.EndFunction(); }
;

class_start:
    Class                       { rules.NoModifiers(); }
|   class_modifiers Class       { $$ = $1; }
;

class_modifiers:
    class_modifier              { rules.BeginModifiers(); rules.ClassModifier($1); }
|   class_modifiers class_modifier { rules.ClassModifier($2); }
;

class_modifier:
    Abstract
|   Final
|   Readonly                    { rules.Needs(802, $1); }
;

extends:
    %empty
|   Extends class_name          { rules.Extends($2); }
;

interface_extends:
    %empty
|   Extends implemented
;

implements:
    %empty
|   Implements implemented
;

implemented:
    class_name                  { rules.Implements($1); }
|   implemented "," class_name  { rules.Implements($3); }
;

enum_type:
    %empty
|   ":" type                    { rules.EnumType($2); }
;

class_body:
    "{" members "}"             { rules.EndClass(); }
;

members:
    %empty
|   members member
|   members attributes attributed_member
|   members attributed_member
;

member:
    Use trait_names ";"         { rules.TraitUse($1); }
|   Use trait_names "{" trait_rules "}" { rules.TraitUse($1); }
;

trait_names:
    class_name                  { rules.TraitName($1); }
|   trait_names "," class_name  { rules.TraitName($3); }
;

trait_rules:
    %empty
|   trait_rules trait_rule ";"
;

trait_rule:
    class_name "::" Identifier Insteadof insteads
|   class_name "::" Identifier As trait_alias
|   Identifier As trait_alias
|   word As trait_alias
;

insteads:
    class_name
|   insteads "," class_name
;

trait_alias:
    Identifier
|   plain_word
|   member_modifier
|   member_modifier identifier
;

attributed_member:
    properties_start properties ";"
|   properties_start Variable "{" { rules.BeginHooks($2); } hooks "}"
|   properties_start Variable "=" expr "{" { rules.BeginHooks($2, $4); } hooks "}"
|   modifiers Const constants_of_class ";" { rules.EndConstants(); }
|   Const                       { rules.NoModifiers(); } constants_of_class ";" { rules.EndConstants(); }
|   modifiers Function ref identifier { rules.BeginMethod($2, $4); } method_rest
|   Function ref identifier     { rules.NoModifiers(); rules.BeginMethod($1, $3); } method_rest
|   Case identifier ";"         { rules.EnumCase($1, $2); }
|   Case identifier "=" expr ";" { rules.EnumCase($1, $2, $4); }
;

constants_of_class:
    class_constants
|   type class_constants        { rules.Needs(803, $1); rules.ConstantType($1); }
|   static_type class_constants { rules.Needs(803, $1); }
;

class_constants:
    class_constant
|   class_constants "," class_constant
;

class_constant:
    Identifier "=" expr         { rules.ClassConstant($1, $3); }
|   word "=" expr               { rules.ClassConstant($1, $3); }
;

method_rest:
    "(" parameters ")" return_type ";" { rules.NoBody($5); rules.EndFunction(); }
|   "(" parameters ")" return_type "{" { rules.BeginBody($5); } inner_list "}" { rules.EndFunction(); }
;

properties_start:
    modifiers                   { rules.BeginProperties(); }
|   modifiers type              { rules.Needs(704, $2); rules.BeginProperties($2); }
;

modifiers:
    modifier
|   modifiers member_modifier   { rules.MemberModifier($2); }
|   modifiers Var               { rules.MemberModifier($2); }
;

modifier:
    member_modifier             { rules.BeginModifiers(); rules.MemberModifier($1); }
|   Var                         { rules.BeginModifiers(); rules.MemberModifier($1); }
;

member_modifier:
    Access
|   AccessSet                   { rules.Needs(804, $1); }
|   Static
|   Abstract
|   Final
|   Readonly                    { rules.Needs(801, $1); }
;

properties:
    property
|   properties "," property
;

property:
    Variable                    { rules.Property($1); }
|   Variable "=" expr           { rules.Property($1, $3); }
;

hooks:
    %empty
|   hooks hook
|   hooks attributes hook
;

hook:
    hook_head ";"               { rules.NoBody($2); rules.EndFunction(); }
|   hook_head "=>" expr ";"     { rules.EndFunction(); }
|   hook_head "{"               { rules.BeginBody($2); } inner_list "}" { rules.EndFunction(); }
;

hook_head:
    ref Identifier              { rules.NoModifiers(); rules.BeginHook($2); } hook_parameters
|   modifiers ref Identifier    { rules.BeginHook($3); } hook_parameters
;

hook_parameters:
    %empty
|   "(" parameters ")"
;

ref:
    %empty
|   "&"
|   BitAndBeforeVariable
;

parameters:
    %empty
|   parameter_list
|   parameter_list ","          { rules.Needs(800, $2); }
;

parameter_list:
    parameter
|   parameter_list "," parameter
;

parameter:
    parameter_head              { rules.EndParameter(); }
|   parameter_head "=" expr     { rules.DefaultValue($3); rules.EndParameter(); }
|   parameter_head "{"          { rules.BeginParameterHooks($2); } hooks "}" { rules.EndParameter(); }
|   parameter_head "=" expr "{" { rules.DefaultValue($3); rules.BeginParameterHooks($4); } hooks "}" { rules.EndParameter(); }
;

parameter_head:
    bare_parameter
|   modifiers                   { rules.BeginPromotion($1); } bare_parameter { rules.EndPromotion(); }
|   attributes bare_parameter
|   attributes modifiers        { rules.BeginPromotion($2); } bare_parameter { rules.EndPromotion(); }
;

bare_parameter:
    Variable                    { rules.Parameter($1); }
|   BitAndBeforeVariable Variable { rules.ReferenceParameter($2); }
|   "..." Variable              { rules.Variadic($1, $2); }
|   BitAndBeforeVariable "..." Variable { rules.Variadic($2, $3); }
|   type Variable               { rules.Parameter($2); rules.ParameterType($1); }
|   type BitAndBeforeVariable Variable { rules.ReferenceParameter($3); rules.ParameterType($1); }
|   type "..." Variable         { rules.Variadic($2, $3); rules.ParameterType($1); }
|   type BitAndBeforeVariable "..." Variable { rules.Variadic($3, $4); rules.ParameterType($1); }
;

return_type:
    %empty
|   ":" type                    { rules.Needs(700, $1); rules.ReturnType($2); }
|   ":" static_type             { rules.Needs(800, $1); rules.ReturnType($2); }
;

type:
    type_atom
|   "?" type_atom               { rules.Needs(701, $1); $$ = rules.Nullable($1, $2); }
|   union_type
|   intersection_type
;

type_atom:
    name                        { $$ = rules.TypeName($1); }
|   Array                       { $$ = rules.TypeName($1); }
|   Callable                    { $$ = rules.TypeName($1); }
;

union_member:
    type_atom
|   "(" intersection_type ")"   { rules.Needs(802, $1); $$ = $2; }
;

union_type:
    union_member "|" union_member { rules.Needs(800, $2); $$ = rules.Union($1, $3); }
|   union_type "|" union_member { $$ = rules.Union($1, $3); }
;

intersection_type:
    type_atom "&" type_atom     { rules.Needs(801, $2); $$ = rules.Intersection($1, $3); }
|   intersection_type "&" type_atom { $$ = rules.Intersection($1, $3); }
;

static_type:
    Static                      { $$ = rules.TypeName($1); }
|   "?" Static                  { $$ = rules.Nullable($1, rules.TypeName($2)); }
|   static_union
|   Static "&" type_atom        { $$ = rules.Intersection(rules.TypeName($1), $3); }
|   type_atom "&" Static        { $$ = rules.Intersection($1, rules.TypeName($3)); }
;

static_union:
    Static "|" union_member     { $$ = rules.Union(rules.TypeName($1), $3); }
|   union_member "|" Static     { $$ = rules.Union($1, rules.TypeName($3)); }
|   union_type "|" Static       { $$ = rules.Union($1, rules.TypeName($3)); }
|   static_union "|" union_member { $$ = rules.Union($1, $3); }
;

attributes:
    attribute_group
|   attributes attribute_group
;

attribute_group:
    AttributeStart attribute_list trailing_comma "]" { rules.Attribute($1, $4); }
;

attribute_list:
    attribute
|   attribute_list "," attribute
;

attribute:
    class_name
|   class_name arguments        { rules.AttributeArguments($2); }
;

expr:
    primary
|   Number                      { $$ = rules.NumberValue($1); }
|   HeredocStart HeredocEnd     { $$ = rules.TextValue($1); $$.kind = Literal; }
|   HeredocStart string_parts HeredocEnd { $$ = rules.Joined($1, $2); }
|   New class_reference         { $$ = rules.NewValue($1, $2); }
|   Clone expr                  { $$ = rules.Computed($1); }
|   list_literal "=" expr       { rules.Assign($1, $2, $3); $$ = rules.Computed($1); }
|   primary "=" expr            { rules.Assign($1, $2, $3); $$ = rules.Computed($1); }
|   primary "=" "&" primary     { rules.AssignReference($1, $2, $4); $$ = rules.Computed($1); }
|   primary "=" BitAndBeforeVariable primary { rules.AssignReference($1, $2, $4); $$ = rules.Computed($1); }
|   primary "=" "&" New class_reference { rules.Gone(700, $4); $$ = rules.Computed($1); }
|   primary OpAssign expr       { rules.Change($1, $2); $$ = rules.Computed($1); }
|   primary CoalesceAssign expr { rules.Needs(704, $2); rules.Change($1, $2); $$ = rules.Computed($1); }
|   primary IncDec              { rules.Change($1, $2); $$ = rules.Computed($1); }
|   IncDec primary              { rules.Change($2, $1); $$ = rules.Computed($1); }
|   expr BooleanOr expr         { $$ = rules.Binary($1, $3); }
|   expr BooleanAnd expr        { $$ = rules.Binary($1, $3); }
|   expr Or expr                { $$ = rules.Binary($1, $3); }
|   expr And expr               { $$ = rules.Binary($1, $3); }
|   expr Xor expr               { $$ = rules.Binary($1, $3); }
|   expr "|" expr               { $$ = rules.Binary($1, $3); }
|   expr "&" expr               { $$ = rules.Binary($1, $3); }
|   expr BitAndBeforeVariable expr { $$ = rules.Binary($1, $3); }
|   expr BitXor expr            { $$ = rules.Binary($1, $3); }
|   expr Equality expr          { $$ = rules.Binary($1, $3); }
|   expr Comparison expr        { $$ = rules.Binary($1, $3); }
|   expr Pipe expr              { rules.Needs(805, $2); $$ = rules.Binary($1, $3); $$.flags |= NotConstant; }
|   expr Dot expr               { $$ = rules.Binary($1, $3); }
|   expr Shift expr             { $$ = rules.Binary($1, $3); }
|   expr Additive expr          { $$ = rules.Binary($1, $3); }
|   expr Multiplicative expr    { $$ = rules.Binary($1, $3); }
|   expr Power expr             { rules.Needs(506, $2); $$ = rules.Binary($1, $3); }
|   expr Coalesce expr          { rules.Needs(700, $2); $$ = rules.Binary($1, $3); }
|   Additive expr %prec Complement { $$ = rules.Unary($1, $2); }
|   Not expr                    { $$ = rules.Unary($1, $2); }
|   Complement expr             { $$ = rules.Unary($1, $2); }
|   At expr                     { $$ = rules.Computed($1); }
|   Cast expr                   { $$ = rules.CastValue($1, $2); }
|   expr Instanceof class_reference { $$ = rules.Computed($1); }
|   expr "?" expr ":" expr      { $$ = rules.Ternary($1, $2, $3, $5); }
|   expr "?" ":" expr           { $$ = rules.ShortTernary($1, $2, $4); }
|   Isset "(" isset_list trailing_comma ")" { $$ = rules.Computed($1); }
|   Empty "(" expr ")"          { $$ = rules.Computed($1); }
|   Include expr                { $$ = rules.Computed($1); }
|   Eval "(" expr ")"           { $$ = rules.Computed($1); }
|   Exit                        { $$ = rules.Computed($1); }
|   Exit arguments              { rules.ExitArguments($2); $$ = rules.Computed($1); }
|   Backtick Backtick           { $$ = rules.Computed($1); }
|   Backtick string_parts Backtick { $$ = rules.Computed($1); }
|   Print expr                  { $$ = rules.Computed($1); }
|   Yield                       { rules.YieldHere($1); $$ = rules.Computed($1); }
|   Yield expr                  { rules.YieldHere($1); $$ = rules.Computed($1); }
|   Yield expr "=>" expr        { rules.YieldHere($1); $$ = rules.Computed($1); }
|   YieldFrom expr              { rules.YieldHere($1); $$ = rules.Computed($1); }
|   Throw expr                  { rules.ThrowHere($1); $$ = rules.Computed($1); }
|   closure                     { $$ = rules.ClosureValue($1); }
|   attributes closure          { $$ = rules.ClosureValue($1); }
|   Static closure              { $$ = rules.ClosureValue($1); }
|   attributes Static closure   { $$ = rules.ClosureValue($1); }
|   Match arguments "{" { rules.MatchHead($1, $2); } match_arms "}" { rules.EndMatch(); $$ = rules.Computed($1); }
;

isset_list:
    expr                        { rules.IssetTarget($1); }
|   isset_list "," expr         { rules.IssetTarget($3); }
;

closure:
    Function ref                { rules.BeginClosure($1); } "(" parameters ")" lexical_variables return_type
    "{"                         { rules.BeginBody($9); } inner_list "}" { rules.EndFunction(); }
|   Fn ref                      { rules.Needs(704, $1); rules.BeginClosure($1); } "(" parameters ")" return_type
    "=>"                        { rules.BeginArrow(); } expr %prec ArrowFunction { rules.EndFunction(); }
;

lexical_variables:
    %empty
|   Use "(" lexical_list ")"
|   Use "(" lexical_list "," ")" { rules.Needs(800, $4); }
;

lexical_list:
    lexical_variable
|   lexical_list "," lexical_variable
;

lexical_variable:
    Variable                    { rules.LexicalVariable($1); }
|   BitAndBeforeVariable Variable { rules.LexicalVariable($2); }
;

match_arms:
    %empty
|   match_arm_list
|   match_arm_list ","
;

match_arm_list:
    match_arm
|   match_arm_list "," match_arm
;

match_arm:
    expressions trailing_comma "=>" expr
|   Default trailing_comma "=>" expr { rules.DefaultArm($1); }
;

primary:
    Variable                    { $$ = rules.VariableValue($1); }
|   Dollar dollar_rest          { $$ = rules.Computed($1); $$.kind = VariableVariable; }
|   name                        { $$ = rules.NameValue($1); }
|   MagicConstant               { $$.kind = Magic; }
|   String                      { $$ = rules.TextValue($1); }
|   Quote string_parts Quote    { $$ = rules.Joined($1, $2); $$.kind = Text; }
|   "(" expr ")"                { $$ = rules.Grouped($1, $2); }
|   "[" elements "]"            { rules.Needs(504, $1); $$ = rules.ArrayValue($1, $2); }
|   Array "(" elements ")"      { $$ = rules.ArrayValue($1, $3); $$.flags |= LongArray; }
|   primary "[" "]"             { $$ = rules.Dim($1, $2); rules.Append($$, $2); }
|   primary "[" expr "]"        { $$ = rules.Dim($1, $2, $3); }
|   primary OffsetBrace expr "}" { rules.Gone(800, $2); $$ = rules.Dim($1, $2, $3); }
|   primary arrow property_name { $$ = rules.Property($1, $2, $3); }
|   primary arguments           { $$ = rules.Call($1, $2); }
|   Readonly arguments          { $$ = rules.Computed($1); $$.kind = Call; }
|   Match arguments %prec OldCall { rules.Gone(800, $1); $$ = rules.Computed($1); $$.kind = Call; }
|   Clone "(" clone_arguments ")" { rules.Needs(805, $1); $$ = rules.Computed($1); $$.kind = Call; }
|   primary "::" Identifier     { $$ = rules.ClassConstant($1, $2, $3); }
|   primary "::" simple_variable { $$ = rules.StaticProperty($1, $2, $3); }
|   primary "::" "{" expr "}"   { $$ = rules.DynamicMember($1, $2); }
|   Static "::" Identifier      { $$ = rules.ClassConstant($1, $2, $3); }
|   Static "::" simple_variable { $$ = rules.StaticProperty($1, $2, $3); }
|   Static "::" "{" expr "}"    { $$ = rules.DynamicMember($1, $2); }
|   New class_reference arguments { $$ = rules.NewValue($1, $2, $3); }
|   New anonymous_class         { $$ = rules.Computed($1); $$.kind = NewObject; }
|   New attributes anonymous_class { $$ = rules.Computed($1); $$.kind = NewObject; }
;

anonymous_class:
    anonymous_start             { rules.BeginClass(AnonymousKind, $1, $1); } extends implements class_body
|   anonymous_start arguments   { rules.BeginClass(AnonymousKind, $1, $1); } extends implements class_body
;

anonymous_start:
    Class                       { rules.Needs(700, $1); rules.NoModifiers(); }
|   class_modifiers Class       { rules.AnonymousModifiers($1); }
;

arrow:
    Arrow
|   NullsafeArrow               { rules.Needs(800, $1); }
;

property_name:
    Identifier
|   simple_variable
|   "{" expr "}"                { $$.kind = Other; }
;

simple_variable:
    Variable                    { $$ = rules.VariableValue($1); }
|   Dollar dollar_rest          { $$ = rules.Computed($1); $$.kind = VariableVariable; }
;

dollar_rest:
    Variable
|   "{" expr "}"
|   Dollar dollar_rest
;

class_reference:
    name                        { rules.ClassReference($1); $$.kind = Name; }
|   Static                      { $$.kind = StaticName; }
|   new_variable                { $$.kind = Other; }
|   "(" expr ")"                { rules.Needs(800, $1); $$.kind = Other; }
;

new_variable:
    simple_variable
|   new_variable "[" "]"
|   new_variable "[" expr "]"
|   new_variable OffsetBrace expr "}" { rules.Gone(800, $2); }
|   new_variable arrow property_name
|   name "::" simple_variable
|   Static "::" simple_variable
|   new_variable "::" simple_variable
;

arguments:
    "(" ")"                     { $$ = rules.NoArguments($1); }
|   "(" argument_list ")"       { $$ = rules.EndArguments($1, $2); }
|   "(" argument_list "," ")"   { rules.Needs(703, $3); $$ = rules.EndArguments($1, $2); }
|   "(" "..." ")"               { rules.Needs(801, $2); $$ = rules.CallableSyntax($1); }
;

argument_list:
    argument
|   argument_list "," argument  { $$ = rules.NextArgument($1, $3); }
;

argument:
    expr                        { $$ = rules.PlainArgument($1); }
|   Identifier ":" expr         { rules.Needs(800, $2); $$ = rules.NamedArgument($1, $3); }
|   word ":" expr               { rules.Needs(800, $2); $$ = rules.NamedArgument($1, $3); }
|   "..." expr                  { $$ = rules.UnpackedArgument($1, $2); }
|   BitAndBeforeVariable primary { rules.Gone(504, $1); $$ = rules.PlainArgument($2); }
;

/* One value in brackets is no list of arguments but an expression. */
clone_arguments:
    "..."
|   expr ","
|   expr "," argument_list trailing_comma
|   "..." expr
|   Identifier ":" expr
;

elements:
    element
|   elements "," element        { $$ = rules.NextElement($1, $3); }
;

element:
    %empty                      { $$ = rules.NoElement(); }
|   expr                        { $$ = rules.Element($1); }
|   expr "=>" expr              { $$ = rules.KeyedElement($1, $3); }
|   BitAndBeforeVariable primary { $$ = rules.ReferenceElement($2); }
|   "&" primary                 { $$ = rules.ReferenceElement($2); }
|   expr "=>" BitAndBeforeVariable primary { $$ = rules.KeyedReferenceElement($1, $4); }
|   expr "=>" "&" primary       { $$ = rules.KeyedReferenceElement($1, $4); }
|   "..." expr                  { $$ = rules.SpreadElement($1, $2); }
|   list_literal                { $$ = rules.ListElement($1); }
|   expr "=>" list_literal      { $$ = rules.KeyedListElement($1, $3); }
;

list_literal:
    List "(" elements ")"       { $$ = rules.ListValue($1, $3); }
;

string_parts:
    string_part
|   string_parts string_part    { $$ = rules.StringParts($1, $2); }
;

string_part:
    StringPart                  { $$.kind = Literal; }
|   Variable                    { $$ = rules.CodeInString($1); }
|   Variable "[" StringName "]" { $$ = rules.CodeInString($1); }
|   Variable "[" Variable "]"   { $$ = rules.CodeInString($1); }
|   Variable arrow Identifier   { $$ = rules.CodeInString($1); }
|   DollarBrace expr "}"        { $$ = rules.CodeInString($1); }
|   DollarBrace StringVariable "}" { $$ = rules.CodeInString($1); }
|   DollarBrace StringVariable "[" expr "]" "}" { $$ = rules.CodeInString($1); }
|   CodeBrace primary "}"       { rules.InBraces($2); $$ = rules.CodeInString($1); }
;

name:
    Identifier
|   QualifiedName
|   FullyQualifiedName
|   RelativeName
;

class_name:
    name                        { rules.ClassReference($1); }
|   Static                      { $$.kind = StaticName; }
;

identifier:
    Identifier
|   word
;

/* Reserved words, which may be names of members all the same. */
word:
    plain_word
|   Access | Static | Abstract | Final | Readonly
;

plain_word:
    MagicConstant
|   And | Array | As | Break | Callable | Case | Catch | Class | Clone | Const | Continue | Declare | Default | Do
|   Echo | Else | Elseif | Empty | Enddeclare | Endfor | Endforeach | Endif | Endswitch | Endwhile | Enum | Eval | Exit
|   Extends | Finally | Fn | For | Foreach | Function | Global | Goto | If | Implements | Include | Instanceof
|   Insteadof | Interface | Isset | List | Match | Namespace | New | Or | Print | Return | Switch | Throw | Trait | Try
|   Unset | Use | Var | While | Xor | Yield
;

%%

// Called before the parser throws its stack away.
static void yyerror(CPhpRules& /*rules*/, SGrammarFault& fault, const char* /*message*/)
{
    fault.top = fault.parser->yyssp;
}

namespace Kesh::CodeAnalyzer {

namespace {

using K = SyntaxParser::EPhpTokenKind;

constexpr TGrammarSymbol NoSymbol = -1;

/// Kinds that are alike to the grammar share a symbol.
constexpr auto Symbols = [] {
    std::array<TGrammarSymbol, static_cast<std::size_t>(K::Count)> symbols{};
    symbols.fill(NoSymbol);
    const auto set = [&symbols](TGrammarSymbol symbol, std::initializer_list<K> kinds) {
        for (const K kind : kinds)
            symbols[static_cast<std::size_t>(kind)] = symbol;
    };
#define SAME(name) set(T_##name, {K::name})
    SAME(End); SAME(InlineHtml); SAME(Variable); SAME(Number); SAME(Identifier); SAME(QualifiedName);
    SAME(FullyQualifiedName); SAME(RelativeName); SAME(String); SAME(MagicConstant); SAME(VoidCast);
    SAME(Quote); SAME(Backtick); SAME(HeredocStart); SAME(HeredocEnd); SAME(StringPart); SAME(StringName);
    SAME(StringVariable); SAME(CodeBrace); SAME(DollarBrace); SAME(OpenRound); SAME(CloseRound); SAME(OpenSquare);
    SAME(CloseSquare); SAME(OpenBrace); SAME(CloseBrace); SAME(AttributeStart); SAME(Comma); SAME(Semicolon);
    SAME(Colon); SAME(DoubleColon); SAME(Question); SAME(Arrow); SAME(NullsafeArrow); SAME(DoubleArrow);
    SAME(Backslash); SAME(Ellipsis); SAME(Dollar); SAME(At); SAME(Assign); SAME(CoalesceAssign); SAME(Coalesce);
    SAME(BooleanOr); SAME(BooleanAnd); SAME(BitOr); SAME(BitXor); SAME(BitAnd); SAME(BitAndBeforeVariable);
    SAME(Pipe); SAME(Dot); SAME(Power); SAME(Not); SAME(Complement);
    SAME(Abstract); SAME(And); SAME(Array); SAME(As); SAME(Break); SAME(Callable); SAME(Case); SAME(Catch); SAME(Class);
    SAME(Clone); SAME(Const); SAME(Continue); SAME(Declare); SAME(Default); SAME(Do); SAME(Echo); SAME(Else);
    SAME(Elseif); SAME(Empty); SAME(Enddeclare); SAME(Endfor); SAME(Endforeach); SAME(Endif); SAME(Endswitch);
    SAME(Endwhile); SAME(Enum); SAME(Eval); SAME(Exit); SAME(Extends); SAME(Final); SAME(Finally); SAME(Fn); SAME(For);
    SAME(Foreach); SAME(Function); SAME(Global); SAME(Goto); SAME(HaltCompiler); SAME(If); SAME(Implements);
    SAME(Include); SAME(Instanceof); SAME(Insteadof); SAME(Interface); SAME(Isset); SAME(List); SAME(Match);
    SAME(Namespace); SAME(New); SAME(Or); SAME(Print); SAME(Readonly); SAME(Return); SAME(Static); SAME(Switch);
    SAME(Throw); SAME(Trait); SAME(Try); SAME(Unset); SAME(Use); SAME(Var); SAME(While); SAME(Xor); SAME(Yield);
    SAME(YieldFrom);
#undef SAME
    set(T_Semicolon, {K::CloseTag});
    set(T_Echo, {K::OpenTagEcho});
    set(T_Cast, {K::Cast, K::OldCast});
    set(T_Access, {K::Public, K::Protected, K::Private});
    set(T_AccessSet, {K::PublicSet, K::ProtectedSet, K::PrivateSet});
    set(T_OpAssign, {K::PlusAssign, K::MinusAssign, K::TimesAssign, K::DivideAssign, K::DotAssign, K::ModuloAssign,
                     K::AndAssign, K::OrAssign, K::XorAssign, K::ShiftLeftAssign, K::ShiftRightAssign,
                     K::PowerAssign});
    set(T_Equality, {K::Equal, K::NotEqual, K::Identical, K::NotIdentical, K::Spaceship});
    set(T_Comparison, {K::Less, K::LessEqual, K::Greater, K::GreaterEqual});
    set(T_Shift, {K::ShiftLeft, K::ShiftRight});
    set(T_Additive, {K::Plus, K::Minus});
    set(T_Multiplicative, {K::Times, K::Divide, K::Modulo});
    set(T_IncDec, {K::Increment, K::Decrement});
    return symbols;
}();

/// What the parser does in a state with a symbol: above 0 it goes to that state, below 0 it reduces by that rule, 0 is
/// an error.
int Action(int state, int symbol)
{
    int action = yypact[state];
    if (!yypact_value_is_default(action)) {
        action += symbol;
        if (action >= 0 && action <= YYLAST && yycheck[action] == symbol) {
            const int found = yytable[action];
            return yytable_value_is_error(found) ? 0 : found;
        }
    }
    return -yydefact[state];
}

int Goto(int state, int rule)
{
    const int nonterminal = yyr1[rule] - YYNTOKENS;
    const int target = yypgoto[nonterminal] + state;
    return target >= 0 && target <= YYLAST && yycheck[target] == state ? yytable[target] : yydefgoto[nonterminal];
}

} // namespace

TGrammarSymbol GrammarSymbol(K kind)
{
    return Symbols[static_cast<std::size_t>(kind)];
}

TGrammarSymbol OffsetBraceSymbol()
{
    return T_OffsetBrace;
}

int CGrammarProbe::Top() const
{
    return m_above.empty() ? m_below[m_depth] : m_above.back();
}

void CGrammarProbe::Drop(int count)
{
    for (; count > 0; --count) {
        if (m_above.empty())
            --m_depth;
        else
            m_above.pop_back();
    }
}

bool CGrammarProbe::Take(TGrammarSymbol symbol)
{
    for (;;) {
        const int action = Action(Top(), symbol);
        if (action == 0)
            return false;
        if (action > 0) {
            m_above.push_back(static_cast<std::int16_t>(action));
            return true;
        }
        Drop(yyr2[-action]);
        m_above.push_back(static_cast<std::int16_t>(Goto(Top(), -action)));
    }
}

struct CPhpGrammarParser::SState
{
    yypstate* parser = yypstate_new();
    SGrammarFault fault;

    ~SState() { yypstate_delete(parser); }
};

CPhpGrammarParser::CPhpGrammarParser(CPhpRules& rules) : m_rules(rules), m_state(std::make_unique<SState>()) {}
CPhpGrammarParser::~CPhpGrammarParser() = default;

void CPhpGrammarParser::Begin()
{
    yypstate_delete(m_state->parser);
    m_state->parser = yypstate_new();
}

bool CPhpGrammarParser::Push(TGrammarSymbol symbol, const SGrammarValue& value)
{
    yypstate* parser = m_state->fault.parser = m_state->parser;
    const int status = yypush_parse(parser, symbol, &value, m_rules, m_state->fault);
    if (status == YYPUSH_MORE || status == 0)
        return true;
    // The parser has thrown its stack away, but not what was on it.
    parser->yyssp = m_state->fault.top;
    parser->yyvsp = parser->yyvs + (parser->yyssp - parser->yyss);
    parser->yystate = *parser->yyssp;
    parser->yyerrstatus = 0;
    parser->yynew = 0;
    return false;
}

CGrammarProbe CPhpGrammarParser::Probe() const
{
    return {m_state->parser->yyss, m_state->parser->yyssp - m_state->parser->yyss};
}

bool CPhpGrammarParser::Accepts(TGrammarSymbol symbol) const
{
    return Probe().Take(symbol);
}

std::size_t CPhpGrammarParser::Depth() const
{
    return static_cast<std::size_t>(m_state->parser->yyssp - m_state->parser->yyss);
}

int CPhpGrammarParser::SymbolAt(std::size_t depth) const
{
    return yystos[m_state->parser->yyss[depth]];
}

std::uint32_t CPhpGrammarParser::TokenAt(std::size_t depth) const
{
    return m_state->parser->yyvs[depth].first;
}

bool CPhpGrammarParser::ShiftsAt(std::size_t depth, TGrammarSymbol symbol) const
{
    return Action(m_state->parser->yyss[depth], symbol) > 0;
}

void CPhpGrammarParser::Pop(std::size_t depth)
{
    yypstate* parser = m_state->parser;
    parser->yyssp = parser->yyss + depth;
    parser->yyvsp = parser->yyvs + depth;
    parser->yystate = *parser->yyssp;
}

} // namespace Kesh::CodeAnalyzer
