// Shows that what is told to ThreadSanitizer about Qt hides no race of our own.
#ifdef __SANITIZE_THREAD__

#include <QApplication>
#include <QObject>
#include <QThread>
#include <cstdlib>
#include <gtest/gtest.h>

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
