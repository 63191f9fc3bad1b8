#include "Components/CADocumentCheck.h"

#include "Base/HostComponent.h"
#include "Kesh/Editor/IDocBuffer.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Parsers/CssSyntaxChecker.h"
#include "Parsers/HtmlSyntaxChecker.h"
#include "Parsers/PhpSyntaxParser.h"
#include "SPBase/reader.h"

#include <algorithm>
#include <boost/make_shared.hpp>

namespace Kesh::CodeAnalyzer {

namespace {

std::wstring WholeText(SyntaxParser::ISPDocument& source)
{
    Editor::IDocBuffer* buffer = source.GetBuffer();
    std::wstring text = buffer ? buffer->GetText(L"\n") : std::wstring();
    // The reader takes the first NUL for the end of the text.
    std::replace(text.begin(), text.end(), L'\0', L'\xFFFD');
    return text;
}

} // namespace

CCADocumentCheck::CCADocumentCheck() = default;
CCADocumentCheck::~CCADocumentCheck() = default;

std::unique_ptr<CCADocumentCheck>
CCADocumentCheck::Create(SDK::IApplication* application, SyntaxParser::ISPDocument& source,
                         SyntaxParser::CDefRegions* defs, CCAErrorsManager* errorsManager,
                         CHtmlCustomItemsKeeper* customItems, CCADocParser* owner)
{
    std::unique_ptr<CCADocumentCheck> check(new CCADocumentCheck);
    check->m_reader = boost::make_shared<SyntaxParser::CSimpleReader>(WholeText(source));
    auto parser = Base::GetHostComponent<SyntaxParser::IParserComponent>(application, L"IParserComponent");
    auto document = parser->CreateDocument(check->m_reader, source.GetFilePath(), source.GetFactoryName());
    if (!document)
        return nullptr;
    check->m_document = document;

    if (document->GetFactoryName() == L"PHPSPDocFactory") {
        check->m_phpParser = boost::make_shared<CPhpSyntaxParser>(defs, errorsManager);
        check->m_phpParser->InitParser(document);
    }
    check->m_htmlChecker =
        std::make_unique<CHtmlSyntaxChecker>(owner, document, application, errorsManager, customItems);
    check->m_cssChecker = std::make_unique<CCssSyntaxChecker>(owner, document, application, errorsManager);
    if (SyntaxParser::ISemanticParser* semantic = document->GetSemanticParser(L"HTML"))
        semantic->SetEnabled(true);
    return check;
}

void CCADocumentCheck::TakeSnapshot(SyntaxParser::ISPDocument& source, const std::wstring& path)
{
    if (m_phpParser)
        m_phpParser->SteFileName(path);
    m_reader->SetString(WholeText(source));
}

void CCADocumentCheck::Run()
{
    try {
        m_document->Parse(true);
    } catch (...) {
        // A fault in the check of one text ends that check; it must not take the user's editor with it.
    }
}

void CCADocumentCheck::ReleaseMarkupCheckers()
{
    m_htmlChecker.reset();
    m_cssChecker.reset();
}

} // namespace Kesh::CodeAnalyzer
