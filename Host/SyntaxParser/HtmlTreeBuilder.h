#pragma once

#include "SyntaxParser/HtmlScanner.h"
#include "SyntaxParser/HtmlTags.h"
#include "SyntaxParser/MarkupText.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Kesh::SyntaxParser {

/// Builds the tree of a text's tags and attributes, nested as HTML nests them, and reads the styles met on
/// the way into the CSS tree.
class CHtmlTreeBuilder
{
public:
    /// No tag lies deeper; what would, becomes a sibling. It bounds every search in the stack of open
    /// elements, and lets those who walk a tree recurse.
    static constexpr std::uint32_t MaxDepth = 512;

    /// Nothing is owned; `own` may be null.
    CHtmlTreeBuilder(CMarkupText& text, CTreeWriter& html, CTreeWriter& css, const COwnNames* own);

    void Build();

private:
    enum class ENamespace : std::uint8_t { Html, Svg, Math, Xml };
    struct SOpen
    {
        STagName* name;
        ENamespace self;
        ENamespace content;
        std::uint32_t flags; ///< of `name`, as far as they hold in the element's namespace
        TSemanticIndex node;
        std::uint32_t depth;
    };
    /// What is known when a start tag has been read.
    struct SStart
    {
        EHtmlToken end = EHtmlToken::End;
        bool css = true; ///< of a style element: whether it holds CSS
    };

    STagName& TagName(SStretch name);
    bool IsFreeTag(const STagName& name) const;
    bool IsFreeAttribute(std::wstring_view name) const;
    /// The namespaces of an element and of its content, and the flags that hold there.
    SOpen Classify(STagName& name, std::size_t begin) const;
    /// Whether the tag `name`, which starts at `begin`, is the root of an XML document.
    bool IsXmlRoot(const STagName& name, std::size_t begin) const;
    void OpenTag();
    void CloseTag();
    SStart ReadAttributes(TSemanticIndex tag, bool checked);
    void ReadStyleAttribute(SStretch value);
    /// Reads a raw-text element to its end; false for other elements, whose content is markup.
    bool ReadContent(const SOpen& element, bool css);

    /// Ends the elements that the start tag `name` ends.
    void EndByStart(const STagName& name);
    template <class TEnds> void EndWhile(TEnds ends);
    /// Ends the nearest such element, unless the scope or a `bound` ends before.
    void EndNearest(ETag tag, ETag bound);
    void EndItem(ETag item);
    void EndTableParts(int rank);
    void LeaveForeign();
    /// Whether the end tag `name` does not reach past the open element `i`.
    bool IsOutOfReach(const STagName& name, std::size_t i) const;
    void EndElement(std::size_t i);

    TSemanticIndex AddNode(CTreeWriter& tree, TSemanticIndex parent, std::int32_t kind, SStretch name,
                           SStretch span);
    /// The tag of the open element `i`; Other in svg and math.
    ETag Tag(std::size_t i) const;
    std::size_t& OpenCount(ETag tag) { return m_openTags[static_cast<std::size_t>(tag)]; }
    void Push(const SOpen& element);
    void PopTo(std::size_t size);
    void Remove(std::size_t i);

    CMarkupText& m_text;
    CTreeWriter& m_html;
    CTreeWriter& m_css;
    const COwnNames* m_own;
    CHtmlScanner m_scanner;
    CTagNames m_names;
    STagName m_root;
    std::size_t m_tagEnd = 0;  ///< where the last tag ended
    std::vector<SOpen> m_open; ///< the elements that are open, outermost first; [0] stands for the document
    std::array<std::size_t, static_cast<std::size_t>(ETag::Count)> m_openTags = {};
};

} // namespace Kesh::SyntaxParser
