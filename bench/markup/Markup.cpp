#include "Base/CommonString.h"
#include "SyntaxParser/CompletionData.h"
#include "SyntaxParser/MarkupTrees.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace Kesh::Benchmarks {

namespace {

using SyntaxParser::BuildMarkupTrees;
using SyntaxParser::EMarkup;

struct SText
{
    std::wstring text;
    EMarkup markup = EMarkup::Html;
    std::vector<SyntaxParser::SIsland> islands;
};

std::wstring Repeat(std::wstring_view part, std::size_t length)
{
    std::wstring text;
    while (text.size() < length)
        text += part;
    return text;
}

/// Every "<?" up to the next "?>": near enough for measuring.
std::vector<SyntaxParser::SIsland> FindIslands(const std::wstring& text)
{
    std::vector<SyntaxParser::SIsland> islands;
    for (std::size_t i = text.find(L"<?"); i != std::wstring::npos; i = text.find(L"<?", islands.back().end))
        islands.push_back({i, std::min(text.find(L"?>", i), text.size() - 2) + 2});
    return islands;
}

void Measure(benchmark::State& state, const std::vector<SText>& texts)
{
    std::size_t characters = 0;
    std::size_t nodes = 0;
    for (auto _ : state) {
        characters = nodes = 0;
        for (const SText& text : texts) {
            const SyntaxParser::SMarkupTrees trees = BuildMarkupTrees(text.text, text.markup, text.islands);
            characters += text.text.size();
            nodes += trees.html.nodes.size() + trees.css.nodes.size();
        }
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(characters * state.iterations()));
    state.counters["nodes"] = static_cast<double>(nodes);
}

// One byte counts for one character, as in mostly English files. Argument: characters.
void BuildHtml(benchmark::State& state, const wchar_t* part)
{
    const std::wstring text = Repeat(part, static_cast<std::size_t>(state.range(0)));
    Measure(state, {{text, EMarkup::Html, FindIslands(text)}});
}
BENCHMARK_CAPTURE(BuildHtml, text,
                  L"<p>Some words of a text that is as long as paragraphs are, and no longer.\n")
    ->Arg(100'000)
    ->Arg(10'000'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(
    BuildHtml, template,
    L"<li class=\"item <?= $odd ?>\" style=\"top:<?= $y ?>px\">\n  <a href=\"<?= $url ?>\"><?= $name ?></a>\n"
    L"</li>\n")
    ->Arg(100'000)
    ->Arg(10'000'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BuildHtml, deep, L"<div>")->Arg(100'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BuildHtml, stray, L"<b><p></i></b>")
    ->Arg(100'000)
    ->Arg(10'000'000)
    ->Unit(benchmark::kMillisecond);

void BuildCss(benchmark::State& state, const wchar_t* part)
{
    Measure(state, {{Repeat(part, static_cast<std::size_t>(state.range(0))), EMarkup::Css, {}}});
}
BENCHMARK_CAPTURE(
    BuildCss, rules,
    L".navbar > li a:hover, .nav .active {\n  color: #fff;\n  background: url(a.png) no-repeat;\n}\n")
    ->Arg(100'000)
    ->Arg(10'000'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BuildCss, deep, L"a:not(b){")->Arg(100'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);

// All .php, .html and .css files of the folder that the environment variable CORPUS names.
void BuildCorpus(benchmark::State& state)
{
    const char* folder = std::getenv("CORPUS");
    if (!folder) {
        state.SkipWithError("set CORPUS to a folder to measure it");
        return;
    }
    std::vector<SText> texts;
    for (const auto& file : std::filesystem::recursive_directory_iterator(folder)) {
        const std::string ending = file.path().extension().string();
        if (!file.is_regular_file() || (ending != ".php" && ending != ".html" && ending != ".css"))
            continue;
        std::ifstream stream(file.path(), std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
        SText text;
        text.text = Base::CCommonString::FromUtf8(bytes);
        text.markup = ending == ".css" ? EMarkup::Css : EMarkup::Html;
        if (ending == ".php")
            text.islands = FindIslands(text.text);
        texts.push_back(std::move(text));
    }
    Measure(state, texts);
    state.counters["files"] = static_cast<double>(texts.size());
}
BENCHMARK(BuildCorpus)->Unit(benchmark::kMillisecond);

void LookUpAttributes(benchmark::State& state)
{
    const SyntaxParser::IAttributeSource* source =
        SyntaxParser::GetBuiltInCompletionData()->GetAttributeSource();
    const std::wstring tag = L"INPUT";
    for (auto _ : state)
        benchmark::DoNotOptimize(&source->GetAttributes(tag));
}
BENCHMARK(LookUpAttributes);

} // namespace

} // namespace Kesh::Benchmarks
