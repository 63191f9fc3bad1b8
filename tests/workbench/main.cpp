#include "Application/FilePath.h"
#include "Application/GuiApplication.h"

#include <QLoggingCategory>
#include <gtest/gtest.h>

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace {

/// The window's application, which also tells ThreadSanitizer when an event arrives from another thread.
class CWorkbenchTestApplication final : public Kesh::Host::CGuiApplication
{
public:
    using CGuiApplication::CGuiApplication;
#ifdef __SANITIZE_THREAD__
    bool notify(QObject* receiver, QEvent* event) override
    {
        __tsan_acquire(event);
        if (event->type() == QEvent::DeferredDelete)
            __tsan_acquire(receiver);
        return CGuiApplication::notify(receiver, event);
    }
#endif
};

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CODE_ANALYZER_PLUGIN", PLUGIN_FILE);
    Kesh::Host::InstallFileNameCodec();
    CWorkbenchTestApplication application(argc, argv);
    // The offscreen platform says of every window that it takes no size hints.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.*=false\ndefault.warning=false"));
    QApplication::setStyle(QStringLiteral("Fusion"));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
