#include "Checks/CADocumentCheck.h"

#include "Base/CommonString.h"
#include "Base/HostComponent.h"
#include "Checks/CAGrammarCheck.h"
#include "Kesh/Editor/IDocBuffer.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Markup/CssSyntaxChecker.h"
#include "Markup/HtmlSyntaxChecker.h"
#include "Markup/MarkupChecker.h"
#include "Parsers/PhpSyntaxParser.h"
#include "SPBase/reader.h"

#include <boost/make_shared.hpp>
#include <exception>

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
    check->m_reader->TakeWhole(WholeText(source));
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
    check->SetPath(document->GetFilePath());
    return check;
}

void CCADocumentCheck::AddCheckers(SDK::IApplication* application, SyntaxParser::CDefRegions* defs,
                                   IErrorsReceiver* receiver, CHtmlCustomItemsKeeper* customItems,
                                   ICheckOwner* owner)
{
    SetCancelFlag(std::make_shared<std::atomic<bool>>(false));
    m_receiver = receiver;
    m_owner = owner;
    if (m_document->GetFactoryName() == L"PHPSPDocFactory") {
        m_phpParser = boost::make_shared<CPhpSyntaxParser>(defs, receiver);
        m_phpParser->InitParser(m_document);
    }
    m_htmlChecker =
        std::make_unique<CHtmlSyntaxChecker>(owner, m_document, application, receiver, customItems);
    m_cssChecker = std::make_unique<CCssSyntaxChecker>(owner, m_document, application, receiver);
    if (SyntaxParser::ISemanticParser* semantic = m_document->GetSemanticParser(L"HTML"))
        semantic->SetEnabled(true);
    m_endOfParse =
        m_document->GetEndOfParseSignal().connect([this](SyntaxParser::ISPDocument*) { m_passEnded = true; });
}

void CCADocumentCheck::SetPath(const std::wstring& path)
{
    if (m_phpParser)
        m_phpParser->SteFileName(path);
    if (m_markupChecker)
        m_markupChecker->SetPath(path);
    m_path = path;
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
    SetPath(path);
    m_reader->TakeWhole(WholeText(source)); // to PHP a NUL is a character like any other
}

ECheckEnd CCADocumentCheck::Run()
{
    m_end = Parse();
    if (m_end != ECheckEnd::Complete && m_phpParser) { // has not heard of the end of the pass
        m_phpParser->BeforeParse({}, m_reader);
        m_phpParser->AfterParse();
    }
    return m_end;
}

void CCADocumentCheck::FollowWanted()
{
    if (!m_followsGrammar && m_phpParser && m_wanted.grammar && m_wanted.grammar->IsEnabled()) {
        m_phpParser->FollowGrammar(*m_document, m_wanted.grammar);
        m_followsGrammar = true;
    }
    if (!m_markupChecker && m_wanted.markup && m_wanted.markup->IsEnabled()) {
        m_markupChecker = std::make_unique<CMarkupChecker>(m_wanted.markup, m_owner, m_receiver);
        m_markupChecker->SetPath(m_path);
        if (m_wanted.halves)
            m_markupChecker->KeepHalves(m_wanted.halves);
        m_markupChecker->Follow(*m_document);
        if (m_htmlChecker)
            m_htmlChecker->SetPassedOver([this](const SyntaxParser::SSemanticTreeNode& node) {
                return m_markupChecker->PassesOver(node);
            });
        if (m_cssChecker)
            m_cssChecker->SetPassedOver([this](const SyntaxParser::SSemanticTreeNode& property) {
                return m_markupChecker->PassesOverProperty(property);
            });
    }
}

// A fault in the check of one text ends that check; it must not take the user's editor with it.
ECheckEnd CCADocumentCheck::Parse()
{
    m_passEnded = false;
    try {
        FollowWanted();
        m_document->Parse(true);
        return m_passEnded || !*m_cancelled ? ECheckEnd::Complete : ECheckEnd::GivenUp;
    } catch (const std::exception& fault) {
        m_failure = Base::CCommonString::FromUtf8(fault.what());
    } catch (...) {
        m_failure = L"the positions of regions do not fit the text";
    }
    return *m_cancelled ? ECheckEnd::GivenUp : ECheckEnd::Failed;
}

void CCADocumentCheck::ReleaseMarkupCheckers()
{
    m_htmlChecker.reset();
    m_cssChecker.reset();
    m_owner = nullptr;
    if (m_markupChecker) // the document still knows it
        m_markupChecker->ForgetOwner();
}

} // namespace Kesh::CodeAnalyzer
