// Prints the parse errors of HTML texts. A text is one line of stdin: its code points in decimal, between
// blanks. For each come its errors, and its tags as "tag", a line each with name, begin and end, and then an
// empty line.
#include "SyntaxParser/MarkupPass.h"

#include <iostream>
#include <sstream>
#include <string>

namespace {

using namespace Kesh::SyntaxParser;

class CPrinter final : public IMarkupHandler
{
public:
    bool BeginMarkup(const IMarkupPlaces&) override { return true; }
    void AddHtml(const SHtmlToken& token) override
    {
        if (token.span.begin != m_end)
            std::cout << "gap " << m_end << ' ' << token.span.begin << '\n';
        m_end = token.span.end;
        if (token.kind == EHtmlTokenKind::StartTag || token.kind == EHtmlTokenKind::EndTag)
            std::cout << "tag " << token.span.begin << ' ' << token.span.end << '\n';
    }
    void AddProblem(EHtmlProblem problem, SMarkupSpan span) override
    {
        std::cout << NameOf(problem) << ' ' << span.begin << ' ' << span.end << '\n';
    }
    void BeginStyle(EStyleKind, SMarkupSpan) override {}
    void AddStyle(const SStyleToken&) override {}
    void EndStyle() override {}
    void EndMarkup() override { std::cout << '\n'; }

private:
    std::size_t m_end = 0;
};

} // namespace

int main()
{
    std::ios::sync_with_stdio(false);
    for (std::string line; std::getline(std::cin, line);) {
        std::wstring text;
        std::istringstream points(line);
        for (unsigned long point; points >> point;)
            text += static_cast<wchar_t>(point);
        CPrinter printer;
        RunMarkupPass(text, EMarkup::Html, {}, nullptr, {&printer},
                      {.printed = nullptr, .isSmarty = false, .isStrict = true});
    }
}
