#include "Application/HeadlessMainFrame.h"

namespace Kesh::Host {

void CHeadlessMainFrame::SetProgressText(const std::wstring& text)
{
    const std::lock_guard lock(m_progressMutex);
    m_progress = text;
}

std::wstring CHeadlessMainFrame::GetProgressText() const
{
    const std::lock_guard lock(m_progressMutex);
    return m_progress;
}

void CHeadlessMainFrame::Build()
{
    m_addBars(this);
    m_menu = CMenu();
    m_fillMenu(&m_menu, 0);
}

std::int64_t CHeadlessMainFrame::AddBar(const std::wstring& name, QWidget* widget, int placement, int size)
{
    m_bars.push_back({name, widget, placement, size});
    return static_cast<std::int64_t>(m_bars.size());
}

int CHeadlessMainFrame::ShowBar(std::int64_t handle, int /*activate*/)
{
    if (handle < 1 || handle > static_cast<std::int64_t>(m_bars.size()))
        return 0;
    SBar& bar = m_bars[static_cast<std::size_t>(handle - 1)];
    bar.shown = bar.widget != nullptr;
    return bar.shown;
}

} // namespace Kesh::Host
