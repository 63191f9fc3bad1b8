#pragma once

#include "Findings/ProjectRules.h"

#include <memory>

namespace Kesh::CodeAnalyzer {
class IGrammarCheck;
class IMarkupCheck;
} // namespace Kesh::CodeAnalyzer
namespace Kesh::SyntaxParser {
class CParserComponent;
} // namespace Kesh::SyntaxParser

namespace Kesh::Findings {

/// Whether a document that was opened under the one need not be opened anew under the other.
bool OpenAlike(const SRules& one, const SRules& other);

/// Has each file parsed and checked by its own rules from now on: what is PHP whatever its ending, its
/// short tags and own names, the grammar check and its PHP version, the markup check (null: there is no such
/// check). GUI thread.
void ApplyRules(const std::shared_ptr<const CProjectRules>& rules, SyntaxParser::CParserComponent& parser,
                CodeAnalyzer::IGrammarCheck* grammar, CodeAnalyzer::IMarkupCheck* markup);

} // namespace Kesh::Findings
