#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "Configuration/Apply.h"
#include "Configuration/Configuration.h"
#include "DocumentArea.h"
#include "ErrorHelp.h"
#include "ErrorWatch.h"
#include "MainWindow.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "SyntaxParser/ParserComponent.h"
#include "Texts.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>

namespace Kesh::Workbench {

SSession CMainWindow::GetSession() const
{
    SSession session;
    session.project = Host::PathToQt(m_application->Project().GetFolder());
    session.files = m_area->GetOpenFiles();
    session.current = m_area->GetTabs().currentIndex();
    return session;
}

void CMainWindow::RestoreSession()
{
    const SSession session = m_preferences.GetSession();
    if (!session.project.isEmpty() && QFileInfo(session.project).isDir())
        OpenProject(Host::PathFromQt(session.project));
    m_area->RestoreFiles(session.files, session.current);
}

void CMainWindow::ReadProjectSettings(const std::wstring& folder)
{
    if (!m_plugin)
        return;
    Configuration::SConfiguration settings;
    try {
        const std::wstring file = folder.empty() ? folder : Configuration::FindConfiguration(folder);
        if (!file.empty())
            settings = Configuration::ReadConfiguration(file);
    } catch (const Base::CWorkError& fault) {
        // The check goes on as if there were none; what is wrong with it is the user's to mend.
        m_area->GetMessageStrip().Show(QString::fromStdWString(fault.GetMessage()));
    }
    // The grammar check goes by more than the file.
    Configuration::Apply(settings, m_application->Parser(), nullptr);
    m_errors->SetSettings(std::move(settings));
}

void CMainWindow::ApplyProjectSettings()
{
    ReadProjectSettings(m_application->Project().GetFolder());
    // Open documents keep the names that they were opened with.
    m_application->Documents().Suspend();
    m_application->Documents().Resume();
    RefreshProject();
}

void CMainWindow::OpenUrls(const QList<QUrl>& urls)
{
    for (const QUrl& url : urls)
        if (url.isLocalFile())
            OpenPath(Host::AbsolutePath(Host::PathFromQt(url.toLocalFile())));
}

void CMainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void CMainWindow::dropEvent(QDropEvent* event)
{
    event->acceptProposedAction();
    OpenUrls(event->mimeData()->urls());
}

void CMainWindow::ExtendErrorMenu(QMenu* menu, const std::wstring& file, const CodeAnalyzer::SCAError& error)
{
    const int code = error.code;
    if (!CErrorHelp::GetPage(code).isEmpty())
        menu->addAction(Tr("&Explain"), this, [this, code] { m_help->Explain(code, this); });
    if (!m_application->Project().GetFolder().empty())
        menu->addAction(Tr("&Ignore code %1 in this project").arg(code), this, [this, code] {
            QuickFixes::SQuickFix fix;
            fix.kind = QuickFixes::SQuickFix::EKind::IgnoreCode;
            fix.code = code;
            m_help->Apply(fix);
        });
    Host::CDocument* document = m_area->GetCurrent();
    if (!document || document->GetPath() != file)
        return;
    m_area->GetCurrentEditor()->SetCaretPosition(error.pos.start);
    menu->addSeparator();
    m_help->AddFixes(*menu);
}

} // namespace Kesh::Workbench
