#include "SyntaxParser/MarkupText.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace Kesh::SyntaxParser {

namespace {

constexpr wchar_t Replacement = 0xFFFD;

// The character that matters to scanners of an attribute's value; a letter for all others.
wchar_t ReadReference(std::wstring_view name)
{
    if (name == L"quot" || name == L"#34" || name == L"#x22" || name == L"#X22")
        return L'"';
    if (name == L"apos" || name == L"#39" || name == L"#x27" || name == L"#X27")
        return L'\'';
    return Replacement;
}

bool IsReferenceCharacter(wchar_t c)
{
    return c == L'#' || (c >= L'0' && c <= L'9') || (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

bool IsForScanners(wchar_t c)
{
    return c != L'\0' && c != CMarkupText::Island && static_cast<char32_t>(c) <= 0x10FFFF;
}

} // namespace

CMarkupText::CMarkupText(std::wstring_view text, const std::vector<SIsland>& islands, const SGiveUp* giveUp)
    : m_text(text), m_giveUp(giveUp)
{
    m_scan.reserve(text.size());
    for (const SIsland& island : islands) {
        CopyForScanners(island.begin);
        m_scan.append(std::min(island.end, text.size()) - m_scan.size(), Island);
    }
    CopyForScanners(text.size());
}

// Up to `end`, from where the copy ends.
void CMarkupText::CopyForScanners(std::size_t end)
{
    const std::size_t begin = m_scan.size();
    m_scan.append(m_text, begin, end - begin);
    for (std::size_t i = begin; i < end; ++i)
        m_scan[i] = IsForScanners(m_scan[i]) ? m_scan[i] : Replacement;
}

void CMarkupText::ReplaceReferences(SStretch value)
{
    for (std::size_t i = value.begin; i < value.end; ++i) {
        if (m_scan[i] != L'&')
            continue;
        std::size_t end = i + 1;
        while (end < value.end && IsReferenceCharacter(m_scan[end]))
            ++end;
        if (end < value.end && m_scan[end] == L';') {
            const wchar_t c = ReadReference(Scanned({i + 1, end}));
            std::fill(m_scan.begin() + i, m_scan.begin() + end, Replacement);
            m_scan[end] = c;
        }
        i = end - 1;
    }
}

SScheme CMarkupText::Span(SStretch part)
{
    SScheme span;
    span.start = Position(part.begin);
    span.end = Position(part.end);
    return span;
}

CIterator CMarkupText::Position(std::size_t offset)
{
    assert(offset >= m_offset);
    for (;;) {
        const std::size_t lineEnd = m_text.substr(0, offset).find(L'\n', m_offset);
        if (lineEnd == std::wstring_view::npos)
            break;
        m_offset = m_lineStart = lineEnd + 1;
        ++m_line;
    }
    m_offset = offset;
    return {static_cast<std::int64_t>(offset - m_lineStart), m_line};
}

CTreeWriter::CTreeWriter(SSemanticTree& tree) : m_tree(tree)
{
    m_tree.nodes.assign(1, {});
    m_lastChild.assign(1, NoSemanticNode);
}

TSemanticIndex CTreeWriter::Add(TSemanticIndex parent, SSemanticTreeNode node)
{
    const auto index = static_cast<TSemanticIndex>(m_tree.nodes.size());
    m_tree.nodes.push_back(std::move(node));
    const TSemanticIndex previous = std::exchange(m_lastChild[parent], index);
    if (previous == NoSemanticNode)
        m_tree.nodes[parent].firstChild = index;
    else
        m_tree.nodes[previous].nextSibling = index;
    m_lastChild.push_back(NoSemanticNode);
    return index;
}

} // namespace Kesh::SyntaxParser
