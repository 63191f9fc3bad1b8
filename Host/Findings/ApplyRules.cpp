#include "Findings/ApplyRules.h"

#include "Application/ParserComponent.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"

namespace Kesh::Findings {

SyntaxParser::SOwnNames OwnNamesOf(const Configuration::SConfiguration& settings)
{
    return {settings.tags, settings.attributes, settings.properties};
}

void ApplyRules(const std::shared_ptr<const CProjectRules>& rules, SyntaxParser::CParserComponent& parser,
                CodeAnalyzer::IGrammarCheck* grammar)
{
    parser.SetTakenForPhp([rules](const std::wstring& path) {
        const TRules file = rules->For(path);
        return !file->settings.include.empty() && file->settings.Includes(path);
    });
    if (grammar)
        grammar->SetChoices([rules](const std::wstring& path) {
            const TRules file = rules->For(path);
            return CodeAnalyzer::SGrammarChoice{file->settings.grammar.value_or(true),
                                                file->settings.phpVersion.value_or(0)};
        });
}

} // namespace Kesh::Findings
