#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace Kesh::CommandLine {

/// A progress bar on stderr, drawn only on a terminal and only when the work takes long.
class CProgress
{
public:
    /// Disabled, it does nothing.
    explicit CProgress(bool enabled);
    ~CProgress() { Clear(); }
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;

    void Show(std::size_t done, std::size_t total, const std::wstring& file);
    /// Takes the bar away, so that a line can be printed.
    void Clear();

private:
    using TClock = std::chrono::steady_clock;

    bool m_enabled;
    bool m_drawn = false;
    TClock::time_point m_next;
};

} // namespace Kesh::CommandLine
