#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Records and details apart, as receivers take them; no details where nothing is known of any record.
inline std::pair<std::vector<SCAError>, TDetails> Apart(std::vector<SDiagnostic> diagnostics)
{
    std::vector<SCAError> errors;
    auto details = std::make_shared<std::vector<SDetails>>();
    bool any = false;
    errors.reserve(diagnostics.size());
    details->reserve(diagnostics.size());
    for (SDiagnostic& diagnostic : diagnostics) {
        errors.push_back(diagnostic.error);
        any |= !diagnostic.details.IsEmpty();
        details->push_back(std::move(diagnostic.details));
    }
    return {std::move(errors), any ? TDetails(std::move(details)) : nullptr};
}

/// The other way round.
inline std::vector<SDiagnostic> Joined(const std::vector<SCAError>& errors, const TDetails& details)
{
    std::vector<SDiagnostic> diagnostics(errors.size());
    for (std::size_t i = 0; i < errors.size(); ++i) {
        diagnostics[i].error = errors[i];
        if (details)
            diagnostics[i].details = (*details)[i];
    }
    return diagnostics;
}

} // namespace Kesh::CodeAnalyzer
