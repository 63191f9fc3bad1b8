#pragma once

#include "Files/FilePath.h"
#include "Report/Output.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>

namespace Kesh::CommandLine {

/// Text as JSON takes it, in place of what a value held: a report writes the same few members many times, and
/// an object is much slower to make than to fill.
inline void SetText(nlohmann::ordered_json& value, std::string text)
{
    value.get_ref<std::string&>() = std::move(text);
}

/// One line of JSON. A file name need not be UTF-8, JSON must be.
inline std::string JsonText(const nlohmann::ordered_json& value)
{
    return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

/// An array of which each item is written, on a line of its own, as soon as it is there.
class CJsonOutput
{
public:
    explicit CJsonOutput(COutput& output) : m_output(output) {}

    /// `before` is what stands in front of the array, `behind` what ends the whole.
    void Begin(std::string_view before = {}) { m_output.Write(std::string(before) + '['); }
    void Add(const nlohmann::ordered_json& item)
    {
        m_output.Write(m_any ? ",\n" : "\n");
        m_output.Write(JsonText(item));
        m_any = true;
    }
    void End(std::string_view behind = "\n") { m_output.Write((m_any ? "\n]" : "]") + std::string(behind)); }

private:
    COutput& m_output;
    bool m_any = false;
};

} // namespace Kesh::CommandLine
