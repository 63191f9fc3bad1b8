#include "SyntaxParser/MarkupPass.h"

#include "SyntaxParser/CssTokenizer.h"
#include "SyntaxParser/HtmlTokenizer.h"
#include "SyntaxParser/MarkupText.h"
#include "SyntaxParser/Placeholders.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

namespace {

class CMarkupPlaces final : public IMarkupPlaces
{
public:
    CMarkupPlaces(std::wstring_view written, CMarkupText& text, bool hasPlaceholders)
        : m_written(written), m_text(text), m_hasPlaceholders(hasPlaceholders)
    {
    }

    std::wstring_view Text() const override { return m_text.Scanned({0, m_text.Size()}); }
    std::wstring_view Written() const override { return m_written; }
    CIterator PositionOf(std::size_t offset) const override
    {
        ReadLines();
        const auto next = std::upper_bound(m_lines.begin(), m_lines.end(), offset);
        return {static_cast<std::int64_t>(offset - *(next - 1)),
                static_cast<std::int64_t>(next - m_lines.begin() - 1)};
    }
    std::size_t OffsetOf(CIterator position) const override
    {
        ReadLines();
        return m_lines[position.y] + position.x;
    }
    bool IsCancelled() const override { return m_text.IsCancelled(); }
    bool HasPlaceholders() const override { return m_hasPlaceholders; }

private:
    void ReadLines() const
    {
        if (!m_lines.empty())
            return;
        m_lines.push_back(0); // few texts have anything to place
        for (std::size_t i = m_written.find(L'\n'); i != std::wstring_view::npos;
             i = m_written.find(L'\n', i + 1))
            m_lines.push_back(i + 1);
    }

    std::wstring_view m_written;
    CMarkupText& m_text;
    bool m_hasPlaceholders;
    mutable std::vector<std::size_t> m_lines; ///< where each begins
};

/// Hands everything on to each handler that takes part.
class CFanOut final : public IHtmlTokenSink, public IStyleTokenSink
{
public:
    explicit CFanOut(std::vector<IMarkupHandler*> handlers) : m_handlers(std::move(handlers)) {}

    void AddHtml(const SHtmlToken& token) override
    {
        for (IMarkupHandler* handler : m_handlers)
            handler->AddHtml(token);
    }
    void AddProblem(EHtmlProblem problem, SMarkupSpan span) override
    {
        for (IMarkupHandler* handler : m_handlers)
            handler->AddProblem(problem, span);
    }
    void AddStyle(const SStyleToken& token) override
    {
        for (IMarkupHandler* handler : m_handlers)
            handler->AddStyle(token);
    }
    void BeginStyle(EStyleKind kind, SMarkupSpan whole)
    {
        for (IMarkupHandler* handler : m_handlers)
            handler->BeginStyle(kind, whole);
    }
    void EndStyle()
    {
        for (IMarkupHandler* handler : m_handlers)
            handler->EndStyle();
    }

private:
    std::vector<IMarkupHandler*> m_handlers;
};

/// Whether something outside of the islands may be markup, or a character that it must not hold, or PHP has
/// an end tag, whether it is printed or not.
bool HasMarkup(std::wstring_view text, const std::vector<SIsland>& islands)
{
    const auto isPlain = [](wchar_t c) {
        return c != L'<' && c != L'&' && c != L'{' && c < 0x7F &&
               (c >= L' ' || c == L'\n' || c == L'\t' || c == L'\r');
    };
    if (text.find(L"</") != std::wstring_view::npos)
        return true;
    return AnyOutside(text, islands,
                      [&](std::wstring_view part) { return !std::ranges::all_of(part, isPlain); });
}

} // namespace

void RunMarkupPass(std::wstring_view written, EMarkup markup, const std::vector<SIsland>& islands,
                   const SGiveUp* giveUp, const std::vector<IMarkupHandler*>& handlers,
                   const SMarkupPassOptions& options)
{
    const std::vector<SIsland> php = options.printed ? options.printed->Without(islands) : islands;
    if (markup == EMarkup::Html && !php.empty() && !HasMarkup(written, php))
        return;
    CMarkupText text(written, php, giveUp);
    if (options.printed)
        options.printed->Unescape(text.Scan(), MarkupIsland);
    const bool hasPlaceholders = markup == EMarkup::Html && FillPlaceholders(text, options.isSmarty);
    const CMarkupPlaces places(written, text, hasPlaceholders);
    std::vector<IMarkupHandler*> willing;
    std::ranges::copy_if(handlers, std::back_inserter(willing),
                         [&](IMarkupHandler* handler) { return handler->BeginMarkup(places); });
    if (willing.empty())
        return;
    CFanOut sink(willing);
    const auto style = [&](EStyleKind kind, SMarkupSpan whole) {
        sink.BeginStyle(kind, whole);
        CCssTokenizer(places, sink).Run(whole);
        sink.EndStyle();
    };
    if (markup == EMarkup::Css)
        style(EStyleKind::Sheet, {0, written.size()});
    else
        CHtmlTokenizer(places, sink, style, options.isStrict).Run();
    for (IMarkupHandler* handler : willing)
        handler->EndMarkup();
}

} // namespace Kesh::SyntaxParser
