#pragma once

#include <string>

namespace Kesh::CodeAnalyzer {
class IGrammarCheck;
}

namespace Kesh::Workbench {

/// Asks for the check against PHP's whole grammar as the user and the project in `folder` want it: its
/// settings file may turn it off, and name the PHP version, which else its composer.json does. `folder` may
/// be empty. Throws Base::CWorkError for a settings file that cannot be read; the check is then as without
/// one.
void ChooseGrammar(CodeAnalyzer::IGrammarCheck& grammar, bool wanted, const std::wstring& folder);

} // namespace Kesh::Workbench
