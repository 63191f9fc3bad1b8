#include "Application/ParserComponent.h"
#include "CodeEditor.h"
#include "Configuration/Configuration.h"
#include "DocumentArea.h"
#include "ErrorHelp.h"
#include "ErrorWatch.h"
#include "Files/FilePath.h"
#include "Findings/ApplyRules.h"
#include "MainWindow.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "SearchPanel.h"
#include "Texts.h"

#include <QDockWidget>
#include <QDropEvent>
#include <QFileInfo>
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

void CMainWindow::UseRules(TProjectRules rules, const std::wstring& folder)
{
    SyntaxParser::SOwnNames names = Findings::OwnNamesOf(rules->For(folder + L'/')->settings);
    // Open documents keep the names that they were opened with.
    const bool hasOtherNames = names != m_names;
    m_names = std::move(names);
    m_rules = std::move(rules);
    if (hasOtherNames)
        m_application->Documents().Suspend();
    CodeAnalyzer::IGrammarCheck* grammar = m_plugin ? m_plugin->GrammarCheck() : nullptr;
    if (grammar)
        grammar->SetEnabled(m_preferences.GetChoices().grammar);
    Findings::ApplyRules(m_rules, m_application->Parser(), grammar);
    m_application->Parser().SetOwnNames(m_names);
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
            order.rules = m_errors->GetRules();
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
