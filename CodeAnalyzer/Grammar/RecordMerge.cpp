#include "Grammar/RecordMerge.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Kesh::CodeAnalyzer {

void MergeRecords(std::vector<SDiagnostic>& records, const std::vector<SGrammarDiagnostic>& diagnostics)
{
    // Whether a program is right is for the grammar to say; warnings are not about that.
    std::erase_if(records, [](const SDiagnostic& record) { return record.error.type == SeverityError; });
    std::vector<SDiagnostic> found;
    found.reserve(diagnostics.size());
    for (const SGrammarDiagnostic& diagnostic : diagnostics)
        found.push_back({diagnostic.error, diagnostic.details});
    records.insert(records.begin(), std::make_move_iterator(found.begin()),
                   std::make_move_iterator(found.end()));
}

} // namespace Kesh::CodeAnalyzer
