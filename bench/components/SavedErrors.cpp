#include "components/TestHost.h"

#include "Components/CASavedErrorsText.h"
#include "host/TempFolder.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

namespace Kesh::Benchmarks {

namespace {

// Arguments: number of files, and of errors in each.
void ReadSavedErrors(benchmark::State& state)
{
    std::vector<CodeAnalyzer::SSavedFileErrors> files;
    std::set<std::wstring> lowerFiles;
    for (int file = 0; file < state.range(0); ++file) {
        files.push_back({L"/home/user/projects/shop/package" + std::to_wstring(file) + L"/source.php", {}});
        lowerFiles.insert(files.back().file);
        for (int line = 0; line < state.range(1); ++line)
            files.back().errors.push_back({{{3, line}, {9, line}}, 101, 1});
    }
    const std::wstring text = CodeAnalyzer::WriteSavedErrors(files);
    for (auto _ : state)
        if (CodeAnalyzer::ReadSavedErrors(text, lowerFiles).size() != files.size())
            state.SkipWithError("files are missing");
}
BENCHMARK(ReadSavedErrors)
    ->Args({10, 10})
    ->Args({1000, 10})
    ->Args({5000, 4})
    ->Args({10000, 100}) // some 35 MB
    ->Args({1, 1000000})
    ->Unit(benchmark::kMillisecond);

// Opening a project whose errors were kept, until all of them are listed. Arguments: as above, and whether
// the rows come some at a time. Four times as many errors are to take some four times as long.
void RestoreSavedErrors(benchmark::State& state)
{
    const CTempFolder folder;
    std::vector<CodeAnalyzer::SSavedFileErrors> saved;
    std::vector<std::wstring> files;
    for (int file = 0; file < state.range(0); ++file) {
        // No kind that the project check looks at.
        saved.push_back(
            {folder.Write(L"page" + std::to_wstring(file * 7919 % state.range(0)) + L".html", ""), {}});
        files.push_back(saved.back().file);
        for (int line = 0; line < state.range(1); ++line)
            saved.back().errors.push_back({{{3, line}, {9, line}}, 101 + line % 3, 1 + line % 2});
    }
    const std::string text = QString::fromStdWString(CodeAnalyzer::WriteSavedErrors(saved)).toStdString();
    for (auto _ : state) {
        state.PauseTiming();
        folder.Write(L".code-analyzer/errors", text);
        Tests::CTestHost host;
        host.component->GetProjectCheck()->SetGradual(state.range(2) != 0);
        state.ResumeTiming();
        host.application.OpenProject(folder.Path(), files);
        while (host.Bar().topLevelItemCount() < state.range(0) * state.range(1) ||
               host.application.Threads().IsRunning())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        state.PauseTiming();
        host.component.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(RestoreSavedErrors)
    ->Args({1000, 25, 0})
    ->Args({1000, 100, 0})
    ->Args({1000, 400, 0})
    ->Args({1, 400000, 0})
    ->Args({1000, 100, 1})
    ->Args({1000, 400, 1})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Kesh::Benchmarks
