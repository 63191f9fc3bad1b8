#include "Progress.h"

#include "Report/Printable.h"

#include <cstdio>
#include <sys/ioctl.h>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

constexpr auto Patience = std::chrono::milliseconds(700);
constexpr auto Interval = std::chrono::milliseconds(100);
constexpr std::size_t BarWidth = 24;

std::size_t TerminalWidth()
{
    winsize size = {};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col ? size.ws_col : 80;
}

} // namespace

CProgress::CProgress(bool enabled)
    : m_enabled(enabled && ::isatty(STDERR_FILENO)), m_next(TClock::now() + Patience)
{
}

void CProgress::Show(std::size_t done, std::size_t total, const std::wstring& file)
{
    if (!m_enabled || total == 0 || TClock::now() < m_next)
        return;
    m_next = TClock::now() + Interval;
    const std::size_t filled = BarWidth * done / total;
    std::string line = '[' + std::string(filled, '=') + std::string(BarWidth - filled, ' ') + "] " +
                       std::to_string(done) + '/' + std::to_string(total) + ' ';
    const std::size_t width = TerminalWidth();
    const std::size_t room = width > line.size() + 1 ? width - line.size() - 1 : 0;
    line += Printable(std::wstring_view(file).substr(file.size() > room ? file.size() - room : 0));
    std::fprintf(stderr, "\r\x1B[K%s", line.c_str());
    std::fflush(stderr);
    m_drawn = true;
}

void CProgress::Clear()
{
    if (m_drawn)
        std::fputs("\r\x1B[K", stderr);
    m_drawn = false;
}

} // namespace Kesh::CommandLine
