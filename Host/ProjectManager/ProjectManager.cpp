#include "ProjectManager/ProjectManager.h"

#include "Files/Fault.h"
#include "ProjectManager/ProjectData.h"
#include "SyntaxParser/SPDocument.h"

#include <algorithm>
#include <boost/make_shared.hpp>

namespace Kesh::ProjectManager {

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
    return m_keepsData && IsOpened() ? CProjectData(m_folder, {}).GetData(name) : std::wstring();
}

void CProjectManager::SetData(const std::wstring& name, const std::wstring& text)
{
    if (m_keepsData && IsOpened())
        CProjectData(m_folder, {[this](const std::wstring& reason) { m_dataError(reason); }, {}})
            .SetData(name, text);
}

boost::shared_ptr<IProjectData> CProjectManager::GetProjectData()
{
    if (!m_keepsData || !IsOpened())
        return {};
    const auto onGuiThread = [this](auto action) {
        QMetaObject::invokeMethod(&m_context, std::move(action), Qt::QueuedConnection);
    };
    CProjectData::SEvents events;
    events.failed = [this, onGuiThread](const std::wstring& reason) {
        onGuiThread([this, reason] { m_dataError(reason); });
    };
    events.ended = [this, onGuiThread] {
        onGuiThread([this] {
            --m_holders;
            m_dataReleased();
        });
    };
    ++m_holders;
    return boost::make_shared<CProjectData>(m_folder, std::move(events));
}

} // namespace Kesh::ProjectManager
