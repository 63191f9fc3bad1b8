#pragma once

#include <QApplication>

/// A QApplication that tells ThreadSanitizer how Qt hands objects from one thread to another: Qt is not built
/// with it, so that its locks cannot be seen. Without the sanitizer a plain QApplication.
class CTestApplication : public QApplication
{
public:
    using QApplication::QApplication;
#ifdef __SANITIZE_THREAD__
    bool notify(QObject* receiver, QEvent* event) override;
#endif
};
