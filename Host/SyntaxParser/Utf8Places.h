#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Where the characters of a text are in the bytes that it was decoded from as UTF-8. The bytes must outlive
/// it.
class CUtf8Places
{
public:
    explicit CUtf8Places(std::string_view bytes);
    /// The place of the first byte of a character, counted as DecodeSource() makes them; the number of bytes
    /// for one behind the last. In time that does not depend on the text.
    std::size_t Byte(std::size_t character) const;

private:
    /// Passes one character.
    std::size_t Next(std::size_t byte) const;

    std::string_view m_bytes;
    std::vector<std::size_t> m_marks; ///< the place of each Step-th character
};

} // namespace Kesh::SyntaxParser
