#pragma once

#include "Diagnostics/MarkupReport.h"
#include "Styles/StyleChecker.h"
#include "SyntaxParser/MarkupPass.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Checks the styles of a pass, and keeps the tokens.
class CStyleHandler : public SyntaxParser::IMarkupHandler
{
public:
    explicit CStyleHandler(SyntaxParser::EStyleKind kind) : m_kind(kind) {}

    bool BeginMarkup(const SyntaxParser::IMarkupPlaces& places) override
    {
        m_report.Begin(places);
        return true;
    }
    void AddHtml(const SyntaxParser::SHtmlToken&) override {}
    void AddProblem(SyntaxParser::EHtmlProblem, SyntaxParser::SMarkupSpan) override {}
    void BeginStyle(SyntaxParser::EStyleKind, SyntaxParser::SMarkupSpan whole) override
    {
        m_checker.Begin(m_kind, whole);
    }
    void AddStyle(const SyntaxParser::SStyleToken& token) override
    {
        tokens.push_back(token);
        m_checker.Add(token);
    }
    void EndStyle() override { m_checker.End(); }
    void EndMarkup() override { found = m_report.Take(); }

    std::vector<SyntaxParser::SStyleToken> tokens;
    std::vector<SDiagnostic> found;

private:
    SyntaxParser::EStyleKind m_kind;
    CMarkupReport m_report;
    CStyleChecker m_checker{m_report};
};

/// Hands a style on.
inline void PassStyle(const std::wstring& text, const std::vector<SyntaxParser::SIsland>& islands,
                      CStyleHandler& handler)
{
    SyntaxParser::RunMarkupPass(text, SyntaxParser::EMarkup::Css, islands, nullptr, {&handler});
}

} // namespace Kesh::CodeAnalyzer
