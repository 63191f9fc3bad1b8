#pragma once

#include "Kesh/CodeAnalyzer/IMarkupCheck.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

namespace Kesh::CodeAnalyzer {

/// What the host wants of the markup check. Set on the GUI thread, read by every check.
class CCAMarkupCheck final : public IMarkupCheck
{
public:
    void SetEnabled(bool enabled) override { m_enabled = enabled; }
    bool IsEnabled() const override { return m_enabled; }
    void SetChoices(TChoices choices) override
    {
        auto shared = choices ? std::make_shared<const TChoices>(std::move(choices)) : nullptr;
        const std::lock_guard lock(m_mutex);
        m_choices.swap(shared);
    }
    bool IsWanted(const std::wstring& path) const override
    {
        if (!m_enabled)
            return false;
        std::shared_ptr<const TChoices> choices;
        {
            const std::lock_guard lock(m_mutex);
            choices = m_choices;
        }
        return !choices || (*choices)(path);
    }

private:
    std::atomic<bool> m_enabled = false;
    mutable std::mutex m_mutex;
    std::shared_ptr<const TChoices> m_choices; ///< guarded by the mutex
};

} // namespace Kesh::CodeAnalyzer
