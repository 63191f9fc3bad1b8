#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

namespace Kesh::CodeAnalyzer {

/// What the grammar check has found, with what there is to say beyond the record.
struct SGrammarDiagnostic
{
    SCAError error;
    bool stopsParse = true; ///< false: a rule is broken that the grammar does not know
    SDetails details;
};

} // namespace Kesh::CodeAnalyzer
