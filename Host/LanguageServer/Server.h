#pragma once

#include "LanguageServer/ClientCapabilities.h"
#include "LanguageServer/ClientWatch.h"
#include "LanguageServer/CodeActions.h"
#include "LanguageServer/Connection.h"
#include "LanguageServer/Diagnostics.h"
#include "LanguageServer/Documents.h"
#include "LanguageServer/FirstResults.h"
#include "LanguageServer/ProjectSettings.h"
#include "LanguageServer/Workspace.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::LanguageServer {

/// A language server over a host that has loaded the code validator. It is given message by message what the
/// client says, and runs with the thread's event loop. GUI thread only.
class CServer
{
public:
    struct SParts
    {
        Host::CApplication& application;
        Host::CPlugin& plugin;
        CConnection::TSink send;   ///< gets each message without its framing
        std::function<void()> end; ///< the client wants the program to end
        std::string documentation; ///< the URI of the list of errors; may be empty
        std::string version;
        long clientProcess = 0; ///< that of the client, if it is known before the client says
    };
    explicit CServer(const SParts& parts);

    void Receive(std::string_view body) { m_connection.Receive(body); }
    void ReceiveFault(const std::string& what) { m_connection.ReceiveFault(what); }
    /// 0 when the client has asked for the shutdown before the end, else 1.
    int ExitStatus() const { return m_state == EState::ShutDown ? 0 : 1; }

private:
    enum class EState { Fresh, Running, ShutDown };

    void AddLifecycle();
    void AddDocuments();
    void AddWorkspace();
    json Initialize(const json& params);
    void OnInitialized();
    /// Has the client say what the user wants, and checks everything by it.
    void AskForWishes();
    void Cancel(const json& id);
    json Execute(const json& params);
    void ChangeFolders(const json& event);
    void WatchFiles();
    void ReadWishes(const json& wishes);
    void ReadSettings();
    /// Tells of what is wrong with settings that have been read since, and watches what they name.
    void FollowSettings();
    /// Reads the settings and has everything checked by them, once for all that changes at about that time.
    void Recheck();
    /// The same at once.
    void CheckNow();
    void OnFilesChanged(const json& changes);
    void CheckFile(const std::wstring& path);
    void Show(int type, const std::string& message);

    SParts m_parts;
    EState m_state = EState::Fresh;
    CConnection m_connection;
    CProjectSettings m_settings;
    CDocuments m_documents;
    CDiagnostics m_diagnostics;
    CWorkspace m_workspace;
    CCodeActions m_actions;
    CClientWatch m_clientWatch;
    CFirstResults m_firstResults;
    SClientCapabilities m_client;
    bool m_isAsking = false;                           ///< the client for its settings
    std::optional<std::vector<std::string>> m_watched; ///< the names of files that are watched
    bool m_checkProject = true;                        ///< a wish of the user
    std::string m_configuration; ///< a file that the user names; empty: the one in or above each folder
};

} // namespace Kesh::LanguageServer
