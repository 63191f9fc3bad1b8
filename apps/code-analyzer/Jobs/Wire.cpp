#include "Jobs/Wire.h"

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

namespace Kesh::CommandLine {

namespace {

using Findings::SFinding;

/// Writes and reads by one description of the fields, so that the two cannot differ.
class CWriter
{
public:
    explicit CWriter(std::string& bytes) : m_bytes(bytes) {}

    template <class T>
    requires std::is_trivially_copyable_v<T>
    void Field(const T& value) { m_bytes.append(reinterpret_cast<const char*>(&value), sizeof value); }
    template <class TChar> void Field(const std::basic_string<TChar>& text)
    {
        Field(text.size());
        m_bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(TChar));
    }
    template <class T> void Field(const std::vector<T>& list)
    {
        Field(list.size());
        for (const T& item : list)
            Describe(*this, item);
    }

private:
    std::string& m_bytes;
};

class CReader
{
public:
    explicit CReader(std::string_view bytes) : m_bytes(bytes) {}

    template <class T>
    requires std::is_trivially_copyable_v<T>
    void Field(T& value)
    {
        std::memcpy(&value, m_bytes.data(), sizeof value);
        m_bytes.remove_prefix(sizeof value);
    }
    template <class TChar> void Field(std::basic_string<TChar>& text)
    {
        std::size_t size = 0;
        Field(size);
        text.resize(size);
        std::memcpy(text.data(), m_bytes.data(), size * sizeof(TChar));
        m_bytes.remove_prefix(size * sizeof(TChar));
    }
    template <class T> void Field(std::vector<T>& list)
    {
        std::size_t size = 0;
        Field(size);
        list.resize(size);
        for (T& item : list)
            Describe(*this, item);
    }

private:
    std::string_view m_bytes;
};

template <class TStream, class T>
requires std::is_same_v<std::remove_const_t<T>, CodeAnalyzer::SArgument>
void Describe(TStream& stream, T& argument)
{
    stream.Field(argument.name);
    stream.Field(argument.value);
    stream.Field(argument.kind);
}

template <class TStream, class T>
requires std::is_same_v<std::remove_const_t<T>, CodeAnalyzer::SRelatedPlace> ||
    std::is_same_v<std::remove_const_t<T>, Findings::SRelated>
void Describe(TStream& stream, T& place)
{
    stream.Field(place.pos);
    stream.Field(place.message);
}

template <class TStream, class T>
requires std::is_same_v<std::remove_const_t<T>, CodeAnalyzer::STextEdit>
void Describe(TStream& stream, T& edit)
{
    stream.Field(edit.span);
    stream.Field(edit.text);
}

template <class TStream, class T>
requires std::is_same_v<std::remove_const_t<T>, CodeAnalyzer::SFix>
void Describe(TStream& stream, T& fix)
{
    stream.Field(fix.kind);
    stream.Field(fix.edits);
}

template <class TStream, class T>
requires std::is_same_v<std::remove_const_t<T>, SFinding>
void Describe(TStream& stream, T& finding)
{
    stream.Field(finding.error);
    stream.Field(finding.title);
    stream.Field(finding.message);
    stream.Field(finding.details.arguments);
    stream.Field(finding.details.related);
    stream.Field(finding.details.fixes);
    stream.Field(finding.related);
    stream.Field(finding.line.text);
    stream.Field(finding.line.from);
    stream.Field(finding.line.cut);
    stream.Field(finding.text);
}

template <class TStream, class T>
requires std::is_same_v<std::remove_const_t<T>, Findings::SGone>
void Describe(TStream& stream, T& gone)
{
    stream.Field(gone.file);
    stream.Field(gone.code);
    stream.Field(gone.line);
    stream.Field(gone.count);
}

template <class TStream, class T>
requires std::is_same_v<std::remove_const_t<T>, SResult>
void Describe(TStream& stream, T& result)
{
    stream.Field(result.input);
    stream.Field(result.problem);
    stream.Field(result.skipped);
    stream.Field(result.fixed.fixed);
    stream.Field(result.fixed.diff);
    stream.Field(result.fixed.note);
    stream.Field(result.fixed.failed);
    stream.Field(result.findings.findings);
    stream.Field(result.findings.gone);
}

using TFrameSize = std::uint64_t;

} // namespace

void AppendFrame(std::string& bytes, const SResult& result)
{
    const std::size_t begin = bytes.size();
    TFrameSize size = 0;
    CWriter writer(bytes);
    writer.Field(size);
    Describe(writer, result);
    size = bytes.size() - begin - sizeof size;
    std::memcpy(bytes.data() + begin, &size, sizeof size);
}

std::optional<SResult> TakeFrame(std::string_view& bytes)
{
    TFrameSize size = 0;
    if (bytes.size() < sizeof size)
        return std::nullopt;
    std::memcpy(&size, bytes.data(), sizeof size);
    if (bytes.size() - sizeof size < size)
        return std::nullopt;
    SResult result;
    CReader reader(bytes.substr(sizeof size, size));
    Describe(reader, result);
    bytes.remove_prefix(sizeof size + size);
    return result;
}

} // namespace Kesh::CommandLine
