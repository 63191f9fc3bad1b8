#pragma once

#include "Components/CADocumentCheck.h"
#include "Components/CAErrorDetails.h"
#include "Components/CAErrorsReceiver.h"
#include "Components/CAGrammarCheck.h"
#include "Kesh/CodeAnalyzer/ITextChecks.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Parsers/HtmlCustomItemsKeeper.h"

#include <map>

namespace Kesh::CodeAnalyzer {

/// The checks of a document, one text after another.
class CTextChecks final : public ITextChecks, private IErrorsReceiver
{
public:
    /// Raises Base::CCriticalError "Bad sweak pointer" without "IParserComponent".
    explicit CTextChecks(SDK::IApplication* application);

    bool Check(const boost::shared_ptr<SyntaxParser::IReader>& reader, const std::wstring& path,
               const std::wstring& factoryName, std::vector<SCAError>& errors) override;
    std::wstring GetErrorDescription(const SCAError& error) override;
    ICustomNames* GetCustomNames() override { return &m_customItems; }
    IErrorDetails* GetErrorDetails() override { return &m_errorDetails; }
    IGrammarCheck* GetGrammarCheck() override { return &m_grammarCheck; }
    void Free() override { delete this; }
    std::wstring GetFailure() override { return m_failure; }

private:
    /// What the texts of one language are checked with.
    struct SLanguage
    {
        boost::shared_ptr<SyntaxParser::IReader> reader;
        std::unique_ptr<CCADocumentCheck> check; ///< null: the host makes no document
    };

    void AddErrors(const std::wstring& file, const std::vector<SCAError>& errors) override;

    SDK::IApplication* m_application;
    boost::shared_ptr<SyntaxParser::IParserComponent> m_parser;
    CHtmlCustomItemsKeeper m_customItems;
    CCAGrammarCheck m_grammarCheck;
    CErrorDetails m_errorDetails{m_grammarCheck};
    std::map<std::wstring, SLanguage> m_languages; ///< by factory name
    std::vector<SCAError>* m_found = nullptr;      ///< while a check runs
    std::wstring m_failure;
};

} // namespace Kesh::CodeAnalyzer
