#include "SyntaxParser/PhpTokenPass.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>

namespace Kesh::SyntaxParser {

namespace {

using T = EPhpToken;

/// How much is read between two looks at the cancel flag.
constexpr std::ptrdiff_t LookInterval = 1 << 16;

/// Tokens without line breaks.
constexpr auto AreOnOneLine = [] {
    std::array<bool, static_cast<std::size_t>(T::ReturnType) + 1> tokens{};
    for (auto token = static_cast<std::size_t>(T::Variable); token < static_cast<std::size_t>(T::Abstract);
         ++token)
        tokens[token] = true;
    for (const T token : {T::SingleQuote, T::DoubleQuote, T::Backtick, T::Heredoc, T::QualifiedName})
        tokens[static_cast<std::size_t>(token)] = false;
    return tokens;
}();

} // namespace

void CPhpTokenPass::BeginInPhp(CIterator place)
{
    m_lexer.EnterPhp();
    m_line = place.y;
    m_lineStart = m_text - place.x;
}

bool CPhpTokenPass::Run(std::vector<SIsland>* islands, const SGiveUp* giveUp)
{
    m_islands = islands;
    m_writer.Seek(m_line, m_lineStart);
    const wchar_t* p = m_text;
    const wchar_t* look = p;
    for (;;) {
        if (m_lexer.IsInPhp() && CPhpLexer::IsBlank(*p))
            p = SkipBlanks(p);
        if (p >= look) {
            if (giveUp && giveUp->IsSet())
                return false;
            look = p + std::min(m_lexer.Limit() - p, LookInterval);
        }
        const CPhpLexer::SCut cut = m_lexer.Next(p);
        if (cut.token == T::End)
            break;
        if (AreOnOneLine[static_cast<std::size_t>(cut.token)]) {
            m_writer.Write(cut.kind, p, cut.end);
            p = cut.end;
        } else {
            const wchar_t* const end = Write(p, cut);
            Pass(p, end);
            p = end;
        }
        if (m_writer.IsInData() && cut.token == T::Semicolon) {
            Pass(p, m_lexer.Limit());
            break;
        }
    }
    m_writer.Finish();
    EndIsland(m_lexer.Limit());
    return true;
}

const wchar_t* CPhpTokenPass::SkipBlanks(const wchar_t* p)
{
    const wchar_t* const before = m_lineStart;
    for (;;) {
        while (*p == L' ' || *p == L'\t' || *p == L'\r')
            ++p;
        if (*p != L'\n')
            break;
        m_lineStart = ++p;
        ++m_line;
    }
    if (m_lineStart != before)
        m_writer.Seek(m_line, m_lineStart);
    return p;
}

const wchar_t* CPhpTokenPass::Write(const wchar_t* p, const CPhpLexer::SCut& cut)
{
    switch (cut.token) {
    case T::SingleQuote:
    case T::DoubleQuote:
    case T::Backtick: {
        const wchar_t* const close = m_lexer.FindQuote(cut.end, cut.end[-1]).end;
        m_writer.WriteString(p, cut.end, close);
        return std::min(close + 1, m_lexer.Limit());
    }
    case T::Heredoc: {
        const CPhpLexer::SHeredoc heredoc = m_lexer.FindHeredoc(cut.end);
        m_writer.WriteHeredoc(p, heredoc);
        return heredoc.end;
    }
    case T::Attribute: m_writer.WriteAttribute(p, cut.end); return cut.end;
    case T::HashComment:
    case T::BlockComment:
    case T::DocComment: m_writer.WriteComment(p, cut.end); return cut.end;
    case T::OpenTag:
    case T::OpenTagEcho: m_islandBegin = p; break;
    case T::CloseTag: EndIsland(cut.end); break;
    default: break;
    }
    if (cut.kind != EPhpTokenKind::Count)
        m_writer.Write(cut.kind, p, cut.end);
    return cut.end;
}

// Counts the lines of a piece, behind which the writer may not have gone all the way.
void CPhpTokenPass::Pass(const wchar_t* begin, const wchar_t* end)
{
    for (const wchar_t* p = begin; (p = std::wmemchr(p, L'\n', static_cast<std::size_t>(end - p)));) {
        m_lineStart = ++p;
        ++m_line;
    }
    m_writer.Seek(m_line, m_lineStart);
}

void CPhpTokenPass::EndIsland(const wchar_t* end)
{
    if (m_islands && m_islandBegin)
        m_islands->push_back(
            {static_cast<std::size_t>(m_islandBegin - m_text), static_cast<std::size_t>(end - m_text)});
    m_islandBegin = nullptr;
}

} // namespace Kesh::SyntaxParser
