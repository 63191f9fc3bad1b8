#pragma once

#include "Application/HeadlessMainFrame.h"
#include "Application/ParserComponent.h"
#include "Application/Settings.h"
#include "LangSupport/Translations.h"
#include "ProjectManager/ProjectManager.h"
#include "TempFolder.h"
#include "Window/Display.h"

#include <gtest/gtest.h>

/// A host without a window and without plug-ins.
class CHostTest : public ::testing::Test
{
protected:
    Kesh::ProjectManager::IProjectManager& Project() { return *m_host.Project().GetProjectManager(); }

    CTempFolder m_folder;
    Kesh::Host::CHeadlessMainFrame m_frame;
    Kesh::Host::CMemorySettings m_settings;
    Kesh::LangSupport::CTranslations m_translations;
    Kesh::Host::CDisplay m_display;
    Kesh::Host::CApplication m_host{{m_frame, m_settings, m_translations, &m_display}};
};
