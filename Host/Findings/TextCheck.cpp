#include "Findings/TextCheck.h"

#include "Application/PluginLibrary.h"
#include "Base/Exception.h"
#include "Findings/ApplyRules.h"

#include <utility>

namespace Kesh::Findings {

CTextCheck::CTextCheck(const char* library, std::shared_ptr<const CProjectRules> rules, SWantedChecks wanted,
                       LangSupport::ILangSource* translations)
    : CTextCheck(Host::CPluginLibrary(library).Symbol<TCreate>("CodeAnalyzerCreateChecks"), std::move(rules),
                 wanted, translations)
{
}

CTextCheck::CTextCheck(TCreate* create, std::shared_ptr<const CProjectRules> rules, SWantedChecks wanted,
                       LangSupport::ILangSource* translations)
    : m_application(translations),
      m_checks(create(&m_application)),
      m_reader(boost::make_shared<SyntaxParser::CTextReader>(std::wstring()))
{
    if (CodeAnalyzer::IGrammarCheck* grammar = m_checks->GetGrammarCheck())
        grammar->SetEnabled(wanted.grammar);
    if (CodeAnalyzer::IMarkupCheck* markup = m_checks->GetMarkupCheck())
        markup->SetEnabled(wanted.markup);
    SetRules(std::move(rules));
}

void CTextCheck::SetRules(std::shared_ptr<const CProjectRules> rules)
{
    if (m_rules == rules)
        return;
    m_rules = std::move(rules);
    ApplyRules(m_rules, m_application.Parser(), m_checks->GetGrammarCheck(), m_checks->GetMarkupCheck());
}

// The checks keep a document for one text after another, which stays as its first file wants it.
void CTextCheck::ChooseReader(const std::wstring& path)
{
    TRules rules = m_rules->For(path);
    if (rules == m_readerRules)
        return;
    m_readerRules = std::move(rules);
    m_reader = boost::make_shared<SyntaxParser::CTextReader>(std::wstring());
}

std::vector<CodeAnalyzer::SDiagnostic> CTextCheck::Run(const std::wstring& path, const std::wstring& factory)
{
    std::vector<CodeAnalyzer::SDiagnostic> found;
    if (!m_checks->Check(m_reader, path, factory, found))
        throw Base::CWorkError(L"the check failed: " + m_checks->GetFailure(), __LINE__,
                               "Host/Findings/TextCheck");
    return found;
}

std::vector<CodeAnalyzer::SDiagnostic> CTextCheck::Check(std::wstring_view text, const std::wstring& path,
                                                         const std::wstring& factory)
{
    ChooseReader(path);
    m_reader->SetText(std::wstring(text));
    return Run(path, factory);
}

std::vector<CodeAnalyzer::SDiagnostic>
CTextCheck::CheckBytes(std::string_view bytes, const std::wstring& path, const std::wstring& factory)
{
    ChooseReader(path);
    m_reader->Decode(bytes);
    return Run(path, factory);
}

} // namespace Kesh::Findings
