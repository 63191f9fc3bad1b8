#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <QEvent>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What a worker tells the view of the errors, which receives it on the GUI thread.
class CCAErrorsEvent : public QEvent
{
public:
    static constexpr QEvent::Type EventType = static_cast<QEvent::Type>(1831);
    enum EType : std::int32_t { Add = 0, ProjectFinished = 1, Remove = 2 };

    CCAErrorsEvent(std::int32_t type, const std::wstring& file, const std::vector<SCAError>& errors)
        : QEvent(EventType), m_type(type), m_fileName(file), m_errors(errors)
    {
        ++s_living;
        if (m_type == Add)
            CountWaiting(1);
    }
    ~CCAErrorsEvent() override
    {
        --s_living;
        if (m_type == Add)
            CountWaiting(-1);
    }
    CCAErrorsEvent(const CCAErrorsEvent&) = delete;
    CCAErrorsEvent& operator=(const CCAErrorsEvent&) = delete;

    /// How many there are, which is how many wait to be delivered. Any thread.
    static int GetLivingCount() { return s_living; }
    /// Whether errors of this file wait to be delivered. Any thread.
    static bool IsWaiting(const std::wstring& file)
    {
        const std::lock_guard lock(s_mutex);
        return s_waiting.count(file) != 0;
    }

    /// An EType.
    std::int32_t GetType() const { return m_type; }
    const std::wstring& GetFileName() const { return m_fileName; }
    const std::vector<SCAError>& GetErrors() const { return m_errors; }
    /// What is known of them beyond their records.
    const TDetails& GetDetails() const { return m_details; }
    void SetDetails(TDetails details) { m_details = std::move(details); }

private:
    void CountWaiting(int step)
    {
        const std::lock_guard lock(s_mutex);
        if ((s_waiting[m_fileName] += step) == 0)
            s_waiting.erase(m_fileName);
    }

    static inline std::atomic<int> s_living{0};
    static inline std::mutex s_mutex;
    static inline std::unordered_map<std::wstring, int> s_waiting; ///< events by file

    std::int32_t m_type;
    std::wstring m_fileName;
    std::vector<SCAError> m_errors;
    TDetails m_details;
};

} // namespace Kesh::CodeAnalyzer
