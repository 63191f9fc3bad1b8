#pragma once

#include "Kesh/SyntaxParser/IReader.h"

#include <string>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// A text in one piece, lines ended by "\n". Faster to make than a list of lines, and a document can look at
/// it without a copy.
class CTextReader : public IReader
{
public:
    explicit CTextReader(std::wstring text);

    /// The whole text; followed by a NUL character, valid until it changes.
    std::wstring_view View() const { return {m_storage.data(), m_size}; }
    /// Takes the text of a file. No memory is asked for unless it is the longest text so far.
    void Decode(std::string_view bytes);
    /// Whether a byte order mark of UTF-8, which is no part of the text, stands before it.
    bool HasMark() const { return m_hasMark; }

    void InitComponent(ISPDocument* /*document*/) override {}
    std::wstring GetComponentName() override { return L"IReader"; }
    void Reset() override;
    bool NextChar() override;
    bool PrevChar() override;
    wchar_t ReadChar() override;
    CIterator GetPos() override;
    void SetPos(CIterator pos) override;
    /// Throws Kesh::Base::CCriticalError when the positions do not lie in the text or `to` is before `from`.
    std::wstring GetText(CIterator from, CIterator to) override;
    std::wstring GetText() override { return std::wstring(View()); }
    void SetText(const std::wstring& text) override;
    std::wstring GetFirstString() override;
    void Free() override { delete this; }
    CIterator GetEnd() override;

private:
    const std::vector<std::size_t>& LineStarts();
    std::size_t Offset(CIterator pos);

    std::wstring m_storage; ///< the text, a NUL, and what is left of longer ones
    std::size_t m_size;
    bool m_hasMark = false;
    std::vector<std::size_t> m_lineStarts; ///< made when the first position is asked for
    /// Offset of the character that ReadChar() gives, plus one; 0 before the first.
    std::size_t m_next = 0;
};

} // namespace Kesh::SyntaxParser
