#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Kesh::LanguageServer {

/// Larger messages are read past: no editor sends a text that the host would refuse.
constexpr std::size_t MaxMessageBytes = std::size_t{256} << 20;

/// Cuts a stream of bytes into messages: header lines, an empty line, and as many bytes as "Content-Length"
/// says. Whatever comes, it finds the next message behind it.
class CMessageReader
{
public:
    explicit CMessageReader(std::size_t maxBytes = MaxMessageBytes) : m_maxBytes(maxBytes) {}

    struct SMessage
    {
        std::string body;
        std::string fault; ///< what was wrong with the framing; empty: nothing, and there is a body
    };

    void Feed(std::string_view bytes);
    /// The next message that is complete.
    std::optional<SMessage> Next();

private:
    bool ReadHeader(std::string& fault);

    std::size_t m_maxBytes;
    std::string m_pending;
    std::size_t m_at = 0;                ///< what lies before it in m_pending has been taken
    std::size_t m_searched = 0;          ///< no header ends before it
    std::optional<std::size_t> m_length; ///< of the body that is awaited
    std::size_t m_skip = 0;              ///< bytes of a body that is too large
};

/// A message ready to be sent.
std::string Framed(std::string_view body);

} // namespace Kesh::LanguageServer
