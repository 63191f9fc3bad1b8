// The speed of the region source and of the full PHP check over the PHP files below $CORPUS, or of the
// example site. MB are those of the files; the texts are in memory.

#include "Checks/CAGrammarCheck.h"
#include "Grammar/PhpGrammarChecker.h"
#include "Parsers/PhpSyntaxParser.h"
#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"
#include "Window/CAErrorsManager.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

using namespace Kesh;

namespace {

struct SCorpus
{
    std::vector<std::string> files;
    std::vector<std::wstring> texts;
    std::int64_t bytes = 0;
};

const SCorpus& Corpus()
{
    static const SCorpus corpus = [] {
        SCorpus result;
        const char* folder = std::getenv("CORPUS");
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder ? folder : EXAMPLES)) {
            if (!entry.is_regular_file() || entry.path().extension() != ".php")
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            result.files.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
            result.texts.push_back(SyntaxParser::DecodeSource(result.files.back()));
            result.bytes += static_cast<std::int64_t>(result.files.back().size());
        }
        return result;
    }();
    return corpus;
}

/// Takes every region and does nothing with it.
class CSink : public SyntaxParser::IStateRegionHandler
{
public:
    void Init(boost::shared_ptr<SyntaxParser::IReader>) override {}
    bool BeforeParse(const SyntaxParser::STextChange&, boost::shared_ptr<SyntaxParser::IReader>) override
    {
        return true;
    }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    int AddRegion(SyntaxParser::CRegion* region) override
    {
        benchmark::DoNotOptimize(region->end.x);
        return 0;
    }
    std::wstring GetSRName() override { return L"sink"; }
    SyntaxParser::CIterator GetStartPos() override { return {}; }
    SyntaxParser::CIterator GetEndPos() override { return {}; }
};

void SetSpeed(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * Corpus().bytes);
}

// The reference of the others: bytes to characters and nothing else.
void Decode(benchmark::State& state)
{
    for (auto _ : state) {
        for (const std::string& file : Corpus().files)
            benchmark::DoNotOptimize(SyntaxParser::DecodeSource(file));
    }
    SetSpeed(state);
}

void RegionSource(benchmark::State& state)
{
    CSink sink;
    const std::vector<SyntaxParser::IStateRegionHandler*> handlers{&sink};
    for (auto _ : state) {
        for (const std::wstring& text : Corpus().texts)
            SyntaxParser::CPhpScanner(text, handlers).Run(nullptr);
    }
    SetSpeed(state);
}

// From the bytes of a file to its list of errors, with one document and one parser for all, as a folder is
// checked.
void CheckAll(benchmark::State& state, bool withGrammar)
{
    CodeAnalyzer::CCAErrorsManager errors;
    CodeAnalyzer::CCAGrammarCheck wanted;
    wanted.SetEnabled(withGrammar);
    const auto reader = boost::make_shared<SyntaxParser::CTextReader>(std::wstring());
    const auto document = SyntaxParser::MakeSPDocument(reader, {L"/checked.php", L"PHPSPDocFactory"});
    CodeAnalyzer::CPhpSyntaxParser parser(document->GetDefRegions(), &errors);
    parser.SteFileName(L"/checked.php");
    parser.InitParser(document);
    if (withGrammar)
        parser.FollowGrammar(*document, &wanted);
    for (auto _ : state) {
        for (const std::string& file : Corpus().files) {
            reader->Decode(file);
            document->Parse(true);
        }
    }
    SetSpeed(state);
}

void FullCheck(benchmark::State& state)
{
    CheckAll(state, false);
}

// The whole grammar and the rules of the language, without the statement parsers; to be compared with PHP's
// own parse.
void GrammarCheck(benchmark::State& state)
{
    const auto reader = boost::make_shared<SyntaxParser::CTextReader>(std::wstring());
    const auto document = SyntaxParser::MakeSPDocument(reader, {L"/checked.php", L"PHPSPDocFactory"});
    CodeAnalyzer::CPhpGrammarChecker grammar;
    grammar.Follow(*document);
    for (auto _ : state) {
        for (const std::string& file : Corpus().files) {
            reader->Decode(file);
            grammar.Expect(true, 0);
            document->Parse(true);
        }
    }
    SetSpeed(state);
}

// Both together, joined to one list, as our hosts check.
void FullCheckWithGrammar(benchmark::State& state)
{
    CheckAll(state, true);
}

BENCHMARK(Decode)->Unit(benchmark::kMillisecond);
BENCHMARK(RegionSource)->Unit(benchmark::kMillisecond);
BENCHMARK(FullCheck)->Unit(benchmark::kMillisecond);
BENCHMARK(GrammarCheck)->Unit(benchmark::kMillisecond);
BENCHMARK(FullCheckWithGrammar)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
