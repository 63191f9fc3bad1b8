#pragma once

#include "Checks/CADocumentCheck.h"
#include "Checks/CAGrammarCheck.h"
#include "Checks/CAMarkupCheck.h"
#include "Diagnostics/ErrorsReceiver.h"
#include "Diagnostics/Messages.h"
#include "Kesh/CodeAnalyzer/ITextChecks.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Markup/HtmlCustomItemsKeeper.h"

#include <map>

namespace Kesh::CodeAnalyzer {

/// The checks of a document, one text after another.
class CTextChecks final : public ITextChecks, private IErrorsReceiver
{
public:
    /// Raises Base::CCriticalError "Bad sweak pointer" without "IParserComponent".
    explicit CTextChecks(SDK::IApplication* application);

    bool Check(const boost::shared_ptr<SyntaxParser::IReader>& reader, const std::wstring& path,
               const std::wstring& factoryName, std::vector<SDiagnostic>& found) override;
    ICustomNames* GetCustomNames() override { return &m_customItems; }
    IDiagnosticTexts* GetTexts() override { return &m_texts; }
    IGrammarCheck* GetGrammarCheck() override { return &m_grammarCheck; }
    IMarkupCheck* GetMarkupCheck() override { return &m_markupCheck; }
    void Free() override { delete this; }
    std::wstring GetFailure() override { return m_failure; }
    void SetCancelFlag(TCancelFlag cancelled) override;

private:
    /// What the texts of one language are checked with.
    struct SLanguage
    {
        boost::shared_ptr<SyntaxParser::IReader> reader;
        std::unique_ptr<CCADocumentCheck> check; ///< null: the host makes no document
    };

    void AddErrors(const std::wstring& file, const std::vector<SCAError>& errors, TDetails details) override;

    SDK::IApplication* m_application;
    boost::shared_ptr<SyntaxParser::IParserComponent> m_parser;
    CHtmlCustomItemsKeeper m_customItems;
    CCAGrammarCheck m_grammarCheck;
    CCAMarkupCheck m_markupCheck;
    CDiagnosticTexts m_texts;
    std::map<std::wstring, SLanguage> m_languages; ///< by factory name
    std::vector<SDiagnostic>* m_found = nullptr;   ///< while a check runs
    std::wstring m_failure;
    TCancelFlag m_cancelled; ///< never null
};

} // namespace Kesh::CodeAnalyzer
