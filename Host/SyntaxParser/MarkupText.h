#pragma once

#include "Kesh/SyntaxParser/Position.h"
#include "SyntaxParser/MarkupTrees.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// A stretch of a text; offsets in characters, end exclusive.
struct SStretch
{
    std::size_t begin = 0;
    std::size_t end = 0;

    friend bool operator==(const SStretch&, const SStretch&) = default;
};

/// A text and the copy of it that the scanners read. In the copy every character of a PHP island is `Island`
/// and NUL stands only at the end, so that the grammars know neither PHP nor lengths.
class CMarkupText
{
public:
    /// Stands for any character of an island: no text holds it, and names may contain it.
    static constexpr wchar_t Island = 0xFDD0;

    /// `text` and the flag, which may be null, must outlive the object.
    CMarkupText(std::wstring_view text, const std::vector<SIsland>& islands, const SGiveUp* giveUp = nullptr);

    /// Whether nobody wants to know any more what is in the text.
    bool IsCancelled() const { return m_giveUp && m_giveUp->IsSet(); }

    /// The copy, which ends with a NUL. Scanners may overwrite characters that they need not read again.
    wchar_t* Scan() { return m_scan.data(); }
    std::size_t Size() const { return m_text.size(); }
    /// Makes an attribute value's character references harmless in the copy: those of quotes become the
    /// quote, all others letters.
    void ReplaceReferences(SStretch value);

    std::wstring_view Written(SStretch part) const
    {
        return m_text.substr(part.begin, part.end - part.begin);
    }
    std::wstring_view Scanned(SStretch part) const
    {
        return std::wstring_view(m_scan).substr(part.begin, part.end - part.begin);
    }
    /// Whether an island makes some, or all, of `part`.
    bool IsTouched(SStretch part) const { return Scanned(part).find(Island) != std::wstring_view::npos; }
    bool IsMade(SStretch part) const
    {
        return Scanned(part).find_first_not_of(Island) == std::wstring_view::npos;
    }

    /// The position of `part`. Asked for in document order, which makes counting lines cheap.
    SScheme Span(SStretch part);

private:
    void CopyForScanners(std::size_t end);
    CIterator Position(std::size_t offset);

    std::wstring_view m_text;
    std::wstring m_scan;
    const SGiveUp* m_giveUp;
    std::size_t m_offset = 0;    ///< of the last position asked for
    std::size_t m_lineStart = 0; ///< of its line
    std::int64_t m_line = 0;
};

/// Ends the scanned text early: scanners stop at `end` while the object lives.
class CScanFence
{
public:
    CScanFence(CMarkupText& text, std::size_t end) : m_place(text.Scan() + end), m_saved(*m_place)
    {
        *m_place = L'\0';
    }
    ~CScanFence() { *m_place = m_saved; }
    CScanFence(const CScanFence&) = delete;
    CScanFence& operator=(const CScanFence&) = delete;

private:
    wchar_t* m_place;
    wchar_t m_saved;
};

/// Appends the nodes of one tree.
class CTreeWriter
{
public:
    explicit CTreeWriter(SSemanticTree& tree);

    /// Appends a node as the last child of `parent`.
    TSemanticIndex Add(TSemanticIndex parent, SSemanticTreeNode node);

private:
    SSemanticTree& m_tree;
    std::vector<TSemanticIndex> m_lastChild; ///< one per node
};

} // namespace Kesh::SyntaxParser
