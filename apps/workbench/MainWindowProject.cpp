#include "Application/ParserComponent.h"
#include "CodeEditor.h"
#include "Configuration/Apply.h"
#include "Configuration/Configuration.h"
#include "DocumentArea.h"
#include "ErrorHelp.h"
#include "ErrorWatch.h"
#include "Files/FilePath.h"
#include "MainWindow.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "SearchPanel.h"
#include "Texts.h"

#include <QDockWidget>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <tuple>

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

void CMainWindow::UseRules(std::shared_ptr<const SProjectRules> rules)
{
    const auto namesOf = [](const SProjectRules& of) {
        return std::tie(of.settings.tags, of.settings.attributes, of.settings.properties);
    };
    // Open documents keep the names that they were opened with.
    const bool hasOtherNames = namesOf(*rules) != namesOf(*m_rules);
    m_rules = std::move(rules);
    if (hasOtherNames)
        m_application->Documents().Suspend();
    // The grammar check goes by more than the file.
    Configuration::Apply(m_rules->settings, m_application->Parser(), nullptr);
    // What a project includes whatever its ending is PHP.
    m_application->Parser().SetTakenForPhp([settings = m_rules](const std::wstring& path) {
        return !settings->settings.include.empty() && settings->settings.Includes(path);
    });
    if (m_errors)
        m_errors->SetRules(m_rules);
    if (hasOtherNames)
        m_application->Documents().Resume();
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

void CMainWindow::AddSearchPanel()
{
    m_search = new CSearchPanel([this](SSearchOrder& order) {
        order.folder = m_application->Project().GetFolder();
        if (m_errors)
            order.settings = m_errors->GetSettings();
        for (Host::CDocument* document : m_application->Documents().GetDocuments())
            if (document->IsModified())
                order.unsaved[document->GetPath()] = document->GetBuffer()->GetText(L"\n");
    });
    m_searchDock = new QDockWidget(Tr("Find in files"), this);
    m_searchDock->setObjectName(QStringLiteral("findInFiles"));
    m_searchDock->setWidget(m_search);
    addDockWidget(Qt::BottomDockWidgetArea, m_searchDock);
    m_searchDock->hide();
    connect(m_search, &CSearchPanel::openRequested, this,
            [this](const std::wstring& file, const SyntaxParser::SScheme& span) {
                if (!m_area->OpenAt(file, span.start))
                    return;
                m_area->GetCurrentEditor()->SelectSpan(span);
                m_area->GetCurrentEditor()->setFocus();
            });
}

void CMainWindow::FindInFiles()
{
    const CCodeEditor* editor = m_area->GetCurrentEditor();
    const QString selected = editor ? editor->selectedText() : QString();
    m_searchDock->show();
    m_searchDock->raise();
    m_search->Open(selected.contains('\n') ? QString() : selected);
}

} // namespace Kesh::Workbench
