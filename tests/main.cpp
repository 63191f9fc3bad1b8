#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    // Test discovery runs this program while building, on machines without a display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
