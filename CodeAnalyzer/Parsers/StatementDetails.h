#pragma once

#include "Grammar/GrammarTokens.h"
#include "Kesh/CodeAnalyzer/Diagnostic.h"

namespace Kesh::CodeAnalyzer {

/// What fixes a record of the statement parsers, as far as its code tells. `tokens` are those of the text up
/// to the record at least.
SDetails StatementDetails(const SCAError& error, const CGrammarTokens& tokens);

} // namespace Kesh::CodeAnalyzer
