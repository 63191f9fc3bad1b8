#pragma once

#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/PhpVersions.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

namespace Kesh::CodeAnalyzer {

/// What the host wants of the grammar check. Set on the GUI thread, read by every check.
class CCAGrammarCheck final : public IGrammarCheck
{
public:
    void SetEnabled(bool enabled) override { m_enabled = enabled; }
    bool IsEnabled() const override { return m_enabled; }
    bool SetPhpVersion(std::int32_t version) override
    {
        const bool known = version == 0 || IsPhpVersion(version);
        if (known)
            m_version = version;
        return known;
    }
    std::int32_t GetPhpVersion() const override { return m_version; }
    void SetChoices(TChoices choices) override
    {
        auto shared = choices ? std::make_shared<const TChoices>(std::move(choices)) : nullptr;
        const std::lock_guard lock(m_mutex);
        m_choices.swap(shared);
    }
    SGrammarChoice GetChoice(const std::wstring& path) const override
    {
        if (!m_enabled)
            return {};
        std::shared_ptr<const TChoices> choices;
        {
            const std::lock_guard lock(m_mutex);
            choices = m_choices;
        }
        SGrammarChoice choice = choices ? (*choices)(path) : SGrammarChoice{true, m_version};
        if (!IsPhpVersion(choice.phpVersion))
            choice.phpVersion = 0;
        return choice;
    }

private:
    std::atomic<bool> m_enabled = false;
    std::atomic<std::int32_t> m_version = 0;
    mutable std::mutex m_mutex;
    std::shared_ptr<const TChoices> m_choices; ///< guarded by the mutex
};

} // namespace Kesh::CodeAnalyzer
