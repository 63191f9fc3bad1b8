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

} // namespace

void MergeRecords(std::vector<SCAError>& errors, const std::vector<SGrammarDiagnostic>& diagnostics)
{
    const SGrammarDiagnostic* first = nullptr;
    for (const SGrammarDiagnostic& diagnostic : diagnostics)
        if (diagnostic.stopsParse && (!first || diagnostic.stop < first->stop))
            first = &diagnostic;
    std::erase_if(errors, [&](const SCAError& error) {
        if (error.type != SeverityError)
            return false;
        return !first || error.pos.start < first->stop ||
               std::any_of(diagnostics.begin(), diagnostics.end(),
                           [&](const SGrammarDiagnostic& diagnostic) { return IsAbout(error, diagnostic); });
    });
    for (const SGrammarDiagnostic& diagnostic : diagnostics)
        errors.push_back(diagnostic.error);
    std::stable_sort(errors.begin(), errors.end(),
                     [](const SCAError& a, const SCAError& b) { return a.pos.start < b.pos.start; });
}

} // namespace Kesh::CodeAnalyzer
