#pragma once

#include "Kesh/ProjectManager/IProjectManager.h"
#include "ProjectManager/FileFinder.h"

#include <QCoreApplication>
#include <QObject>
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
    /// Whether somebody still reads or writes texts of a project, which may be closed by now. GUI thread.
    bool IsDataHeld() const { return m_holders > 0; }
    /// Tells now what is to be told on the GUI thread. GUI thread.
    void DeliverDataNotices() { QCoreApplication::sendPostedEvents(&m_context); }
    /// Told when somebody has done with that, after the errors of it. GUI thread.
    boost::signals2::signal<void()>& GetDataReleasedSignal() { return m_dataReleased; }

    int IsOpened() override;
    int BelongsToProject(const std::wstring& path) override;
    std::vector<std::wstring> GetFiles() override;
    boost::shared_ptr<const SProjectFilesCache> GetFilesCache() override;
    int IsReopening() override { return m_reopening; }
    std::wstring GetData(const std::wstring& name) override;
    void SetData(const std::wstring& name, const std::wstring& text) override;
    CloseProjectSignal& GetCloseProjectSignal() override { return m_closeProject; }
    /// To be let go before the component ends.
    boost::shared_ptr<IProjectData> GetProjectData() override;

private:
    void SetFiles(std::vector<std::wstring> files);

    std::wstring m_folder;
    bool m_reopening = false;
    bool m_keepsData = true;
    CloseProjectSignal m_closeProject;
    boost::signals2::signal<void(const std::wstring&)> m_dataError;
    boost::signals2::signal<void()> m_dataReleased;
    int m_holders = 0; ///< of texts
    QObject m_context; ///< receiver of their notices

    std::mutex m_mutex;                                  ///< guards what follows
    boost::shared_ptr<const SProjectFilesCache> m_cache; ///< null: no project is open
    std::unordered_set<std::wstring> m_members;          ///< the files of m_cache
};

} // namespace Kesh::ProjectManager
