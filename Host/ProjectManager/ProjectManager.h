#pragma once

#include "Kesh/ProjectManager/IProjectManager.h"
#include "ProjectManager/FileFinder.h"

#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

namespace Kesh::ProjectManager {

/// The open project: a folder, the files in it that the checkers know, and the texts kept with it in its
/// subfolder ".code-analyzer".
class CProjectManager final : public IPMComponent, private IProjectManager
{
public:
    void InitComponent(SDK::IApplication* /*application*/) override {}
    std::wstring GetComponentName() override { return L"IPMComponent"; }
    IProjectManager* GetProjectManager() override { return this; }

    /// What FindFiles() must look for to find a project's files. Any thread.
    static SFileQuery MakeQuery();

    /// Opens `folder` (an absolute path) with these files; a project that was open is closed first. Whoever
    /// opens a project then emits the parser component's project-parsed signal. GUI thread.
    void Open(const std::wstring& folder, std::vector<std::wstring> files);
    /// Announces the end of the project and forgets it. `reopening`: the same project comes back at once. GUI
    /// thread.
    void Close(bool reopening = false);
    /// Takes a file into the project that has been made or opened after the project was listed, when it lies
    /// in a place whose files are listed. GUI thread.
    void NoteFile(const std::wstring& path);
    /// Empty when no project is open. GUI thread.
    const std::wstring& GetFolder() const { return m_folder; }

    /// Whether texts are kept with projects, as they are unless this says otherwise. GUI thread, before a
    /// project is opened.
    void SetKeepsData(bool keeps) { m_keepsData = keeps; }

    /// Told when a text could not be kept. GUI thread.
    boost::signals2::signal<void(const std::wstring& reason)>& GetDataErrorSignal() { return m_dataError; }

    int IsOpened() override;
    int BelongsToProject(const std::wstring& path) override;
    std::vector<std::wstring> GetFiles() override;
    boost::shared_ptr<const SProjectFilesCache> GetFilesCache() override;
    int IsReopening() override { return m_reopening; }
    std::wstring GetData(const std::wstring& name) override;
    void SetData(const std::wstring& name, const std::wstring& text) override;
    CloseProjectSignal& GetCloseProjectSignal() override { return m_closeProject; }

private:
    std::wstring DataFolder() const { return m_folder + L"/.code-analyzer"; }
    void SetFiles(std::vector<std::wstring> files);

    std::wstring m_folder;
    bool m_reopening = false;
    bool m_keepsData = true;
    CloseProjectSignal m_closeProject;
    boost::signals2::signal<void(const std::wstring&)> m_dataError;

    std::mutex m_mutex;                                  ///< guards what follows
    boost::shared_ptr<const SProjectFilesCache> m_cache; ///< null: no project is open
    std::unordered_set<std::wstring> m_members;          ///< the files of m_cache
};

} // namespace Kesh::ProjectManager
