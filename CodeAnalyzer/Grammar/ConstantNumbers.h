#pragma once

#include "Grammar/GrammarTokens.h"
#include "Grammar/GrammarValue.h"

#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// The types that a calculation may give that is done before the program runs; 0: not even that is known.
std::uint32_t TypeOfCalculation(const CGrammarTokens& tokens, const SGrammarValue& a,
                                SyntaxParser::EPhpTokenKind op, const SGrammarValue& b);
/// TypeInt or TypeFloat, as PHP reads a number.
std::uint32_t TypeOfNumber(std::wstring_view text);

} // namespace Kesh::CodeAnalyzer
