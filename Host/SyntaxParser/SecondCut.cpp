#include "SyntaxParser/SecondCut.h"

#include "SyntaxParser/PhpLexer.h"
#include "SyntaxParser/PhpTokenWriter.h"

#include <algorithm>

namespace Kesh::SyntaxParser {

namespace {

using T = EPhpToken;

class CTokenList final : public ITokenHandler
{
public:
    bool BeginTokens() override { return true; }
    void AddToken(const SPhpToken& token) override { tokens.push_back(token); }
    void EndTokens(CIterator /*end*/) override {}

    std::vector<SPhpToken> tokens;
};

} // namespace

std::vector<SPhpToken> CutTokens(std::wstring_view code, CIterator place, bool shortTags)
{
    CTokenList list;
    CPhpTokenWriter writer(code, {&list});
    CPhpLexer lexer(code, shortTags);
    lexer.EnterPhp();
    const wchar_t* p = code.data();
    const wchar_t* lineStart = p - place.x;
    while (p < lexer.Limit()) {
        const auto [end, token, kind] = lexer.Next(p);
        if (token == T::End)
            break;
        writer.Seek(place.y, lineStart);
        const wchar_t* next = end;
        switch (token) {
        case T::SingleQuote:
        case T::DoubleQuote:
        case T::Backtick: {
            const wchar_t* close = lexer.FindQuote(end, end[-1]).end;
            writer.WriteString(p, end, close);
            next = std::min(close + 1, lexer.Limit());
            break;
        }
        case T::Heredoc: {
            const CPhpLexer::SHeredoc heredoc = lexer.FindHeredoc(end);
            writer.WriteHeredoc(p, heredoc);
            next = heredoc.end;
            break;
        }
        case T::Attribute: writer.WriteAttribute(p, end); break;
        case T::HashComment:
        case T::BlockComment:
        case T::DocComment: writer.WriteComment(p, end); break;
        default:
            if (kind != EPhpTokenKind::Count)
                writer.Write(kind, p, end);
            break;
        }
        for (const wchar_t* line = p; (line = std::find(line, next, L'\n')) != next;) {
            lineStart = ++line;
            ++place.y;
        }
        p = next;
    }
    return std::move(list.tokens);
}

} // namespace Kesh::SyntaxParser
