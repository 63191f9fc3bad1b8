#include "Components/CASavedErrors.h"

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
BENCHMARK(ReadSavedErrors)->Args({10, 10})->Args({1000, 10})->Args({5000, 4})->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Kesh::Benchmarks
