#pragma once

#include "Base/CommonString.h"
#include "Diagnostics/MarkupReport.h"
#include "Diagnostics/Messages.h"
#include "Markup/StylePart.h"
#include "SyntaxParser/MarkupPass.h"
#include "markup/MarkupTestText.h"

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
        m_part.BeginStyle(m_kind, whole);
    }
    void AddStyle(const SyntaxParser::SStyleToken& token) override
    {
        tokens.push_back(token);
        m_part.AddStyle(token);
    }
    void EndStyle() override { m_part.EndStyle(); }
    void EndMarkup() override { found = m_report.Take(); }

    std::vector<SyntaxParser::SStyleToken> tokens;
    std::vector<SDiagnostic> found;

private:
    SyntaxParser::EStyleKind m_kind;
    CMarkupReport m_report;
    CStylePart m_part{m_report};
};

/// Hands a style on; PHP in it is an island.
inline void PassStyle(const std::wstring& text, CStyleHandler& handler)
{
    SyntaxParser::RunMarkupPass(text, SyntaxParser::EMarkup::Css, SyntaxParser::FindIslands(text), nullptr,
                                {&handler});
}

/// What a check of a style finds.
inline std::vector<SDiagnostic> CheckStyle(const std::wstring& text,
                                           SyntaxParser::EStyleKind kind = SyntaxParser::EStyleKind::Sheet)
{
    CStyleHandler handler(kind);
    PassStyle(text, handler);
    return std::move(handler.found);
}

/// "2503@0,0-3,0", warnings with a "?" before.
inline std::string PrintFound(const std::vector<SDiagnostic>& found)
{
    std::string text;
    for (const SDiagnostic& one : found)
        text += (text.empty() ? "" : " ") + std::string(one.error.type == SeverityError ? "" : "?") +
                std::to_string(one.error.code) + "@" + SyntaxParser::PrintSpan(one.error.pos);
    return text;
}

} // namespace Kesh::CodeAnalyzer
