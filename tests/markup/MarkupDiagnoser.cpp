#include "MarkupDiagnoser.h"

#include "Diagnostics/DiagnosticList.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace Kesh::Tests {

using namespace SyntaxParser;

CMarkupDiagnoser::CMarkupDiagnoser(const std::wstring& path, const std::wstring& factory)
    : m_reader(boost::make_shared<CTextReader>(std::wstring())),
      m_document(MakeSPDocument(m_reader, {path, factory}))
{
    m_wanted.SetEnabled(true);
    m_checker.Follow(*m_document);
}

CMarkupDiagnoser::~CMarkupDiagnoser() = default;

const std::vector<CodeAnalyzer::SDiagnostic>& CMarkupDiagnoser::Diagnose(std::string_view text, int first,
                                                                         int last)
{
    m_found.clear();
    m_reader->SetText(DecodeSource(text));
    m_document->Parse(true);
    std::erase_if(m_found, [&](const CodeAnalyzer::SDiagnostic& diagnostic) {
        return diagnostic.error.code < first || diagnostic.error.code > last;
    });
    return m_found;
}

std::string CMarkupDiagnoser::Describe(std::string_view text, int first, int last)
{
    std::string result;
    const auto place = [](const CIterator& p) { return std::to_string(p.y) + ":" + std::to_string(p.x); };
    for (const auto& [error, details] : Diagnose(text, first, last))
        result += (result.empty() ? "" : " ") + std::to_string(error.code) + " " + place(error.pos.start) +
                  "-" + place(error.pos.end);
    return result;
}

void CMarkupDiagnoser::AddErrors(const std::wstring& /*file*/,
                                 const std::vector<CodeAnalyzer::SCAError>& errors,
                                 CodeAnalyzer::TDetails details)
{
    for (CodeAnalyzer::SDiagnostic& diagnostic : CodeAnalyzer::Joined(errors, details))
        m_found.push_back(std::move(diagnostic));
}

} // namespace Kesh::Tests
