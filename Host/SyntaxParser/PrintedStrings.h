#pragma once

#include "Kesh/SyntaxParser/ITokenSource.h"
#include "SyntaxParser/MarkupTrees.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Finds the strings that a text's PHP prints as they are written: the operands of `echo`, `print` and `<?=`,
/// formats of `printf`, and the plain parts of here-documents and quoted strings among them. A statement that
/// prints a tag in part only is left out, since it cannot be told what the rest is. One pass after another.
class CPrintedStrings final : public ITokenHandler
{
public:
    /// Of the text that is parsed next; it must stay until the pass has ended.
    void SetText(std::wstring_view text) { m_text = text; }
    /// Takes what is printed out of the islands, which lie in order.
    std::vector<SIsland> Without(const std::vector<SIsland>& islands) const;

    /// Makes the escapes in what is printed what they stand for, in a copy of the text; what is left over of
    /// one becomes `filler`.
    void Unescape(wchar_t* copy, wchar_t filler) const;

    bool BeginTokens() override;
    void AddToken(const SPhpToken& token) override;
    void AddTokens(const SPhpToken* tokens, std::size_t count) override;
    void EndTokens(CIterator end) override;

private:
    void AddPiece(const SPhpToken& token, std::size_t quotes);
    void EndStatement();
    bool KeepWholeMarkup();

    std::wstring_view m_text;
    std::vector<SIsland> m_printed;
    std::vector<SIsland> m_formats; ///< those of them whose `%` stand for something else
    std::vector<SIsland> m_torn;    ///< tags that go on elsewhere, down to their last character
    std::vector<SIsland> m_pieces;  ///< of the statement
    bool m_printing = false;
    bool m_plain = false; ///< only pieces and what joins them so far, at the outermost level

    bool m_isFormat = false; ///< of `printf`
    bool m_isMember = false; ///< the token before is an arrow
    std::size_t m_depth = 0; ///< of brackets in the statement
};

} // namespace Kesh::SyntaxParser
