#pragma once

#include "Grammar/GrammarDiagnostic.h"

#include <vector>

namespace Kesh::CodeAnalyzer {

/// Makes one list of what the statement parsers and the grammar check say of a document: errors are those of
/// the grammar check, which passes nothing wrong and nothing right as wrong, in the order of the text; the
/// statement parsers' warnings stay behind them in the order in which they were delivered.
void MergeRecords(std::vector<SDiagnostic>& records, const std::vector<SGrammarDiagnostic>& diagnostics);

} // namespace Kesh::CodeAnalyzer
