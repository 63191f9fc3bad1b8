#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"

#include <QEvent>
#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What a worker tells the errors bar, which receives it on the GUI thread.
class CCAErrorsEvent : public QEvent
{
public:
    static constexpr QEvent::Type EventType = static_cast<QEvent::Type>(1831);
    enum EType : std::int32_t { Add = 0, ProjectFinished = 1, Remove = 2 };

    CCAErrorsEvent(std::int32_t type, const std::wstring& file, const std::vector<SCAError>& errors)
        : QEvent(EventType), m_type(type), m_fileName(file), m_errors(errors)
    {
        ++s_living;
    }
    ~CCAErrorsEvent() override { --s_living; }
    CCAErrorsEvent(const CCAErrorsEvent&) = delete;
    CCAErrorsEvent& operator=(const CCAErrorsEvent&) = delete;

    /// How many there are, which is how many wait to be delivered. Any thread.
    static int GetLivingCount() { return s_living; }

    /// An EType.
    std::int32_t GetType() const { return m_type; }
    const std::wstring& GetFileName() const { return m_fileName; }
    const std::vector<SCAError>& GetErrors() const { return m_errors; }

private:
    static inline std::atomic<int> s_living{0};

    std::int32_t m_type;
    std::wstring m_fileName;
    std::vector<SCAError> m_errors;
};

} // namespace Kesh::CodeAnalyzer
