#include "Files/FilePath.h"
#include "Window/GuiApplication.h"
#include "WindowStyle.h"

#include <QLoggingCategory>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CODE_ANALYZER_PLUGIN", PLUGIN_FILE);
    // The texts that are expected are English, whatever the user speaks.
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
    Kesh::Host::InstallFileNameCodec();
    Kesh::Host::CGuiApplication application(argc, argv);
    // The offscreen platform says of every window that it takes no size hints.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.*=false\ndefault.warning=false"));
    QApplication::setStyle(new Kesh::Workbench::CWindowStyle);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
