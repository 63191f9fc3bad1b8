#pragma once

#include "SyntaxParser/MarkupText.h"

#include <cstddef>
#include <string_view>

namespace Kesh::SyntaxParser {

enum class EHtmlToken {
    StartTag,     ///< `<` and the name
    EndTag,       ///< `</` and the name
    Attribute,    ///< with its value, if it has one
    TagClose,     ///< `>`, or where a tag breaks off
    TagSelfClose, ///< `/>`
    End           ///< of the text
};

/// Cuts HTML into tags and attributes; skips text, comments, declarations and processing instructions.
/// Reads a scanned text (see CMarkupText) once, forward. In it, the placeholders of template engines that
/// stand in tags ("{{ x }}", "{% if x %}", "{$x}", "<# x #>", "@if (x)" and the like) become islands.
class CHtmlScanner
{
public:
    /// `size` characters and a NUL.
    CHtmlScanner(wchar_t* text, std::size_t size) : m_text(text), m_end(text + size), m_cursor(text) {}

    /// Outside tags: StartTag, EndTag or End.
    EHtmlToken NextTag();
    /// Inside a tag: Attribute, TagClose, TagSelfClose or End.
    EHtmlToken NextInTag();
    /// The content of the raw-text element `name` (lower case), up to its end tag or the end of the text.
    SStretch RawText(std::wstring_view name);

    /// Of the last tag or attribute. A value comes without its quotes and is empty when there is none.
    SStretch Name() const { return m_name; }
    SStretch Value() const { return m_value; }
    /// Where reading goes on.
    std::size_t GetPos() const { return Offset(m_cursor); }

private:
    void ReadName();
    void ReadValue();
    void ReadQuoted();
    void ReadUnquoted();
    /// Makes the placeholder at `open` an island and goes past it, if it ends soon.
    void MaskPlaceholder(wchar_t* open, bool inLine);
    /// The same for a directive whose "(" has just been read.
    void MaskDirective(wchar_t* open);
    void SkipComment();
    void SkipPast(std::wstring_view end);
    std::size_t Offset(const wchar_t* place) const { return static_cast<std::size_t>(place - m_text); }

    wchar_t* m_text;
    wchar_t* m_end;
    wchar_t* m_cursor;
    wchar_t* m_marker = nullptr; ///< of the grammar, where it may have to go back to
    SStretch m_name;
    SStretch m_value;
};

} // namespace Kesh::SyntaxParser
