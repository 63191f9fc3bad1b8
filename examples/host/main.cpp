// A host in one file. It loads the code validator's checks, gives them a text and prints what they find.

#include <Kesh/CodeAnalyzer/ITextChecks.h>
#include <Kesh/SyntaxParser/IParserComponent.h>

#include <boost/make_shared.hpp>
#include <cwctype>
#include <dlfcn.h>
#include <iostream>

using namespace Kesh;
using namespace Kesh::SyntaxParser;

namespace {

// Region kinds are told apart by their addresses. A real host has one for each name in Regions.h.
ISynRegion OpenTag, Text, Opening, Closing, Semicolon, Assign, Word, Variable;

CDefRegions* Kinds()
{
    static CDefRegions kinds;
    auto& [tags, tokens, extras, variables, comments, classes, interfaces] = kinds.Php;
    tags[PhpTag::Opening] = &OpenTag;
    variables[PhpVar::Variable] = &Variable;
    tokens[PhpToken::Text] = &Text;
    tokens[PhpToken::Opening] = &Opening;
    tokens[PhpToken::Closing] = &Closing;
    tokens[PhpToken::Semicolon] = &Semicolon;
    tokens[PhpToken::Assign] = &Assign;
    tokens[PhpToken::Word] = &Word;
    return &kinds;
}

// The text of a document. Regions carry their characters with them, so that nobody has to walk it.
struct CReader final : IReader
{
    explicit CReader(std::wstring text) : m_text(std::move(text)) {}
    void InitComponent(ISPDocument*) override {}
    std::wstring GetComponentName() override { return L"IReader"; }
    void Reset() override {}
    bool NextChar() override { return false; }
    bool PrevChar() override { return false; }
    wchar_t ReadChar() override { return 0; }
    CIterator GetPos() override { return {}; }
    void SetPos(CIterator) override {}
    std::wstring GetText(CIterator, CIterator) override { return {}; }
    std::wstring GetText() override { return m_text; }
    void SetText(const std::wstring& text) override { m_text = text; }
    std::wstring GetFirstString() override { return {}; }
    void Free() override { delete this; }
    CIterator GetEnd() override { return {}; }

    std::wstring m_text;
};

// Where the checks register for the regions of a document.
struct CHandlers final : IParser
{
    void InitComponent(ISPDocument*) override {}
    std::wstring GetComponentName() override { return L"IParser"; }
    void AddStateRegionHandler(IStateRegionHandler* handler) override { list.push_back(handler); }
    std::vector<IStateRegionHandler*> list;
};

// Cuts a text into regions: a very small PHP, enough for assignments and calls.
struct CDocument final : ISPDocument
{
    explicit CDocument(boost::shared_ptr<IReader> reader) : m_reader(std::move(reader)) {}
    boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring& name) override
    {
        if (name == L"IReader")
            return m_reader;
        return m_handlers;
    }
    std::wstring GetFilePath() override { return L"example.php"; }
    std::wstring GetFactoryName() override { return L"PHPSPDocFactory"; }
    CDefRegions* GetDefRegions() override { return Kinds(); }
    SDK::IDocument* GetDocument() override { return nullptr; }
    Editor::IDocBuffer* GetBuffer() override { return nullptr; }
    ISemanticParser* GetSemanticParser(const std::wstring&) override { return nullptr; } // no HTML here
    EndOfParseSignal& GetEndOfParseSignal() override { return m_endOfParse; }
    DocDestroySignal& GetDocDestroySignal() override { return m_destroyed; }
    void LockSemanticData() override {}
    void UnlockSemanticData() override {}
    const SSemanticTree* GetSemanticTree(const std::wstring&) override { return nullptr; }

    void Parse(bool) override
    {
        const std::wstring text = m_reader->GetText();
        for (IStateRegionHandler* handler : m_handlers->list)
            handler->BeforeParse({}, m_reader);
        CRegion region;
        for (std::size_t at = 0; at < text.size(); at += region.text.size()) {
            Cut(region, std::wstring_view(text).substr(at));
            for (IStateRegionHandler* handler : m_handlers->list)
                handler->AddRegion(&region);
        }
        for (IStateRegionHandler* handler : m_handlers->list)
            handler->SendRegsEnd(), handler->AfterParse();
        m_endOfParse(this);
    }

    static void Cut(CRegion& region, std::wstring_view rest)
    {
        const auto isWord = [](wchar_t c) { return c == L'_' || std::iswalnum(static_cast<wint_t>(c)); };
        const std::size_t symbol = std::wstring_view(L"([{)]};=").find(rest[0]);
        std::size_t size = 1;
        if (rest.starts_with(L"<?php")) {
            size = 5;
            region.definition = &OpenTag;
        } else if (rest[0] == L'$' || isWord(rest[0])) {
            while (size < rest.size() && isWord(rest[size]))
                ++size;
            region.definition = rest[0] == L'$' ? &Variable : &Word;
        } else {
            region.definition = symbol < 3    ? &Opening
                                : symbol < 6  ? &Closing
                                : symbol == 6 ? &Semicolon
                                : symbol == 7 ? &Assign
                                              : &Text;
        }
        region.text = rest.substr(0, size);
        region.start = region.end;
        region.end.x += static_cast<std::int64_t>(size);
        if (region.text == L"\n")
            region.end = {0, region.end.y + 1};
    }

    boost::shared_ptr<IReader> m_reader;
    boost::shared_ptr<CHandlers> m_handlers = boost::make_shared<CHandlers>();
    EndOfParseSignal m_endOfParse;
    DocDestroySignal m_destroyed;
};

// The parsing service. It knows no names of HTML and CSS, so that its lists are empty.
struct CService final : IParserComponent, ICompletionData, IAttributeSource, ICssSyntax
{
    void InitComponent(SDK::IApplication*) override {}
    std::wstring GetComponentName() override { return L"IParserComponent"; }
    CDefRegions* GetDefRegions() override { return Kinds(); }
    const ICompletionData* GetCompletionData() override { return this; }
    const ICssSyntax* GetCssSyntax() override { return this; }
    boost::shared_ptr<ISPDocument> CreateDocument(boost::shared_ptr<IReader> reader, const std::wstring&,
                                                  const std::wstring&) override
    {
        return boost::make_shared<CDocument>(reader);
    }
    boost::shared_ptr<ISPDocument> GetParsedDocument(const std::wstring&) override { return {}; }
    boost::shared_ptr<ISPDocument> GetSPDocument(SDK::IDocument*) override { return {}; }
    DocCreatedSignal& GetDocCreatedSignal() override { return m_created; }
    ProjectParsedSignal& GetProjectParsedSignal() override { return m_projectParsed; }
    FindErrorRegionsSignal& GetFindErrorRegionsSignal() override { return m_findRegions; }
    const TCompletionList& GetTags() const override { return m_none; }
    const TCompletionList& GetStyleProperties() const override { return m_none; }
    const IAttributeSource* GetAttributeSource() const override { return this; }
    const TCompletionList& GetAttributes(const std::wstring&) const override { return m_none; }
    ISynRegion* GetPropertyNameKind() const override { return nullptr; }
    ISynRegion* GetElementNameKind() const override { return nullptr; }

    TCompletionList m_none;
    DocCreatedSignal m_created;
    ProjectParsedSignal m_projectParsed;
    FindErrorRegionsSignal m_findRegions;
};

// The application: of all its services, checks without a window need the parsing service only.
struct CHost final : SDK::IApplication
{
    boost::weak_ptr<SDK::IComponent1<SDK::IApplication>> GetComponent(const std::wstring&) override
    {
        return m_service;
    }
    SDK::IMainFrame* GetMainFrame() override { return nullptr; }
    SDK::IImageListService* GetImageListService() override { return nullptr; }
    SDK::ISettings* GetSettings() override { return nullptr; }
    SDK::ITimerService* GetTimerService() override { return nullptr; }
    SDK::IThreadService* GetThreadService() override { return nullptr; }
    SDK::IDocumentService* GetDocumentService() override { return nullptr; }
    double GetScaleFactor() override { return 1.0; }
    LangSupport::ILangSource* GetLangSource() override { return nullptr; }
    boost::shared_ptr<CService> m_service = boost::make_shared<CService>();
};

} // namespace

int main()
{
    void* library = ::dlopen("libCodeAnalyzerChecks.so.1", RTLD_NOW);
    void* address = library ? ::dlsym(library, "CodeAnalyzerCreateChecks") : nullptr;
    if (!address)
        return std::cerr << ::dlerror() << '\n', 2;
    CHost host;
    auto* checks = reinterpret_cast<decltype(&CodeAnalyzerCreateChecks)>(address)(&host);
    std::vector<CodeAnalyzer::SDiagnostic> found;
    if (!checks->Check(boost::make_shared<CReader>(L"<?php\n$a = 1\n$b = 2;\n"), L"example.php",
                       L"PHPSPDocFactory", found)) {
        std::wcout << L"the check failed: " << checks->GetFailure() << L'\n';
        checks->Free();
        return 2;
    }
    for (const CodeAnalyzer::SDiagnostic& diagnostic : found) {
        const CodeAnalyzer::SCAError& error = diagnostic.error;
        std::wcout << error.pos.start.y + 1 << L':' << error.pos.start.x + 1 << L": "
                   << checks->GetTexts()->GetMessage(diagnostic) << L" [" << error.code << L"]\n";
    }
    checks->Free();
    return found.empty() ? 0 : 1;
}
