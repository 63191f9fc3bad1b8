#pragma once

#include "LanguageServer/Connection.h"
#include "LanguageServer/ProjectSettings.h"

#include <QObject>
#include <QTimer>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Kesh::Host {
class CApplication;
}

namespace Kesh::LanguageServer {

/// The editor's folders as the host's project, and the check of all their files. GUI thread only.
class CWorkspace
{
public:
    /// `settings` outlives it. `onFound` is called after each search.
    CWorkspace(Host::CApplication& application, CConnection& connection, const CProjectSettings& settings,
               std::function<void()> onFound);
    ~CWorkspace();

    void SetProgressWanted(bool wanted) { m_progressWanted = wanted; }
    void AddFolder(const std::wstring& path);
    void RemoveFolder(const std::wstring& path);
    const std::vector<std::wstring>& Folders() const { return m_folders; }

    /// Finds the files of all folders, in a thread, then has them checked; a search that runs is given up.
    void CheckAll();
    /// The same a little later, once for all wishes that come until then.
    void CheckAllSoon() { m_soon.start(); }
    /// Only what is open is checked from now on.
    void CheckNothing();
    /// Whether a check of all files is to come or runs.
    bool IsBusy() const;
    /// Whether a search would find the file, were it there.
    bool Takes(const std::wstring& path) const;

private:
    void EndSearch();
    void OnFound(int search, std::vector<std::wstring> files);
    void BeginProgress(std::size_t total);
    void ShowProgress();

    Host::CApplication& m_application;
    CConnection& m_connection;
    const CProjectSettings& m_settings;
    std::function<void()> m_onFound;
    std::vector<std::wstring> m_folders;
    QTimer m_soon;
    std::thread m_search;
    bool m_isSearching = false;
    int m_searches = 0; ///< what an older one has found is of no use
    std::atomic<bool> m_cancelled{false};
    QObject m_context;

    bool m_progressWanted = false;
    QTimer m_progress;
    json m_token; ///< null: no progress is shown
    int m_nextToken = 1;
    std::size_t m_total = 0;
    std::atomic<std::size_t> m_asked{0};
};

} // namespace Kesh::LanguageServer
