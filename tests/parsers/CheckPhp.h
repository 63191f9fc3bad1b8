#pragma once

#include "Application/HeadlessMainFrame.h"
#include "Application/Settings.h"
#include "Checks/CAGrammarCheck.h"
#include "LangSupport/Translations.h"
#include "Window/CAErrorsBar.h"
#include "Window/CAErrorsManager.h"
#include "Window/Display.h"

#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Tests {

/// Checks PHP texts through the real region source and the real errors store.
class CPhpCheck
{
public:
    CPhpCheck();

    /// The errors of a text in UTF-8, in the order in which they were reported.
    std::vector<CodeAnalyzer::SCAError> Errors(std::string_view text) { return ErrorsAfter({}, text); }
    /// The same, once the checker of the same document has seen earlier states of it, as while typing.
    std::vector<CodeAnalyzer::SCAError> ErrorsAfter(const std::vector<std::string_view>& earlier,
                                                    std::string_view text);
    /// The same as "code line:column-line:column", lines and columns 0-based, `w` before a warning's code;
    /// one space between errors. "<?php " is put before a text that has no tag and does not count in the
    /// columns of the first line.
    std::string Check(std::string_view text) { return CheckAfter({}, text); }
    std::string CheckAfter(const std::vector<std::string_view>& earlier, std::string_view text);

    /// Whether the grammar check takes part from now on; it does not at first.
    void SetGrammar(bool wanted) { m_grammarCheck.SetEnabled(wanted); }

private:
    Host::CHeadlessMainFrame m_frame;
    Host::CMemorySettings m_settings;
    LangSupport::CTranslations m_translations;
    Host::CDisplay m_display;
    Host::CApplication m_application{{m_frame, m_settings, m_translations, &m_display}};
    CodeAnalyzer::CCAGrammarCheck m_grammarCheck;
    CodeAnalyzer::CCAErrorsManager m_manager;
    CodeAnalyzer::CCAErrorsBar m_bar{&m_application, nullptr, &m_manager};
};

} // namespace Kesh::Tests
