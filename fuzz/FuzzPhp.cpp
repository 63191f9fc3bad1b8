// Any bytes as a PHP document: its regions are its text, its errors lie in it, and the reader changes
// nothing, nor whether the regions tell their texts, nor, with the grammar, another text that was checked
// before.

#include "Checks/CAGrammarCheck.h"
#include "Parsers/PhpSyntaxParser.h"
#include "Require.h"
#include "SPBase/reader.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"
#include "Window/CAErrorsManager.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <cstdint>
#include <string_view>

using namespace Kesh;
using CodeAnalyzer::SCAError;
using SyntaxParser::CIterator;

namespace {

/// Requires that the regions are the document, piece by piece.
class CGaplessRegions final : public SyntaxParser::IStateRegionHandler
{
public:
    void Init(boost::shared_ptr<SyntaxParser::IReader> reader) override { m_reader = std::move(reader); }
    bool BeforeParse(const SyntaxParser::STextChange&, boost::shared_ptr<SyntaxParser::IReader>) override
    {
        m_end = {};
        m_next = nullptr;
        return true;
    }
    void AfterParse() override { Require(m_end == m_reader->GetEnd()); }
    void SendRegsEnd() override {}
    int AddRegion(SyntaxParser::CRegion* region) override
    {
        Require(region->start == m_end && region->start < region->end);
        Require(!m_next || region->text.data() == m_next);
        Require(m_reader->GetText(region->start, region->end) == region->text);
        m_end = region->end;
        m_next = region->text.data() + region->text.size();
        return 0;
    }
    std::wstring GetSRName() override { return L"gapless"; }
    CIterator GetStartPos() override { return {-1, -1}; }
    CIterator GetEndPos() override { return {2147483647, 2147483647}; }

private:
    boost::shared_ptr<SyntaxParser::IReader> m_reader;
    CIterator m_end;
    const wchar_t* m_next = nullptr;
};

/// A driver whose errors and warnings can be seen without a bar.
class CDriver final : public CodeAnalyzer::CPhpSyntaxParser
{
public:
    using CPhpSyntaxParser::CPhpSyntaxParser;
    void OnStructureError(int code, SyntaxParser::CRegion* region, int skipToEnd) override
    {
        records.push_back({{region->start, region->end}, code, CodeAnalyzer::SeverityError});
        CPhpSyntaxParser::OnStructureError(code, region, skipToEnd);
    }
    void AddErrors(const std::vector<SCAError>& errors) override
    {
        records.insert(records.end(), errors.begin(), errors.end());
        CPhpSyntaxParser::AddErrors(errors);
    }
    int AddRegion(SyntaxParser::CRegion* region) override
    {
        SyntaxParser::CRegion told = *region;
        if (!tellsTexts)
            told.text = {};
        return CPhpSyntaxParser::AddRegion(&told);
    }
    std::vector<SCAError> records;
    bool tellsTexts = true;
};

/// A document with its checker, over a reader of either kind.
template <class TReader> class CChecked
{
public:
    explicit CChecked(bool tellsTexts = true, bool withGrammar = false)
        : m_reader(boost::make_shared<TReader>(std::wstring())),
          m_document(SyntaxParser::MakeSPDocument(m_reader, {L"/fuzz.php", L"PHPSPDocFactory"})),
          m_driver(m_document->GetDefRegions(), &s_manager)
    {
        m_driver.tellsTexts = tellsTexts;
        m_driver.InitParser(m_document);
        m_driver.FollowGrammar(*m_document, &m_grammarCheck);
        m_grammarCheck.SetEnabled(withGrammar);
        boost::dynamic_pointer_cast<SyntaxParser::IParser>(m_document->GetComponent(L"IParser").lock())
            ->AddStateRegionHandler(&m_regions);
    }
    std::vector<SCAError> Check(const std::wstring& text)
    {
        if constexpr (requires { m_reader->SetWhole(text); })
            m_reader->SetWhole(text);
        else
            m_reader->SetText(text);
        m_driver.records.clear();
        m_document->Parse(true);
        const CIterator end = m_reader->GetEnd();
        for (const SCAError& record : m_driver.records)
            Require(CIterator{} <= record.pos.start && record.pos.start < record.pos.end &&
                    record.pos.end <= end);
        return m_driver.records;
    }

private:
    static inline CodeAnalyzer::CCAErrorsManager s_manager;
    boost::shared_ptr<TReader> m_reader;
    boost::shared_ptr<SyntaxParser::ISPDocument> m_document;
    CodeAnalyzer::CCAGrammarCheck m_grammarCheck;
    CGaplessRegions m_regions;
    CDriver m_driver;
};

void RequireSame(const std::vector<SCAError>& a, const std::vector<SCAError>& b)
{
    Require(std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const SCAError& x, const SCAError& y) {
        return x.pos == y.pos && x.code == y.code && x.type == y.type;
    }));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::wstring text = SyntaxParser::DecodeSource(bytes);
    const std::wstring earlier = L"<?php " + text.substr(text.size() / 2);

    CChecked<SyntaxParser::CSimpleReader> document;
    const std::vector<SCAError> records = document.Check(text);
    RequireSame(CChecked<SyntaxParser::CTextReader>().Check(text), records);
    RequireSame(CChecked<SyntaxParser::CTextReader>(false).Check(text), records);
    // What is left unfinished is taken up again.
    for (const std::wstring& next : {earlier, text, earlier})
        document.Check(next);

    CChecked<SyntaxParser::CSimpleReader> withGrammar(true, true);
    const std::vector<SCAError> exact = withGrammar.Check(text);
    withGrammar.Check(earlier);
    RequireSame(withGrammar.Check(text), exact);
    return 0;
}
