#include "components/TestHost.h"

#include "Components/CADocParser.h"
#include "SPBase/reader.h"

#include <QCoreApplication>
#include <QThread>
#include <benchmark/benchmark.h>

namespace Kesh::Benchmarks {

namespace {

constexpr std::size_t Megabyte = 1000000;

std::string MakeText(std::size_t size)
{
    std::string text = "<?php\n";
    while (text.size() < size)
        text += "    $total = array_sum($this->items) + strlen(\"some text\"); // why\n";
    return text;
}

/// A host with one document of a megabyte.
struct COpenHost : Tests::CTestHost
{
    COpenHost()
    {
        application.Timers().SetDelayOverride(1000000); // only the benchmark starts checks
        document = &Open(L"/big.php", MakeText(Megabyte));
    }
    Host::CDocument* document;
};

// The plug-in's part of a keystroke: what hangs on the buffer's change signal.
void Keystroke(benchmark::State& state)
{
    COpenHost host;
    for (auto _ : state)
        host.document->GetBuffer()->GetChangeSignal()(nullptr);
}
BENCHMARK(Keystroke);

// What the GUI thread does when the timer fires: the old errors go, the text is copied, the worker starts.
void StartOfACheck(benchmark::State& state)
{
    COpenHost host;
    CodeAnalyzer::CHtmlCustomItemsKeeper keeper;
    const auto syntax = host.application.Parser().GetSPDocument(host.document);
    const auto checker = boost::make_shared<CodeAnalyzer::CCADocParser>(
        &host.application, syntax.get(), host.parser->GetDefRegions(), &host.Errors(), &keeper);
    checker->InitPtr(checker);
    int begun = 0;
    for (auto _ : state) {
        checker->OnTimer();
        state.PauseTiming();
        for (++begun; host.Gate().GetBegun() < begun;)
            QThread::yieldCurrentThread();
        while (checker.use_count() > 2) // a running check holds one more
            QThread::yieldCurrentThread();
        QThread::usleep(200); // the end of the worker's registration
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
    if (host.Gate().GetBegun() != begun)
        state.SkipWithError("checks were put off");
    checker->DestroyPtr();
}
BENCHMARK(StartOfACheck)->Unit(benchmark::kMillisecond)->MinTime(2);

// One of thousands of small files on the command line: open, check, close.
void OpenCheckClose(benchmark::State& state)
{
    Tests::CTestHost host;
    const std::string text = MakeText(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        Host::CDocument& document = host.Open(L"/small.php", text);
        host.component->DoCheck(0);
        QCoreApplication::sendPostedEvents();
        host.Close(document);
        QCoreApplication::sendPostedEvents();
    }
}
BENCHMARK(OpenCheckClose)->Arg(100)->Arg(10000)->Unit(benchmark::kMicrosecond);

void SetString(benchmark::State& state)
{
    const std::string bytes = MakeText(Megabyte);
    const std::wstring text(bytes.begin(), bytes.end());
    SyntaxParser::CSimpleReader reader;
    for (auto _ : state)
        reader.SetString(text);
}
BENCHMARK(SetString)->Unit(benchmark::kMillisecond);

void GetWholeText(benchmark::State& state)
{
    const std::string bytes = MakeText(Megabyte);
    SyntaxParser::CSimpleReader reader(std::wstring(bytes.begin(), bytes.end()));
    for (auto _ : state)
        benchmark::DoNotOptimize(reader.GetText());
}
BENCHMARK(GetWholeText)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Kesh::Benchmarks
