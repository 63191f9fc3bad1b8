#pragma once

#include "Findings/ProjectRules.h"

#include <memory>

namespace Kesh::CodeAnalyzer {
class IGrammarCheck;
class IMarkupCheck;
} // namespace Kesh::CodeAnalyzer
namespace Kesh::SyntaxParser {
class CParserComponent;
struct SOwnNames;
} // namespace Kesh::SyntaxParser

namespace Kesh::Findings {

SyntaxParser::SOwnNames OwnNamesOf(const Configuration::SConfiguration& settings);

/// Has each file parsed and checked by its own rules from now on: what is PHP whatever its ending, the
/// grammar check and its PHP version, the markup check (null: there is no such check). GUI thread.
void ApplyRules(const std::shared_ptr<const CProjectRules>& rules, SyntaxParser::CParserComponent& parser,
                CodeAnalyzer::IGrammarCheck* grammar, CodeAnalyzer::IMarkupCheck* markup);

} // namespace Kesh::Findings
