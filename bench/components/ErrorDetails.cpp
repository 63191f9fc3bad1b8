// What reports say about the errors of one file, against the check that finds them: the same few times as
// much, however many there are.

#include "Application/BareApplication.h"
#include "Findings/Describe.h"
#include "Kesh/CodeAnalyzer/ITextChecks.h"
#include "SyntaxParser/TextReader.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

namespace Kesh::Benchmarks {

namespace {

constexpr const wchar_t* Path = L"/many.php";
constexpr const wchar_t* Factory = L"PHPSPDocFactory";

struct CMany
{
    explicit CMany(std::int64_t count)
    {
        for (std::int64_t i = 0; i < count; ++i)
            text += i % 2 ? L"$a = = 1;\n" : L"if ($a);\n";
        reader = boost::make_shared<SyntaxParser::CTextReader>(text);
        Check();
    }
    ~CMany() { checks->Free(); }

    void Check()
    {
        found.clear();
        checks->Check(reader, Path, Factory, found);
    }

    Host::CBareApplication application;
    CodeAnalyzer::ITextChecks* checks = CodeAnalyzerCreateChecks(&application);
    std::wstring text = L"<?php\n";
    boost::shared_ptr<SyntaxParser::CTextReader> reader;
    std::vector<CodeAnalyzer::SDiagnostic> found;
};

void CheckOfManyErrors(benchmark::State& state)
{
    CMany many(state.range(0));
    for (auto _ : state)
        many.Check();
}
BENCHMARK(CheckOfManyErrors)->Arg(1000)->Arg(8000)->Arg(64000)->Unit(benchmark::kMillisecond);

void DescribeManyErrors(benchmark::State& state)
{
    CMany many(state.range(0));
    const Findings::CDescriber describer(*many.checks->GetTexts());
    const Findings::SRules rules;
    for (auto _ : state)
        if (describer.Describe({Path, Path, [&] { return many.text; }}, many.found, rules).findings.size() <
            static_cast<std::size_t>(state.range(0)))
            state.SkipWithError("errors are missing");
}
BENCHMARK(DescribeManyErrors)->Arg(1000)->Arg(8000)->Arg(64000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Kesh::Benchmarks
