#include "JournalWriter.h"

#include "Base/Exception.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace Kesh::Workbench {

namespace {

constexpr int SessionKey = -1; // those of texts are not negative
constexpr int NoKey = -2;

} // namespace

CJournalWriter::CJournalWriter(std::wstring place) : m_place(std::move(place)), m_thread([this] { Run(); }) {}

CJournalWriter::~CJournalWriter()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_changed.notify_all();
    m_thread.join();
    if (m_folder && !m_stays)
        m_folder->Remove();
}

void CJournalWriter::Keep(int number, SUnsavedText text)
{
    Add(number, [number, text = std::move(text)](CJournalFolder& folder) { folder.WriteText(number, text); });
}

void CJournalWriter::Drop(int number)
{
    Add(number, [number](CJournalFolder& folder) { folder.RemoveText(number); });
}

void CJournalWriter::KeepSession(SSession session, bool isKept)
{
    Add(SessionKey, [session = std::move(session), isKept](CJournalFolder& folder) {
        folder.WriteSession(session, isKept);
    });
}

void CJournalWriter::End(CJournalFolder other)
{
    Add(NoKey, [this, ended = std::make_shared<CJournalFolder>(std::move(other))](CJournalFolder&) {
        std::unique_lock lock(m_mutex);
        const bool isNoted = m_unwritten.empty();
        lock.unlock();
        if (isNoted)
            ended->Remove();
    });
}

void CJournalWriter::Add(int key, TWork work)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto waiting = std::find_if(m_jobs.begin(), m_jobs.end(),
                                          [&](const SJob& job) { return job.key == key && key != NoKey; });
        // In its place: what waits behind it may count on it.
        if (waiting != m_jobs.end())
            waiting->work = std::move(work);
        else
            m_jobs.push_back({key, std::move(work)});
    }
    m_changed.notify_all();
}

bool CJournalWriter::Flush()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_jobs.empty() && !m_isBusy; });
    return m_unwritten.empty();
}

void CJournalWriter::Run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_changed.wait(lock, [this] { return m_isEnding || !m_jobs.empty(); });
        if (m_jobs.empty())
            return;
        const SJob job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_isBusy = true;
        lock.unlock();
        Do(job);
        lock.lock();
        m_isBusy = false;
        m_changed.notify_all();
    }
}

void CJournalWriter::Do(const SJob& job)
{
    try {
        if (!m_folder)
            m_folder = CJournalFolder::Create(m_place);
        job.work(*m_folder);
        const std::lock_guard lock(m_mutex);
        m_unwritten.erase(job.key);
    } catch (const Base::CWorkError& fault) {
        {
            const std::lock_guard lock(m_mutex);
            m_unwritten.insert(job.key);
        }
        const QString reason = QString::fromStdWString(fault.GetMessage());
        QMetaObject::invokeMethod(
            this, [this, reason] { emit failed(reason); }, Qt::QueuedConnection);
    }
}

} // namespace Kesh::Workbench
