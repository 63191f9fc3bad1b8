#include "Checks/CATextChecks.h"

#include "Base/HostComponent.h"
#include "Checks/CACheckable.h"
#include "Diagnostics/DiagnosticList.h"
#include "Kesh/LangSupport/LangSupport.h"

#include <utility>

namespace Kesh::CodeAnalyzer {

CTextChecks::CTextChecks(SDK::IApplication* application)
    : m_application(application),
      m_parser(Base::GetHostComponent<SyntaxParser::IParserComponent>(application, L"IParserComponent"))
{
    LangSupport::CLangSupport::SetSource(application->GetLangSource());
    SetCancelFlag(nullptr);
}

void CTextChecks::SetCancelFlag(TCancelFlag cancelled)
{
    m_cancelled = cancelled ? std::move(cancelled) : std::make_shared<std::atomic<bool>>(false);
}

bool CTextChecks::Check(const boost::shared_ptr<SyntaxParser::IReader>& reader, const std::wstring& path,
                        const std::wstring& factoryName, std::vector<SDiagnostic>& found)
{
    m_failure.clear();
    if (!IsOwnFactory(factoryName) || IsTemplate(path))
        return true;
    SLanguage& language = m_languages[factoryName];
    if (language.reader != reader) {
        language.check.reset();
        language.reader = reader;
        if (auto document = m_parser->CreateDocument(reader, path, factoryName)) {
            language.check =
                CCADocumentCheck::CreateOver(m_application, std::move(document), this, &m_customItems);
            language.check->Follow({&m_grammarCheck, &m_markupCheck});
            language.check->SetDetailed(true);
        }
    }
    if (!language.check)
        return true;
    language.check->SetPath(path);
    language.check->SetCancelFlag(m_cancelled);
    m_found = &found;
    const ECheckEnd end = language.check->Run();
    m_found = nullptr;
    if (end == ECheckEnd::Complete)
        return true;
    if (end == ECheckEnd::Failed)
        m_failure = language.check->GetFailure();
    language.reader.reset(); // the next text gets a document without a past
    return false;
}

void CTextChecks::AddErrors(const std::wstring& /*file*/, const std::vector<SCAError>& errors,
                            TDetails details)
{
    for (SDiagnostic& diagnostic : Joined(errors, details))
        m_found->push_back(std::move(diagnostic));
}

} // namespace Kesh::CodeAnalyzer

Kesh::CodeAnalyzer::ITextChecks* CodeAnalyzerCreateChecks(Kesh::SDK::IApplication* application)
{
    return new Kesh::CodeAnalyzer::CTextChecks(application);
}
