#pragma once

#include "Checks/CancelFlag.h"

#include <QPointer>
#include <QThread>
#include <atomic>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Which files are being checked, and by which threads. Two checks of one file at once would list its errors
/// twice, whoever starts them: the editor's checker, the project check, or the user.
class CCACheckWorkers
{
public:
    /// False when a check of the file runs already; otherwise one runs until EndCheck(). Any thread.
    bool BeginCheck(const std::wstring& file);
    /// Once all that the check reports has been posted. Any thread.
    void EndCheck(const std::wstring& file);

    /// A check for the time of a scope.
    class CCheck
    {
    public:
        CCheck(CCACheckWorkers& workers, const std::wstring& file)
            : m_workers(workers), m_file(file), m_begun(workers.BeginCheck(file))
        {
        }
        ~CCheck()
        {
            if (m_begun)
                m_workers.EndCheck(m_file);
        }
        CCheck(const CCheck&) = delete;
        CCheck& operator=(const CCheck&) = delete;
        /// Whether the check may run.
        explicit operator bool() const { return m_begun; }

    private:
        CCACheckWorkers& m_workers;
        const std::wstring m_file;
        const bool m_begun;
    };

    /// Follows a thread that deletes itself later, and gives up its check when the flag is set. GUI thread.
    void AddThread(QThread* thread, TCancelFlag cancelled);
    /// Has all threads give up their checks, waits for them and deletes them, so that no deferred deletion is
    /// left behind. GUI thread.
    void EndThreads();

private:
    struct SWorker
    {
        QPointer<QThread> thread;
        TCancelFlag cancelled;
    };

    std::mutex m_mutex;
    std::set<std::wstring> m_files;
    std::vector<SWorker> m_workers;
};

} // namespace Kesh::CodeAnalyzer
