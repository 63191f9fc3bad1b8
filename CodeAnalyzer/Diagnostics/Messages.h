#pragma once

#include "Kesh/CodeAnalyzer/IDiagnosticTexts.h"

#include <string>

namespace Kesh::CodeAnalyzer {

/// What can be said of a code alone, in the user's language; "Udefined error" for a code that is none. Any
/// thread.
std::wstring TitleOf(std::int32_t code);
/// All that there is to say of a diagnostic; its title where some argument of the message is missing.
std::wstring MessageOf(const SDiagnostic& diagnostic);
/// What is at a related place.
std::wstring MessageOf(const SRelatedPlace& place);

/// The same for a host.
class CDiagnosticTexts final : public IDiagnosticTexts
{
public:
    std::wstring GetTitle(std::int32_t code) override { return TitleOf(code); }
    std::wstring GetMessage(const SDiagnostic& diagnostic) override { return MessageOf(diagnostic); }
    std::wstring GetMessage(const SRelatedPlace& place) override { return MessageOf(place); }
};

} // namespace Kesh::CodeAnalyzer
