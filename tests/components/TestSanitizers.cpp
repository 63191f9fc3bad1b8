// Shows that what is told to ThreadSanitizer about Qt hides no race of our own.
#ifdef __SANITIZE_THREAD__

#include <QApplication>
#include <QObject>
#include <QPointer>
#include <QThread>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

int g_shared = 0;

void ChangeOnTwoThreads()
{
    QThread* thread = QThread::create([] { ++g_shared; });
    thread->start();
    ++g_shared;
    thread->wait();
    delete thread;
}

/// The writer hands an event over, but writes once more afterwards.
void ChangeAfterHandingOver()
{
    QObject receiver;
    bool delivered = false;
    QThread* thread = QThread::create([&] {
        QMetaObject::invokeMethod(
            &receiver,
            [&] {
                ++g_shared;
                delivered = true;
            },
            Qt::QueuedConnection);
        QThread::msleep(50);
        ++g_shared;
    });
    thread->start();
    while (!delivered)
        QCoreApplication::processEvents();
    thread->wait();
    delete thread;
}

/// Writes on its own thread what is taken apart on the one that deletes it.
class CSelfDeleting : public QThread
{
public:
    CSelfDeleting() { connect(this, &QThread::finished, this, &QObject::deleteLater); }

protected:
    void run() override { m_text.assign(100, 'x'); }

private:
    std::string m_text;
};

TEST(ThreadSanitizer, SeesNoRaceWhereAThreadDeletesItself)
{
    for (int round = 0; round < 500; ++round) {
        const QPointer<QThread> thread = new CSelfDeleting;
        thread->start();
        while (thread) {
            QCoreApplication::processEvents();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
}

TEST(ThreadSanitizerDeathTest, StillReportsARace)
{
    // A child that begins anew, since a fork of a process with threads is not followed.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (void (*race)() : {&ChangeOnTwoThreads, &ChangeAfterHandingOver}) {
        EXPECT_EXIT(
            {
                race();
                std::exit(0);
            },
            ::testing::ExitedWithCode(66), "data race");
    }
}

} // namespace

#endif
