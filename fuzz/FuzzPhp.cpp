// Any bytes as a PHP document: its regions have no gaps, its errors lie in it, and an earlier state of it
// changes nothing.

#include "Components/CAErrorsManager.h"
#include "Parsers/PhpSyntaxParser.h"
#include "Require.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"

#include <boost/make_shared.hpp>
#include <cstdint>
#include <string_view>

using namespace Kesh;
using SyntaxParser::CIterator;

namespace {

/// Requires that the regions are the document, piece by piece.
class CGaplessRegions final : public SyntaxParser::IStateRegionHandler
{
public:
    void Init(boost::shared_ptr<SyntaxParser::IReader>) override {}
    bool BeforeParse(const SyntaxParser::STextChange&, boost::shared_ptr<SyntaxParser::IReader>) override
    {
        m_end = {};
        m_next = nullptr;
        return true;
    }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    int AddRegion(SyntaxParser::CRegion* region) override
    {
        Require(region->start == m_end && region->start < region->end);
        Require(!m_next || region->text.data() == m_next);
        m_end = region->end;
        m_next = region->text.data() + region->text.size();
        return 0;
    }
    std::wstring GetSRName() override { return L"gapless"; }
    CIterator GetStartPos() override { return {-1, -1}; }
    CIterator GetEndPos() override { return {2147483647, 2147483647}; }

private:
    CIterator m_end;
    const wchar_t* m_next = nullptr;
};

/// A driver whose errors can be seen without a bar.
class CDriver final : public CodeAnalyzer::CPhpSyntaxParser
{
public:
    using CPhpSyntaxParser::CPhpSyntaxParser;
    void OnStructureError(int code, SyntaxParser::CRegion* region, int skipToEnd) override
    {
        errors.push_back({{region->start, region->end}, code, 1});
        CPhpSyntaxParser::OnStructureError(code, region, skipToEnd);
    }
    std::vector<CodeAnalyzer::SCAError> errors;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static CodeAnalyzer::CCAErrorsManager manager;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto reader = boost::make_shared<SyntaxParser::CTextReader>(SyntaxParser::DecodeSource(bytes));
    const auto document = SyntaxParser::MakeSPDocument(reader, {L"/fuzz.php", L"PHPSPDocFactory"});

    CGaplessRegions regions;
    CDriver driver(document->GetDefRegions(), &manager);
    driver.InitParser(document);
    boost::dynamic_pointer_cast<SyntaxParser::IParser>(document->GetComponent(L"IParser").lock())
        ->AddStateRegionHandler(&regions);
    document->Parse(true);
    const auto first = std::exchange(driver.errors, {});
    document->Parse(true);

    Require(first.size() == driver.errors.size());
    for (std::size_t i = 0; i < first.size(); ++i) {
        const auto& [pos, code, type] = first[i];
        Require(pos.start < pos.end && code == driver.errors[i].code &&
                pos.start == driver.errors[i].pos.start);
    }
    return 0;
}
