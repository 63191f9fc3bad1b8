#pragma once

#include "Checks/HostChoice.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"

#include <atomic>
#include <utility>

namespace Kesh::CodeAnalyzer {

/// What the host wants of the markup check. Set on the GUI thread, read by every check.
class CCAMarkupCheck final : public IMarkupCheck
{
public:
    void SetEnabled(bool enabled) override { m_enabled = enabled; }
    bool IsEnabled() const override { return m_enabled; }
    void SetChoices(TChoices choices) override { m_choices.Set(std::move(choices)); }
    bool IsWanted(const std::wstring& path) const override
    {
        if (!m_enabled)
            return false;
        const auto choices = m_choices.Get();
        return !choices || (*choices)(path);
    }

private:
    std::atomic<bool> m_enabled = false;
    CHostChoice<TChoices> m_choices;
};

} // namespace Kesh::CodeAnalyzer
