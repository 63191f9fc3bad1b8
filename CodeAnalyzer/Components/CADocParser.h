#pragma once

#include "Checks/WantedChecks.h"
#include "Diagnostics/ErrorsReceiver.h"
#include "Kesh/Base/ITimerHandler.h"
#include "Kesh/CodeAnalyzer/Check.h"
#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/Editor/IDocBuffer.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/ISPDocument.h"

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>
#include <boost/weak_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CCACheckWorkers;
class CCADocumentCheck;
class CErrorsStore;
class CHtmlCustomItemsKeeper;

/// Checks one open document again when the user has stopped typing, in a thread of its own. Held by shared
/// pointers of the document manager and of a running check; when the document is closed during a check, the
/// checker dies in the worker thread at its end. GUI thread, unless said otherwise.
class CCADocParser : public Base::ITimerHandler, public ICheckOwner
{
public:
    /// Nothing is owned. Stays inert when the host makes no checking document. Raises CCriticalError "Bad
    /// sweak pointer" without "IParserComponent".
    CCADocParser(SDK::IApplication* application, SyntaxParser::ISPDocument* source,
                 SyntaxParser::CDefRegions* defs, CErrorsStore* errorsManager,
                 CHtmlCustomItemsKeeper* customItems);
    /// Any thread. Drops the file's errors unless the open project has the file.
    virtual ~CCADocParser();
    CCADocParser(const CCADocParser&) = delete;
    CCADocParser& operator=(const CCADocParser&) = delete;

    /// Gives the checker the pointer that keeps it alive during a check; without one its end waits for a
    /// check.
    void InitPtr(boost::shared_ptr<CCADocParser> self);
    /// The document is closed: no check begins any more.
    void DestroyPtr();
    /// Shares the register of running checks; without it the checker keeps one for itself.
    void SetWorkers(std::shared_ptr<CCACheckWorkers> workers);

    /// Has these take part when the host wants them. Once, before the first check.
    void Follow(const SWantedChecks& wanted);

    void OnTextChange(Editor::IDocBuffer::IChangeContext* context);
    void OnTimer() override;
    /// Milliseconds.
    int GetDelay() override { return 3000; }
    std::wstring GetName() override { return L"CCADocParser"; }
    /// Checks the text as it is now on the calling thread, or re-arms the timer when a check of the file
    /// runs.
    void CheckNow();
    /// Checks again after the usual delay.
    void CheckLater();

    /// Whether what has been checked may be another text than that on disk: the text has not been checked as
    /// it is now, or has been edited here at all.
    bool MayDifferFromDisk() const { return m_checkDue || m_edited; }
    /// Whether the last check was given up. Not while a check runs.
    bool WasCancelled() const;

    /// The body of the worker thread.
    void ParseInThread();

    bool IsDocument(SyntaxParser::ISPDocument* document) const;
    bool IsDocument(SDK::IDocument* document) const;
    /// The source document's path; empty when the document is gone. Any thread.
    std::wstring GetFilePath() const override;

private:
    class CChangeReceiver;

    /// The source, whatever it says of itself; null when its memory has gone.
    boost::shared_ptr<SyntaxParser::ISPDocument> HoldSource() const;
    /// The same, but null also when it says that it is dead.
    boost::shared_ptr<SyntaxParser::ISPDocument> LockSource() const;
    bool BeginCheck();
    /// Checks the snapshot; when that does not come to its end, the old errors are better than none.
    void RunCheck();
    void EndCheck();
    void DropErrorsOutsideProject();

    std::int64_t m_valid = 10;
    SyntaxParser::ISPDocument* m_sourceAddress = nullptr; ///< may be dead
    boost::weak_ptr<SyntaxParser::ISPDocument> m_source;
    bool m_isShared =
        false; ///< if the host holds the source by no shared pointer, it must outlive the checker
    std::unique_ptr<CCADocumentCheck> m_check; ///< null when inert
    CErrorsStore* m_errorsManager;
    SDK::IApplication* m_application;
    std::atomic<int> m_busy{0};
    bool m_checkDue = false; ///< whatever becomes of the host's timer
    bool m_edited = false;
    bool m_closed = false;
    boost::shared_ptr<CCADocParser> m_self;
    boost::shared_ptr<CCADocParser> m_keepAlive;
    /// Keeps the source's path at hand while a check runs, also when the document is closed meanwhile.
    boost::shared_ptr<SyntaxParser::ISPDocument> m_checkedSource;
    std::wstring m_filePath;
    SCheck m_told;                     ///< the check as the host knows it
    std::vector<SCAError> m_oldErrors; ///< of the file, removed when the check began
    TDetails m_oldDetails;             ///< of these
    std::shared_ptr<CCACheckWorkers> m_workers;
    std::shared_ptr<CChangeReceiver> m_receiver;
    boost::signals2::connection m_changeConnection;
};

} // namespace Kesh::CodeAnalyzer
