#include "GrammarChoice.h"

#include "Configuration/Composer.h"
#include "Configuration/Configuration.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"

namespace Kesh::Workbench {

void ChooseGrammar(CodeAnalyzer::IGrammarCheck& grammar, bool wanted, const std::wstring& folder)
{
    grammar.SetEnabled(wanted);
    grammar.SetPhpVersion(0);
    if (folder.empty())
        return;
    grammar.SetPhpVersion(Configuration::ComposerPhpVersion(folder).value_or(0));
    const std::wstring file = Configuration::FindConfiguration(folder);
    if (file.empty())
        return;
    const Configuration::SConfiguration settings = Configuration::ReadConfiguration(file);
    grammar.SetEnabled(wanted && settings.grammar.value_or(true));
    if (settings.phpVersion)
        grammar.SetPhpVersion(*settings.phpVersion);
}

} // namespace Kesh::Workbench
