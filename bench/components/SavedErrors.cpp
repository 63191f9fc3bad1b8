#include "Components/CASavedErrors.h"

#include <benchmark/benchmark.h>

namespace Kesh::Benchmarks {

namespace {

// Argument: number of files with ten errors each.
void ReadSavedErrors(benchmark::State& state)
{
    std::vector<CodeAnalyzer::SSavedFileErrors> files;
    std::set<std::wstring> lowerFiles;
    for (int file = 0; file < state.range(0); ++file) {
        files.push_back({L"/home/user/projects/shop/package" + std::to_wstring(file) + L"/source.php", {}});
        lowerFiles.insert(files.back().file);
        for (int line = 0; line < 10; ++line)
            files.back().errors.push_back({{{3, line}, {9, line}}, 101, 1});
    }
    const std::wstring text = CodeAnalyzer::WriteSavedErrors(files);
    for (auto _ : state)
        if (CodeAnalyzer::ReadSavedErrors(text, lowerFiles).size() != files.size())
            state.SkipWithError("files are missing");
}
BENCHMARK(ReadSavedErrors)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Kesh::Benchmarks
