#include "LanguageServer/Server.h"

#include "Application/Application.h"
#include "Application/ParserComponent.h"
#include "Application/PluginLoader.h"
#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Files/Printable.h"
#include "Findings/ApplyRules.h"
#include "LanguageServer/Hover.h"
#include "LanguageServer/Protocol.h"
#include "LanguageServer/Uri.h"
#include "ProjectManager/ProjectManager.h"

#include <algorithm>
#include <regex>

namespace Kesh::LanguageServer {

namespace {

constexpr int CheckDelay = 200; ///< milliseconds after the last edit
/// More changed files than this are checked by a check of the whole project.
constexpr std::size_t ManyFiles = 40;

enum EMessageType : int { MessageError = 1, MessageWarning = 2 };
enum EFileChange : int { FileDeleted = 3 };

} // namespace

CServer::CServer(const SParts& parts)
    : m_parts(parts),
      m_connection(parts.send),
      m_documents(parts.application,
                  [this](const std::wstring& path) {
                      Show(MessageWarning, Host::PathToBytes(Host::FileName(path)) + " is " +
                                               Host::TooLarge() + ", and is not checked");
                  }),
      m_diagnostics(
          {parts.application, parts.plugin, m_documents, m_connection, m_settings, parts.documentation}),
      m_workspace(parts.application, m_connection, m_settings, [this] { FollowSettings(); }),
      m_actions(parts.application, m_documents, m_diagnostics, m_settings),
      m_clientWatch(parts.end),
      m_firstResults(
          [this] {
              return m_isAsking || (m_checkProject && (m_workspace.IsBusy() || m_diagnostics.IsBusy()));
          },
          [this](const json& params, const json& id) { m_diagnostics.AnswerWorkspace(params, id); })
{
    parts.application.Timers().SetDelayOverride(CheckDelay);
    // An editor's folder is not the place for files of ours.
    parts.application.Project().SetKeepsData(false);
    // What `check` finds in a folder is found here too.
    parts.plugin.ProjectCheck().SetComplete(true);
    parts.plugin.ProjectCheck().SetThorough(true);
    if (CodeAnalyzer::IGrammarCheck* grammar = parts.plugin.GrammarCheck())
        grammar->SetEnabled(true);
    if (CodeAnalyzer::IMarkupCheck* markup = parts.plugin.MarkupCheck())
        markup->SetEnabled(true);
    m_clientWatch.Follow(parts.clientProcess);
    AddLifecycle();
    AddDocuments();
    AddWorkspace();
}

void CServer::AddLifecycle()
{
    m_connection.SetGate([this](const std::string& method, bool isRequest) {
        if (method == "exit")
            return;
        if (m_state == EState::Fresh && method != "initialize")
            throw SResponseError{isRequest ? ServerNotInitialized : InvalidRequest, "not initialized"};
        if (m_state != EState::Fresh && method == "initialize")
            throw SResponseError{InvalidRequest, "initialized already"};
        if (m_state == EState::ShutDown)
            throw SResponseError{InvalidRequest, "shut down already"};
    });
    m_connection.On("initialize", [this](const json& params) { return Initialize(params); });
    m_connection.OnNotification("initialized", [this](const json&) { OnInitialized(); });
    m_connection.On("shutdown", [this](const json&) {
        m_state = EState::ShutDown;
        return json();
    });
    m_connection.OnNotification("exit", [this](const json&) { m_parts.end(); });
    m_connection.OnNotification("$/setTrace", [](const json&) {});
    m_connection.OnNotification("$/cancelRequest", [this](const json& params) { Cancel(params.at("id")); });
}

json CServer::Initialize(const json& params)
{
    m_client = ReadCapabilities(params.value("capabilities", json::object()));
    m_documents.SetEncoding(m_client.encoding);
    m_diagnostics.SetEncoding(m_client.encoding);
    m_diagnostics.SetPulled(m_client.pullsDiagnostics, m_client.refreshesDiagnostics);
    m_workspace.SetProgressWanted(m_client.showsProgress);
    m_actions.SetClient(m_client);
    if (const json process = params.value("processId", json()); process.is_number_integer())
        m_clientWatch.Follow(process);

    const json folders = params.value("workspaceFolders", json());
    for (const json& folder : folders.is_array() ? folders : json::array())
        m_workspace.AddFolder(PathOfUri(folder.at("uri").get_ref<const std::string&>()));
    const json root = params.value("rootUri", json());
    if (m_workspace.Folders().empty() && root.is_string())
        m_workspace.AddFolder(PathOfUri(root.get_ref<const std::string&>()));
    ReadWishes(params.value("initializationOptions", json()));
    m_state = EState::Running;

    // Watchers of files hear nothing of the folders around them.
    const json anyFolder = {
        {"filters", {{{"scheme", "file"}, {"pattern", {{"glob", "**"}, {"matches", "folder"}}}}}}};
    json result = {
        {"positionEncoding", NameOf(m_client.encoding)},
        {"textDocumentSync", {{"openClose", true}, {"change", 2}, {"save", true}}},
        {"codeActionProvider",
         {{"codeActionKinds", {"quickfix", CCodeActions::FixAll}},
          {"resolveProvider", m_client.resolvesEdits}}},
        {"hoverProvider", true},
        {"executeCommandProvider", {{"commands", {CCodeActions::AddOwnName, CCodeActions::IgnoreCode}}}},
        {"workspace",
         {{"workspaceFolders", {{"supported", true}, {"changeNotifications", true}}},
          {"fileOperations", {{"didRename", anyFolder}, {"didDelete", anyFolder}}}}}};
    if (m_client.pullsDiagnostics)
        result["diagnosticProvider"] = {{"identifier", "code-analyzer"},
                                        {"interFileDependencies", false},
                                        {"workspaceDiagnostics", true}};
    return {{"capabilities", result},
            {"serverInfo", {{"name", "code-analyzer"}, {"version", m_parts.version}}}};
}

void CServer::OnInitialized()
{
    if (m_client.answersSettings)
        AskForWishes();
    else
        CheckNow();
}

void CServer::AskForWishes()
{
    m_isAsking = true;
    m_connection.Request("workspace/configuration", {{"items", {{{"section", "codeAnalyzer"}}}}},
                         [this](const json& result) {
                             m_isAsking = false;
                             if (result.is_array() && !result.empty())
                                 ReadWishes(result[0]);
                             CheckNow();
                         });
}

void CServer::Cancel(const json& id)
{
    if (m_firstResults.Cancel(id))
        m_connection.RespondError(id, RequestCancelled, "cancelled");
    else
        m_diagnostics.Cancel(id);
}

/// Asks the client to tell of changes to files that matter, baselines among them, by their names.
void CServer::WatchFiles()
{
    const std::vector<std::string> names = m_settings.NamesToWatch();
    if (!m_client.watchesFiles || m_watched == names)
        return;
    if (m_watched)
        m_connection.Request(
            "client/unregisterCapability",
            // The protocol spells it so.
            {{"unregisterations", {{{"id", "files"}, {"method", "workspace/didChangeWatchedFiles"}}}}});
    m_watched = names;
    json watchers = {{{"globPattern", "**/{code-analyzer,composer}.json"}},
                     {{"globPattern", "**/*.{php,phtml,inc,html,htm,css}"}}};
    for (const std::string& name : names)
        // What would mean something in a pattern is left to match anything.
        watchers.push_back(
            {{"globPattern", "**/" + std::regex_replace(name, std::regex(R"([\[\]{}*?!\\,])"), "?")}});
    m_connection.Request("client/registerCapability", {{"registrations",
                                                        {{{"id", "files"},
                                                          {"method", "workspace/didChangeWatchedFiles"},
                                                          {"registerOptions", {{"watchers", watchers}}}}}}});
}

void CServer::AddDocuments()
{
    m_connection.OnNotification("textDocument/didOpen", [this](const json& params) {
        const SOpenDocument& open = m_documents.Open(params.at("textDocument"));
        m_settings.For(open.document->GetPath());
        // Without a folder the first document tells where settings are.
        if (m_workspace.Folders().empty() && m_documents.All().size() == 1)
            ReadSettings();
        else
            FollowSettings();
    });
    m_connection.OnNotification("textDocument/didChange",
                                [this](const json& params) { m_documents.Change(params); });
    m_connection.OnNotification("textDocument/didSave", [this](const json& params) {
        if (m_settings.DependOn(DocumentPath(params)))
            Recheck();
    });
    m_connection.OnNotification("textDocument/didClose", [this](const json& params) {
        const std::wstring path = m_documents.Close(params.at("textDocument").at("uri"));
        if (!path.empty())
            m_diagnostics.OnClosed(path);
    });
    m_connection.OnDeferred("textDocument/diagnostic", [this](const json& params, const json& id) {
        m_diagnostics.AnswerDocument(params, id);
    });
    m_connection.OnDeferred("textDocument/codeAction", [this](const json& params, const json& id) {
        // Right after an edit nothing is known of the text as it is now.
        m_diagnostics.AnswerFresh(DocumentPath(params), id,
                                  [this, params](CDiagnostics::EFresh) { return m_actions.Offer(params); });
    });
    m_connection.On("codeAction/resolve", [this](const json& params) { return m_actions.Resolve(params); });
    m_connection.On("textDocument/hover", [this](const json& params) {
        const std::wstring path = DocumentPath(params);
        const SDescribed* known = m_diagnostics.Known(path);
        const SOpenDocument* open = m_documents.Find(path);
        const bool isOfThis = known && open && known->order.revision == open->revision;
        return isOfThis ? HoverAt(*known, params.at("position")) : json();
    });
}

void CServer::AddWorkspace()
{
    m_connection.OnDeferred("workspace/diagnostic",
                            [this](const json& params, const json& id) { m_firstResults.Ask(params, id); });
    m_connection.On("workspace/executeCommand", [this](const json& params) { return Execute(params); });
    m_connection.OnNotification("workspace/didChangeConfiguration", [this](const json& params) {
        if (m_client.answersSettings) {
            AskForWishes();
            return;
        }
        ReadWishes(MemberAt(params, {"settings", "codeAnalyzer"}));
        Recheck();
    });
    m_connection.OnNotification("workspace/didChangeWatchedFiles",
                                [this](const json& params) { OnFilesChanged(params.at("changes")); });
    m_connection.OnNotification("workspace/didChangeWorkspaceFolders",
                                [this](const json& params) { ChangeFolders(params.at("event")); });
    for (const char* method : {"workspace/didRenameFiles", "workspace/didDeleteFiles"})
        m_connection.OnNotification(method, [this](const json& /*params*/) { Recheck(); });
}

json CServer::Execute(const json& params)
{
    const std::wstring file = m_settings.FileToChange(CCodeActions::DocumentOf(params));
    if (file.empty())
        throw SResponseError{InvalidRequest, "no folder is open that could have a code-analyzer.json"};
    CCodeActions::Execute(params, file);
    Recheck();
    return json();
}

void CServer::ChangeFolders(const json& event)
{
    std::vector<std::wstring> removed;
    std::vector<std::wstring> added;
    for (const json& folder : event.value("removed", json::array()))
        removed.push_back(PathOfUri(folder.at("uri").get_ref<const std::string&>()));
    for (const json& folder : event.value("added", json::array()))
        added.push_back(PathOfUri(folder.at("uri").get_ref<const std::string&>()));
    for (const std::wstring& folder : removed)
        m_workspace.RemoveFolder(folder);
    for (const std::wstring& folder : added)
        m_workspace.AddFolder(folder);
    Recheck();
}

void CServer::ReadWishes(const json& wishes)
{
    if (!wishes.is_object())
        return;
    if (const json check = MemberAt(wishes, {"checkProject"}); check.is_boolean())
        m_checkProject = check;
    if (const json file = MemberAt(wishes, {"configuration"}); file.is_string())
        m_configuration = file;
    if (const json delay = MemberAt(wishes, {"delay"}); delay.is_number_integer())
        m_parts.application.Timers().SetDelayOverride(
            static_cast<int>(std::clamp<std::int64_t>(delay, 0, 10000)));
}

void CServer::ReadSettings()
{
    const std::wstring named =
        m_configuration.empty() ? std::wstring() : Host::AbsolutePath(Host::PathFromBytes(m_configuration));
    const CProjectSettings::TRules before = m_settings.Rules();
    const auto& open = m_documents.All();
    m_settings.Read(m_workspace.Folders(), open.empty() ? std::wstring() : open.begin()->first, named);
    const CProjectSettings::TRules& rules = m_settings.Rules();
    const auto isAlike = [&](const std::wstring& path) {
        const Findings::TRules was = before->For(path);
        const Findings::TRules is = rules->For(path);
        return Findings::OpenAlike(*was, *is) && was->settings.grammar == is->settings.grammar &&
               was->settings.phpVersion == is->settings.phpVersion &&
               was->phpVersionFrom == is->phpVersionFrom && was->settings.markup == is->settings.markup;
    };
    const bool same =
        std::ranges::all_of(open, [&](const auto& document) { return isAlike(document.first); });
    FollowSettings();
    // What is checked from here on is checked by what has just been read.
    Findings::ApplyRules(rules, m_parts.application.Parser(), m_parts.plugin.GrammarCheck(),
                         m_parts.plugin.MarkupCheck());
    if (same)
        return;
    m_parts.application.Documents().Suspend();
    m_parts.application.Documents().Resume();
    m_documents.Outdate();
}

void CServer::FollowSettings()
{
    for (const std::string& fault : m_settings.Rules()->TakeFaults())
        Show(MessageError, fault);
    WatchFiles();
}

void CServer::Recheck()
{
    ReadSettings();
    m_diagnostics.DescribeAll();
    if (m_checkProject)
        m_workspace.CheckAllSoon();
    else
        m_workspace.CheckNothing();
}

void CServer::CheckNow()
{
    Recheck();
    if (m_checkProject)
        m_workspace.CheckAll();
}

void CServer::OnFilesChanged(const json& changes)
{
    std::vector<std::wstring> changed;
    const auto isMember = [this](const std::wstring& path) {
        return m_parts.application.Project().GetProjectManager()->BelongsToProject(path);
    };
    bool all = false;
    for (const json& change : changes) {
        const std::wstring path = PathOfUri(change.at("uri").get_ref<const std::string&>());
        if (m_settings.DependOn(path)) {
            Recheck();
            return;
        }
        // What has come or gone changes the list of files.
        const bool deleted = change.at("type") == FileDeleted;
        if (isMember(path) == deleted)
            all = all || deleted || m_workspace.Takes(path);
        else if (!deleted)
            changed.push_back(path);
    }
    if (!m_checkProject)
        return;
    if (all || changed.size() > ManyFiles) {
        m_workspace.CheckAllSoon();
        return;
    }
    for (const std::wstring& path : changed)
        CheckFile(path);
}

void CServer::CheckFile(const std::wstring& path)
{
    try {
        m_documents.CheckHidden(path);
    } catch (const Base::CWorkError&) {
        // Gone again, or not to be read: the next check of the project finds out.
        m_workspace.CheckAllSoon();
    }
}

void CServer::Show(int type, const std::string& message)
{
    m_connection.Notify("window/showMessage", {{"type", type}, {"message", Host::PrintableBytes(message)}});
}

} // namespace Kesh::LanguageServer
