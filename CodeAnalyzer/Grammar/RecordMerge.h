#pragma once

#include "Grammar/GrammarDiagnostic.h"

#include <vector>

namespace Kesh::CodeAnalyzer {

/// Makes one list of what the statement parsers and the grammar check say of a document. The grammar passes
/// nothing wrong, so an error of the statement parsers before its first one is false, all of them where it
/// finds none; where both speak of the same statement the grammar does it better. Behind an error that a
/// small repair put right the grammar is as sure as before it; behind a statement that it gave up both may
/// speak. The errors come first, in the order of the text; the statement parsers' warnings stay behind them
/// in the order in which they were delivered.
void MergeRecords(std::vector<SDiagnostic>& records, const std::vector<SGrammarDiagnostic>& diagnostics);

} // namespace Kesh::CodeAnalyzer
