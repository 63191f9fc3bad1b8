/* The grammar of PHP 5.3 to 8.5. It only recognises: what is valid in some version passes, and an action tells the
   rules where a version or another rule of the language has to be asked for. $$ stands where $1 does: what is set in
   the one is so in the other. No conflict is left to chance. */

%code {
#include "Grammar/GrammarTables.h"
#include "Grammar/PhpGrammarParser.h"
#include "Grammar/PhpRules.h"

#include <array>

using namespace Kesh::CodeAnalyzer;
using enum EValue;

/// What is done when a rule is recognised of which the last symbol is at the top.
using TGrammarAction = void(const SGrammarPlace* top, SGrammarValue& result, CPhpRules& rules);

struct SGrammarAction
{
    std::size_t rule;
    TGrammarAction* action;
};
}

%skeleton "./Automaton.m4"
%define api.token.prefix {T_}
%define api.token.raw
%expect 0
/* A token that cannot follow is to be met before what it cannot follow has been reduced. */
%define lr.default-reduction consistent

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
|   top_list statement          { rules.files.TopStatement($2); }
|   top_list declaration        { rules.files.TopStatement($2); }
|   top_list attributes declaration { rules.attributes.Declaration($2, $3); rules.files.TopStatement($3); }
|   top_list top_only
;

top_only:
    HaltCompiler "(" ")" ";"    { rules.files.Halt($1); }
|   Namespace namespace_name ";" { rules.files.NamespaceStatement($1); }
|   Namespace namespace_name "{" { rules.files.BeginNamespace($1); } top_list "}" { rules.files.EndNamespace($6); }
|   Namespace "{"               { rules.files.BeginNamespace($1); } top_list "}" { rules.files.EndNamespace($5); }
|   Use uses ";"                { rules.files.Uses($1, ImportClass); }
|   Use Function uses ";"       { rules.files.Uses($1, ImportFunction); }
|   Use Const uses ";"          { rules.files.Uses($1, ImportConstant); }
|   Use use_prefix "{" group_uses comma_opt "}" ";" { rules.files.Uses($1, ImportClass); }
|   Use Function use_prefix "{" plain_group_uses comma_opt "}" ";" { rules.files.Uses($1, ImportFunction); }
|   Use Const use_prefix "{" plain_group_uses comma_opt "}" ";" { rules.files.Uses($1, ImportConstant); }
|   Const constants ";"         { rules.files.ConstStatement($1); }
|   attributes Const constants ";" { rules.attributes.Target($1, TargetConstant); rules.Needs(EFeature::ConstantAttribute, $2); rules.files.ConstStatement($2); }
;

namespace_name:
    identifier                  { rules.versions.NamespaceName($1); }
|   QualifiedName
;

uses:
    use_item
|   uses "," use_item
;

use_item:
    use_name                    { rules.files.UseItem($1, $1); }
|   use_name As Identifier      { rules.files.UseItem($1, $3); }
;

use_name:
    Identifier
|   QualifiedName
|   FullyQualifiedName
;

use_prefix:
    use_name Backslash          { rules.Needs(EFeature::GroupUse, $2); rules.files.UsePrefix($1); }
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
|   Function group_item         { rules.files.RetypeUse(ImportFunction); }
|   Const group_item            { rules.files.RetypeUse(ImportConstant); }
;

group_item:
    group_name                  { rules.files.UseItem($1, $1); }
|   group_name As Identifier    { rules.files.UseItem($1, $3); }
;

group_name:
    Identifier
|   QualifiedName
;

comma_opt:
    %empty
|   ","                         { rules.Needs(EFeature::GroupUseComma, $1); }
;

trailing_comma:
    %empty
|   ","
;

isset_comma:
    %empty
|   ","                         { rules.Needs(EFeature::IssetComma, $1); }
;

constants:
    constant
|   constants "," constant
;

constant:
    Identifier "=" expr         { rules.files.Constant($1, $3); }
;

inner_list:
    %empty
|   inner_list statement
|   inner_list inner_declaration
;

inner_declaration:
    declaration                 { rules.files.InnerDeclaration($1); }
|   attributes declaration      { rules.attributes.Declaration($1, $2); rules.files.InnerDeclaration($2); }
|   HaltCompiler "(" ")" ";"    { rules.Report(Code::HaltInside, $1); }
;

statement:
    "{" inner_list "}"
|   if_plain                    %prec NoElse
|   if_plain Else statement
|   if_colon Endif ";"
|   if_colon Else ":" inner_list Endif ";"
|   while_head statement        { rules.flow.EndLoop(); }
|   while_head ":" inner_list Endwhile ";" { rules.flow.EndLoop(); }
|   do_start statement While    { rules.flow.EndLoop(); } "(" expr ")" ";"
|   for_head statement          { rules.flow.EndLoop(); }
|   for_head ":" inner_list Endfor ";" { rules.flow.EndLoop(); }
|   foreach_head statement      { rules.flow.EndLoop(); }
|   foreach_head ":" inner_list Endforeach ";" { rules.flow.EndLoop(); }
|   switch_head switch_body     { rules.flow.EndSwitch(); }
|   Break ";"                   { rules.flow.Leave($1); }
|   Break expr ";"              { rules.flow.Leave($1, $2); }
|   Continue ";"                { rules.flow.Leave($1); }
|   Continue expr ";"           { rules.flow.Leave($1, $2); }
|   Return ";"                  { rules.flow.Return($1); }
|   Return expr ";"             { rules.flow.Return($1, $2); }
|   Global global_variables ";"
|   Static static_variables ";"
|   Echo expressions ";"        { $$.kind = Other; }
|   InlineHtml                  { $$.kind = Html; }
|   expr ";"
|   VoidCast expr ";"           { rules.Needs(EFeature::VoidCast, $1); }
|   Unset "(" unset_targets isset_comma ")" ";"
|   declare_head statement      { rules.files.EndDeclare($1, $2); $$.kind = DeclareStatement; }
|   declare_head ":" inner_list Enddeclare ";" { rules.files.EndDeclareBlock($1); $$.kind = DeclareStatement; }
|   ";"                         { $$.kind = Nop; }
|   try_block catches           { rules.flow.TryAlone($1, $2); }
|   try_block catches Finally   { rules.Needs(EFeature::Finally, $3); rules.flow.BeginFinally(); } "{" inner_list "}" { rules.flow.EndFinally(); }
|   Goto Identifier ";"         { rules.flow.Goto($2); }
|   Identifier ":"              { rules.flow.Label($1); }
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
    While "(" expr ")"          { rules.flow.BeginLoop(); }
;

do_start:
    Do                          { rules.flow.BeginLoop(); }
;

for_head:
    For "(" expressions_opt ";" expressions_opt ";" expressions_opt ")" { rules.flow.BeginLoop(); }
;

foreach_head:
    Foreach "(" expr As foreach_target ")" { rules.flow.BeginLoop(); }
|   Foreach "(" expr As foreach_target "=>" foreach_target ")" { rules.targets.ForeachKey($5); rules.flow.BeginLoop(); }
;

foreach_target:
    primary                     { rules.targets.Target($1); }
|   BitAndBeforeVariable primary { rules.targets.ReferenceTarget($2); $$ = $2; $$.kind = Reference; }
|   "&" primary                 { rules.targets.ReferenceTarget($2); $$ = $2; $$.kind = Reference; }
|   list_literal                { rules.Needs(EFeature::ForeachList, $1); rules.targets.Target($1); }
;

switch_head:
    Switch "(" expr ")"         { rules.flow.BeginSwitch(); }
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
|   cases Default case_end { rules.flow.DefaultCase($2); } inner_list
;

case_end:
    ":"
|   ";"
;

global_variables:
    simple_variable             { rules.functions.GlobalVariable($1); }
|   global_variables "," simple_variable { rules.functions.GlobalVariable($3); }
;

static_variables:
    static_variable
|   static_variables "," static_variable
;

static_variable:
    Variable                    { rules.functions.StaticVariable($1); }
|   Variable "=" expr           { rules.functions.StaticVariable($1); rules.functions.StaticValue($3); }
;

unset_targets:
    primary                     { rules.targets.UnsetTarget($1); }
|   unset_targets "," primary   { rules.targets.UnsetTarget($3); }
;

declare_head:
    Declare "(" declarations ")"
;

declarations:
    declare_item
|   declarations "," declare_item
;

declare_item:
    Identifier "=" expr         { rules.files.DeclareItem($1, $3); }
;

try_block:
    Try "{" inner_list "}"
;

catches:
    %empty                      { $$.kind = Nop; }
|   catches Catch "(" catch_types ")" "{" { rules.Needs(EFeature::CatchWithoutVariable, $5); } inner_list "}" { $$.kind = Other; }
|   catches Catch "(" catch_types Variable ")" "{" { rules.flow.CatchVariable($5); } inner_list "}" { $$.kind = Other; }
;

catch_types:
    class_name                  { rules.flow.CatchType($1); }
|   catch_types "|" class_name  { rules.Needs(EFeature::CatchSeveral, $2); rules.flow.CatchType($3); }
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
    Function ref Identifier     { rules.functions.BeginFunction($1, $3); } function_rest { $$ = $3; $$.kind = FunctionDeclaration; }
|   Function ref Readonly       { rules.functions.BeginFunction($1, $3); } function_rest { $$ = $3; $$.kind = FunctionDeclaration; }
|   class_start Identifier      { rules.classes.BeginClass(ClassKind, $1, $2); } extends implements class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
|   Trait Identifier            { rules.Needs(EFeature::Trait, $1); rules.classes.BeginClass(TraitKind, $1, $2); } class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
|   Interface Identifier        { rules.classes.BeginClass(InterfaceKind, $1, $2); } interface_extends class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
|   Enum Identifier             { rules.Needs(EFeature::Enum, $1); rules.classes.BeginClass(EnumKind, $1, $2); } enum_type implements class_body
                                { $$ = $2; $$.kind = ClassDeclaration; }
;

function_rest:
    "(" parameters ")" return_type "{" { rules.functions.BeginBody($5); } inner_list "}" { rules.functions.EndFunction(); }
;

class_start:
    Class                       { rules.classes.NoModifiers(); }
|   class_modifiers Class       { $$ = $1; }
;

class_modifiers:
    class_modifier              { rules.classes.BeginModifiers(); rules.classes.ClassModifier($1); }
|   class_modifiers class_modifier { rules.classes.ClassModifier($2); }
;

class_modifier:
    Abstract
|   Final
|   Readonly                    { rules.Needs(EFeature::ReadonlyClass, $1); }
;

extends:
    %empty
|   Extends class_name          { rules.classes.Extends($2); }
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
    class_name                  { rules.classes.Implements($1); }
|   implemented "," class_name  { rules.classes.Implements($3); }
;

enum_type:
    %empty
|   ":" type                    { rules.classes.EnumType($2); }
;

class_body:
    "{" members "}"             { rules.classes.EndClass(); }
;

members:
    %empty
|   members member
|   members attributes attributed_member { rules.attributes.Member($2, $3); }
|   members attributed_member
;

member:
    Use trait_names ";"         { rules.classes.TraitUse($1); }
|   Use trait_names "{" trait_rules "}" { rules.classes.TraitUse($1); }
;

trait_names:
    class_name                  { rules.classes.TraitName($1); }
|   trait_names "," class_name  { rules.classes.TraitName($3); }
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
|   member_modifier             { rules.classes.AliasModifier($1); }
|   member_modifier identifier  { rules.classes.AliasModifier($1); }
;

attributed_member:
    properties_start properties ";" { $$.kind = Property; }
|   properties_start Variable "{" { rules.classes.BeginHooks($2); } hooks "}" { $$.kind = Property; }
|   properties_start Variable "=" expr "{" { rules.classes.BeginHooks($2, $4); } hooks "}" { $$.kind = Property; }
|   modifiers Const constants_of_class ";" { rules.classes.EndConstants(); $$.kind = EValue::ClassConstant; }
|   Const                       { rules.classes.NoModifiers(); } constants_of_class ";" { rules.classes.EndConstants(); $$.kind = EValue::ClassConstant; }
|   modifiers Function ref identifier { rules.versions.MemberName($4); rules.functions.BeginMethod($2, $4); } method_rest { $$.kind = FunctionDeclaration; }
|   Function ref identifier     { rules.versions.MemberName($3); rules.classes.NoModifiers(); rules.functions.BeginMethod($1, $3); } method_rest { $$.kind = FunctionDeclaration; }
|   Case identifier ";"         { rules.classes.EnumCase($1, $2); $$.kind = EValue::ClassConstant; }
|   Case identifier "=" expr ";" { rules.classes.EnumCase($1, $2, $4); $$.kind = EValue::ClassConstant; }
;

constants_of_class:
    class_constants
|   constant_type class_constants
;

constant_type:
    type                        { rules.Needs(EFeature::ConstantType, $1); rules.classes.ConstantType($1); }
|   static_type                 { rules.Needs(EFeature::ConstantType, $1); }
;

class_constants:
    class_constant
|   class_constants "," class_constant
;

class_constant:
    Identifier "=" expr         { rules.classes.ClassConstant($1, $3); }
|   word "=" expr               { rules.versions.MemberName($1); rules.classes.ClassConstant($1, $3); }
;

method_rest:
    "(" parameters ")" return_type ";" { rules.functions.NoBody($5); rules.functions.EndFunction(); }
|   "(" parameters ")" return_type "{" { rules.functions.BeginBody($5); } inner_list "}" { rules.functions.EndFunction(); }
;

properties_start:
    modifiers                   { rules.classes.BeginProperties(); }
|   modifiers type              { rules.Needs(EFeature::PropertyType, $2); rules.classes.BeginProperties($2); }
;

modifiers:
    modifier
|   modifiers member_modifier   { rules.classes.MemberModifier($2); }
|   modifiers Var               { rules.classes.MemberModifier($2); }
;

modifier:
    member_modifier             { rules.classes.BeginModifiers(); rules.classes.MemberModifier($1); }
|   Var                         { rules.classes.BeginModifiers(); rules.classes.MemberModifier($1); }
;

member_modifier:
    Access
|   AccessSet                   { rules.Needs(EFeature::AccessSet, $1); }
|   Static
|   Abstract
|   Final
|   Readonly                    { rules.Needs(EFeature::ReadonlyProperty, $1); }
;

properties:
    property
|   properties "," property
;

property:
    Variable                    { rules.classes.Property($1); }
|   Variable "=" expr           { rules.classes.Property($1, $3); }
;

hooks:
    %empty
|   hooks hook
|   hooks attributes hook       { rules.attributes.Target($2, TargetMethod); }
;

hook:
    hook_head ";"               { rules.functions.NoBody($2); rules.functions.EndFunction(); }
|   hook_head "=>" expr ";"     { rules.functions.EndFunction(); }
|   hook_head "{"               { rules.functions.BeginBody($2); } inner_list "}" { rules.functions.EndFunction(); }
;

hook_head:
    ref Identifier              { rules.classes.NoModifiers(); rules.functions.BeginHook($2); } hook_parameters
|   modifiers ref Identifier    { rules.functions.BeginHook($3); } hook_parameters
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
|   parameter_list ","          { rules.Needs(EFeature::ParameterComma, $2); }
;

parameter_list:
    parameter
|   parameter_list "," parameter
;

parameter:
    parameter_head              { rules.functions.EndParameter(); }
|   parameter_head "=" expr     { rules.functions.DefaultValue($3); rules.functions.EndParameter(); }
|   promoted                    { rules.functions.EndParameter(); }
|   promoted "=" expr           { rules.functions.DefaultValue($3); rules.functions.EndParameter(); }
|   promoted "{"                { rules.functions.BeginParameterHooks($2); } hooks "}" { rules.functions.EndParameter(); }
|   promoted "=" expr "{"       { rules.functions.DefaultValue($3); rules.functions.BeginParameterHooks($4); } hooks "}" { rules.functions.EndParameter(); }
;

parameter_head:
    bare_parameter
|   attributes bare_parameter   { rules.attributes.Target($1, TargetParameter); }
;

/* Only what becomes a property may have hooks: elsewhere a brace means that `)` is missing. */
promoted:
    modifiers                   { rules.functions.BeginPromotion($1); } bare_parameter { rules.functions.EndPromotion(); }
|   attributes modifiers        { rules.functions.BeginPromotion($2); } bare_parameter { rules.attributes.Target($1, TargetParameter | TargetProperty); rules.functions.EndPromotion(); }
;

bare_parameter:
    Variable                    { rules.functions.Parameter($1); }
|   BitAndBeforeVariable Variable { rules.functions.ReferenceParameter($2); }
|   "..." Variable              { rules.functions.Variadic($1, $2); }
|   BitAndBeforeVariable "..." Variable { rules.functions.Variadic($2, $3); }
|   type Variable               { rules.functions.Parameter($2); rules.types.ParameterType($1); }
|   type BitAndBeforeVariable Variable { rules.functions.ReferenceParameter($3); rules.types.ParameterType($1); }
|   type "..." Variable         { rules.functions.Variadic($2, $3); rules.types.ParameterType($1); }
|   type BitAndBeforeVariable "..." Variable { rules.functions.Variadic($3, $4); rules.types.ParameterType($1); }
;

return_type:
    %empty
|   ":" type                    { rules.Needs(EFeature::ReturnType, $1); rules.types.ReturnType($2); }
|   ":" static_type             { rules.Needs(EFeature::StaticReturn, $1); rules.types.ReturnType($2); }
;

type:
    type_atom
|   "?" type_atom               { rules.Needs(EFeature::NullableType, $1); $$ = rules.types.Nullable($1, $2); }
|   union_type
|   intersection_type
;

type_atom:
    name                        { $$ = rules.types.TypeName($1); }
|   Array                       { $$ = rules.types.TypeName($1); }
|   Callable                    { $$ = rules.types.TypeName($1); }
;

union_member:
    type_atom
|   "(" intersection_type ")"   { rules.Needs(EFeature::MixedType, $1); const auto first = $1.first; $$ = $2; $$.first = first; }
;

union_type:
    union_member "|" union_member { rules.Needs(EFeature::UnionType, $2); $$ = rules.types.Union($1, $3); }
|   union_type "|" union_member { $$ = rules.types.Union($1, $3); }
;

intersection_type:
    type_atom "&" type_atom     { rules.Needs(EFeature::IntersectionType, $2); $$ = rules.types.Intersection($1, $3); }
|   intersection_type "&" type_atom { $$ = rules.types.Intersection($1, $3); }
;

static_type:
    Static                      { $$ = rules.types.TypeName($1); }
|   "?" Static                  { $$ = rules.types.Nullable($1, rules.types.TypeName($2)); }
|   static_union
|   Static "&" type_atom        { $$ = rules.types.Intersection(rules.types.TypeName($1), $3); }
|   type_atom "&" Static        { $$ = rules.types.Intersection($1, rules.types.TypeName($3)); }
;

static_union:
    Static "|" union_member     { $$ = rules.types.Union(rules.types.TypeName($1), $3); }
|   union_member "|" Static     { $$ = rules.types.Union($1, rules.types.TypeName($3)); }
|   union_type "|" Static       { $$ = rules.types.Union($1, rules.types.TypeName($3)); }
|   static_union "|" union_member { $$ = rules.types.Union($1, $3); }
;

attributes:
    attribute_group
|   attributes attribute_group
;

attribute_group:
    AttributeStart attribute_list trailing_comma "]" { rules.lists.Attribute($1, $4); }
;

attribute_list:
    attribute
|   attribute_list "," attribute
;

attribute:
    class_name                  { rules.attributes.Name($1); }
|   class_name arguments        { rules.attributes.Name($1); rules.lists.AttributeArguments($2); }
;

expr:
    primary
|   Number                      { $$ = rules.values.NumberValue($1); }
|   HeredocStart HeredocEnd     { rules.versions.HeredocEnd($2); $$ = rules.values.TextValue($1); $$.kind = Literal; }
|   HeredocStart string_parts HeredocEnd { rules.versions.HeredocEnd($3); $$ = rules.values.Joined($1, $2); }
|   New class_reference         { $$ = rules.values.NewValue($1, $2); }
|   Clone expr                  { $$ = rules.values.Computed($1); }
|   list_literal "=" expr       { rules.targets.Assign($1, $2, $3); $$ = rules.values.Computed($1); }
|   primary "=" expr            { rules.targets.Assign($1, $2, $3); $$ = rules.values.Computed($1); }
|   primary "=" "&" primary     { rules.targets.AssignReference($1, $2, $4); $$ = rules.values.Computed($1); }
|   primary "=" BitAndBeforeVariable primary { rules.targets.AssignReference($1, $2, $4); $$ = rules.values.Computed($1); }
|   primary "=" "&" New class_reference { rules.Needs(EFeature::NewByReference, $4); $$ = rules.values.Computed($1); }
|   primary OpAssign expr       { rules.versions.Operator($2); rules.targets.Change($1, $2); $$ = rules.values.Computed($1); }
|   primary CoalesceAssign expr { rules.Needs(EFeature::CoalesceAssign, $2); rules.targets.Change($1, $2); $$ = rules.values.Computed($1); }
|   primary IncDec              { rules.targets.Change($1, $2); $$ = rules.values.Computed($1); }
|   IncDec primary              { rules.targets.Change($2, $1); $$ = rules.values.Computed($1); }
|   expr BooleanOr expr         { $$ = rules.values.Logic($1, $3, true); }
|   expr BooleanAnd expr        { $$ = rules.values.Logic($1, $3, false); }
|   expr Or expr                { $$ = rules.values.Logic($1, $3, true); }
|   expr And expr               { $$ = rules.values.Logic($1, $3, false); }
|   expr Xor expr               { $$ = rules.values.Combined($1, $3, TypeBool); }
|   expr "|" expr               { $$ = rules.values.Bitwise($1, $3); }
|   expr "&" expr               { $$ = rules.values.Bitwise($1, $3); }
|   expr BitAndBeforeVariable expr { $$ = rules.values.Bitwise($1, $3); }
|   expr BitXor expr            { $$ = rules.values.Bitwise($1, $3); }
|   expr Equality expr          { $$ = rules.values.Compared($1, $3); }
|   expr Comparison expr        { $$ = rules.values.Combined($1, $3, TypeBool); }
|   expr Pipe expr              { rules.Needs(EFeature::Pipe, $2); $$ = rules.values.Binary($1, $3); $$.flags |= NotConstant; }
|   expr Dot expr               { $$ = rules.values.Combined($1, $3, TypeString); }
|   expr Shift expr             { $$ = rules.values.Calculated($1, $3); }
|   expr Additive expr          { $$ = rules.values.Calculated($1, $3); }
|   expr Multiplicative expr    { $$ = rules.values.Calculated($1, $3); }
|   expr Power expr             { rules.Needs(EFeature::Power, $2); $$ = rules.values.Calculated($1, $3); }
|   expr Coalesce expr          { rules.Needs(EFeature::Coalesce, $2); $$ = rules.values.Coalesced($1, $3); }
|   Additive expr %prec Complement { $$ = rules.values.Unary($1, $2); }
|   Not expr                    { $$ = rules.values.Unary($1, $2); }
|   Complement expr             { $$ = rules.values.Unary($1, $2); }
|   At expr                     { $$ = rules.values.Computed($1); }
|   Cast expr                   { $$ = rules.values.CastValue($1, $2); }
|   expr Instanceof instanceof_reference { rules.versions.InstanceOf($1); $$ = rules.values.Computed($1); }
|   expr "?" expr ":" expr      { $$ = rules.values.Ternary($1, $2, $3, $5); }
|   expr "?" ":" expr           { $$ = rules.values.ShortTernary($1, $2, $4); }
|   Isset "(" isset_list isset_comma ")" { $$ = rules.values.Computed($1); }
|   Empty "(" expr ")"          { rules.versions.Emptiness($3); $$ = rules.values.Computed($1); }
|   Include expr                { $$ = rules.values.Computed($1); }
|   Eval "(" expr ")"           { $$ = rules.values.Computed($1); }
|   Exit                        { $$ = rules.values.Computed($1); }
|   Exit arguments              { rules.lists.ExitArguments($2); $$ = rules.values.Computed($1); }
|   Backtick Backtick           { $$ = rules.values.Computed($1); }
|   Backtick string_parts Backtick { $$ = rules.values.Computed($1); }
|   Print expr                  { $$ = rules.values.Computed($1); }
|   Yield                       { rules.flow.YieldHere($1); $$ = rules.values.Computed($1); }
|   Yield expr                  { rules.flow.YieldValue($1); $$ = rules.values.Computed($1); }
|   Yield expr "=>" expr        { rules.flow.YieldValue($1); $$ = rules.values.Computed($1); }
|   YieldFrom expr              { rules.flow.YieldFrom($1); rules.flow.YieldHere($1); $$ = rules.values.Computed($1); }
|   Throw expr                  { rules.flow.ThrowHere($1); $$ = rules.values.Computed($1); }
|   closure                     { $$ = rules.values.ClosureValue($1); }
|   attributes closure          { rules.attributes.Target($1, TargetFunction); $$ = rules.values.ClosureValue($2); }
|   Static closure              { $$ = rules.values.StaticClosure($1, $2); }
|   attributes Static closure   { rules.attributes.Target($1, TargetFunction); $$ = rules.values.StaticClosure($2, $3); }
|   Match arguments "{" { rules.flow.MatchHead($1, $2); } match_arms "}" { rules.flow.EndMatch(); $$ = rules.values.Computed($1); }
;

isset_list:
    expr                        { rules.targets.IssetTarget($1); }
|   isset_list "," expr         { rules.targets.IssetTarget($3); }
;

closure:
    Function ref                { rules.functions.BeginClosure($1); } "(" parameters ")" lexical_variables return_type
    "{"                         { rules.functions.BeginBody($9); } inner_list "}" { rules.functions.EndFunction(); $$ = $1; $$.kind = $7.kind; }
|   Fn ref                      { rules.Needs(EFeature::ArrowFunction, $1); rules.functions.BeginClosure($1); } "(" parameters ")" return_type
    "=>"                        { rules.functions.BeginArrow(); } expr %prec ArrowFunction { rules.functions.EndFunction(); $$ = $1; $$.kind = Other; }
;

lexical_variables:
    %empty                      { $$.kind = Closure; }
|   Use "(" lexical_list ")"    { $$.kind = Other; }
|   Use "(" lexical_list "," ")" { rules.Needs(EFeature::ClosureUseComma, $4); $$.kind = Other; }
;

lexical_list:
    lexical_variable
|   lexical_list "," lexical_variable
;

lexical_variable:
    Variable                    { rules.functions.LexicalVariable($1); }
|   BitAndBeforeVariable Variable { rules.functions.LexicalVariable($2); }
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
|   Default trailing_comma "=>" expr { rules.flow.DefaultArm($1); }
;

primary:
    Variable                    { $$ = rules.values.VariableValue($1); }
|   Dollar dollar_rest          { $$ = rules.values.Computed($1); $$.kind = VariableVariable; }
|   name                        { $$ = rules.values.NameValue($1); }
|   MagicConstant               { $$ = rules.values.MagicValue($1); }
|   String                      { $$ = rules.values.TextValue($1); }
|   Quote string_parts Quote    { $$ = rules.values.Joined($1, $2); $$.kind = Text; }
|   "(" expr ")"                { $$ = rules.values.Grouped($1, $2); }
|   "[" elements "]"            { rules.Needs(EFeature::ShortArray, $1); $$ = rules.lists.ArrayValue($1, $2); }
|   Array "(" elements ")"      { $$ = rules.lists.ArrayValue($1, $3); $$.flags |= LongArray; }
|   primary "[" "]"             { $$ = rules.values.Dim($1, $2); rules.targets.Append($$, $2); }
|   primary "[" expr "]"        { $$ = rules.values.Dim($1, $2, $3); }
|   primary OffsetBrace expr "}" { rules.Needs(EFeature::OffsetBraces, $2); $$ = rules.values.Dim($1, $2, $3); }
|   primary arrow property_name { $$ = rules.values.Property($1, $2, $3); }
|   primary arguments           { $$ = rules.values.Call($1, $2); }
|   Readonly arguments          { $$ = rules.values.Computed($1); $$.kind = Call; }
|   Match arguments %prec OldCall { rules.Needs(EFeature::FunctionMatch, $1); $$ = rules.values.Computed($1); $$.kind = Call; }
|   Clone "(" clone_arguments ")" { rules.Needs(EFeature::CloneWith, $1); $$ = rules.values.Computed($1); $$.kind = Call; }
|   primary "::" Identifier     { $$ = rules.values.ClassConstant($1, $2, $3); }
|   primary "::" simple_variable { $$ = rules.values.StaticProperty($1, $2, $3); }
|   primary "::" "{" expr "}"   { $$ = rules.values.DynamicMember($1, $2); }
|   Static "::" Identifier      { $$ = rules.values.ClassConstant($1, $2, $3); }
|   Static "::" simple_variable { $$ = rules.values.StaticProperty($1, $2, $3); }
|   Static "::" "{" expr "}"    { $$ = rules.values.DynamicMember($1, $2); }
|   New class_reference arguments { $$ = rules.values.NewValue($1, $2, $3); }
|   New anonymous_class         { $$ = rules.values.Computed($1); $$.kind = NewObject; }
|   New attributes anonymous_class { rules.attributes.Target($2, TargetClass); $$ = rules.values.Computed($1); $$.kind = NewObject; }
;

anonymous_class:
    anonymous_start             { rules.classes.BeginClass(AnonymousKind, $1, $1); } extends implements class_body
|   anonymous_start arguments   { rules.classes.BeginClass(AnonymousKind, $1, $1); } extends implements class_body
;

anonymous_start:
    Class                       { rules.Needs(EFeature::AnonymousClass, $1); rules.classes.NoModifiers(); }
|   class_modifiers Class       { rules.classes.AnonymousModifiers($1); }
;

arrow:
    Arrow
|   NullsafeArrow               { rules.Needs(EFeature::Nullsafe, $1); }
;

property_name:
    Identifier
|   simple_variable
|   "{" expr "}"                { $$.kind = Other; }
;

simple_variable:
    Variable                    { $$ = rules.values.VariableValue($1); }
|   Dollar dollar_rest          { $$ = rules.values.Computed($1); $$.kind = VariableVariable; }
;

dollar_rest:
    Variable
|   "{" expr "}"
|   Dollar dollar_rest
;

class_reference:
    plain_reference
|   "(" expr ")"                { rules.Needs(EFeature::NewExpression, $1); rules.values.ClassValue($2); $$.kind = Other; }
;

instanceof_reference:
    plain_reference
|   "(" expr ")"                { rules.Needs(EFeature::InstanceofExpression, $1); }
;

plain_reference:
    name                        { rules.values.ClassReference($1); $$.kind = Name; }
|   Static                      { rules.values.ClassReference($1); $$.kind = StaticName; }
|   new_variable                { $$.kind = Other; }
;

new_variable:
    simple_variable
|   new_variable "[" "]"
|   new_variable "[" expr "]"
|   new_variable OffsetBrace expr "}" { rules.Needs(EFeature::OffsetBraces, $2); }
|   new_variable arrow property_name
|   name "::" simple_variable
|   Static "::" simple_variable
|   new_variable "::" simple_variable
;

arguments:
    "(" ")"                     { $$ = rules.lists.NoArguments($1); }
|   "(" argument_list ")"       { $$ = rules.lists.EndArguments($1, $2); }
|   "(" argument_list "," ")"   { rules.Needs(EFeature::ArgumentComma, $3); $$ = rules.lists.EndArguments($1, $2); }
|   "(" "..." ")"               { rules.Needs(EFeature::CallableSyntax, $2); $$ = rules.lists.CallableSyntax($1); }
;

argument_list:
    argument
|   argument_list "," argument  { $$ = rules.lists.NextArgument($1, $3); }
;

argument:
    expr                        { $$ = rules.lists.PlainArgument($1); }
|   Identifier ":" expr         { rules.Needs(EFeature::NamedArgument, $2); $$ = rules.lists.NamedArgument($1, $3); }
|   word ":" expr               { rules.Needs(EFeature::NamedArgument, $2); $$ = rules.lists.NamedArgument($1, $3); }
|   "..." expr                  { $$ = rules.lists.UnpackedArgument($1, $2); }
|   BitAndBeforeVariable primary { rules.Needs(EFeature::CallReference, $1); $$ = rules.lists.PlainArgument($2); }
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
|   elements "," element        { $$ = rules.lists.NextElement($1, $2, $3); }
;

element:
    %empty                      { $$ = rules.lists.NoElement(); }
|   expr                        { $$ = rules.lists.Element($1); }
|   expr "=>" expr              { $$ = rules.lists.KeyedElement($1, $3); }
|   BitAndBeforeVariable primary { $$ = rules.lists.ReferenceElement($2); }
|   "&" primary                 { $$ = rules.lists.ReferenceElement($2); }
|   expr "=>" BitAndBeforeVariable primary { $$ = rules.lists.KeyedReferenceElement($1, $4); }
|   expr "=>" "&" primary       { $$ = rules.lists.KeyedReferenceElement($1, $4); }
|   "..." expr                  { $$ = rules.lists.SpreadElement($1, $2); }
|   list_literal                { $$ = rules.lists.ListElement($1); }
|   expr "=>" list_literal      { $$ = rules.lists.KeyedListElement($1, $3); }
;

list_literal:
    List "(" elements ")"       { $$ = rules.lists.ListValue($1, $3); }
;

string_parts:
    string_part
|   string_parts string_part    { $$ = rules.values.StringParts($1, $2); }
;

string_part:
    StringPart                  { $$.kind = Literal; }
|   Variable                    { $$ = rules.values.CodeInString($1); }
|   Variable "[" StringName "]" { rules.versions.OffsetInString($3); $$ = rules.values.CodeInString($1); }
|   Variable "[" Variable "]"   { $$ = rules.values.CodeInString($1); }
|   Variable Arrow Identifier   { $$ = rules.values.CodeInString($1); }
|   Variable NullsafeArrow Identifier { $$ = rules.values.CodeInString($1); }
|   DollarBrace expr "}"        { $$ = rules.values.CodeInString($1); }
|   DollarBrace StringVariable "}" { $$ = rules.values.CodeInString($1); }
|   DollarBrace StringVariable "[" expr "]" "}" { $$ = rules.values.CodeInString($1); }
|   CodeBrace primary "}"       { rules.values.InBraces($2); $$ = rules.values.CodeInString($1); }
;

name:
    Identifier
|   QualifiedName
|   FullyQualifiedName
|   RelativeName
;

class_name:
    name                        { rules.values.ClassReference($1); }
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

namespace Kesh::CodeAnalyzer {

namespace {

constexpr TGrammarSymbol T_None = -1; ///< what the grammar never sees

constexpr auto Tables = [] {
    SGrammarTables<std::size(pact), TokenCount, std::size(pgoto), std::size(r1), std::size(table)> tables;
    tables.entries.fill({-1, 0});
    for (std::size_t i = 0; i < std::size(table); ++i)
        tables.entries[tables.Before + i] = {check[i], table[i] == ErrorEntry ? std::int16_t{0} : table[i]};
    for (std::size_t state = 0; state < std::size(pact); ++state) {
        auto& row = tables.states[state];
        row.begin = pact[state] == AnyToken ? tables.EmptyRow : tables.RowAt(pact[state]);
        row.otherwise = static_cast<std::int16_t>(state == FinalState ? 0 : -defact[state]);
    }
    for (std::size_t left = 0; left < std::size(pgoto); ++left)
        tables.gotos[left] = {tables.RowAt(pgoto[left]), defgoto[left]};
    for (std::size_t rule = 0; rule < std::size(r1); ++rule) {
        tables.rules[rule].left = static_cast<std::uint16_t>(r1[rule] - TokenCount);
        tables.rules[rule].length = static_cast<std::uint16_t>(r2[rule]);
    }
    return tables;
}();

constexpr auto Actions = [] {
    std::array<TGrammarAction*, std::size(r1)> actions{};
    for (const auto& [rule, action] : ActionsOfRules)
        actions[rule] = action;
    return actions;
}();

} // namespace

// Kinds that are alike to the grammar share a symbol.
constexpr TGrammarSymbol GrammarSymbols[] = {
#define PHP_TOKEN(kind, tokenClass, symbol, text) T_##symbol,
#include "Kesh/SyntaxParser/PhpTokens.def"
#undef PHP_TOKEN
};

TGrammarSymbol OffsetBraceSymbol()
{
    return T_OffsetBrace;
}

int CGrammarProbe::SymbolAt(std::size_t depth) const
{
    return stos[StateAt(depth)];
}

bool CGrammarProbe::ShiftsAt(std::size_t depth, TGrammarSymbol symbol) const
{
    return Tables.Action(StateAt(depth), symbol) > 0;
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
        const int action = Tables.Action(StateAt(Depth()), symbol);
        if (action == 0)
            return false;
        if (action > 0) {
            m_above.push_back(static_cast<std::int16_t>(action));
            return true;
        }
        const auto rule = Tables.rules[static_cast<std::size_t>(-action)];
        Drop(rule.length);
        m_above.push_back(static_cast<std::int16_t>(Tables.Goto(StateAt(Depth()), rule)));
    }
}

CPhpGrammarParser::CPhpGrammarParser(CPhpRules& rules) : m_rules(rules)
{
    Grow();
}

void CPhpGrammarParser::Begin()
{
    m_top = m_stack.data();
    m_top->state = 0;
    m_top = ReduceWhateverFollows(m_top);
}

bool CPhpGrammarParser::Push(TGrammarSymbol symbol, std::uint32_t token)
{
    SGrammarPlace* top = m_top; // for all that the compiler knows, an action could change the member
    int action;
    while ((action = Tables.Action(top->state, symbol)) < 0)
        top = Reduce(-action, top);
    if (action > 0) {
        top[1].value = ValueOfToken(token);
        top = ReduceWhateverFollows(Put(action, top));
    }
    m_top = top;
    return action > 0;
}

inline SGrammarPlace* CPhpGrammarParser::Reduce(int number, SGrammarPlace* top)
{
    const auto rule = Tables.rules[static_cast<std::size_t>(number)];
    SGrammarPlace* const below = top - rule.length;
    if (TGrammarAction* const act = Actions[static_cast<std::size_t>(number)])
        act(top, below[1].value, m_rules);
    return Put(Tables.Goto(below->state, rule), below);
}

inline SGrammarPlace* CPhpGrammarParser::ReduceWhateverFollows(SGrammarPlace* top)
{
    while (const int rule = Tables.RuleOfState(top->state))
        top = Reduce(rule, top);
    return top;
}

// The state above the top, of which the value is there already.
inline SGrammarPlace* CPhpGrammarParser::Put(int state, SGrammarPlace* top)
{
    if (top == m_limit) [[unlikely]] {
        m_top = top;
        Grow();
        top = m_top;
    }
    top[1].state = static_cast<std::int16_t>(state);
    return top + 1;
}

void CPhpGrammarParser::Grow()
{
    constexpr std::size_t Least = 256;
    const std::size_t depth = m_stack.empty() ? 0 : Depth();
    m_stack.resize(std::max(Least, 2 * m_stack.size()));
    m_top = &m_stack[depth];
    m_limit = &m_stack.back() - 2; // an action may look at the value above the top
}

CGrammarProbe CPhpGrammarParser::Probe() const
{
    return {m_stack.data(), static_cast<std::ptrdiff_t>(Depth())};
}

bool CPhpGrammarParser::Accepts(TGrammarSymbol symbol) const
{
    return Probe().Take(symbol);
}

int CPhpGrammarParser::SymbolAt(std::size_t depth) const
{
    return stos[m_stack[depth].state];
}

bool CPhpGrammarParser::ShiftsAt(std::size_t depth, TGrammarSymbol symbol) const
{
    return Tables.Action(m_stack[depth].state, symbol) > 0;
}

} // namespace Kesh::CodeAnalyzer
