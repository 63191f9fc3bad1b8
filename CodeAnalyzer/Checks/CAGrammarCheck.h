#pragma once

#include "Checks/HostChoice.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/PhpVersions.h"

#include <atomic>
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
    void SetChoices(TChoices choices) override { m_choices.Set(std::move(choices)); }
    SGrammarChoice GetChoice(const std::wstring& path) const override
    {
        if (!m_enabled)
            return {};
        const auto choices = m_choices.Get();
        SGrammarChoice choice = choices ? (*choices)(path) : SGrammarChoice{true, m_version};
        if (!IsPhpVersion(choice.phpVersion))
            choice.phpVersion = 0;
        return choice;
    }

private:
    std::atomic<bool> m_enabled = false;
    std::atomic<std::int32_t> m_version = 0;
    CHostChoice<TChoices> m_choices;
};

} // namespace Kesh::CodeAnalyzer
