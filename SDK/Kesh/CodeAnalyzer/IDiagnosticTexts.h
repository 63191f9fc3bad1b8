#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <string>

namespace Kesh::CodeAnalyzer {

/// What diagnostics say, in the user's language. Any thread.
class IDiagnosticTexts
{
public:
    /// What can be said of a code alone.
    virtual std::wstring GetTitle(std::int32_t code) = 0;
    /// All that there is to say: what was found and what was expected, where that is known.
    virtual std::wstring GetMessage(const SDiagnostic& diagnostic) = 0;
    /// What is at a related place.
    virtual std::wstring GetMessage(const SRelatedPlace& place) = 0;

protected:
    ~IDiagnosticTexts() = default;
};

} // namespace Kesh::CodeAnalyzer
