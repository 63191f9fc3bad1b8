#include "components/TestHost.h"

#include "host/TempFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <benchmark/benchmark.h>

namespace Kesh::Benchmarks {

namespace {

constexpr int Files = 8000;
constexpr int ErrorsPerFile = 2;
constexpr int TickInterval = 10; // ms

/// The longest time between two ticks of a timer, as a user's click would have to wait.
class CLongestGap
{
public:
    CLongestGap()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { Tick(); });
        m_timer.start(TickInterval);
        m_sinceTick.start();
    }
    double GetMilliseconds()
    {
        Tick();
        return m_longest;
    }

private:
    void Tick()
    {
        m_longest = std::max(m_longest, static_cast<double>(m_sinceTick.nsecsElapsed()) / 1e6);
        m_sinceTick.restart();
    }

    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    double m_longest = 0;
};

void WaitForCheck(Tests::CTestHost& host)
{
    while (host.application.Threads().IsRunning())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::processEvents();
}

// Every file of a large project has errors. Argument: header clicks on the column of descriptions, by which
// the visible list is sorted.
void FaultyProject(benchmark::State& state)
{
    const CTempFolder folder;
    std::vector<std::wstring> files;
    for (int i = 0; i < Files; ++i)
        files.push_back(folder.Write(L"d" + std::to_wstring(i % 80) + L"/f" + std::to_wstring(i) + L".php",
                                     "<?php\nelse;\nelse;\n"));
    std::sort(files.begin(), files.end());
    for (auto _ : state) {
        Tests::CTestHost host;
        host.Bar().resize(900, 300);
        host.Bar().show();
        for (int i = 0; i < state.range(0); ++i)
            QMetaObject::invokeMethod(&host.Bar(), "OnHeaderItemClicked", Q_ARG(int, 2));
        QCoreApplication::processEvents();
        for (const char* check : {"first_gap_ms", "second_gap_ms"}) {
            CLongestGap gap;
            if (host.Bar().topLevelItemCount() == 0)
                host.application.OpenProject(folder.Path(), files);
            else
                host.component->DoCheck(1);
            WaitForCheck(host);
            state.counters[check] = gap.GetMilliseconds();
            if (host.Bar().topLevelItemCount() != Files * ErrorsPerFile)
                state.SkipWithError("rows are missing");
        }
        QElapsedTimer close;
        close.start();
        host.application.Project().Close();
        state.counters["close_ms"] = static_cast<double>(close.nsecsElapsed()) / 1e6;
        if (host.Bar().topLevelItemCount() != 0)
            state.SkipWithError("rows are left");
    }
}
BENCHMARK(FaultyProject)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

} // namespace Kesh::Benchmarks
