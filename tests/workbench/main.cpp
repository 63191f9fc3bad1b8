#include "Application/FilePath.h"
#include "Application/GuiApplication.h"

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CODE_ANALYZER_PLUGIN", PLUGIN_FILE);
    Kesh::Host::InstallFileNameCodec();
    Kesh::Host::CGuiApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
