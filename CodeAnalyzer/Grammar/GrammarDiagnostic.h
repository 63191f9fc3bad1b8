#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

namespace Kesh::CodeAnalyzer {

/// What the grammar check has found, with what there is to say beyond the record.
struct SGrammarDiagnostic
{
    SCAError error;
    bool stopsParse = true; ///< false: a rule is broken that the grammar does not know
    /// The first token with which no correct program goes on; it may lie behind the place of the error.
    SyntaxParser::CIterator stop;
    /// Whether a small repair let the parse go on, so that what follows is judged as surely as what came
    /// before; else the statement was given up.
    bool repaired = true;
    /// Where the check has found its feet again: what lies between is about the same mistake.
    SyntaxParser::CIterator resumed;
    SDetails details;
};

} // namespace Kesh::CodeAnalyzer
