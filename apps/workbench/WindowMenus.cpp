#include "WindowMenus.h"

#include "CheckControl.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorHelp.h"
#include "ErrorList.h"
#include "FileCommands.h"
#include "FileTree.h"
#include "FindBar.h"
#include "FormatChoice.h"
#include "ProjectSession.h"
#include "SearchDock.h"
#include "Texts.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDockWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QShortcut>
#include <QToolBar>

namespace Kesh::Workbench {

CWindowMenus::CWindowMenus(const SParts& parts) : m_parts(parts)
{
    MakeFileMenu();
    MakeEditMenu();
    MakeViewMenu();
    MakeCheckMenu();
    MakeHelpMenu();
    SetHasErrors(false);
    auto* menuKey = new QShortcut(QKeySequence("Shift+F10"), &m_parts.window);
    connect(menuKey, &QShortcut::activated, this, &CWindowMenus::ShowContextMenu);
}

void CWindowMenus::ShowContextMenu()
{
    QWidget* widget = QApplication::focusWidget();
    if (!widget)
        return;
    QPoint point = widget->rect().center();
    if (const auto* view = qobject_cast<QAbstractItemView*>(widget); view && view->currentIndex().isValid())
        point = view->visualRect(view->currentIndex()).center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, point, widget->mapToGlobal(point));
    QApplication::sendEvent(widget, &event);
}

QAction* CWindowMenus::Add(QMenu& menu, const char* title, const QKeySequence& key,
                           std::function<void()> action)
{
    QAction* made = menu.addAction(Tr(title));
    made->setShortcut(key);
    made->setObjectName(QLatin1String(title));
    connect(made, &QAction::triggered, this, [action = std::move(action)] { action(); });
    return made;
}

void CWindowMenus::SetHasDocument(bool has)
{
    for (QAction* action : m_ofDocument)
        action->setEnabled(has);
}

void CWindowMenus::SetHasProject(bool has)
{
    for (QAction* action : m_ofProject)
        action->setEnabled(has);
}

void CWindowMenus::SetHasErrors(bool has)
{
    for (QAction* action : m_ofErrors)
        action->setEnabled(has);
}

void CWindowMenus::MakeFileMenu()
{
    QMenu& menu = *m_parts.window.menuBar()->addMenu(Tr("&File"));
    const auto current = [this](auto action) {
        return [this, action] {
            if (Host::CDocument* document = m_parts.area.GetCurrent())
                action(m_parts.area, *document);
        };
    };
    Add(menu, "&New file...", QKeySequence::New, [this] { m_parts.files.NewFile(); });
    Add(menu, "&Open file...", QKeySequence::Open, [this] { m_parts.files.OpenFile(); });
    Add(menu, "Open &folder...", QKeySequence("Ctrl+Shift+O"), [this] { m_parts.files.OpenFolder(); });
    m_ofProject = {
        Add(menu, "Open &by name...", QKeySequence("Ctrl+P"), [this] { emit quickOpenRequested(); })};
    QMenu* recent = menu.addMenu(Tr("&Recent projects"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { m_parts.project.FillRecentMenu(*recent); });
    menu.addSeparator();
    m_ofDocument = {Add(menu, "&Save", QKeySequence::Save,
                        current([](auto& area, auto& document) { area.Save(document); })),
                    Add(menu, "Save &as...", QKeySequence("Ctrl+Shift+S"),
                        current([](auto& area, auto& document) { area.SaveAs(document); })),
                    Add(menu, "Save a&ll", QKeySequence("Ctrl+Alt+S"), [this] { m_parts.area.SaveAll(); })};
    for (QMenu* format : {&m_parts.format.GetEncodingMenu(), &m_parts.format.GetLineEndMenu()})
        m_ofDocument.push_back(menu.addMenu(format));
    menu.addSeparator();
    m_ofDocument.push_back(Add(menu, "&Close file", QKeySequence("Ctrl+W"),
                               current([](auto& area, auto& document) { area.Close(document); })));
    m_ofProject.push_back(Add(menu, "Close &project", {}, [this] { m_parts.project.Close(); }));
    menu.addSeparator();
    Add(menu, "Se&ttings...", QKeySequence("Ctrl+,"), [this] { emit settingsRequested(); });
    menu.addSeparator();
    Add(menu, "&Quit", QKeySequence("Ctrl+Q"), [this] { m_parts.window.close(); });
}

void CWindowMenus::MakeEditMenu()
{
    QMenu& menu = *m_parts.window.menuBar()->addMenu(Tr("&Edit"));
    connect(&m_parts.area, &CDocumentArea::menuRequested, &menu,
            [&menu](const QPoint& point) { menu.popup(point); });
    const auto edit = [&](const char* title, const QKeySequence& key, void (QsciScintilla::*slot)()) {
        m_ofDocument.push_back(Add(menu, title, key, [this, slot] {
            // In the find bar the keys mean its own line.
            if (CCodeEditor* editor = m_parts.area.GetCurrentEditor())
                (editor->*slot)();
        }));
        m_ofDocument.back()->setShortcutContext(Qt::WidgetShortcut);
    };
    edit("&Undo", QKeySequence::Undo, &QsciScintilla::undo);
    edit("&Redo", QKeySequence("Ctrl+Shift+Z"), &QsciScintilla::redo);
    menu.addSeparator();
    edit("Cu&t", QKeySequence::Cut, &QsciScintilla::cut);
    edit("&Copy", QKeySequence::Copy, &QsciScintilla::copy);
    edit("&Paste", QKeySequence::Paste, &QsciScintilla::paste);
    menu.addSeparator();
    m_ofDocument.push_back(Add(menu, "C&omment lines", QKeySequence("Ctrl+/"), [this] {
        if (CCodeEditor* editor = m_parts.area.GetCurrentEditor())
            editor->ToggleComment();
    }));
    m_ofDocument.push_back(
        Add(menu, "Fi&x...", QKeySequence("Alt+Return"), [this] { m_parts.help.OfferFixes(); }));
    m_ofDocument.push_back(
        Add(menu, "Fix a&ll", QKeySequence("Alt+Shift+Return"), [this] { m_parts.help.FixAll(); }));
    menu.addSeparator();
    for (QAction* action :
         {Add(menu, "&Find and replace...", QKeySequence::Find, [this] { m_parts.area.GetFindBar().Open(); }),
          Add(menu, "R&eplace...", QKeySequence("Ctrl+H"), [this] { m_parts.area.GetFindBar().Open(true); }),
          Add(menu, "Find &next", QKeySequence("F3"), [this] { m_parts.area.GetFindBar().FindNext(); }),
          Add(menu, "Find pre&vious", QKeySequence("Shift+F3"),
              [this] { m_parts.area.GetFindBar().FindPrevious(); }),
          Add(menu, "&Go to line...", QKeySequence("Ctrl+G"), [this] { m_parts.files.GoToLine(); })})
        m_ofDocument.push_back(action);
    m_ofProject.push_back(
        Add(menu, "Find &in files...", QKeySequence("Ctrl+Shift+F"), [this] { m_parts.search.Open(); }));
}

void CWindowMenus::MakeViewMenu()
{
    m_view = m_parts.window.menuBar()->addMenu(Tr("&View"));
    QMenu& menu = *m_view;
    const auto zoom = [&](const char* title, const QKeySequence& key,
                          std::function<void(CCodeEditor&)> action) {
        m_ofDocument.push_back(Add(menu, title, key, [this, action = std::move(action)] {
            if (CCodeEditor* editor = m_parts.area.GetCurrentEditor()) {
                action(*editor);
                editor->UpdateMargins();
            }
        }));
    };
    Add(menu, "Go to the &files", QKeySequence("Alt+1"), [this] {
        m_parts.treeDock.show();
        m_parts.tree.setFocus();
    });
    m_ofDocument.push_back(Add(menu, "Go to the &editor", QKeySequence("Alt+2"), [this] {
        if (CCodeEditor* editor = m_parts.area.GetCurrentEditor())
            editor->setFocus();
    }));
    Add(menu, "Go to the e&rrors", QKeySequence("Alt+3"), [this] { m_parts.errors.Focus(); });
    for (QAction* action :
         {Add(menu, "Ne&xt file", QKeySequence("Ctrl+Tab"), [this] { m_parts.area.ShowNextTab(1); }),
          Add(menu, "&Previous file", QKeySequence("Ctrl+Shift+Tab"),
              [this] { m_parts.area.ShowNextTab(-1); })})
        m_ofDocument.push_back(action);
    menu.addSeparator();
    zoom("Zoom &in", QKeySequence::ZoomIn, [](CCodeEditor& editor) { editor.zoomIn(); });
    zoom("Zoom &out", QKeySequence::ZoomOut, [](CCodeEditor& editor) { editor.zoomOut(); });
    zoom("&Normal size", QKeySequence("Ctrl+0"), [](CCodeEditor& editor) { editor.zoomTo(0); });
    menu.addSeparator();
    menu.addAction(m_parts.treeDock.toggleViewAction());
    menu.addAction(m_parts.search.toggleViewAction());
}

void CWindowMenus::MakeCheckMenu()
{
    QMenu& menu = *m_parts.window.menuBar()->addMenu(Tr("&Check"));
    QAction* document =
        Add(menu, "Check document", QKeySequence("F9"), [this] { m_parts.check.Run("CCACheckNowCmd"); });
    QAction* project = Add(menu, "Check project", QKeySequence("Shift+F9"),
                           [this] { m_parts.check.Run("CCACheckProjectCmd"); });
    QAction* refresh =
        Add(menu, "&Look for new files", QKeySequence("F5"), [this] { m_parts.project.Refresh(); });
    menu.addSeparator();
    QAction* next =
        Add(menu, "&Next error", QKeySequence("F8"), [this] { m_parts.errors.GoToNeighbour(true); });
    QAction* previous = Add(menu, "&Previous error", QKeySequence("Shift+F8"),
                            [this] { m_parts.errors.GoToNeighbour(false); });
    m_ofErrors = {next, previous};
    m_ofDocument.push_back(document);
    m_ofProject.push_back(project);
    m_ofProject.push_back(refresh);

    QToolBar* bar = m_parts.window.addToolBar(Tr("Check"));
    bar->setObjectName(QStringLiteral("checkBar"));
    bar->setMovable(false);
    bar->addActions({document, project, previous, next});
    m_view->addAction(bar->toggleViewAction());
}

void CWindowMenus::MakeHelpMenu()
{
    QMenu& menu = *m_parts.window.menuBar()->addMenu(Tr("&Help"));
    m_help = menu.menuAction();
    m_ofDocument.push_back(
        Add(menu, "&Explain the error", QKeySequence("F1"), [this] { m_parts.errors.ExplainHere(); }));
    Add(menu, "&About", {}, [this] { ShowAbout(); });
}

void CWindowMenus::ShowAbout()
{
    QMessageBox::about(
        &m_parts.window, Tr("About"),
        QStringLiteral("Code Analyzer " CODE_ANALYZER_VERSION "\n\n") +
            Tr("Finds errors in PHP, HTML and CSS while you type, and in all files of a project."));
}

} // namespace Kesh::Workbench
