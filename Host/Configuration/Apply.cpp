#include "Configuration/Apply.h"

#include "Application/ParserComponent.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"

namespace Kesh::Configuration {

void Apply(const SConfiguration& configuration, SyntaxParser::CParserComponent& parser,
           CodeAnalyzer::IGrammarCheck* grammar)
{
    parser.SetOwnNames({configuration.tags, configuration.attributes, configuration.properties});
    if (grammar) {
        grammar->SetEnabled(configuration.grammar.value_or(true));
        grammar->SetPhpVersion(configuration.phpVersion.value_or(0));
    }
}

} // namespace Kesh::Configuration
