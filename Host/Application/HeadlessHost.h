#pragma once

#include "Application/Application.h"
#include "Application/HeadlessMainFrame.h"
#include "Application/Settings.h"
#include "LangSupport/Translations.h"

namespace Kesh::Host {

/// A whole host without a window, whose settings nobody keeps and whose messages stay English.
struct SHeadlessHost
{
    CHeadlessMainFrame frame;
    CMemorySettings settings;
    LangSupport::CTranslations translations;
    CApplication application{{frame, settings, translations}};
};

} // namespace Kesh::Host
