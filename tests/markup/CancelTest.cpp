// A markup check that nobody waits for any more ends where it is.

#include "Diagnostics/MarkupReport.h"
#include "Markup/HtmlAttributes.h"
#include "Markup/HtmlIds.h"
#include "Markup/HtmlNesting.h"
#include "Markup/HtmlProblems.h"
#include "Styles/StyleChecker.h"
#include "SyntaxParser/MarkupPass.h"

#include <atomic>
#include <gtest/gtest.h>
#include <limits>
#include <memory>

namespace Kesh::CodeAnalyzer {
namespace {

constexpr std::size_t Million = 1'000'000;
constexpr std::size_t Never = std::numeric_limits<std::size_t>::max();
/// Tokens that may still come: far fewer than are read in 50 ms.
constexpr std::size_t Slack = 5000;

/// All parts of the check; gives up behind so many tokens, or before it judges.
class CGivingUp final : public SyntaxParser::IMarkupHandler
{
public:
    explicit CGivingUp(std::size_t limit, bool atEnd = false) : m_limit(limit), m_atEnd(atEnd)
    {
        m_flag = limit == 0;
        m_parts.push_back(std::make_unique<CHtmlNesting>(m_report));
        m_parts.push_back(std::make_unique<CHtmlProblems>(m_report));
        m_parts.push_back(std::make_unique<CHtmlAttributes>(m_report));
        m_parts.push_back(std::make_unique<CHtmlIds>(m_report, m_tokens));
    }
    void Run(const std::wstring& text, SyntaxParser::EMarkup markup)
    {
        const SyntaxParser::SGiveUp giveUp{&m_flag, {}};
        SyntaxParser::RunMarkupPass(text, markup, {}, &giveUp, {this});
    }

    std::size_t count = 0; ///< of tokens
    std::size_t found = 0;
    bool ended = false;

private:
    void Count()
    {
        if (++count >= m_limit)
            m_flag = true;
    }
    bool BeginMarkup(const SyntaxParser::IMarkupPlaces& places) override
    {
        m_report.Begin(places);
        for (const auto& part : m_parts)
            part->Begin();
        return true;
    }
    void AddHtml(const SyntaxParser::SHtmlToken& token) override
    {
        Count();
        for (const auto& part : m_parts)
            part->AddHtml(token);
    }
    void AddProblem(SyntaxParser::EHtmlProblem problem, SyntaxParser::SMarkupSpan span) override
    {
        for (const auto& part : m_parts)
            part->AddProblem(problem, span);
    }
    void BeginStyle(SyntaxParser::EStyleKind kind, SyntaxParser::SMarkupSpan whole) override
    {
        m_styles.Begin(kind, whole);
    }
    void AddStyle(const SyntaxParser::SStyleToken& token) override
    {
        Count();
        m_styles.Add(token);
    }
    void EndStyle() override { m_styles.End(); }
    void EndMarkup() override
    {
        m_flag = m_flag || m_atEnd;
        for (const auto& part : m_parts)
            part->End();
        found = m_report.Take().size();
        ended = true;
    }

    std::atomic<bool> m_flag{false};
    std::size_t m_limit;
    bool m_atEnd;
    CMarkupReport m_report;
    CTemplateTokens m_tokens; ///< none
    std::vector<std::unique_ptr<IMarkupPart>> m_parts;
    CStyleChecker m_styles{m_report};
};

std::wstring Repeat(std::wstring_view part, std::size_t count)
{
    std::wstring text;
    text.reserve(part.size() * count);
    while (count-- != 0)
        text += part;
    return text;
}

TEST(Cancelling, EndsTheCheckOfAMillionOpenTagsOrBrackets)
{
    struct SCase
    {
        const wchar_t* part;
        SyntaxParser::EMarkup markup;
    };
    for (const SCase& test :
         {SCase{L"<div>", SyntaxParser::EMarkup::Html}, SCase{L"<li id=a>\n", SyntaxParser::EMarkup::Html},
          SCase{L"<table><tr><td>", SyntaxParser::EMarkup::Html}, SCase{L"</p>", SyntaxParser::EMarkup::Html},
          SCase{L"<p style='a:b'>", SyntaxParser::EMarkup::Html}, SCase{L"a{", SyntaxParser::EMarkup::Css},
          SCase{L"(", SyntaxParser::EMarkup::Css}, SCase{L"a{top:1xp}\n", SyntaxParser::EMarkup::Css}}) {
        SCOPED_TRACE(testing::Message() << test.part);
        const std::wstring text = Repeat(test.part, Million);
        for (const std::size_t limit : {std::size_t(0), std::size_t(1), Million / 2}) {
            CGivingUp handler(limit);
            handler.Run(text, test.markup);
            EXPECT_LE(handler.count, limit + Slack);
            EXPECT_TRUE(handler.ended);
        }
    }
}

TEST(Cancelling, EndsWhatComesBehindTheTokens)
{
    const std::wstring text = L"<html><body>" + Repeat(L"<div id=a></p>", 20000) + L"</html>";
    CGivingUp whole(Never);
    whole.Run(text, SyntaxParser::EMarkup::Html);
    EXPECT_GE(whole.found, 20000u);
    CGivingUp cut(Never, true);
    cut.Run(text, SyntaxParser::EMarkup::Html);
    EXPECT_EQ(cut.count, whole.count);
    EXPECT_EQ(cut.found, 0u) << "nothing is judged any more";
}

} // namespace
} // namespace Kesh::CodeAnalyzer
