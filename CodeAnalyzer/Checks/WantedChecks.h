#pragma once

#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"

namespace Kesh::CodeAnalyzer {

class CTemplateHalves;

/// The checks that a host may ask for, and what it wants of each; null: there is no such check. Nothing is
/// owned.
struct SWantedChecks
{
    const IGrammarCheck* grammar = nullptr;
    const IMarkupCheck* markup = nullptr;
    CTemplateHalves* halves = nullptr; ///< where a check of a whole project collects them
};

} // namespace Kesh::CodeAnalyzer
