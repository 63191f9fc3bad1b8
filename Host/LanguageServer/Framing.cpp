#include "LanguageServer/Framing.h"

#include <algorithm>
#include <charconv>

namespace Kesh::LanguageServer {

namespace {

/// A header that does not end within this is none.
constexpr std::size_t MaxHeaderBytes = 4096;
constexpr std::string_view HeaderEnd = "\r\n\r\n";
constexpr std::string_view LengthField = "content-length:";

bool IsLengthField(std::string_view line)
{
    return line.size() >= LengthField.size() &&
           std::equal(LengthField.begin(), LengthField.end(), line.begin(), [](char known, char given) {
               return known == (given >= 'A' && given <= 'Z' ? given | 0x20 : given);
           });
}

std::optional<std::size_t> LengthIn(std::string_view header)
{
    for (std::size_t begin = 0; begin < header.size();) {
        const std::size_t end = std::min(header.find("\r\n", begin), header.size());
        std::string_view line = header.substr(begin, end - begin);
        begin = end + 2;
        if (!IsLengthField(line))
            continue;
        line.remove_prefix(LengthField.size());
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        std::size_t length = 0;
        const auto [rest, fault] = std::from_chars(line.data(), line.data() + line.size(), length);
        if (fault == std::errc() &&
            line.find_first_not_of(" \t", rest - line.data()) == std::string_view::npos)
            return length;
    }
    return {};
}

} // namespace

void CMessageReader::Feed(std::string_view bytes)
{
    if (m_skip) {
        const std::size_t skipped = std::min(m_skip, bytes.size());
        m_skip -= skipped;
        bytes.remove_prefix(skipped);
    }
    // Taken bytes are dropped once they are the larger part, so that each is moved a few times at most.
    if (m_at > m_pending.size() / 2) {
        m_pending.erase(0, m_at);
        m_searched -= std::min(m_searched, m_at);
        m_at = 0;
    }
    m_pending += bytes;
}

std::optional<CMessageReader::SMessage> CMessageReader::Next()
{
    if (!m_length) {
        SMessage faulty;
        if (!ReadHeader(faulty.fault))
            return {};
        if (!faulty.fault.empty())
            return faulty;
    }
    if (m_pending.size() - m_at < *m_length)
        return {};
    SMessage message;
    if (m_pending.size() == m_at + *m_length) {
        // Nothing stands behind it, as with most: a large one is not copied, and leaves no room that nobody
        // needs.
        message.body = std::move(m_pending);
        message.body.erase(0, m_at);
        m_pending.clear();
        m_at = 0;
    } else {
        message.body = m_pending.substr(m_at, *m_length);
        m_at += *m_length;
    }
    m_searched = m_at;
    m_length.reset();
    return message;
}

bool CMessageReader::ReadHeader(std::string& fault)
{
    const std::size_t end = m_pending.find(HeaderEnd, std::max(m_at, m_searched));
    if (end == std::string::npos) {
        if (m_pending.size() - m_at <= MaxHeaderBytes) {
            m_searched = m_pending.size() > m_at + 3 ? m_pending.size() - 3 : m_at;
            return false;
        }
        // Not a header; what may be the beginning of one is kept.
        m_at = m_pending.size() - MaxHeaderBytes / 2;
        m_searched = m_at;
        fault = "no header ends within " + std::to_string(MaxHeaderBytes) + " bytes";
        return true;
    }
    const std::optional<std::size_t> length = LengthIn(std::string_view(m_pending).substr(m_at, end - m_at));
    m_at = m_searched = end + HeaderEnd.size();
    if (!length) {
        fault = "a header without a valid Content-Length";
        return true;
    }
    if (*length > m_maxBytes) {
        const std::size_t here = std::min(*length, m_pending.size() - m_at);
        m_at += here;
        m_searched = m_at;
        m_skip = *length - here;
        fault = "a message of " + std::to_string(*length) + " bytes is too large";
        return true;
    }
    m_length = length;
    m_pending.reserve(m_at + *length);
    return true;
}

std::string Framed(std::string_view body)
{
    std::string message = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n";
    message += body;
    return message;
}

} // namespace Kesh::LanguageServer
