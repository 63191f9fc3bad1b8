#pragma once

#include "Checks/CAMarkupCheck.h"
#include "Diagnostics/ErrorsReceiver.h"
#include "Kesh/SyntaxParser/ISPDocument.h"
#include "Markup/MarkupChecker.h"

#include <boost/shared_ptr.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {
class CTextReader;
}

namespace Kesh::Tests {

/// The markup check alone, of one text after another.
class CMarkupDiagnoser final : private CodeAnalyzer::IErrorsReceiver
{
public:
    explicit CMarkupDiagnoser(const std::wstring& path = L"/a.php",
                              const std::wstring& factory = L"PHPSPDocFactory");
    ~CMarkupDiagnoser();

    /// What is found in a text in UTF-8, of the codes from `first` to `last`.
    const std::vector<CodeAnalyzer::SDiagnostic>& Diagnose(std::string_view text, int first = 0,
                                                           int last = 9999);
    /// The same as "2102 0:7-0:13" each, lines before columns.
    std::string Describe(std::string_view text, int first = 0, int last = 9999);

private:
    void AddErrors(const std::wstring& file, const std::vector<CodeAnalyzer::SCAError>& errors,
                   CodeAnalyzer::TDetails details) override;

    boost::shared_ptr<SyntaxParser::CTextReader> m_reader;
    boost::shared_ptr<SyntaxParser::ISPDocument> m_document;
    CodeAnalyzer::CCAMarkupCheck m_wanted;
    CodeAnalyzer::CMarkupChecker m_checker{&m_wanted, nullptr, this};
    std::vector<CodeAnalyzer::SDiagnostic> m_found;
};

} // namespace Kesh::Tests
