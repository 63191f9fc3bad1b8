#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/SyntaxParser/Regions.h"

#include <vector>

namespace Kesh::CodeAnalyzer {

/// Whom a statement parser reports to: the driver, or a statement parser that contains it.
class CParentParser
{
public:
    /// The child's statement is complete at `region`. `redispatch` 0: the region belonged to it; 1: the
    /// region must be delivered again to whatever comes next.
    virtual void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) = 0;
    /// The child needs ordinary statements inside its own and is suspended until they end. `offer` 1:
    /// `region` is the first region of the nested statements.
    virtual void OnParsingContinue(SyntaxParser::CRegion* /*region*/, int /*offer*/) {}
    /// The child found a syntax error at `region` and is idle again. `skipToEnd` 1: drop what follows up to
    /// the next `;`.
    virtual void OnStructureError(int code, SyntaxParser::CRegion* region, int skipToEnd) = 0;
    /// Hands finished records upwards.
    virtual void AddErrors(const std::vector<SCAError>& errors) = 0;

protected:
    ~CParentParser() = default;
};

} // namespace Kesh::CodeAnalyzer
