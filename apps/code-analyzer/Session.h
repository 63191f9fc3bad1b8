#pragma once

#include "Application/Application.h"
#include "Application/HeadlessMainFrame.h"
#include "Application/PluginLoader.h"
#include "Application/Settings.h"
#include "LangSupport/Translations.h"
#include "Report.h"

#include <optional>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// A host without a window that has loaded the code validator. Throws Base::CWorkError when that fails.
class CSession
{
public:
    CSession();

    Host::CApplication& Application() { return m_application; }
    Host::CPlugin& Plugin() { return *m_plugin; }

    /// The records of a file that the plug-in has now; `shown` is how the user knows the file.
    std::vector<SRecord> RecordsOf(const std::wstring& file, const std::wstring& shown);

private:
    Host::CHeadlessMainFrame m_frame;
    Host::CMemorySettings m_settings;
    LangSupport::CTranslations m_translations; ///< none: messages stay as programs expect them
    Host::CApplication m_application;
    std::optional<Host::CPlugin> m_plugin;
};

} // namespace Kesh::CommandLine
