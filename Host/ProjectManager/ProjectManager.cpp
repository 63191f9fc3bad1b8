#include "ProjectManager/ProjectManager.h"

#include "Application/Fault.h"
#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "SyntaxParser/SPDocument.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <filesystem>

namespace Kesh::ProjectManager {

namespace {

/// Data items are files of this name, so a name must not lead elsewhere.
bool IsDataName(const std::wstring& name)
{
    return !name.empty() && !name.starts_with(L'.') && name.find(L'/') == std::wstring::npos;
}

} // namespace

SFileQuery CProjectManager::MakeQuery()
{
    SFileQuery query;
    query.takesFile = [](const std::wstring& path) { return !SyntaxParser::FactoryForPath(path).empty(); };
    return query;
}

void CProjectManager::Open(const std::wstring& folder, std::vector<std::wstring> files)
{
    Close();
    m_folder = folder;
    SetFiles(std::move(files));
}

void CProjectManager::Close(bool reopening)
{
    if (!IsOpened())
        return;
    m_reopening = reopening;
    Host::Guard(L"close project", [this] { m_closeProject(this); });
    m_reopening = false;
    const std::lock_guard lock(m_mutex);
    m_folder.clear();
    m_cache.reset();
    m_members.clear();
}

void CProjectManager::NoteFile(const std::wstring& path)
{
    if (!IsOpened() || !IsFoundIn(m_folder, path, MakeQuery()))
        return;
    std::vector<std::wstring> files = GetFiles();
    const auto place = std::lower_bound(files.begin(), files.end(), path);
    if (place != files.end() && *place == path)
        return;
    files.insert(place, path);
    SetFiles(std::move(files));
}

void CProjectManager::SetFiles(std::vector<std::wstring> files)
{
    std::unordered_set<std::wstring> members(files.begin(), files.end());
    auto cache = boost::make_shared<SProjectFilesCache>();
    cache->files = std::move(files);
    const std::lock_guard lock(m_mutex);
    m_cache = std::move(cache);
    m_members = std::move(members);
}

int CProjectManager::IsOpened()
{
    const std::lock_guard lock(m_mutex);
    return m_cache != nullptr;
}

int CProjectManager::BelongsToProject(const std::wstring& path)
{
    const std::lock_guard lock(m_mutex);
    return m_members.count(path) != 0;
}

std::vector<std::wstring> CProjectManager::GetFiles()
{
    const std::lock_guard lock(m_mutex);
    return m_cache ? m_cache->files : std::vector<std::wstring>();
}

boost::shared_ptr<const SProjectFilesCache> CProjectManager::GetFilesCache()
{
    const std::lock_guard lock(m_mutex);
    return m_cache;
}

std::wstring CProjectManager::GetData(const std::wstring& name)
{
    if (!m_keepsData || !IsOpened() || !IsDataName(name))
        return {};
    try {
        return Host::PathFromBytes(Host::ReadFileBytes(DataFolder() + L'/' + name));
    } catch (const Base::CWorkError&) {
        return {}; // nothing has been kept yet
    }
}

void CProjectManager::SetData(const std::wstring& name, const std::wstring& text)
{
    if (!m_keepsData || !IsOpened() || !IsDataName(name))
        return;
    try {
        const std::wstring folder = DataFolder();
        std::error_code error;
        if (std::filesystem::create_directory(Host::PathToBytes(folder), error))
            Host::WriteFileBytes(folder + L"/.gitignore", "*\n"); // what is kept here is nobody else's
        if (error == std::errc::file_exists)
            error = std::make_error_code(std::errc::not_a_directory);
        if (error)
            throw Base::CWorkError(Base::CCommonString::FromUtf8(error.message()), __LINE__,
                                   "Host/ProjectManager/ProjectManager");
        Host::WriteFileBytes(folder + L'/' + name, Host::PathToBytes(text));
        Host::RemoveAbandonedCopies(folder + L'/' + name);
    } catch (const Base::CWorkError& fault) {
        m_dataError(fault.GetMessage());
    }
}

} // namespace Kesh::ProjectManager
