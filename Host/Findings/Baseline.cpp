#include "Findings/Baseline.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

namespace Kesh::Findings {

namespace {

using nlohmann::ordered_json;

[[noreturn]] void Fail(const std::string& what)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(what), __LINE__, "Host/Findings/Baseline");
}

/// A whole number within limits. Throws likewise.
std::int64_t NumberOf(const nlohmann::json& item, const char* key, std::int64_t lowest)
{
    constexpr std::int64_t Highest = std::numeric_limits<std::int32_t>::max();
    const nlohmann::json& value = item.at(key);
    const bool fits = value.is_number_integer() &&
                      (!value.is_number_unsigned() || value.get<std::uint64_t>() <= std::uint64_t{Highest});
    if (!fits || value.get<std::int64_t>() < lowest || value.get<std::int64_t>() > Highest)
        Fail("no baseline: \"" + std::string(key) + "\" is " + value.dump() + ", not a whole number from " +
             std::to_string(lowest) + " to " + std::to_string(Highest));
    return value.get<std::int64_t>();
}

std::wstring FolderOf(const std::wstring& file)
{
    const std::wstring absolute = Host::AbsolutePath(file);
    return absolute.substr(0, absolute.rfind(L'/') + 1);
}

} // namespace

CBaseline CBaseline::Read(const std::wstring& file)
{
    CBaseline baseline(FolderOf(file));
    try {
        const auto whole = nlohmann::json::parse(Host::ReadFileBytes(file));
        if (whole.at("version") != 1)
            Fail("a baseline of a version that is not known");
        for (const auto& item : whole.at("findings")) {
            const auto code = static_cast<std::int32_t>(NumberOf(item, "code", 1));
            const std::int64_t count = item.contains("count") ? NumberOf(item, "count", 1) : 1;
            baseline
                .m_files[item.at("file").get<std::string>()][{code, item.at("line").get<std::string>()}] +=
                static_cast<std::size_t>(count);
        }
    } catch (const nlohmann::json::exception& fault) {
        // In front stands the library's own name for it, in brackets.
        const std::string what = fault.what();
        Fail("no baseline: " + what.substr(what.find("] ") + 2));
    }
    return baseline;
}

std::string CBaseline::NameOf(const SFileFindings& file) const
{
    const std::wstring folder = m_folder.ends_with(L'/') ? m_folder : m_folder + L'/';
    std::wstring name = file.path.starts_with(folder) ? file.path.substr(folder.size()) : file.path;
    // JSON holds no bytes that are not UTF-8.
    for (wchar_t& c : name)
        if (c >= 0xDC80 && c <= 0xDCFF)
            c = 0xFFFD;
    return Host::PathToBytes(name);
}

CBaseline::TKey CBaseline::KeyOf(const SFinding& finding)
{
    return {finding.error.code, Host::PathToBytes(Base::CCommonString::Trim(finding.line.text))};
}

void CBaseline::Take(const SFileFindings& file)
{
    m_taken.insert(NameOf(file));
    for (const SFinding& finding : file.findings)
        ++m_files[NameOf(file)][KeyOf(finding)];
}

std::size_t CBaseline::TakeOthers(const CBaseline& before)
{
    std::size_t count = 0;
    for (const auto& [name, counts] : before.m_files) {
        const std::wstring path = Host::PathFromBytes(name);
        if (m_taken.contains(name) ||
            !Host::IsRegularFile(path.starts_with(L'/') ? path : m_folder + L'/' + path))
            continue;
        m_files[name] = counts;
        for (const auto& [key, times] : counts)
            count += times;
    }
    return count;
}

void CBaseline::Write(const std::wstring& file) const
{
    std::string text = "{\"version\": 1, \"findings\": [";
    const char* separator = "\n";
    for (const auto& [name, counts] : m_files) {
        for (const auto& [key, count] : counts) {
            ordered_json item = {{"file", name}, {"code", key.first}, {"line", key.second}};
            if (count > 1)
                item["count"] = count;
            text += separator + item.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
            separator = ",\n";
        }
    }
    Host::WriteFileBytes(file, text + "\n]}\n");
}

void CBaseline::Filter(SFileFindings& file) const
{
    const auto known = m_files.find(NameOf(file));
    if (known == m_files.end())
        return;
    TCounts left = known->second;
    std::erase_if(file.findings, [&](const SFinding& finding) {
        const auto count = left.find(KeyOf(finding));
        if (count == left.end() || count->second == 0)
            return false;
        --count->second;
        return true;
    });
    for (const auto& [key, count] : left)
        if (count)
            file.gone.push_back({known->first, key.first, key.second, count});
}

std::size_t CBaseline::Size() const
{
    std::size_t size = 0;
    for (const auto& [name, counts] : m_files)
        for (const auto& [key, count] : counts)
            size += count;
    return size;
}

} // namespace Kesh::Findings
