// A host that has PHP's tokens and no regions gets the grammar check all the same.

#include "Application/BareApplication.h"
#include "Kesh/CodeAnalyzer/ITextChecks.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/TextReader.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Kesh;
using namespace Kesh::SyntaxParser;

namespace {

CDefRegions* NoKinds()
{
    static CDefRegions none;
    return &none;
}

/// Keeps the regions of a document to itself.
class CSilentParser final : public IParser
{
public:
    explicit CSilentParser(boost::shared_ptr<IParser> inner) : m_inner(std::move(inner)) {}
    void InitComponent(ISPDocument*) override {}
    std::wstring GetComponentName() override { return L"IParser"; }
    void AddStateRegionHandler(IStateRegionHandler* handler) override
    {
        m_handlers.push_back(std::make_unique<CDeaf>(handler));
        m_inner->AddStateRegionHandler(m_handlers.back().get());
    }

private:
    struct CDeaf final : IStateRegionHandler
    {
        explicit CDeaf(IStateRegionHandler* h) : handler(h) {}
        void Init(boost::shared_ptr<IReader> reader) override { handler->Init(reader); }
        bool BeforeParse(const STextChange& change, boost::shared_ptr<IReader> reader) override
        {
            return handler->BeforeParse(change, reader);
        }
        void AfterParse() override { handler->AfterParse(); }
        void SendRegsEnd() override { handler->SendRegsEnd(); }
        int AddRegion(CRegion*) override { return 0; }
        std::wstring GetSRName() override { return handler->GetSRName(); }
        CIterator GetStartPos() override { return handler->GetStartPos(); }
        CIterator GetEndPos() override { return handler->GetEndPos(); }
        IStateRegionHandler* handler;
    };

    boost::shared_ptr<IParser> m_inner;
    std::vector<std::unique_ptr<CDeaf>> m_handlers;
};

class CTokenDocument final : public ISPDocument
{
public:
    explicit CTokenDocument(boost::shared_ptr<ISPDocument> inner)
        : m_inner(std::move(inner)),
          m_parser(boost::make_shared<CSilentParser>(
              boost::dynamic_pointer_cast<IParser>(m_inner->GetComponent(L"IParser").lock())))
    {
    }
    boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring& name) override
    {
        return name == L"IParser" ? boost::weak_ptr<SDK::IComponent1<ISPDocument>>(m_parser)
               : name == L"IReader" || name == L"ITokenSource"
                   ? m_inner->GetComponent(name)
                   : boost::weak_ptr<SDK::IComponent1<ISPDocument>>();
    }
    std::wstring GetFilePath() override { return L"/a.php"; }
    std::wstring GetFactoryName() override { return L"PHPSPDocFactory"; }
    CDefRegions* GetDefRegions() override { return NoKinds(); }
    SDK::IDocument* GetDocument() override { return nullptr; }
    Editor::IDocBuffer* GetBuffer() override { return nullptr; }
    ISemanticParser* GetSemanticParser(const std::wstring&) override { return nullptr; }
    void Parse(bool full) override
    {
        m_inner->Parse(full);
        m_endOfParse(this);
    }
    EndOfParseSignal& GetEndOfParseSignal() override { return m_endOfParse; }
    DocDestroySignal& GetDocDestroySignal() override { return m_destroyed; }
    void LockSemanticData() override {}
    void UnlockSemanticData() override {}
    const SSemanticTree* GetSemanticTree(const std::wstring&) override { return nullptr; }

private:
    boost::shared_ptr<ISPDocument> m_inner;
    boost::shared_ptr<CSilentParser> m_parser;
    EndOfParseSignal m_endOfParse;
    DocDestroySignal m_destroyed;
};

class CTokenService final : public IParserComponent
{
public:
    void InitComponent(SDK::IApplication*) override {}
    std::wstring GetComponentName() override { return L"IParserComponent"; }
    CDefRegions* GetDefRegions() override { return NoKinds(); }
    const ICompletionData* GetCompletionData() override { return m_names.GetCompletionData(); }
    const ICssSyntax* GetCssSyntax() override { return m_names.GetCssSyntax(); }
    boost::shared_ptr<ISPDocument> CreateDocument(boost::shared_ptr<IReader> reader, const std::wstring& path,
                                                  const std::wstring& factory) override
    {
        return boost::make_shared<CTokenDocument>(MakeSPDocument(reader, {path, factory}));
    }
    boost::shared_ptr<ISPDocument> GetParsedDocument(const std::wstring&) override { return {}; }
    boost::shared_ptr<ISPDocument> GetSPDocument(SDK::IDocument*) override { return {}; }
    DocCreatedSignal& GetDocCreatedSignal() override { return m_names.GetDocCreatedSignal(); }
    ProjectParsedSignal& GetProjectParsedSignal() override { return m_names.GetProjectParsedSignal(); }
    FindErrorRegionsSignal& GetFindErrorRegionsSignal() override
    {
        return m_names.GetFindErrorRegionsSignal();
    }

private:
    CParserComponent m_names;
};

struct CTokenHost : Host::CBareApplication
{
    boost::weak_ptr<SDK::IComponent1<SDK::IApplication>> GetComponent(const std::wstring&) override
    {
        return service;
    }
    boost::shared_ptr<CTokenService> service = boost::make_shared<CTokenService>();
};

} // namespace

TEST(TokensOnly, GiveTheGrammarCheck)
{
    CTokenHost host;
    CodeAnalyzer::ITextChecks* checks = CodeAnalyzerCreateChecks(&host);
    checks->GetGrammarCheck()->SetEnabled(true);
    const auto reader = boost::make_shared<CTextReader>(L"");
    const std::pair<const wchar_t*, std::vector<int>> table[] = {
        {L"<?php\nfunction f(int ...$a) { return match(1) { default => fn() => $a[0] }; }\n", {}},
        {L"<?php\n$a = 1;\n$b = = 2;\n", {1025}},
        {L"<?php\nclass A { function f() {} function f() {} }\n", {1156}},
        {L"<p><?= $a ?></p><?php if ($a): ?><b><?php endif ?>\n", {}},
    };
    for (const auto& [text, codes] : table) {
        reader->SetText(text);
        std::vector<CodeAnalyzer::SDiagnostic> found;
        EXPECT_TRUE(checks->Check(reader, L"/a.php", L"PHPSPDocFactory", found));
        std::vector<int> all;
        for (const auto& diagnostic : found)
            all.push_back(diagnostic.error.code);
        EXPECT_EQ(all, codes);
    }
    checks->Free();
}
