#pragma once

#include "CodeAnalyzerCheck.h"
#include "Findings/TextLines.h"
#include "SyntaxParser/Utf8Places.h"

#include <optional>
#include <string>
#include <string_view>

namespace Kesh::CheckLibrary {

/// A text as it is checked, and where its characters are in what the host has given.
class CSourceOfText
{
public:
    /// `isText`: the bytes are meant to be UTF-8; else they may be a file of another encoding. They must
    /// outlive it.
    CSourceOfText(std::string_view bytes, bool isText);
    CSourceOfText(const CSourceOfText&) = delete;
    CSourceOfText& operator=(const CSourceOfText&) = delete;

    const std::wstring& Text() const { return m_text; }
    std::string_view Bytes() const { return m_bytes; }
    /// Whether the bytes are to be checked as those of a file, which gives the same text: for PHP a byte
    /// order mark before it is more than its absence.
    bool IsLikeFile() const { return m_isLikeFile; }
    const Findings::CTextLines& Lines() const { return m_lines; }
    code_analyzer_span Span(const SyntaxParser::SScheme& span) const;

private:
    code_analyzer_position Position(const SyntaxParser::CIterator& position) const;

    std::string_view m_bytes;
    bool m_isLikeFile;
    bool m_isUtf8 = true;
    std::wstring m_text;
    Findings::CTextLines m_lines;
    mutable std::optional<SyntaxParser::CUtf8Places> m_places; ///< found when first needed
};

} // namespace Kesh::CheckLibrary
