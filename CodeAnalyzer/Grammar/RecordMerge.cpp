#include "Grammar/RecordMerge.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;

namespace {

/// Finds what the grammar says of a place, however many diagnostics there are.
class CSweep
{
public:
    explicit CSweep(const std::vector<SGrammarDiagnostic>& diagnostics)
    {
        for (const SGrammarDiagnostic& diagnostic : diagnostics) {
            if (diagnostic.stopsParse)
                m_stops.push_back(&diagnostic);
            m_stretches.emplace_back(std::min(diagnostic.error.pos.start, diagnostic.stop),
                                     std::max(diagnostic.resumed, diagnostic.error.pos.end));
        }
        std::stable_sort(m_stops.begin(), m_stops.end(),
                         [](const auto* a, const auto* b) { return a->stop < b->stop; });
        std::sort(m_stretches.begin(), m_stretches.end());
        // The farthest end of those that begin up to each.
        for (std::size_t i = 1; i < m_stretches.size(); ++i)
            m_stretches[i].second = std::max(m_stretches[i].second, m_stretches[i - 1].second);
    }

    /// Where the parse last stopped up to a place; null: nowhere yet.
    const SGrammarDiagnostic* LastStop(CIterator place) const
    {
        const auto behind = std::upper_bound(m_stops.begin(), m_stops.end(), place,
                                             [](CIterator p, const auto* stop) { return p < stop->stop; });
        return behind == m_stops.begin() ? nullptr : *(behind - 1);
    }
    /// Whether the record is about what some diagnostic is about.
    bool IsAboutAny(const SCAError& error) const
    {
        const CIterator place = error.pos.start;
        const auto behind =
            std::upper_bound(m_stretches.begin(), m_stretches.end(), place,
                             [](CIterator p, const auto& stretch) { return p < stretch.first; });
        return behind != m_stretches.begin() && place <= (behind - 1)->second;
    }

private:
    std::vector<const SGrammarDiagnostic*> m_stops;
    std::vector<std::pair<CIterator, CIterator>> m_stretches;
};

} // namespace

void MergeRecords(std::vector<SDiagnostic>& records, const std::vector<SGrammarDiagnostic>& diagnostics)
{
    const CSweep sweep(diagnostics);
    std::erase_if(records, [&](const SDiagnostic& record) {
        const SCAError& error = record.error;
        if (error.type != SeverityError)
            return false;
        const SGrammarDiagnostic* before = sweep.LastStop(error.pos.start);
        return !before || before->repaired || sweep.IsAboutAny(error);
    });
    const auto warnings =
        std::stable_partition(records.begin(), records.end(),
                              [](const SDiagnostic& record) { return record.error.type == SeverityError; });
    const auto errors = warnings - records.begin() + static_cast<std::ptrdiff_t>(diagnostics.size());
    std::vector<SDiagnostic> found;
    found.reserve(diagnostics.size());
    for (const SGrammarDiagnostic& diagnostic : diagnostics)
        found.push_back({diagnostic.error, diagnostic.details});
    records.insert(warnings, std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
    std::stable_sort(
        records.begin(), records.begin() + errors,
        [](const SDiagnostic& a, const SDiagnostic& b) { return a.error.pos.start < b.error.pos.start; });
}

} // namespace Kesh::CodeAnalyzer
