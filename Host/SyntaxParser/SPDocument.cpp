#include "SyntaxParser/SPDocument.h"

#include "Kesh/SyntaxParser/IParser.h"
#include "Kesh/SyntaxParser/IRegionsOnDemand.h"
#include "Kesh/SyntaxParser/ITokenSource.h"
#include "SyntaxParser/MarkupPass.h"
#include "SyntaxParser/MarkupTrees.h"
#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/PhpTokenPass.h"
#include "SyntaxParser/SecondCut.h"
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
    struct SHandler
    {
        IStateRegionHandler* handler;
        std::wstring name; ///< tells people whose it is
    };

    explicit CDocumentParser(boost::shared_ptr<IReader> reader) : m_reader(std::move(reader)) {}

    void InitComponent(ISPDocument* /*document*/) override {}
    std::wstring GetComponentName() override { return L"IParser"; }
    void AddStateRegionHandler(IStateRegionHandler* handler) override
    {
        handler->Init(m_reader);
        m_handlers.push_back({handler, handler->GetSRName()});
    }
    const std::vector<SHandler>& Handlers() const { return m_handlers; }

private:
    boost::shared_ptr<IReader> m_reader;
    std::vector<SHandler> m_handlers;
};

/// Passes on to a handler the regions of the part of the document that it needs.
class CPartOfDocument final : public IStateRegionHandler
{
public:
    explicit CPartOfDocument(IStateRegionHandler* handler)
        : m_handler(handler), m_start(handler->GetStartPos()), m_end(handler->GetEndPos())
    {
    }
    bool IsWhole() const { return m_start <= CIterator{} && CIterator{Last, Last} <= m_end; }

    void Init(boost::shared_ptr<IReader> reader) override { m_handler->Init(std::move(reader)); }
    bool BeforeParse(const STextChange& change, boost::shared_ptr<IReader> reader) override
    {
        return m_handler->BeforeParse(change, std::move(reader));
    }
    void AfterParse() override { m_handler->AfterParse(); }
    void SendRegsEnd() override { m_handler->SendRegsEnd(); }
    int AddRegion(CRegion* region) override
    {
        return m_start < region->end && region->start < m_end ? m_handler->AddRegion(region) : 0;
    }
    std::wstring GetSRName() override { return m_handler->GetSRName(); }
    CIterator GetStartPos() override { return m_start; }
    CIterator GetEndPos() override { return m_end; }

private:
    static constexpr std::int64_t Last = 2147483647;

    IStateRegionHandler* m_handler;
    CIterator m_start;
    CIterator m_end;
};

class CTokenSource final : public ITokenSource
{
public:
    void InitComponent(ISPDocument* /*document*/) override {}
    std::wstring GetComponentName() override { return L"ITokenSource"; }
    void AddTokenHandler(ITokenHandler* handler) override { m_handlers.push_back(handler); }
    std::wstring_view GetText() const override { return m_text; }
    std::vector<SPhpToken> Cut(std::wstring_view code, CIterator place) const override
    {
        return CutTokens(code, place, m_shortTags);
    }
    const std::vector<ITokenHandler*>& Handlers() const { return m_handlers; }
    /// The text of the pass that begins.
    void SetText(std::wstring_view text, bool shortTags)
    {
        m_text = text;
        m_shortTags = shortTags;
    }

private:
    std::vector<ITokenHandler*> m_handlers;
    std::wstring_view m_text;
    bool m_shortTags = true;
};

class CMarkupTokens final : public IMarkupTokens
{
public:
    void InitComponent(ISPDocument* /*document*/) override {}
    std::wstring GetComponentName() override { return L"IMarkupTokens"; }
    void AddMarkupHandler(IMarkupHandler* handler) override { m_handlers.push_back(handler); }
    const std::vector<IMarkupHandler*>& Handlers() const { return m_handlers; }

private:
    std::vector<IMarkupHandler*> m_handlers;
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
        : m_reader(std::move(reader)),
          m_parser(boost::make_shared<CDocumentParser>(m_reader)),
          m_tokenSource(boost::make_shared<CTokenSource>()),
          m_markupTokens(boost::make_shared<CMarkupTokens>()),
          m_source(source)
    {
        m_giveUp.byHost = source.giveUp;
    }

    boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring& name) override
    {
        if (name == L"IReader")
            return m_reader;
        if (name == L"IParser")
            return m_parser;
        if (name == L"ITokenSource")
            return m_tokenSource;
        if (name == L"IMarkupTokens")
            return m_markupTokens;
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
        if (const auto* whole = dynamic_cast<const CTextReader*>(m_reader.get())) {
            text = whole->View();
            m_hasMark = whole->HasMark();
        } else {
            text = copy = m_reader->GetText();
            m_hasMark = m_source.hasMark && m_source.hasMark();
        }
        std::vector<SIsland> islands;
        if (!SendRegions(text, islands))
            return;
        const EMarkup markup = m_source.factory == CssFactory ? EMarkup::Css : EMarkup::Html;
        if (m_semanticParser.IsEnabled()) {
            SMarkupTrees trees = BuildMarkupTrees(text, markup, islands, &m_giveUp, m_source.names.get());
            const std::lock_guard lock(m_semanticMutex);
            m_trees = std::move(trees);
            m_treesBuilt = true;
        }
        if (!m_markupTokens->Handlers().empty() && !IsCancelled())
            RunMarkupPass(text, markup, islands, &m_giveUp, m_markupTokens->Handlers(),
                          {.printed = &m_printed, .isSmarty = m_source.path.ends_with(L".tpl")});
        if (IsCancelled())
            return;
        m_endOfParse(this);
    }

    void SetCancelFlag(const std::atomic<bool>* cancelled) override { m_giveUp.byAsker = cancelled; }

private:
    bool IsCancelled() const { return m_giveUp.IsSet(); }
    bool NeedsIslands() const { return m_semanticParser.IsEnabled() || !m_markupTokens->Handlers().empty(); }

    std::vector<ITokenHandler*> TokenHandlers(std::wstring_view text)
    {
        m_tokenSource->SetText(text, m_source.shortTags);
        std::vector<ITokenHandler*> handlers = m_tokenSource->Handlers();
        if (!m_markupTokens->Handlers().empty()) {
            m_printed.SetText(text);
            handlers.push_back(&m_printed);
        }
        return handlers;
    }

    /// Style sheets hold no PHP; everything else is scanned for it. False when the parse has been given up.
    bool SendRegions(std::wstring_view text, std::vector<SIsland>& islands)
    {
        const STextChange change;
        std::vector<IStateRegionHandler*> handlers;
        std::vector<IRegionsOnDemand*> waiting;
        std::vector<CPartOfDocument> parts;
        parts.reserve(m_parser->Handlers().size());
        for (const auto& [handler, name] : m_parser->Handlers()) {
            if (!handler->BeforeParse(change, m_reader))
                continue;
            auto* const onDemand = dynamic_cast<IRegionsOnDemand*>(handler);
            if (onDemand && onDemand->WaitsForTokens())
                waiting.push_back(onDemand);
            parts.emplace_back(handler);
            handlers.push_back(parts.back().IsWhole() ? handler : &parts.back());
        }
        if (m_source.factory != CssFactory && !Scan(text, handlers, waiting, islands))
            return false;
        for (IStateRegionHandler* handler : handlers) {
            handler->SendRegsEnd();
            handler->AfterParse();
        }
        return true;
    }

    bool Scan(std::wstring_view text, const std::vector<IStateRegionHandler*>& handlers,
              const std::vector<IRegionsOnDemand*>& waiting, std::vector<SIsland>& islands)
    {
        std::vector<SIsland>* const wanted = NeedsIslands() ? &islands : nullptr;
        if (waiting.size() < handlers.size()) {
            CPhpScanner scanner(text, handlers, TokenHandlers(text), m_source.shortTags);
            if (m_hasMark)
                scanner.BeginWithMark();
            return scanner.Run(wanted, &m_giveUp);
        }
        CPhpTokenPass pass(text, TokenHandlers(text), m_source.shortTags);
        if (m_hasMark)
            pass.BeginWithMark();
        if (!pass.Run(wanted, &m_giveUp))
            return false;
        std::vector<IStateRegionHandler*> needing;
        for (std::size_t i = 0; i < handlers.size(); ++i)
            if (waiting[i]->NeedsRegions())
                needing.push_back(handlers[i]);
        return needing.empty() || CPhpScanner(text, needing, {}, m_source.shortTags).Run(nullptr, &m_giveUp);
    }

    boost::shared_ptr<IReader> m_reader;
    boost::shared_ptr<CDocumentParser> m_parser;
    boost::shared_ptr<CTokenSource> m_tokenSource;
    boost::shared_ptr<CMarkupTokens> m_markupTokens;
    SDocumentSource m_source;
    SGiveUp m_giveUp;
    CHtmlSemanticParser m_semanticParser;
    EndOfParseSignal m_endOfParse;
    DocDestroySignal m_docDestroy;
    std::mutex m_semanticMutex;
    SMarkupTrees m_trees;
    CPrintedStrings m_printed;
    bool m_treesBuilt = false;
    bool m_hasMark = false; ///< of the text that is parsed
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
