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

void MergeRecords(std::vector<SCAError>& errors, const std::vector<SGrammarDiagnostic>& diagnostics)
{
    std::erase_if(errors, [&](const SCAError& error) {
        if (error.type != SeverityError)
            return false;
        const SGrammarDiagnostic* before = LastStop(diagnostics, error.pos.start);
        return !before || before->repaired ||
               std::any_of(diagnostics.begin(), diagnostics.end(),
                           [&](const SGrammarDiagnostic& diagnostic) { return IsAbout(error, diagnostic); });
    });
    const auto warnings = std::stable_partition(
        errors.begin(), errors.end(), [](const SCAError& error) { return error.type == SeverityError; });
    const auto first = warnings - errors.begin();
    std::vector<SCAError> found;
    found.reserve(diagnostics.size());
    for (const SGrammarDiagnostic& diagnostic : diagnostics)
        found.push_back(diagnostic.error);
    errors.insert(warnings, found.begin(), found.end());
    std::stable_sort(errors.begin(), errors.begin() + first + static_cast<std::ptrdiff_t>(found.size()),
                     [](const SCAError& a, const SCAError& b) { return a.pos.start < b.pos.start; });
}

} // namespace Kesh::CodeAnalyzer
