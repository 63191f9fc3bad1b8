#include "HtmlLexer.h"

#include <string>

namespace Kesh::Workbench {

namespace {

constexpr int PhpKeywords = 5; // as the lexer numbers its lists

constexpr const char* TodaysKeywords =
    " abstract clone enddeclare enum final fn from goto implements insteadof instanceof interface match "
    "mixed "
    "namespace never null parent readonly self throw trait true false try catch finally use void yield "
    "iterable "
    "callable const private protected public int float string bool object array static declare "
    "__namespace__ __trait__ __dir__ __halt_compiler";

} // namespace

const char* CHtmlLexer::keywords(int set) const
{
    const char* own = QsciLexerHTML::keywords(set);
    if (set != PhpKeywords || !own)
        return own;
    static const std::string all = std::string(own) + TodaysKeywords;
    return all.c_str();
}

} // namespace Kesh::Workbench
