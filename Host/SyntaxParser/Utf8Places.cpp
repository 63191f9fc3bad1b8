#include "SyntaxParser/Utf8Places.h"

#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/Utf8Sequence.h"

namespace Kesh::SyntaxParser {

namespace {

constexpr std::size_t Step = 64;

} // namespace

CUtf8Places::CUtf8Places(std::string_view bytes) : m_bytes(bytes)
{
    std::size_t byte = BeginsWithMark(bytes) ? 3 : 0;
    for (std::size_t character = 0;; ++character) {
        if (character % Step == 0)
            m_marks.push_back(byte);
        if (byte == bytes.size())
            return;
        byte = Next(byte);
    }
}

std::size_t CUtf8Places::Next(std::size_t byte) const
{
    const auto* begin = reinterpret_cast<const unsigned char*>(m_bytes.data());
    const unsigned char* p = begin + byte;
    const unsigned char* end = begin + m_bytes.size();
    if (*p >= 0x80)
        DecodeUtf8Sequence(p, end);
    else
        p += *p == '\r' && p + 1 < end && p[1] == '\n' ? 2 : 1;
    return static_cast<std::size_t>(p - begin);
}

std::size_t CUtf8Places::Byte(std::size_t character) const
{
    if (character / Step >= m_marks.size())
        return m_bytes.size();
    std::size_t byte = m_marks[character / Step];
    for (std::size_t i = 0; i < character % Step && byte < m_bytes.size(); ++i)
        byte = Next(byte);
    return byte;
}

} // namespace Kesh::SyntaxParser
