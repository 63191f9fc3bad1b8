#include "Checks/CADocumentCheck.h"

#include "Base/HostComponent.h"
#include "Kesh/Editor/IDocBuffer.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Markup/CssSyntaxChecker.h"
#include "Markup/HtmlSyntaxChecker.h"
#include "Parsers/PhpSyntaxParser.h"
#include "SPBase/reader.h"

#include <boost/make_shared.hpp>

namespace Kesh::CodeAnalyzer {

namespace {

std::wstring WholeText(SyntaxParser::ISPDocument& source)
{
    Editor::IDocBuffer* buffer = source.GetBuffer();
    return buffer ? buffer->GetText(L"\n") : std::wstring();
}

} // namespace

CCADocumentCheck::CCADocumentCheck() = default;
CCADocumentCheck::~CCADocumentCheck() = default;

std::unique_ptr<CCADocumentCheck>
CCADocumentCheck::Create(SDK::IApplication* application, SyntaxParser::ISPDocument& source,
                         SyntaxParser::CDefRegions* defs, IErrorsReceiver* receiver,
                         CHtmlCustomItemsKeeper* customItems, ICheckOwner* owner)
{
    std::unique_ptr<CCADocumentCheck> check(new CCADocumentCheck);
    check->m_reader = boost::make_shared<SyntaxParser::CSimpleReader>();
    check->m_reader->SetWhole(WholeText(source));
    auto parser = Base::GetHostComponent<SyntaxParser::IParserComponent>(application, L"IParserComponent");
    auto document = parser->CreateDocument(check->m_reader, source.GetFilePath(), source.GetFactoryName());
    if (!document)
        return nullptr;
    check->m_document = document;
    check->AddCheckers(application, defs, receiver, customItems, owner);
    return check;
}

std::unique_ptr<CCADocumentCheck>
CCADocumentCheck::CreateOver(SDK::IApplication* application,
                             boost::shared_ptr<SyntaxParser::ISPDocument> document, IErrorsReceiver* receiver,
                             CHtmlCustomItemsKeeper* customItems)
{
    std::unique_ptr<CCADocumentCheck> check(new CCADocumentCheck);
    check->m_document = document;
    check->AddCheckers(application, document->GetDefRegions(), receiver, customItems, nullptr);
    if (check->m_phpParser)
        check->m_phpParser->SteFileName(document->GetFilePath());
    return check;
}

void CCADocumentCheck::AddCheckers(SDK::IApplication* application, SyntaxParser::CDefRegions* defs,
                                   IErrorsReceiver* receiver, CHtmlCustomItemsKeeper* customItems,
                                   ICheckOwner* owner)
{
    SetCancelFlag(std::make_shared<std::atomic<bool>>(false));
    if (m_document->GetFactoryName() == L"PHPSPDocFactory") {
        m_phpParser = boost::make_shared<CPhpSyntaxParser>(defs, receiver);
        m_phpParser->InitParser(m_document);
    }
    m_htmlChecker =
        std::make_unique<CHtmlSyntaxChecker>(owner, m_document, application, receiver, customItems);
    m_cssChecker = std::make_unique<CCssSyntaxChecker>(owner, m_document, application, receiver);
    if (SyntaxParser::ISemanticParser* semantic = m_document->GetSemanticParser(L"HTML"))
        semantic->SetEnabled(true);
}

void CCADocumentCheck::FollowGrammar(const IGrammarCheck* wanted)
{
    if (m_phpParser)
        m_phpParser->FollowGrammar(*m_document, wanted);
}

void CCADocumentCheck::SetDetailed(bool detailed)
{
    m_htmlChecker->SetDetailed(detailed);
    m_cssChecker->SetDetailed(detailed);
}

void CCADocumentCheck::SetCancelFlag(TCancelFlag cancelled)
{
    m_cancelled = std::move(cancelled);
    m_document->SetCancelFlag(m_cancelled.get());
}

void CCADocumentCheck::TakeSnapshot(SyntaxParser::ISPDocument& source, const std::wstring& path)
{
    *m_cancelled = false;
    if (m_phpParser)
        m_phpParser->SteFileName(path);
    m_reader->SetWhole(WholeText(source)); // to PHP a NUL is a character like any other
}

bool CCADocumentCheck::Run()
{
    bool complete = false;
    try {
        m_document->Parse(true);
        complete = !*m_cancelled;
    } catch (...) {
        // A fault in the check of one text ends that check; it must not take the user's editor with it.
    }
    if (!complete && m_phpParser) { // has not heard of the end of the pass
        m_phpParser->BeforeParse({}, m_reader);
        m_phpParser->AfterParse();
    }
    return !*m_cancelled;
}

void CCADocumentCheck::ReleaseMarkupCheckers()
{
    m_htmlChecker.reset();
    m_cssChecker.reset();
}

} // namespace Kesh::CodeAnalyzer
