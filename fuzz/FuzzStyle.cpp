// Any bytes as a style sheet and as a style attribute: the tokens follow each other, and the check ends with
// places in the text.

#include "Markup/StylePart.h"
#include "Require.h"
#include "SyntaxParser/MarkupPass.h"
#include "SyntaxParser/SourceText.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

using namespace Kesh;

namespace {

class CHandler final : public SyntaxParser::IMarkupHandler
{
public:
    explicit CHandler(SyntaxParser::EStyleKind kind) : m_kind(kind) {}

    bool BeginMarkup(const SyntaxParser::IMarkupPlaces& places) override
    {
        m_report.Begin(places);
        m_size = places.Text().size();
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
        Require(token.span.begin == m_end && token.span.end > m_end);
        m_end = token.span.end;
        m_part.AddStyle(token);
    }
    void EndStyle() override
    {
        Require(m_end == m_size);
        m_part.EndStyle();
    }
    void EndMarkup() override
    {
        for (const CodeAnalyzer::SDiagnostic& found : m_report.Take())
            Require(found.error.pos.start <= found.error.pos.end);
    }

private:
    SyntaxParser::EStyleKind m_kind;
    CodeAnalyzer::CMarkupReport m_report;
    CodeAnalyzer::CStylePart m_part{m_report};
    std::size_t m_size = 0;
    std::size_t m_end = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring text =
        SyntaxParser::DecodeSource(std::string_view(reinterpret_cast<const char*>(data), size));
    std::vector<SyntaxParser::SIsland> islands;
    if (const std::size_t begin = text.find(L"<?"); begin != std::wstring::npos)
        islands.push_back({begin, std::min(text.find(L"?>", begin), text.size())});
    for (const auto kind : {SyntaxParser::EStyleKind::Sheet, SyntaxParser::EStyleKind::Attribute}) {
        CHandler handler(kind);
        SyntaxParser::RunMarkupPass(text, SyntaxParser::EMarkup::Css, islands, {}, nullptr, {&handler});
    }
    return 0;
}
