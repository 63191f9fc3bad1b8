#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorHelp.h"
#include "ErrorWatch.h"
#include "FileTree.h"
#include "Files/FilePath.h"
#include "FindBar.h"
#include "FormatChoice.h"
#include "MainWindow.h"
#include "ProjectManager/ProjectManager.h"
#include "Texts.h"

#include <QApplication>
#include <QDockWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QToolBar>

namespace Kesh::Workbench {

QAction* CMainWindow::AddAction(QMenu& menu, const char* title, const QKeySequence& key,
                                std::function<void()> action)
{
    QAction* made = menu.addAction(Tr(title));
    made->setShortcut(key);
    made->setObjectName(QLatin1String(title));
    connect(made, &QAction::triggered, this, [action = std::move(action)] { action(); });
    return made;
}

void CMainWindow::MakeActions()
{
    MakeFileMenu();
    MakeEditMenu();
    MakeViewMenu();
    MakeCheckMenu();
    MakeHelpMenu();
}

void CMainWindow::MakeFileMenu()
{
    QMenu& menu = *menuBar()->addMenu(Tr("&File"));
    const auto current = [this](auto action) {
        return [this, action] {
            if (Host::CDocument* document = m_area->GetCurrent())
                action(*m_area, *document);
        };
    };
    AddAction(menu, "&New file...", QKeySequence::New, [this] { NewFile(); });
    AddAction(menu, "&Open file...", QKeySequence::Open, [this] { ChooseFile(); });
    AddAction(menu, "Open &folder...", QKeySequence("Ctrl+Shift+O"), [this] { ChooseFolder(); });
    m_recentMenu = menu.addMenu(Tr("&Recent projects"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &CMainWindow::FillRecentMenu);
    menu.addSeparator();
    m_documentActions = {
        AddAction(menu, "&Save", QKeySequence::Save,
                  current([](auto& area, auto& document) { area.Save(document); })),
        AddAction(menu, "Save &as...", QKeySequence("Ctrl+Shift+S"),
                  current([](auto& area, auto& document) { area.SaveAs(document); })),
        AddAction(menu, "Save a&ll", QKeySequence("Ctrl+Alt+S"), [this] { m_area->SaveAll(); })};
    for (QMenu* format : {&m_format->GetEncodingMenu(), &m_format->GetLineEndMenu()})
        m_documentActions.push_back(menu.addMenu(format));
    menu.addSeparator();
    m_documentActions.push_back(AddAction(menu, "&Close file", QKeySequence("Ctrl+W"),
                                          current([](auto& area, auto& document) { area.Close(document); })));
    m_projectActions = {AddAction(menu, "Close &project", {}, [this] { CloseProject(); })};
    menu.addSeparator();
    AddAction(menu, "Se&ttings...", QKeySequence("Ctrl+,"), [this] { EditSettings(); });
    menu.addSeparator();
    AddAction(menu, "&Quit", QKeySequence("Ctrl+Q"), [this] { close(); });
}

void CMainWindow::MakeEditMenu()
{
    QMenu& menu = *menuBar()->addMenu(Tr("&Edit"));
    const auto edit = [&](const char* title, const QKeySequence& key, void (QsciScintilla::*slot)()) {
        m_documentActions.push_back(AddAction(menu, title, key, [this, slot] {
            // In the find bar the keys mean its own line.
            if (CCodeEditor* editor = m_area->GetCurrentEditor())
                (editor->*slot)();
        }));
        m_documentActions.back()->setShortcutContext(Qt::WidgetShortcut);
    };
    edit("&Undo", QKeySequence::Undo, &QsciScintilla::undo);
    edit("&Redo", QKeySequence("Ctrl+Shift+Z"), &QsciScintilla::redo);
    menu.addSeparator();
    edit("Cu&t", QKeySequence::Cut, &QsciScintilla::cut);
    edit("&Copy", QKeySequence::Copy, &QsciScintilla::copy);
    edit("&Paste", QKeySequence::Paste, &QsciScintilla::paste);
    menu.addSeparator();
    m_documentActions.push_back(AddAction(menu, "C&omment lines", QKeySequence("Ctrl+/"), [this] {
        if (CCodeEditor* editor = m_area->GetCurrentEditor())
            editor->ToggleComment();
    }));
    m_documentActions.push_back(
        AddAction(menu, "&Mend...", QKeySequence("Alt+Return"), [this] { m_help->OfferFixes(); }));
    menu.addSeparator();
    for (QAction* action :
         {AddAction(menu, "&Find and replace...", QKeySequence::Find,
                    [this] { m_area->GetFindBar().Open(); }),
          AddAction(menu, "Find &next", QKeySequence("F3"), [this] { m_area->GetFindBar().FindNext(); }),
          AddAction(menu, "Find pre&vious", QKeySequence("Shift+F3"),
                    [this] { m_area->GetFindBar().FindPrevious(); }),
          AddAction(menu, "&Go to line...", QKeySequence("Ctrl+G"), [this] { GoToLine(); })})
        m_documentActions.push_back(action);
    m_projectActions.push_back(
        AddAction(menu, "Find &in files...", QKeySequence("Ctrl+Shift+F"), [this] { FindInFiles(); }));
}

void CMainWindow::MakeViewMenu()
{
    m_viewMenu = menuBar()->addMenu(Tr("&View"));
    QMenu& menu = *m_viewMenu;
    const auto zoom = [&](const char* title, const QKeySequence& key,
                          std::function<void(CCodeEditor&)> action) {
        m_documentActions.push_back(AddAction(menu, title, key, [this, action = std::move(action)] {
            if (CCodeEditor* editor = m_area->GetCurrentEditor()) {
                action(*editor);
                editor->UpdateMargins();
            }
        }));
    };
    AddAction(menu, "Go to the &files", QKeySequence("Alt+1"), [this] {
        m_treeDock->show();
        m_tree->setFocus();
    });
    m_documentActions.push_back(AddAction(menu, "Go to the &editor", QKeySequence("Alt+2"), [this] {
        if (CCodeEditor* editor = m_area->GetCurrentEditor())
            editor->setFocus();
    }));
    AddAction(menu, "Go to the e&rrors", QKeySequence("Alt+3"), [this] {
        for (QDockWidget* dock : m_frame.GetDocks()) {
            dock->show();
            dock->raise();
            dock->widget()->setFocus();
        }
    });
    for (QAction* action :
         {AddAction(menu, "Ne&xt file", QKeySequence("Ctrl+Tab"), [this] { m_area->ShowNextTab(1); }),
          AddAction(menu, "&Previous file", QKeySequence("Ctrl+Shift+Tab"),
                    [this] { m_area->ShowNextTab(-1); })})
        m_documentActions.push_back(action);
    menu.addSeparator();
    zoom("Zoom &in", QKeySequence::ZoomIn, [](CCodeEditor& editor) { editor.zoomIn(); });
    zoom("Zoom &out", QKeySequence::ZoomOut, [](CCodeEditor& editor) { editor.zoomOut(); });
    zoom("&Normal size", QKeySequence("Ctrl+0"), [](CCodeEditor& editor) { editor.zoomTo(0); });
    menu.addSeparator();
    menu.addAction(m_treeDock->toggleViewAction());
    menu.addAction(m_searchDock->toggleViewAction());
}

void CMainWindow::MakeCheckMenu()
{
    QMenu& menu = *menuBar()->addMenu(Tr("&Check"));
    QAction* document =
        AddAction(menu, "Check document", QKeySequence("F9"), [this] { RunCheck("CCACheckNowCmd"); });
    QAction* project = AddAction(menu, "Check project", QKeySequence("Shift+F9"),
                                 [this] { RunCheck("CCACheckProjectCmd"); });
    QAction* refresh =
        AddAction(menu, "&Look for new files", QKeySequence("F5"), [this] { RefreshProject(); });
    menu.addSeparator();
    QAction* next = AddAction(menu, "&Next error", QKeySequence("F8"), [this] { GoToError(true); });
    QAction* previous =
        AddAction(menu, "&Previous error", QKeySequence("Shift+F8"), [this] { GoToError(false); });
    m_errorActions = {next, previous};
    for (QAction* action : m_errorActions)
        action->setEnabled(false);
    m_documentActions.push_back(document);
    m_projectActions.push_back(project);
    m_projectActions.push_back(refresh);

    QToolBar* bar = addToolBar(Tr("Check"));
    bar->setObjectName(QStringLiteral("checkBar"));
    bar->setMovable(false);
    bar->addActions({document, project, previous, next});
    m_viewMenu->addAction(bar->toggleViewAction());
}

void CMainWindow::MakeHelpMenu()
{
    QMenu& menu = *menuBar()->addMenu(Tr("&Help"));
    m_helpMenuAction = menu.menuAction();
    m_documentActions.push_back(
        AddAction(menu, "&Explain the error", QKeySequence("F1"), [this] { ExplainHere(); }));
    AddAction(menu, "&About", {}, [this] { ShowAbout(); });
}

void CMainWindow::FillRecentMenu()
{
    m_recentMenu->clear();
    for (const QString& folder : m_preferences.GetRecentProjects()) {
        QString title = folder;
        connect(m_recentMenu->addAction(title.replace('&', QStringLiteral("&&"))), &QAction::triggered, this,
                [this, folder] { OpenProject(Host::PathFromQt(folder)); });
    }
    if (m_recentMenu->isEmpty())
        m_recentMenu->addAction(Tr("None yet"))->setEnabled(false);
}

void CMainWindow::ShowWelcome()
{
    if (!m_application->Project().GetFolder().empty()) {
        m_area->SetWelcomeText(
            Tr("Choose a file in the project, or an error in the list below.").toHtmlEscaped());
        return;
    }
    QString html = QStringLiteral("<p>%1</p>")
                       .arg(Tr("Open a folder with Ctrl+Shift+O, or a file with Ctrl+O.").toHtmlEscaped());
    const QStringList recent = m_preferences.GetRecentProjects();
    if (!recent.isEmpty())
        html += QStringLiteral("<p><b>%1</b></p>").arg(Tr("Recent projects").toHtmlEscaped());
    for (const QString& folder : recent)
        html += QStringLiteral("<p><a href=\"%1\">%1</a></p>").arg(folder.toHtmlEscaped());
    m_area->SetWelcomeText(html);
}

void CMainWindow::ShowAbout()
{
    QMessageBox::about(
        this, Tr("About"),
        QStringLiteral("Code Analyzer " CODE_ANALYZER_VERSION "\n\n") +
            Tr("Finds errors in PHP, HTML and CSS while you type, and in all files of a project."));
}

} // namespace Kesh::Workbench
