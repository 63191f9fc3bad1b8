#include "Application/ThreadService.h"
#include "Application/TimerService.h"
#include "Files/Fault.h"
#include "Limits.h"

#include <QElapsedTimer>
#include <QTest>
#include <QThread>
#include <atomic>
#include <future>
#include <gtest/gtest.h>
#include <thread>

using namespace Kesh;

namespace {

class CHandler : public Base::ITimerHandler
{
public:
    void OnTimer() override
    {
        ++m_entered;
        if (m_action)
            m_action();
        ++m_left;
    }
    int GetDelay() override { return m_delay; }
    std::wstring GetName() override { return L"CHandler"; }

    std::atomic<int> m_entered{0};
    std::atomic<int> m_left{0};
    int m_delay = 1;
    std::function<void()> m_action;
};

void RunLoop(int milliseconds)
{
    QTest::qWait(milliseconds);
}

TEST(TimerService, FiresOnceAfterTheLastStart)
{
    Host::CTimerService timers;
    CHandler handler;
    handler.m_delay = 150;
    for (int i = 0; i < 4; ++i) {
        timers.StartTimer(&handler);
        RunLoop(50);
        EXPECT_EQ(handler.m_entered, 0);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return handler.m_left == 1; }));
    RunLoop(200);
    EXPECT_EQ(handler.m_entered, 1);
}

TEST(TimerService, EarlierDelaysComeFirst)
{
    Host::CTimerService timers;
    std::string order;
    CHandler late, early;
    late.m_delay = 60;
    late.m_action = [&] { order += 'l'; };
    early.m_delay = 5;
    early.m_action = [&] { order += 'e'; };
    timers.StartTimer(&late);
    timers.StartTimer(&early);
    EXPECT_TRUE(QTest::qWaitFor([&] { return order.size() == 2; }));
    EXPECT_EQ(order, "el");
}

TEST(TimerService, DelayOverrideReplacesTheHandlersDelay)
{
    Host::CTimerService timers;
    CHandler handler;
    handler.m_delay = 1000000;
    timers.SetDelayOverride(0);
    timers.StartTimer(&handler);
    EXPECT_TRUE(QTest::qWaitFor([&] { return handler.m_left == 1; }));
}

TEST(TimerService, StopFromAnotherThreadWaitsForTheRunningHandler)
{
    Host::CTimerService timers;
    CHandler handler;
    std::promise<void> inside;
    std::atomic<bool> stopping{false};
    std::atomic<bool> stopped{false};
    handler.m_action = [&] {
        inside.set_value();
        while (!stopping)
            std::this_thread::yield();
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_FALSE(stopped);
        timers.StartTimer(&handler); // must not outlive the stop that waits
    };
    timers.StartTimer(&handler);
    std::thread stopper([&] {
        inside.get_future().wait();
        stopping = true;
        timers.StopTimer(&handler);
        stopped = true;
        EXPECT_EQ(handler.m_left, 1);
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return stopped.load(); }));
    stopper.join();
    RunLoop(50);
    EXPECT_EQ(handler.m_entered, 1);
}

TEST(TimerService, HandlersMayDieAfterAStopWhileTimersFire)
{
    Host::CTimerService timers;
    for (int round = 0; round < 200; ++round) {
        auto handler = std::make_unique<CHandler>();
        handler->m_delay = round % 3;
        timers.StartTimer(handler.get());
        std::atomic<bool> gone{false};
        std::thread stopper([&] {
            std::this_thread::sleep_for(std::chrono::microseconds(round * 17 % 2500));
            timers.StopTimer(handler.get());
            handler.reset();
            gone = true;
        });
        while (!gone)
            QCoreApplication::processEvents();
        stopper.join();
    }
}

TEST(TimerService, StoppingItselfOrAnUnknownHandlerIsFine)
{
    Host::CTimerService timers;
    CHandler handler, unknown;
    handler.m_action = [&] { timers.StopTimer(&handler); };
    timers.StopTimer(&unknown);
    timers.StartTimer(&handler);
    EXPECT_TRUE(QTest::qWaitFor([&] { return handler.m_left == 1; }));
}

TEST(TimerService, AThrowingHandlerIsReportedAndOthersStillFire)
{
    static std::wstring s_fault;
    Host::SetFaultSink([](const std::wstring& text) { s_fault = text; });
    Host::CTimerService timers;
    CHandler bad, good;
    bad.m_delay = 0;
    bad.m_action = [] { throw std::runtime_error("broken"); };
    timers.StartTimer(&bad);
    timers.StartTimer(&good);
    EXPECT_TRUE(QTest::qWaitFor([&] { return good.m_left == 1; }));
    EXPECT_EQ(s_fault, L"timer: broken");
    timers.StopTimer(&bad);
    Host::SetFaultSink(nullptr);
}

class CBody : public SDK::IThread
{
public:
    void Free() override { ++m_freed; }
    void Run() override
    {
        EXPECT_NE(QThread::currentThread(), qApp->thread());
        m_started = true;
        while (!m_end && !(m_thread && m_thread->IsStopRequested()))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        m_ran = true;
    }
    void Finished() override
    {
        EXPECT_EQ(QThread::currentThread(), qApp->thread());
        ++m_finished;
    }
    int GetPriority() override { return 1; }
    std::wstring GetThreadName() override { return L"CBody"; }

    SDK::IThreadObject* m_thread = nullptr;
    std::atomic<bool> m_started{false};
    std::atomic<bool> m_end{false};
    std::atomic<bool> m_ran{false};
    int m_finished = 0;
    int m_freed = 0;
};

TEST(ThreadService, FinishedComesOnTheGuiThreadOnce)
{
    Host::CThreadService threads;
    CBody body;
    threads.CreateThread(&body, 0)->Start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return body.m_started.load(); }));
    EXPECT_TRUE(threads.IsRunning());
    body.m_end = true;
    EXPECT_TRUE(QTest::qWaitFor([&] { return body.m_finished == 1; }));
    EXPECT_FALSE(threads.IsRunning());
    RunLoop(20);
    EXPECT_EQ(body.m_finished, 1);
    EXPECT_EQ(body.m_freed, 1);
}

TEST(ThreadService, StopWaitsForTheBodyAndDeliversFinished)
{
    for (const bool letItEndFirst : {false, true}) {
        Host::CThreadService threads;
        CBody body;
        body.m_thread = threads.CreateThread(&body, 0);
        body.m_thread->Start();
        while (!body.m_started)
            std::this_thread::yield();
        if (letItEndFirst) {
            // The notice of the natural end is then still in the queue when Stop() is called.
            body.m_end = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
        }
        body.m_thread->Stop(nullptr);
        EXPECT_TRUE(body.m_ran);
        EXPECT_EQ(body.m_finished, 1);
        RunLoop(20);
        EXPECT_EQ(body.m_finished, 1);
    }
}

TEST(ThreadService, AThreadThatWasNeverStartedCanBeStopped)
{
    Host::CThreadService threads;
    CBody body;
    threads.CreateThread(&body, 0)->Stop(nullptr);
    EXPECT_FALSE(body.m_ran);
    EXPECT_EQ(body.m_finished, 1);
}

TEST(ThreadServiceDeathTest, AThreadThatTheSystemRefusesIsReportedAndEnded)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            Host::CThreadService threads;
            CBody body;
            int refused = 0;
            threads.GetStartErrorSignal().connect([&] { ++refused; });
            if (!ForbidThreads())
                std::exit(2);
            for (int round = 1; round <= 2; ++round) {
                threads.CreateThread(&body, 0)->Start();
                if (refused != round || body.m_finished != round || body.m_freed != round ||
                    body.m_ran != 0 || threads.IsRunning())
                    std::exit(3);
            }
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(ThreadService, EndOfTheServiceStopsWhatRuns)
{
    CBody body;
    {
        Host::CThreadService threads;
        body.m_thread = threads.CreateThread(&body, 0);
        body.m_thread->Start();
    }
    EXPECT_TRUE(body.m_ran);
    EXPECT_EQ(body.m_finished, 1);
}

} // namespace
