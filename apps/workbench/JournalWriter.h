#pragma once

#include "JournalFolder.h"

#include <QObject>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace Kesh::Workbench {

/// Writes a window's journal in a thread of its own: the window never waits for the disk. What is noted anew
/// of a text before it could be written takes its place. GUI thread.
class CJournalWriter final : public QObject
{
    Q_OBJECT

public:
    /// The journal comes to lie in a folder in `place`, once there is something to be noted.
    explicit CJournalWriter(std::wstring place);
    /// Writes all that waits. The folder goes, unless it is to stay.
    ~CJournalWriter() override;

    void Keep(int number, SUnsavedText text);
    void Drop(int number);
    void KeepSession(SSession session, bool isKept);
    /// Ends another journal, once all that has been asked for before is on disk; if it cannot be put there,
    /// the other one stays.
    void End(CJournalFolder other);
    /// Waits until all is on disk; false when something of it could not be written.
    bool Flush();
    /// The folder outlives this.
    void Leave() { m_stays = true; }

signals:
    /// What could not be written last, and why.
    void failed(const QString& reason);

private:
    using TWork = std::function<void(CJournalFolder&)>;
    struct SJob
    {
        int key; ///< of two that wait with the same one, only the later is done
        TWork work;
    };
    void Add(int key, TWork work);
    void Run();
    void Do(const SJob& job);

    const std::wstring m_place;
    bool m_stays = false;
    std::optional<CJournalFolder> m_folder; ///< of the thread
    std::mutex m_mutex;                     ///< guards what follows
    std::condition_variable m_changed;
    std::deque<SJob> m_jobs;
    bool m_isBusy = false;
    bool m_isEnding = false;
    std::set<int> m_unwritten; ///< the keys of what could not be written last
    std::thread m_thread;
};

} // namespace Kesh::Workbench
