#pragma once

#include "LanguageServer/Connection.h"
#include "LanguageServer/DescribeWorker.h"
#include "LanguageServer/Documents.h"
#include "LanguageServer/ProjectSettings.h"

#include <QTimer>
#include <boost/signals2/connection.hpp>
#include <map>
#include <memory>
#include <set>

namespace Kesh::Host {
class CApplication;
class CPlugin;
} // namespace Kesh::Host

namespace Kesh::LanguageServer {

/// Follows the plug-in's errors and tells the editor: pushes diagnostics, or has them ready for a client that
/// asks. GUI thread only.
class CDiagnostics
{
public:
    struct SParts
    {
        Host::CApplication& application;
        Host::CPlugin& plugin;
        CDocuments& documents;
        CConnection& connection;
        const CProjectSettings& settings;
        std::string documentation; ///< the URI of the list of errors; may be empty
    };
    explicit CDiagnostics(const SParts& parts);

    void SetEncoding(EPositionEncoding encoding) { m_worker.SetEncoding(encoding); }
    /// Whether the client asks for diagnostics; then nothing is pushed.
    void SetPulled(bool pulled, bool refreshable);

    /// What is known of a file; null when it has never been checked.
    const SDescribed* Known(const std::wstring& path) const;

    /// How the check of a document has ended that a request waits for.
    enum class EFresh { Known, Failed, Closed };
    using TFresh = std::function<json(EFresh)>;

    /// Answers a request for the diagnostics of a document, at once or when its check has ended.
    void AnswerDocument(const json& params, const json& id);
    /// Answers a request by `answer`, which may throw SResponseError, once the check of the document as it is
    /// now has ended.
    void AnswerFresh(const std::wstring& path, const json& id, TFresh answer);
    void AnswerWorkspace(const json& params, const json& id);
    /// Answers a request that waits with an error; false when none has this id.
    bool Cancel(const json& id);
    /// The document is not open any more; it is not among the open ones.
    void OnClosed(const std::wstring& path);
    /// Says again what is known of all files: their settings have changed.
    void DescribeAll();
    /// Whether something found is still to be told.
    bool IsBusy() { return !m_dirty.empty() || m_worker.IsBusy(); }

private:
    struct SState
    {
        SDescribed described;
        std::int64_t resultId = 0;
        std::string published; ///< the URI under which something is shown; empty: nothing is
    };

    void OnErrorsChanged(const std::wstring& path);
    void OnEnded(const CodeAnalyzer::SCheck& check, CodeAnalyzer::ECheckEnd end);
    void OnFailed(const std::wstring& path, const std::wstring& reason);
    void Flush();
    void MarkDirty(const std::wstring& path);
    void Order(const std::wstring& path);
    void OnDescribed(SDescribed described);
    void Publish(const std::wstring& path, SState& state);
    void Withdraw(SState& state);
    void Forget(const std::wstring& path);
    bool IsMember(const std::wstring& path) const;
    bool IsFresh(const std::wstring& path) const;
    json Report(const std::wstring& path, const std::string& previousId) const;
    void AnswerWaiting(const std::wstring& path, EFresh how);
    /// Whether the check of an open document as it is now has failed.
    bool HasFailed(const std::wstring& path) const;

    SParts m_parts;
    bool m_pulled = false;
    bool m_refreshable = false;
    QTimer m_refresh; ///< so that many changes make one request
    std::map<std::wstring, SState> m_states;
    std::int64_t m_nextResult = 1;
    struct SWaiting
    {
        std::wstring path;
        json id;
        TFresh answer;
    };
    std::vector<SWaiting> m_waiting;
    std::set<std::wstring> m_dirty;
    QObject m_context; ///< receives what other threads post, and ends it with itself
    boost::signals2::scoped_connection m_added;
    boost::signals2::scoped_connection m_removed;
    boost::signals2::scoped_connection m_failed;
    boost::signals2::scoped_connection m_begun;
    boost::signals2::scoped_connection m_ended;
    CDescribeWorker m_worker;
};

} // namespace Kesh::LanguageServer
