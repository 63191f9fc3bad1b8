// Texts and settings with very many of one thing, four times as many each time: the time must grow no faster.

#include "Configuration/Configuration.h"
#include "Findings/Ignores.h"
#include "Findings/TextLines.h"
#include "Grammar/PhpGrammarChecker.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/TextReader.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <string>

namespace Kesh::Benchmarks {

namespace {

std::wstring Numbered(std::int64_t count, const std::wstring& name, wchar_t separator)
{
    std::wstring list;
    for (std::int64_t i = 0; i < count; ++i)
        list += (i ? std::wstring(1, separator) : L"") + name + std::to_wstring(i);
    return list;
}

std::wstring Repeated(std::int64_t count, const std::wstring& piece)
{
    std::wstring text;
    for (; count > 0; --count)
        text += piece;
    return text;
}

std::wstring Parameters(std::int64_t count)
{
    return L"<?php function f(" + Numbered(count, L"$p", L',') + L") {}";
}

std::wstring UsedByClosure(std::int64_t count)
{
    return L"<?php $f = function () use (" + Numbered(count, L"$p", L',') + L") {};";
}

std::wstring UnionMembers(std::int64_t count)
{
    return L"<?php function f(" + Numbered(count, L"T", L'|') + L" $a) {}";
}

std::wstring EqualMembers(std::int64_t count)
{
    return L"<?php function f(T" + Repeated(count, L"|T") + L" $a) {}";
}

std::wstring NestedIsset(std::int64_t count)
{
    return L"<?php " + Repeated(count, L"isset(") + L"$a" + Repeated(count, L")") + L";";
}

template <std::wstring (*Text)(std::int64_t)> void GrammarOf(benchmark::State& state)
{
    const auto reader = boost::make_shared<SyntaxParser::CTextReader>(Text(state.range(0)));
    const auto document = SyntaxParser::MakeSPDocument(reader, {L"/a.php", L"PHPSPDocFactory"});
    CodeAnalyzer::CPhpGrammarChecker checker;
    checker.Follow(*document);
    for (auto _ : state) {
        checker.Expect(true, 0);
        document->Parse(true);
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(GrammarOf<Parameters>)->RangeMultiplier(4)->Range(4096, 65536)->Complexity(benchmark::oN);
BENCHMARK(GrammarOf<UsedByClosure>)->RangeMultiplier(4)->Range(4096, 65536)->Complexity(benchmark::oN);
BENCHMARK(GrammarOf<UnionMembers>)->RangeMultiplier(4)->Range(4096, 65536)->Complexity(benchmark::oN);
BENCHMARK(GrammarOf<EqualMembers>)->RangeMultiplier(4)->Range(4096, 65536)->Complexity(benchmark::oN);
BENCHMARK(GrammarOf<NestedIsset>)->RangeMultiplier(4)->Range(4096, 65536)->Complexity(benchmark::oN);

void IgnoreComments(benchmark::State& state)
{
    const std::wstring text = Repeated(state.range(0), L"$a = ; // code-analyzer-ignore 1011\n");
    std::vector<CodeAnalyzer::SDiagnostic> found;
    for (std::int64_t line = 0; line < state.range(0); ++line)
        found.push_back({{{{3, line}, {4, line}}, 1011, CodeAnalyzer::SeverityError}, {}});
    const Findings::CTextLines lines(text);
    for (auto _ : state) {
        Findings::CIgnores ignores(text, lines);
        auto left = found;
        ignores.Silence(left);
        if (!left.empty() || !ignores.Unused().empty())
            state.SkipWithError("comments that ignore nothing");
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(IgnoreComments)->RangeMultiplier(4)->Range(4096, 65536)->Complexity(benchmark::oN);

void KeysOfSettings(benchmark::State& state)
{
    std::string text = "{\"codes\": {";
    for (std::int64_t i = 1; i <= state.range(0); ++i)
        text += (i > 1 ? ",\"" : "\"") + std::to_string(i) + "\": \"off\"";
    text += "}}";
    for (auto _ : state)
        benchmark::DoNotOptimize(Configuration::ParseConfiguration(L"/code-analyzer.json", text));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(KeysOfSettings)->RangeMultiplier(4)->Range(4096, 65536)->Complexity(benchmark::oN);

} // namespace

} // namespace Kesh::Benchmarks
