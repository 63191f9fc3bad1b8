#pragma once

#include "Configuration/Configuration.h"

namespace Kesh::CodeAnalyzer {
class IGrammarCheck;
}
namespace Kesh::SyntaxParser {
class CParserComponent;
}

namespace Kesh::Configuration {

/// Tells the parsing service, and the plug-in's check against the whole grammar (null: it has none), what a
/// project wants. Documents opened before keep the names they were opened with until they are suspended and
/// resumed; checks that run go on as they began. GUI thread.
void Apply(const SConfiguration& configuration, SyntaxParser::CParserComponent& parser,
           CodeAnalyzer::IGrammarCheck* grammar);

} // namespace Kesh::Configuration
