#include "SourceOfText.h"

#include "SyntaxParser/SourceText.h"

namespace Kesh::CheckLibrary {

namespace {

using SyntaxParser::EEncoding;

std::wstring Decoded(std::string_view bytes, bool isText, bool& isUtf8)
{
    SyntaxParser::SSourceFormat format;
    std::wstring text = isText ? SyntaxParser::DecodeSourceAs(bytes, EEncoding::Utf8, format)
                               : SyntaxParser::DecodeSource(bytes, format);
    isUtf8 = format.encoding == EEncoding::Utf8;
    return text;
}

} // namespace

CSourceOfText::CSourceOfText(std::string_view bytes, bool isText)
    : m_bytes(bytes),
      m_isLikeFile(!isText || SyntaxParser::BeginsWithMark(bytes)),
      m_text(Decoded(bytes, isText, m_isUtf8)),
      m_lines(m_text)
{
}

code_analyzer_position CSourceOfText::Position(const SyntaxParser::CIterator& position) const
{
    code_analyzer_position given{static_cast<std::uint64_t>(position.y),
                                 static_cast<std::uint64_t>(position.x), CODE_ANALYZER_NO_OFFSET};
    if (!m_isUtf8)
        return given;
    if (!m_places)
        m_places.emplace(m_bytes);
    given.offset = m_places->Byte(m_lines.Offset(position));
    return given;
}

code_analyzer_span CSourceOfText::Span(const SyntaxParser::SScheme& span) const
{
    return {Position(span.start), Position(span.end)};
}

} // namespace Kesh::CheckLibrary
