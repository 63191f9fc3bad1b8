#include "Report.h"

#include "Application/FilePath.h"

#include <algorithm>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

bool IsError(const SRecord& record)
{
    return record.error.type == CodeAnalyzer::SeverityError;
}

bool Precedes(const SRecord& a, const SRecord& b)
{
    if (a.file != b.file)
        return a.file < b.file;
    if (!(a.error.pos.start == b.error.pos.start))
        return a.error.pos.start < b.error.pos.start;
    return a.error.code < b.error.code;
}

std::string Counted(std::size_t count, const char* noun)
{
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

} // namespace

std::string Printable(std::wstring_view text)
{
    std::wstring shown;
    for (const wchar_t w : text) {
        const auto c = static_cast<char32_t>(w);
        const bool badByte = c >= 0xDC80 && c <= 0xDCFF;
        if (c == U'\n') {
            shown += L"\\n";
        } else if (c == U'\r') {
            shown += L"\\r";
        } else if (c == U'\t') {
            shown += L"\\t";
        } else if (c < 0x20 || c == 0x7F || (c >= 0x80 && c < 0xA0) || badByte) {
            wchar_t escape[8];
            std::swprintf(escape, std::size(escape), L"\\x%02X", static_cast<unsigned>(c & 0xFF));
            shown += escape;
        } else {
            shown += w;
        }
    }
    return Host::PathToBytes(shown);
}

bool WantsColor(EColor color, std::FILE* stream)
{
    if (color != EColor::Auto)
        return color == EColor::Always;
    const char* noColor = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return ::isatty(::fileno(stream)) && !(noColor && *noColor) && terminal &&
           std::string_view(terminal) != "dumb";
}

CReport::CReport(const SOptions& options, std::FILE* out)
    : m_options(options), m_out(out), m_colored(WantsColor(options.color, out))
{
}

void CReport::Add(std::vector<SRecord> records)
{
    if (records.empty())
        return;
    ++m_filesWithRecords;
    std::sort(records.begin(), records.end(), Precedes);
    for (SRecord& record : records) {
        ++(IsError(record) ? m_errors : m_warnings);
        if (m_options.format == EFormat::Text)
            PrintText(record);
        else
            m_records.push_back(std::move(record));
    }
}

void CReport::Finish(std::size_t checked)
{
    if (m_options.format == EFormat::Json)
        PrintJson();
    else if (!m_options.quiet)
        PrintSummary(checked);
}

void CReport::PrintText(const SRecord& record)
{
    const char* severity = IsError(record) ? "error" : "warning";
    const char* bold = m_colored ? "\x1B[1m" : "";
    const char* tint = !m_colored ? "" : IsError(record) ? "\x1B[1;31m" : "\x1B[1;35m";
    const char* plain = m_colored ? "\x1B[0m" : "";
    const auto& start = record.error.pos.start;
    std::fprintf(m_out, "%s%s:%lld:%lld:%s %s%s:%s %s [%d]\n", bold, Printable(record.file).c_str(),
                 static_cast<long long>(start.y + 1), static_cast<long long>(start.x + 1), plain, tint,
                 severity, plain, Printable(record.message).c_str(), record.error.code);
}

void CReport::PrintJson()
{
    std::sort(m_records.begin(), m_records.end(), Precedes);
    std::string text = "[";
    const char* separator = "\n";
    for (const SRecord& record : m_records) {
        const auto& [start, end] = record.error.pos;
        nlohmann::ordered_json object;
        object["file"] = Host::PathToBytes(record.file);
        object["startLine"] = start.y + 1;
        object["startColumn"] = start.x + 1;
        object["endLine"] = end.y + 1;
        object["endColumn"] = end.x + 1;
        object["code"] = record.error.code;
        object["severity"] = IsError(record) ? "error" : "warning";
        object["message"] = Host::PathToBytes(record.message);
        text += separator;
        // A file name need not be UTF-8, JSON must be.
        text += object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
        separator = ",\n";
    }
    text += m_records.empty() ? "]\n" : "\n]\n";
    std::fwrite(text.data(), 1, text.size(), m_out);
}

void CReport::PrintSummary(std::size_t checked)
{
    const std::string files = Counted(checked, "file");
    if (m_errors + m_warnings == 0)
        std::fprintf(m_out, "No errors in %s.\n", files.c_str());
    else
        std::fprintf(m_out, "%s and %s in %zu of %s.\n", Counted(m_errors, "error").c_str(),
                     Counted(m_warnings, "warning").c_str(), m_filesWithRecords, files.c_str());
}

} // namespace Kesh::CommandLine
