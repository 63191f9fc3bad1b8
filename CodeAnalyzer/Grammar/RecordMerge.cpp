#include "Grammar/RecordMerge.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;

namespace {

/// Whether the record is about what the diagnostic is about.
bool IsAbout(const SCAError& error, const SGrammarDiagnostic& diagnostic)
{
    const CIterator begin = std::min(diagnostic.error.pos.start, diagnostic.stop);
    const CIterator end = std::max(diagnostic.resumed, diagnostic.error.pos.end);
    return begin <= error.pos.start && error.pos.start <= end;
}

/// Where the parse last stopped up to a place; null: nowhere yet.
const SGrammarDiagnostic* LastStop(const std::vector<SGrammarDiagnostic>& diagnostics, CIterator place)
{
    const SGrammarDiagnostic* last = nullptr;
    for (const SGrammarDiagnostic& diagnostic : diagnostics)
        if (diagnostic.stopsParse && diagnostic.stop <= place && (!last || last->stop <= diagnostic.stop))
            last = &diagnostic;
    return last;
}

} // namespace

void MergeRecords(std::vector<SDiagnostic>& records, const std::vector<SGrammarDiagnostic>& diagnostics)
{
    std::erase_if(records, [&](const SDiagnostic& record) {
        const SCAError& error = record.error;
        if (error.type != SeverityError)
            return false;
        const SGrammarDiagnostic* before = LastStop(diagnostics, error.pos.start);
        return !before || before->repaired ||
               std::any_of(diagnostics.begin(), diagnostics.end(),
                           [&](const SGrammarDiagnostic& diagnostic) { return IsAbout(error, diagnostic); });
    });
    for (const SGrammarDiagnostic& diagnostic : diagnostics)
        records.push_back({diagnostic.error, diagnostic.details});
    std::stable_sort(records.begin(), records.end(), [](const SDiagnostic& a, const SDiagnostic& b) {
        return a.error.pos.start < b.error.pos.start;
    });
}

} // namespace Kesh::CodeAnalyzer
