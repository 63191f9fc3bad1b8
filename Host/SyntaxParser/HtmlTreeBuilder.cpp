#include "SyntaxParser/HtmlTreeBuilder.h"

#include "Base/CommonString.h"
#include "SyntaxParser/CssTreeBuilder.h"
#include "SyntaxParser/OwnNames.h"

#include <utility>

namespace Kesh::SyntaxParser {

using Base::CCommonString;

namespace {

// A start tag of a table ends the open parts of the table that are of no higher rank.
int TableRank(ETag tag)
{
    switch (tag) {
    case ETag::TableHead:
    case ETag::Cell: return 1;
    case ETag::Row: return 2;
    case ETag::TablePart: return 3;
    default: return 0;
    }
}

bool IsRubyPart(ETag tag)
{
    return tag == ETag::RubyBase || tag == ETag::RubyText;
}

bool IsCssType(std::wstring_view type)
{
    return type.empty() || CCommonString::LowersTo(type, L"text/css");
}

} // namespace

CHtmlTreeBuilder::CHtmlTreeBuilder(CMarkupText& text, CTreeWriter& html, CTreeWriter& css,
                                   const COwnNames* own)
    : m_text(text), m_html(html), m_css(css), m_own(own), m_scanner(text.Scan(), text.Size())
{
    m_open.push_back({&m_root, ENamespace::Html, ENamespace::Html, TagScope | TagSpecial, 0, 0});
}

void CHtmlTreeBuilder::Build()
{
    while (!m_text.IsCancelled()) {
        switch (m_scanner.NextTag()) {
        case EHtmlToken::StartTag: OpenTag(); break;
        case EHtmlToken::EndTag: CloseTag(); break;
        default: return;
        }
        m_tagEnd = m_scanner.GetPos();
    }
}

STagName& CHtmlTreeBuilder::TagName(SStretch name)
{
    // <h□>, where PHP makes the □, nests as "h" and is closed by </h□>; <li□> is most likely a <li>.
    const std::wstring_view scanned = m_text.Scanned(name);
    return m_names.Get(scanned.substr(0, scanned.find(CMarkupText::Island)));
}

bool CHtmlTreeBuilder::IsFreeTag(const STagName& name) const
{
    return IsCustomElementName(name.name) || (m_own && m_own->HasTag(name.name));
}

bool CHtmlTreeBuilder::IsFreeAttribute(std::wstring_view name) const
{
    return m_own && m_own->HasAttribute(Base::CLowerCase(name).View());
}

void CHtmlTreeBuilder::OpenTag()
{
    const SStretch written = m_scanner.Name();
    STagName& name = TagName(written);
    const ENamespace around = m_open.back().content;
    if (name.flags & TagLeavesForeign && (around == ENamespace::Svg || around == ENamespace::Math))
        LeaveForeign();
    SOpen element = Classify(name, written.begin);
    if (m_open.back().content == ENamespace::Html)
        EndByStart(name);
    while (m_open.back().depth >= MaxDepth)
        PopTo(m_open.size() - 1);
    element.depth = m_open.back().depth + 1;

    const std::int32_t kind = element.self == ENamespace::Xml || m_text.IsTouched(written)
                                  ? SemanticDynamicTag
                              : IsFreeTag(name) ? SemanticCustomTag
                                                : SemanticTag;
    element.node = AddNode(m_html, m_open.back().node, kind, written, {written.begin - 1, written.end});
    const SStart start = ReadAttributes(element.node, kind == SemanticTag);

    if (element.flags & TagVoid)
        return;
    // HTML knows no empty elements but its own; whoever writes <x:y/> means XML.
    const bool html = element.self == ENamespace::Html && name.flags & TagHtml;
    if (start.end == EHtmlToken::TagSelfClose && !html)
        return;
    if (!ReadContent(element, start.css))
        Push(element);
}

CHtmlTreeBuilder::SOpen CHtmlTreeBuilder::Classify(STagName& name, std::size_t begin) const
{
    const ENamespace around = m_open.back().content;
    SOpen element = {&name, around, around, 0, 0, 0};
    if (around == ENamespace::Html) {
        element.flags = name.flags;
        if (name.tag == ETag::Svg)
            element.self = element.content = ENamespace::Svg;
        else if (name.tag == ETag::Math)
            element.self = element.content = ENamespace::Math;
        else if (IsXmlRoot(name, begin))
            element.self = element.content = ENamespace::Xml;
    } else if ((around == ENamespace::Svg && name.flags & TagSvgHolder) ||
               (around == ENamespace::Math && name.flags & TagMathHolder)) {
        element.content = ENamespace::Html;
        element.flags = TagScope | TagSpecial;
    }
    return element;
}

bool CHtmlTreeBuilder::IsXmlRoot(const STagName& name, std::size_t begin) const
{
    // PHP writes feeds and the like, too. The XML declaration is mostly in a string of its code.
    return !(name.flags & TagHtml) && name.tag != ETag::Svg && name.tag != ETag::Math &&
           m_text.Written({m_tagEnd, begin}).find(L"<?xml ") != std::wstring_view::npos;
}

CHtmlTreeBuilder::SStart CHtmlTreeBuilder::ReadAttributes(TSemanticIndex tag, bool checked)
{
    SStart start;
    const bool xml = m_text.Scanned(m_scanner.Name()).find(L':') != std::wstring_view::npos;
    while ((start.end = m_scanner.NextInTag()) == EHtmlToken::Attribute) {
        const SStretch name = m_scanner.Name();
        const SStretch value = m_scanner.Value();
        const bool hasValue = value.begin > name.end;
        if (m_text.IsMade(name) && !hasValue)
            continue; // PHP that writes whole attributes, or none
        const bool dynamic = !checked || m_text.IsTouched(name) || IsFreeAttribute(m_text.Scanned(name));
        AddNode(m_html, tag, dynamic ? SemanticDynamicAttribute : SemanticAttribute, name, name);
        const std::wstring_view scanned = m_text.Scanned(name);
        if (CCommonString::LowersTo(scanned, L"type"))
            start.css = IsCssType(m_text.Scanned(value)) || m_text.IsTouched(value);
        else if (hasValue && !xml && CCommonString::LowersTo(scanned, L"style"))
            ReadStyleAttribute(value);
    }
    return start;
}

void CHtmlTreeBuilder::ReadStyleAttribute(SStretch value)
{
    m_text.ReplaceReferences(value);
    CCssTreeBuilder(m_text, m_css, m_own).Build(value, ECssText::Declarations);
}

bool CHtmlTreeBuilder::ReadContent(const SOpen& element, bool css)
{
    const ETag tag = element.name->tag;
    if (tag == ETag::Plaintext && element.self == ENamespace::Html) {
        m_scanner.RawText({}); // no end tag ends it
        return true;
    }
    // In svg, scripts and styles are markup to a browser, but nobody writes any into them.
    const bool hasText = element.flags & TagRaw || tag == ETag::Script || tag == ETag::Style;
    if (!hasText || element.self == ENamespace::Xml)
        return false;
    const SStretch content = m_scanner.RawText(element.name->name);
    if (tag == ETag::Style && css)
        CCssTreeBuilder(m_text, m_css, m_own).Build(content, ECssText::Sheet);
    return true;
}

void CHtmlTreeBuilder::CloseTag()
{
    const STagName& name = TagName(m_scanner.Name());
    while (m_scanner.NextInTag() == EHtmlToken::Attribute) {
    }
    if (name.open == 0)
        return;
    bool inHtml = false; // from foreign content, whatever is open in it, an end tag reaches out
    for (std::size_t i = m_open.size() - 1; i > 0; --i) {
        if (m_open[i].name == &name) {
            EndElement(i);
            return;
        }
        inHtml = inHtml || m_open[i].self == ENamespace::Html;
        if (inHtml && IsOutOfReach(name, i))
            return;
    }
}

bool CHtmlTreeBuilder::IsOutOfReach(const STagName& name, std::size_t i) const
{
    const std::uint32_t flags = m_open[i].flags;
    switch (name.tag) {
    case ETag::Html:
    case ETag::Body:
    case ETag::Template: return false;
    case ETag::Table: return Tag(i) == ETag::Template;
    case ETag::TableHead:
    case ETag::TablePart:
    case ETag::Row:
    case ETag::Cell: return Tag(i) == ETag::Table || Tag(i) == ETag::Template;
    case ETag::Paragraph: return flags & TagScope || Tag(i) == ETag::Button;
    case ETag::ListItem: return flags & (TagScope | TagListScope);
    default: return flags & (name.flags & (TagSpecial | TagFormatting) ? TagScope : TagSpecial);
    }
}

void CHtmlTreeBuilder::EndByStart(const STagName& name)
{
    if (Tag(m_open.size() - 1) == ETag::Head && !(name.flags & TagInHead))
        PopTo(m_open.size() - 1);
    if (name.tag == ETag::ListItem || name.tag == ETag::Definition)
        EndItem(name.tag);
    if (name.flags & TagEndsParagraph)
        EndNearest(ETag::Paragraph, ETag::Button);
    const std::size_t top = m_open.size() - 1;
    switch (name.tag) {
    case ETag::A:
    case ETag::Nobr:
    case ETag::Button: EndNearest(name.tag, ETag::Other); break;
    case ETag::Option:
        if (Tag(top) == ETag::Option)
            PopTo(top);
        break;
    case ETag::OptGroup:
        EndWhile([](ETag tag) { return tag == ETag::Option; });
        if (Tag(m_open.size() - 1) == ETag::OptGroup)
            PopTo(m_open.size() - 1);
        break;
    case ETag::RubyBase:
    case ETag::RubyContainer:
        EndWhile([](ETag tag) { return IsRubyPart(tag) || tag == ETag::RubyContainer; });
        break;
    case ETag::RubyText: EndWhile(IsRubyPart); break;
    case ETag::Table:
        if (Tag(top) == ETag::Table)
            PopTo(top);
        break;
    case ETag::TableHead:
    case ETag::TablePart: EndTableParts(TableRank(ETag::TablePart)); break;
    case ETag::Row:
    case ETag::Cell: EndTableParts(TableRank(name.tag)); break;
    default:
        if (name.flags & m_open[top].flags & TagHeading)
            PopTo(top);
    }
}

template <class TEnds> void CHtmlTreeBuilder::EndWhile(TEnds ends)
{
    while (ends(Tag(m_open.size() - 1)))
        PopTo(m_open.size() - 1);
}

void CHtmlTreeBuilder::EndNearest(ETag tag, ETag bound)
{
    if (OpenCount(tag) == 0)
        return;
    for (std::size_t i = m_open.size() - 1; i > 0; --i) {
        if (Tag(i) == tag) {
            EndElement(i);
            return;
        }
        if (m_open[i].flags & TagScope || (bound != ETag::Other && Tag(i) == bound))
            return;
    }
}

void CHtmlTreeBuilder::EndItem(ETag item)
{
    if (OpenCount(item) == 0)
        return;
    for (std::size_t i = m_open.size() - 1; i > 0; --i) {
        if (Tag(i) == item) {
            PopTo(i);
            return;
        }
        if (m_open[i].flags & TagSpecial && !(m_open[i].flags & TagItemInside))
            return;
    }
}

void CHtmlTreeBuilder::EndTableParts(int rank)
{
    std::size_t outermost = m_open.size();
    for (std::size_t i = m_open.size() - 1; i > 0; --i) {
        const ETag tag = Tag(i);
        if (tag == ETag::Table || tag == ETag::Template)
            break;
        if (TableRank(tag) != 0 && TableRank(tag) <= rank)
            outermost = i;
    }
    PopTo(outermost);
}

void CHtmlTreeBuilder::LeaveForeign()
{
    while (m_open.back().content != ENamespace::Html)
        PopTo(m_open.size() - 1);
}

TSemanticIndex CHtmlTreeBuilder::AddNode(CTreeWriter& tree, TSemanticIndex parent, std::int32_t kind,
                                         SStretch name, SStretch span)
{
    SSemanticTreeNode node;
    node.kind = kind;
    node.name = m_text.Written(name);
    node.span = m_text.Span(span);
    return tree.Add(parent, std::move(node));
}

ETag CHtmlTreeBuilder::Tag(std::size_t i) const
{
    return m_open[i].self == ENamespace::Html ? m_open[i].name->tag : ETag::Other;
}

void CHtmlTreeBuilder::Push(const SOpen& element)
{
    // A document has one of each; a second one is another branch of a PHP template.
    const ETag tag = element.name->tag;
    if ((tag == ETag::Html || tag == ETag::Head || tag == ETag::Body) && OpenCount(tag) > 0)
        return;
    m_open.push_back(element);
    ++element.name->open;
    ++OpenCount(Tag(m_open.size() - 1));
}

void CHtmlTreeBuilder::PopTo(std::size_t size)
{
    while (m_open.size() > size)
        Remove(m_open.size() - 1);
}

void CHtmlTreeBuilder::Remove(std::size_t i)
{
    --m_open[i].name->open;
    --OpenCount(Tag(i));
    m_open.erase(m_open.begin() + static_cast<std::ptrdiff_t>(i));
}

void CHtmlTreeBuilder::EndElement(std::size_t i)
{
    if (m_open[i].flags & TagFormatting) {
        for (std::size_t above = i + 1; above < m_open.size(); ++above) {
            if (m_open[above].flags & TagSpecial) {
                Remove(i); // <b><p></b>: the paragraph stays open
                return;
            }
        }
    }
    PopTo(i);
}

} // namespace Kesh::SyntaxParser
