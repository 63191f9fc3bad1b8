#pragma once

#include "Application/Application.h"
#include "Application/HeadlessMainFrame.h"
#include "Application/PluginLoader.h"
#include "Application/Settings.h"
#include "Findings/Describe.h"
#include "LangSupport/Translations.h"
#include "RulesChoice.h"

#include <QCoreApplication>
#include <optional>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// What Qt needs of a process with timers and threads.
class CQtProcess
{
public:
    CQtProcess();

private:
    std::optional<QCoreApplication> m_application;
};

/// A host without a window that has loaded the code validator. Throws Base::CWorkError when that fails.
class CSession
{
public:
    CSession();
    /// Has files checked by their rules, and names by the project's own.
    void UseRules(TProjectRules rules);

    Host::CApplication& Application() { return m_application; }
    Host::CPlugin& Plugin() { return *m_plugin; }

    /// What the plug-in knows now of a file, by the rules that are used.
    Findings::SFileFindings FindingsOf(const Findings::SCheckedFile& checked);

private:
    CQtProcess m_process; ///< lives longest
    Host::CHeadlessMainFrame m_frame;
    Host::CMemorySettings m_settings;
    LangSupport::CTranslations m_translations; ///< none: messages stay as programs expect them
    Host::CApplication m_application;
    std::optional<Host::CPlugin> m_plugin;
    TProjectRules m_rules;
};

} // namespace Kesh::CommandLine
