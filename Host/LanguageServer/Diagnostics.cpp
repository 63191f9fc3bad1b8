#include "LanguageServer/Diagnostics.h"

#include "Application/Application.h"
#include "Application/ParserComponent.h"
#include "Application/PluginLoader.h"
#include "Base/CommonString.h"
#include "Files/FilePath.h"
#include "LanguageServer/Protocol.h"
#include "ProjectManager/ProjectManager.h"

#include <algorithm>

namespace Kesh::LanguageServer {

namespace {

/// Changes of files that nobody looks at are told together.
constexpr int FlushDelay = 30;
constexpr int RefreshDelay = 100;

} // namespace

CDiagnostics::CDiagnostics(const SParts& parts)
    : m_parts(parts),
      m_worker({parts.plugin.Errors().GetTexts(), parts.documentation},
               [this](SDescribed described) { OnDescribed(std::move(described)); })
{
    CodeAnalyzer::IErrorsSource& errors = parts.plugin.Errors();
    m_added = errors.GetAddedSignal().connect(
        [this](const std::wstring& path, const std::vector<CodeAnalyzer::SCAError>&) {
            OnErrorsChanged(path);
        });
    m_removed =
        errors.GetRemovedSignal().connect([this](const std::wstring& path) { OnErrorsChanged(path); });
    m_failed = errors.GetFailedSignal().connect(
        [this](const std::wstring& path, const std::wstring& reason) { OnFailed(path, reason); });
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(RefreshDelay);
    QObject::connect(&m_refresh, &QTimer::timeout, &m_context,
                     [this] { m_parts.connection.Request("workspace/diagnostic/refresh", nullptr); });
    m_begun = errors.GetCheckBegunSignal().connect([this](const CodeAnalyzer::SCheck& check) {
        m_parts.documents.BeginCheck(check.file, check.number);
    });
    m_ended = errors.GetCheckEndedSignal().connect(
        [this](const CodeAnalyzer::SCheck& check, CodeAnalyzer::ECheckEnd end) { OnEnded(check, end); });
}

void CDiagnostics::SetPulled(bool pulled, bool refreshable)
{
    m_pulled = pulled;
    m_refreshable = refreshable;
}

const SDescribed* CDiagnostics::Known(const std::wstring& path) const
{
    const auto state = m_states.find(path);
    return state == m_states.end() ? nullptr : &state->second.described;
}

/// Called while the store is locked.
void CDiagnostics::OnErrorsChanged(const std::wstring& path)
{
    // An open document is told of when its check has ended.
    if (!m_parts.documents.Find(path))
        MarkDirty(path);
}

void CDiagnostics::MarkDirty(const std::wstring& path)
{
    if (m_dirty.empty())
        QTimer::singleShot(FlushDelay, &m_context, [this] { Flush(); });
    m_dirty.insert(path);
}

void CDiagnostics::OnEnded(const CodeAnalyzer::SCheck& check, CodeAnalyzer::ECheckEnd end)
{
    // Another check follows one that was given up.
    if (end != CodeAnalyzer::ECheckEnd::Complete)
        return;
    if (check.ofDocument)
        m_parts.documents.EndHidden(check.file);
    SOpenDocument* open = m_parts.documents.Find(check.file);
    if (open && check.number != open->check)
        return;
    if (open)
        open->checked = true;
    if (open || IsMember(check.file))
        Order(check.file);
}

void CDiagnostics::OnFailed(const std::wstring& path, const std::wstring& reason)
{
    m_parts.connection.Notify("window/logMessage",
                              {{"type", 1},
                               {"message", "the check of " + Host::PathToBytes(path) +
                                               " failed: " + Base::CCommonString::ToUtf8(reason)}});
    m_parts.documents.EndHidden(path);
    // What was known of the text before stays, and who waits for more does so in vain.
    if (SOpenDocument* open = m_parts.documents.Find(path))
        open->failed = open->taken;
    if (HasFailed(path))
        AnswerWaiting(path, EFresh::Failed);
}

bool CDiagnostics::HasFailed(const std::wstring& path) const
{
    const SOpenDocument* open = m_parts.documents.Find(path);
    return open && open->failed == open->revision;
}

void CDiagnostics::Flush()
{
    for (const std::wstring& path : std::exchange(m_dirty, {}))
        if (!m_parts.documents.Find(path) && (IsMember(path) || m_states.contains(path)))
            Order(path);
}

/// Whether the open project keeps what is known of the file.
bool CDiagnostics::IsMember(const std::wstring& path) const
{
    return m_parts.application.Project().GetProjectManager()->BelongsToProject(path);
}

void CDiagnostics::Order(const std::wstring& path)
{
    SDescribeOrder order;
    order.path = path;
    order.diagnostics = m_parts.plugin.Errors().GetDiagnostics(path);
    order.rules = m_parts.settings.For(path);
    if (const SOpenDocument* open = m_parts.documents.Find(path)) {
        // What was found in an older text, or only so far, is not told: the end of the check follows.
        if (!open->IsChecked())
            return;
        order.uri = open->uri;
        order.factory = open->factory;
        order.revision = open->revision;
        order.text = open->tooLarge ? std::make_shared<const std::wstring>() : open->Text().Share();
    } else {
        order.uri = m_parts.documents.UriOf(path);
        order.factory = m_parts.application.Parser().FactoryOfFile(path);
    }
    m_worker.Add(std::move(order));
}

void CDiagnostics::OnDescribed(SDescribed described)
{
    const std::wstring path = described.order.path;
    const SOpenDocument* open = m_parts.documents.Find(path);
    // Opened, closed or edited meanwhile: what was found is not about this text any more.
    if (open ? described.order.revision != open->revision : described.order.revision >= 0)
        return;
    if (!open && !IsMember(path)) {
        Forget(path);
        return;
    }
    SState& state = m_states[path];
    const bool changed = state.resultId == 0 || state.described.text != described.text;
    state.described = std::move(described);
    state.described.order.text.reset();
    if (changed)
        state.resultId = m_nextResult++;
    if (changed || open)
        Publish(path, state);
    if (IsFresh(path))
        AnswerWaiting(path, EFresh::Known);
}

void CDiagnostics::Publish(const std::wstring& path, SState& state)
{
    const SOpenDocument* open = m_parts.documents.Find(path);
    if (m_pulled) {
        // Who waits for it gets it; to others it is news.
        const bool awaited = std::any_of(m_waiting.begin(), m_waiting.end(),
                                         [&](const SWaiting& waiting) { return waiting.path == path; });
        if (!awaited && m_refreshable && !m_refresh.isActive())
            m_refresh.start();
        return;
    }
    const std::string& uri = state.described.order.uri;
    // An editor may write a file's URI in another way than it was written here before.
    if (state.published != uri)
        Withdraw(state);
    if (!open && state.described.diagnostics.empty() && state.published.empty())
        return;
    json params = {{"uri", uri}};
    if (open)
        params["version"] = open->version;
    state.published = state.described.diagnostics.empty() ? std::string() : uri;
    m_parts.connection.NotifyWith("textDocument/publishDiagnostics", params, "diagnostics",
                                  state.described.text);
}

void CDiagnostics::OnClosed(const std::wstring& path)
{
    m_worker.Drop(path);
    if (IsMember(path)) {
        // The project goes on with the file as it is on disk.
        MarkDirty(path);
    } else {
        Forget(path);
    }
    AnswerWaiting(path, EFresh::Closed);
}

void CDiagnostics::Withdraw(SState& state)
{
    if (!state.published.empty())
        m_parts.connection.Notify("textDocument/publishDiagnostics",
                                  {{"uri", state.published}, {"diagnostics", json::array()}});
    state.published.clear();
}

void CDiagnostics::Forget(const std::wstring& path)
{
    const auto state = m_states.find(path);
    if (state == m_states.end())
        return;
    Withdraw(state->second);
    m_states.erase(state);
    if (m_pulled && m_refreshable && !m_refresh.isActive())
        m_refresh.start();
}

void CDiagnostics::DescribeAll()
{
    std::set<std::wstring> paths;
    for (const auto& [path, state] : m_states)
        paths.insert(path);
    for (const std::wstring& path : paths)
        Order(path);
}

bool CDiagnostics::IsFresh(const std::wstring& path) const
{
    const SOpenDocument* open = m_parts.documents.Find(path);
    const SDescribed* known = Known(path);
    return !open || open->factory.empty() || (known && known->order.revision == open->revision);
}

json CDiagnostics::Report(const std::wstring& path, const std::string& previousId) const
{
    const auto state = m_states.find(path);
    if (state == m_states.end())
        return {{"kind", "full"}, {"items", json::array()}};
    const std::string resultId = std::to_string(state->second.resultId);
    if (resultId == previousId)
        return {{"kind", "unchanged"}, {"resultId", resultId}};
    return {{"kind", "full"}, {"resultId", resultId}, {"items", state->second.described.diagnostics}};
}

void CDiagnostics::AnswerDocument(const json& params, const json& id)
{
    const std::wstring path = DocumentPath(params);
    const json previous = params.value("previousResultId", json());
    const std::string previousId = previous.is_string() ? previous.get<std::string>() : std::string();
    AnswerFresh(path, id, [=, this](EFresh how) -> json {
        if (how == EFresh::Failed)
            throw SResponseError{RequestFailed, "the check failed"};
        if (how == EFresh::Closed)
            return {{"kind", "full"}, {"items", json::array()}};
        return Report(path, previousId);
    });
}

void CDiagnostics::AnswerFresh(const std::wstring& path, const json& id, TFresh answer)
{
    if (HasFailed(path))
        m_parts.connection.Answer(id, [&] { return answer(EFresh::Failed); });
    else if (IsFresh(path))
        m_parts.connection.Answer(id, [&] { return answer(EFresh::Known); });
    else
        m_waiting.push_back({path, id, std::move(answer)});
}

void CDiagnostics::AnswerWaiting(const std::wstring& path, EFresh how)
{
    std::vector<SWaiting> others;
    for (SWaiting& waiting : std::exchange(m_waiting, {})) {
        if (waiting.path == path)
            m_parts.connection.Answer(waiting.id, [&] { return waiting.answer(how); });
        else
            others.push_back(std::move(waiting));
    }
    // Nothing new waits for it: whoever asks is answered by then.
    m_waiting = std::move(others);
}

void CDiagnostics::AnswerWorkspace(const json& params, const json& id)
{
    std::map<std::string, std::string> previous;
    for (const json& entry : params.value("previousResultIds", json::array()))
        previous[entry.at("uri")] = entry.at("value");
    json items = json::array();
    for (const auto& [path, state] : m_states) {
        const auto before = previous.extract(state.described.order.uri);
        json report = Report(path, before ? before.mapped() : std::string());
        report["uri"] = state.described.order.uri;
        const SOpenDocument* open = m_parts.documents.Find(path);
        report["version"] = open ? json(open->version) : json();
        items.push_back(std::move(report));
    }
    // What the client still knows of files that have gone.
    for (const auto& [uri, resultId] : previous)
        items.push_back({{"uri", uri}, {"version", nullptr}, {"kind", "full"}, {"items", json::array()}});
    m_parts.connection.Respond(id, {{"items", std::move(items)}});
}

bool CDiagnostics::Cancel(const json& id)
{
    return std::erase_if(m_waiting, [&](const SWaiting& waiting) {
               if (waiting.id == id)
                   m_parts.connection.RespondError(id, RequestCancelled, "cancelled");
               return waiting.id == id;
           }) != 0;
}

} // namespace Kesh::LanguageServer
