#include "CheckControl.h"

#include "Application/Application.h"
#include "Application/ParserComponent.h"
#include "Application/PluginLoader.h"
#include "ErrorWatch.h"
#include "Files/Fault.h"
#include "MainFrame.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "StatusLine.h"
#include "Texts.h"

#include <algorithm>

namespace Kesh::Workbench {

namespace {

constexpr int ProgressInterval = 100; // ms

} // namespace

CCheckControl::CCheckControl(const SParts& parts) : m_parts(parts)
{
    connect(&parts.frame, &CMainFrame::progressTextChanged, this, &CCheckControl::OnProgressText);
    connect(&parts.status, &CStatusLine::stopRequested, this, &CCheckControl::Stop);
    connect(&m_progressTick, &QTimer::timeout, this, &CCheckControl::OnProgressTick);
    parts.application.Parser().SetFileHook([this](const std::wstring&) { ++m_filesAsked; });
    parts.application.Threads().GetStartErrorSignal().connect([this] {
        m_parts.messages.Show(
            Tr("The check could not be started: the system has no thread to give. Try again later."));
    });
}

void CCheckControl::SetPlugin(Host::CPlugin* plugin, CErrorWatch* watch)
{
    m_plugin = plugin;
    m_watch = watch;
    if (!plugin)
        return;
    plugin->ProjectCheck().SetGradual(true);
    plugin->ProjectCheck().SetThorough(true);
    plugin->Errors().GetFailedSignal().connect([this](const std::wstring& file, const std::wstring& reason) {
        m_parts.messages.Show(Tr("The check of %1 failed: %2")
                                  .arg(QString::fromStdWString(file), QString::fromStdWString(reason)));
    });
}

void CCheckControl::Run(const char* command)
{
    Expect();
    if (m_plugin)
        Host::Guard(L"check", [&] { m_plugin->RunCommand(command); });
}

void CCheckControl::Expect()
{
    m_filesAsked = 0;
    m_stopped = false;
    emit incomplete(false);
}

void CCheckControl::Stop()
{
    m_stopped = true;
    if (m_plugin)
        m_plugin->ProjectCheck().Stop();
    emit incomplete(true);
}

void CCheckControl::OnProgressText(const QString& text)
{
    m_parts.status.ShowProgress(text.isEmpty() ? text : Tr(text.toUtf8().constData()));
    m_parts.status.OfferStop(!text.isEmpty());
    if (text.isEmpty() && m_watch && !m_stopped)
        m_watch->SetChecked(true);
    text.isEmpty() ? m_progressTick.stop() : m_progressTick.start(ProgressInterval);
}

void CCheckControl::OnProgressTick()
{
    const std::size_t total = m_parts.application.Project().GetProjectManager()->GetFiles().size();
    m_parts.status.SetProgress(std::min(m_filesAsked.load(), total), total);
}

} // namespace Kesh::Workbench
