#include "Findings/ApplyRules.h"

#include "Application/ParserComponent.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"

namespace Kesh::Findings {

bool OpenAlike(const SRules& one, const SRules& other)
{
    return one.settings.shortOpenTag == other.settings.shortOpenTag &&
           OwnNamesOf(one.settings) == OwnNamesOf(other.settings);
}

void ApplyRules(const std::shared_ptr<const CProjectRules>& rules, SyntaxParser::CParserComponent& parser,
                CodeAnalyzer::IGrammarCheck* grammar, CodeAnalyzer::IMarkupCheck* markup)
{
    parser.SetFileChoices(
        {[rules](const std::wstring& path) {
             const TRules file = rules->For(path);
             return !file->settings.include.empty() && file->settings.Includes(path);
         },
         [rules](const std::wstring& path) { return rules->For(path)->settings.shortOpenTag.value_or(true); },
         [rules](const std::wstring& path) { return rules->For(path)->names; }});
    if (grammar)
        grammar->SetChoices([rules](const std::wstring& path) {
            const TRules file = rules->For(path);
            return CodeAnalyzer::SGrammarChoice{file->settings.grammar.value_or(true),
                                                file->settings.phpVersion.value_or(0), file->phpVersionFrom};
        });
    if (markup)
        markup->SetChoices(
            [rules](const std::wstring& path) { return rules->For(path)->settings.markup.value_or(true); });
}

} // namespace Kesh::Findings
