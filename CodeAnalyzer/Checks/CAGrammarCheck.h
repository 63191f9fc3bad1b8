#pragma once

#include "Kesh/CodeAnalyzer/IGrammarCheck.h"

#include <atomic>

namespace Kesh::CodeAnalyzer {

/// What the host wants of the grammar check. Set on the GUI thread, read by every check.
class CCAGrammarCheck final : public IGrammarCheck
{
public:
    void SetEnabled(bool enabled) override { m_enabled = enabled; }
    bool IsEnabled() const override { return m_enabled; }
    void SetPhpVersion(std::int32_t version) override { m_version = version; }
    std::int32_t GetPhpVersion() const override { return m_version; }

private:
    std::atomic<bool> m_enabled = false;
    std::atomic<std::int32_t> m_version = 0;
};

} // namespace Kesh::CodeAnalyzer
