#include "SyntaxParser/SPDocument.h"

#include "Kesh/SyntaxParser/IParser.h"
#include "SyntaxParser/MarkupTrees.h"
#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/TextReader.h"

#include <algorithm>
#include <array>
#include <boost/make_shared.hpp>
#include <mutex>
#include <utility>

namespace Kesh::SyntaxParser {

namespace {

constexpr const wchar_t* PhpFactory = L"PHPSPDocFactory";
constexpr const wchar_t* HtmlFactory = L"HTMLSPDocFactory";
constexpr const wchar_t* CssFactory = L"CSSSPDocFactory";

/// Keeps the handlers of a document.
class CDocumentParser final : public IParser
{
public:
    void InitComponent(ISPDocument* /*document*/) override {}
    std::wstring GetComponentName() override { return L"IParser"; }
    void AddStateRegionHandler(IStateRegionHandler* handler) override { m_handlers.push_back(handler); }
    const std::vector<IStateRegionHandler*>& Handlers() const { return m_handlers; }

private:
    std::vector<IStateRegionHandler*> m_handlers;
};

class CHtmlSemanticParser final : public ISemanticParser
{
public:
    void SetEnabled(bool enabled) override { m_enabled = enabled; }
    bool IsEnabled() const { return m_enabled; }

private:
    bool m_enabled = false;
};

class CSPDocument final : public ISPDocument
{
public:
    CSPDocument(boost::shared_ptr<IReader> reader, const SDocumentSource& source)
        : m_reader(std::move(reader)), m_parser(boost::make_shared<CDocumentParser>()), m_source(source)
    {
    }

    boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring& name) override
    {
        if (name == L"IReader")
            return m_reader;
        if (name == L"IParser")
            return m_parser;
        return {};
    }
    std::wstring GetFilePath() override { return m_source.path; }
    std::wstring GetFactoryName() override { return m_source.factory; }
    CDefRegions* GetDefRegions() override { return SyntaxParser::GetDefRegions(); }
    SDK::IDocument* GetDocument() override { return m_source.document; }
    Editor::IDocBuffer* GetBuffer() override { return m_source.buffer; }
    ISemanticParser* GetSemanticParser(const std::wstring& language) override
    {
        return language == L"HTML" ? &m_semanticParser : nullptr;
    }
    EndOfParseSignal& GetEndOfParseSignal() override { return m_endOfParse; }
    DocDestroySignal& GetDocDestroySignal() override { return m_docDestroy; }
    void LockSemanticData() override { m_semanticMutex.lock(); }
    void UnlockSemanticData() override { m_semanticMutex.unlock(); }

    const SSemanticTree* GetSemanticTree(const std::wstring& language) override
    {
        if (!m_treesBuilt)
            return nullptr;
        if (language == L"HTML")
            return &m_trees.html;
        return language == L"CSS" ? &m_trees.css : nullptr;
    }

    void Parse(bool /*full*/) override
    {
        std::wstring copy;
        std::wstring_view text;
        if (const auto* whole = dynamic_cast<const CTextReader*>(m_reader.get()))
            text = whole->View();
        else
            text = copy = m_reader->GetText();
        std::vector<SIsland> islands;
        SendRegions(text, islands);
        if (m_semanticParser.IsEnabled()) {
            const EMarkup markup = m_source.factory == CssFactory ? EMarkup::Css : EMarkup::Html;
            SMarkupTrees trees = BuildMarkupTrees(text, markup, islands);
            const std::lock_guard lock(m_semanticMutex);
            m_trees = std::move(trees);
            m_treesBuilt = true;
        }
        m_endOfParse(this);
    }

private:
    /// Style sheets hold no PHP; everything else is scanned for it.
    void SendRegions(std::wstring_view text, std::vector<SIsland>& islands)
    {
        const STextChange change;
        std::vector<IStateRegionHandler*> handlers;
        for (IStateRegionHandler* handler : m_parser->Handlers()) {
            if (handler->BeforeParse(change, m_reader))
                handlers.push_back(handler);
        }
        if (m_source.factory != CssFactory)
            CPhpScanner(text, handlers).Run(m_semanticParser.IsEnabled() ? &islands : nullptr);
        for (IStateRegionHandler* handler : handlers) {
            handler->SendRegsEnd();
            handler->AfterParse();
        }
    }

    boost::shared_ptr<IReader> m_reader;
    boost::shared_ptr<CDocumentParser> m_parser;
    SDocumentSource m_source;
    CHtmlSemanticParser m_semanticParser;
    EndOfParseSignal m_endOfParse;
    DocDestroySignal m_docDestroy;
    std::mutex m_semanticMutex;
    SMarkupTrees m_trees;
    bool m_treesBuilt = false;
};

} // namespace

std::wstring FactoryForPath(const std::wstring& path)
{
    static const std::array<std::pair<std::wstring_view, const wchar_t*>, 8> factories{
        {{L"php", PhpFactory},
         {L"phtml", PhpFactory},
         {L"inc", PhpFactory},
         {L"tpl", PhpFactory},
         {L"ctp", PhpFactory},
         {L"html", HtmlFactory},
         {L"htm", HtmlFactory},
         {L"css", CssFactory}}};
    const std::size_t dot = path.find_last_of(L"./");
    if (dot == std::wstring::npos || path[dot] != L'.')
        return {};
    std::wstring ending = path.substr(dot + 1);
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c | 0x20 : c; });
    for (const auto& [known, factory] : factories) {
        if (ending == known)
            return factory;
    }
    return {};
}

boost::shared_ptr<ISPDocument> MakeSPDocument(boost::shared_ptr<IReader> reader,
                                              const SDocumentSource& source)
{
    if (source.factory != PhpFactory && source.factory != HtmlFactory && source.factory != CssFactory)
        return nullptr;
    return boost::make_shared<CSPDocument>(std::move(reader), source);
}

} // namespace Kesh::SyntaxParser
