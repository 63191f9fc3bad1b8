# What Bison makes of PhpGrammar.y: the symbols, the tables, and the action of each rule. What goes by them is our own, at
# the end of PhpGrammar.y: every token of every document goes through it, and Bison's own parser, which can be asked for
# more, takes twice as long. Of Bison's macros (3.8) it needs no more than these.

m4_include(b4_skeletonsdir/[c.m4])

m4_define([b4_lhs_value], [result])
m4_define([b4_rhs_value], [top@{b4_subtract([$2], [$1])@}.value])

b4_output_begin([b4_parser_file_name])
b4_user_pre_prologue[]dnl
b4_percent_code_get[]dnl

namespace Kesh::CodeAnalyzer {

namespace {

b4_token_enums
m4_define([b4_integral_parser_table_define],
[constexpr std::int16_t $1@{@} = {$2};
])dnl
b4_parser_tables_define
constexpr std::size_t TokenCount = b4_tokens_number;
constexpr std::size_t FinalState = b4_final_state_number;
constexpr int AnyToken = b4_pact_ninf;   // in pact: the state looks at none
constexpr int ErrorEntry = b4_table_ninf; // in table

// A function each: one for all of them would save for each what the largest needs.
m4_pushdef([b4_case], [
// $3
void Action$1(@{@{maybe_unused@}@} const SGrammarPlace* top, @{@{maybe_unused@}@} SGrammarValue& result,
              @{@{maybe_unused@}@} CPhpRules& rules)
{
$2
}
])dnl
b4_user_actions
m4_popdef([b4_case])dnl
m4_pushdef([b4_case], [{$1, &Action$1},
])dnl
/// The rules that have an action of their own.
constexpr SGrammarAction ActionsOfRules@{@} = {
b4_user_actions};
m4_popdef([b4_case])dnl

} // namespace

} // namespace Kesh::CodeAnalyzer
b4_epilogue[]dnl
b4_output_end
