#pragma once

#include "Components/CADetailsTable.h"
#include "Diagnostics/ErrorsReceiver.h"
#include "Kesh/CodeAnalyzer/Check.h"
#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/SDK/IApplication.h"

#include <QMutex>
#include <atomic>
#include <boost/signals2/signal.hpp>
#include <boost/signals2/trackable.hpp>
#include <deque>
#include <map>
#include <string>
#include <unordered_set>
#include <vector>

namespace Kesh::CodeAnalyzer {

class IErrorsView;
struct SHostError;

/// The one store of errors, per file. Workers post their results to its view, which hands them back on the
/// GUI thread; only there does the table change. The signals are emitted while the table is locked: a slot
/// must not call back into the store.
class CErrorsStore : public IErrorsReceiver, public boost::signals2::trackable
{
public:
    using ErrorsTable = std::map<std::wstring, std::vector<SCAError>>;
    using AddedSignal = boost::signals2::signal<void(const std::wstring&, const std::vector<SCAError>&)>;
    using RemovedSignal = boost::signals2::signal<void(const std::wstring&)>;
    using FailedSignal = boost::signals2::signal<void(const std::wstring&, const std::wstring&)>;
    using CheckBegunSignal = boost::signals2::signal<void(const SCheck&)>;
    using CheckEndedSignal = boost::signals2::signal<void(const SCheck&, ECheckEnd)>;

    virtual ~CErrorsStore() = default;

    /// The view is not owned. Raises CCriticalError "Bad sweak pointer" without "IParserComponent". GUI
    /// thread.
    void Init(SDK::IApplication* application, IErrorsView* view);
    /// The view is about to die: what is posted from now on goes nowhere. GUI thread, once no worker runs.
    void DetachView();
    /// Null when there is none. Any thread.
    IErrorsView* GetView() const { return m_view; }

    /// Posts the errors of a finished check; nothing for an empty list or path. Any thread.
    void AddErrors(const std::wstring& file, const std::vector<SCAError>& errors,
                   TDetails details = nullptr) override;
    /// Posts that the file's errors are gone. Any thread.
    void RemoveErrorsMSG(const std::wstring& file);
    /// After a check that did not come to its end: posts that the file has the errors that were known before,
    /// whatever the check has posted. Any thread.
    void RestoreErrors(const std::wstring& file, const std::vector<SCAError>& errors, TDetails details);
    /// Posts that a check of the file has failed, and why. Any thread.
    void TellFailure(const std::wstring& file, const std::wstring& reason);
    /// A check begins: of a document, on the GUI thread, which is told of at once; of a file, on any thread.
    SCheck BeginCheck(const std::wstring& file, bool ofDocument);
    /// Posts that it has ended, behind all that it has posted before. Any thread.
    void EndCheck(const SCheck& check, ECheckEnd end);
    /// Delivers at once what has been posted so far, for those about to replace or save errors. GUI thread.
    void DeliverPosted();

    /// Appends to the file's errors. GUI thread.
    void AddErrorsFormBar(const std::wstring& file, const std::vector<SCAError>& errors,
                          TDetails details = nullptr);
    /// Replaces the file's errors, also by none. GUI thread.
    void AddErrorsMT(const std::wstring& file, const std::vector<SCAError>& errors,
                     TDetails details = nullptr);
    /// GUI thread.
    void RemoveErrors(const std::wstring& file);
    /// The same for each of many, in the time that it takes for one. GUI thread.
    void RemoveErrorsOf(const std::vector<std::wstring>& files);
    /// Empties the table without a signal.
    void Clear();
    /// Like AddErrorsMT(), but tells of it later, when the GUI thread has nothing else to do: many files do
    /// not stop the window then. GUI thread.
    void AddErrorsGradually(const std::wstring& file, const std::vector<SCAError>& errors,
                            TDetails details = nullptr);
    /// GUI thread.
    void ShowHostErrors(const std::wstring& file, const std::vector<SHostError>& errors);

    /// Leaves `out` as it was when the file has no entry. Any thread.
    void GetErrors(const std::wstring& file, std::vector<SCAError>& out);
    ErrorsTable GetAllErrors();
    /// The same with what is known of each beyond its record. Any thread.
    std::vector<SDiagnostic> GetDiagnostics(const std::wstring& file);
    /// Of the file's errors as GetErrors() gives them.
    TDetails GetDetails(const std::wstring& file);
    /// Whether checkers say more of errors than their records do. Any thread.
    void SetDetailed(bool detailed) { m_detailed = detailed; }
    bool IsDetailed() const { return m_detailed; }
    /// Whether the file has errors, or some that wait to be delivered. Any thread.
    bool MayHaveErrors(const std::wstring& file);
    /// Whether an error of the file starts on this line. Any thread.
    bool HasErrorOnLine(const std::wstring& file, int line);
    /// Appends to `out` the parts of the file's errors that begin or end inside `span`. Any thread.
    void OnFindErrorRegions(const std::wstring& file, const SyntaxParser::SScheme& span,
                            std::vector<SyntaxParser::SScheme>& out);
    /// The message in the user's language. Any thread.
    std::wstring GetErrorDescription(const SCAError& error);

    AddedSignal& GetAddedSignal() { return m_added; }
    RemovedSignal& GetRemovedSignal() { return m_removed; }
    FailedSignal& GetFailedSignal() { return m_failed; }
    CheckBegunSignal& GetCheckBegunSignal() { return m_checkBegun; }
    CheckEndedSignal& GetCheckEndedSignal() { return m_checkEnded; }

private:
    void TellSlice();
    /// Nothing more is to be told of the file; whether there was something.
    bool ForgetUntold(const std::wstring& file);

    IErrorsView* m_view = nullptr;
    /// The files whose errors nobody has been told of yet, and the order in which that is to happen; some of
    /// that may be out of date. GUI thread.
    std::unordered_set<std::wstring> m_untold;
    std::deque<std::wstring> m_toTell;
    std::size_t m_untoldErrors = 0; ///< of all that were not told when the telling began; GUI thread
    QMutex m_lock;
    ErrorsTable m_errors;
    CDetailsTable m_details;
    std::atomic<bool> m_detailed{false};
    AddedSignal m_added;
    RemovedSignal m_removed;
    FailedSignal m_failed;
    CheckBegunSignal m_checkBegun;
    CheckEndedSignal m_checkEnded;
    std::atomic<std::uint64_t> m_checks{0}; ///< that have begun
};

} // namespace Kesh::CodeAnalyzer
