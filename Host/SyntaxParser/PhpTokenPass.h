#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"
#include "SyntaxParser/MarkupTrees.h"
#include "SyntaxParser/PhpLexer.h"
#include "SyntaxParser/PhpTokenWriter.h"

#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Hands on the tokens of a text, and nothing else: where nobody reads regions, their kinds need not be
/// found.
class CPhpTokenPass
{
public:
    /// `text` must be followed by a NUL character and stay during Run().
    CPhpTokenPass(std::wstring_view text, std::vector<ITokenHandler*> handlers, bool shortTags)
        : m_lexer(text, shortTags),
          m_writer(text, std::move(handlers)),
          m_text(text.data()),
          m_lineStart(m_text)
    {
    }

    /// The text is PHP from its first character on, which stands at `place`.
    void BeginInPhp(CIterator place);

    /// A byte order mark stands before the text.
    void BeginWithMark() { m_writer.WriteMark(); }

    /// Appends the stretches of PHP to `islands` unless it is null. False when it has stopped early because
    /// the flag, which may be null, has been set.
    bool Run(std::vector<SIsland>* islands, const SGiveUp* giveUp = nullptr);

private:
    const wchar_t* SkipBlanks(const wchar_t* p);
    /// Where the token ends that begins at `p` and that the lexer has cut so far.
    const wchar_t* Write(const wchar_t* p, const CPhpLexer::SCut& cut);
    void Pass(const wchar_t* begin, const wchar_t* end);
    void EndIsland(const wchar_t* end);

    CPhpLexer m_lexer;
    CPhpTokenWriter m_writer;
    const wchar_t* m_text;
    const wchar_t* m_lineStart;
    std::int64_t m_line = 0;
    std::vector<SIsland>* m_islands = nullptr;
    const wchar_t* m_islandBegin = nullptr;
};

} // namespace Kesh::SyntaxParser
