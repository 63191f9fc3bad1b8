#include "components/TestHost.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <benchmark/benchmark.h>
#include <random>

namespace Kesh::Benchmarks {

namespace {

using CodeAnalyzer::SCAError;

constexpr int Files = 1000;
constexpr int ErrorsPerFile = 10;

std::wstring FileName(int file)
{
    return L"/home/user/Projects/shop/vendor/Package" + std::to_wstring(file * 7919 % Files) + L"/Source.php";
}

std::vector<SCAError> MakeErrors(int file)
{
    std::mt19937 random(static_cast<unsigned>(file));
    const std::int32_t codes[] = {101, 102, 202, 251, 302, 901, 2001, 2002};
    std::vector<SCAError> errors;
    for (int i = 0; i < ErrorsPerFile; ++i) {
        const std::int64_t line = random() % 1000;
        const std::int32_t code = codes[random() % 8];
        errors.push_back({{{3, line}, {9, line}}, code, code == 302 || code == 901 ? 2 : 1});
    }
    return errors;
}

struct CFilledHost : Tests::CTestHost
{
    explicit CFilledHost(int columnClicks)
    {
        Bar().resize(900, 300);
        Bar().show();
        for (int i = 0; i < columnClicks; ++i)
            QMetaObject::invokeMethod(&Bar(), "OnHeaderItemClicked", Q_ARG(int, 1));
        QCoreApplication::processEvents();
    }
    void Fill()
    {
        for (int file = 0; file < Files; ++file)
            Errors().AddErrors(FileName(file), MakeErrors(file));
        QCoreApplication::processEvents();
    }
    void Empty()
    {
        for (int file = 0; file < Files; ++file)
            Errors().RemoveErrorsMSG(FileName(file));
        QCoreApplication::processEvents();
    }
};

// Argument: 0 sorted by type, 1 by file. The list is visible, as it is for a user.
void AddAll(benchmark::State& state)
{
    CFilledHost host(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        host.Fill();
        state.PauseTiming();
        if (host.Bar().topLevelItemCount() != Files * ErrorsPerFile)
            state.SkipWithError("rows are missing");
        host.Empty();
        state.ResumeTiming();
    }
}
BENCHMARK(AddAll)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void RemoveAll(benchmark::State& state)
{
    CFilledHost host(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        host.Fill();
        state.ResumeTiming();
        host.Empty();
        if (host.Bar().topLevelItemCount() != 0)
            state.SkipWithError("rows are left");
    }
}
BENCHMARK(RemoveAll)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// One hopeless file among the others.
void ReplaceHugeFile(benchmark::State& state)
{
    CFilledHost host(1);
    host.Fill();
    std::vector<SCAError> errors;
    for (std::int64_t line = 0; line < state.range(0); ++line)
        errors.push_back({{{0, line}, {1, line}}, 101, 1});
    for (auto _ : state) {
        host.Errors().RemoveErrors(L"/home/huge.php");
        host.Errors().AddErrors(L"/home/huge.php", errors);
        QCoreApplication::processEvents();
    }
}
BENCHMARK(ReplaceHugeFile)->Arg(1000)->Arg(30000)->Arg(100000)->Unit(benchmark::kMillisecond);

// What a check of one file costs among 10,000 rows, with a row selected.
void ReplaceOneFile(benchmark::State& state)
{
    CFilledHost host(static_cast<int>(state.range(0)));
    host.Fill();
    host.Bar().setCurrentItem(host.Bar().topLevelItem(Files * ErrorsPerFile / 2));
    int file = 0;
    for (auto _ : state) {
        host.Errors().RemoveErrors(FileName(file));
        host.Errors().AddErrors(FileName(file), MakeErrors(file));
        QCoreApplication::processEvents();
        file = (file + 1) % Files;
    }
}
BENCHMARK(ReplaceOneFile)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void SortByHeaderClick(benchmark::State& state)
{
    CFilledHost host(0);
    host.Fill();
    for (auto _ : state) {
        QMetaObject::invokeMethod(&host.Bar(), "OnHeaderItemClicked",
                                  Q_ARG(int, static_cast<int>(state.range(0))));
        QCoreApplication::processEvents();
    }
}
BENCHMARK(SortByHeaderClick)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Kesh::Benchmarks
