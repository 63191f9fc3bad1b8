#pragma once

#include <QKeySequence>
#include <QObject>
#include <functional>
#include <vector>

class QAction;
class QDockWidget;
class QMainWindow;
class QMenu;

namespace Kesh::Workbench {

class CCheckControl;
class CDocumentArea;
class CErrorHelp;
class CErrorList;
class CFileCommands;
class CFileTree;
class CFormatChoice;
class CProjectSession;
class CSearchDock;

/// The window's menus and tool bar: what can be done, and when. GUI thread.
class CWindowMenus final : public QObject
{
    Q_OBJECT

public:
    struct SParts
    {
        QMainWindow& window;
        CDocumentArea& area;
        CFormatChoice& format;
        CErrorHelp& help;
        CErrorList& errors;
        CCheckControl& check;
        CProjectSession& project;
        CFileCommands& files;
        CFileTree& tree;
        QDockWidget& treeDock;
        CSearchDock& search;
    };

    /// Makes them in the window. The parts are not owned.
    explicit CWindowMenus(const SParts& parts);

    /// What there is that actions need.
    void SetHasDocument(bool has);
    void SetHasProject(bool has);
    void SetHasErrors(bool has);
    /// Where docks can be shown and hidden.
    QMenu& GetViewMenu() { return *m_view; }
    /// Of the last menu.
    QAction* GetHelpAction() const { return m_help; }

signals:
    void settingsRequested();
    /// A file of the project is to be opened by its name.
    void quickOpenRequested();

private:
    using TActions = std::vector<QAction*>;

    QAction* Add(QMenu& menu, const char* title, const QKeySequence& key, std::function<void()> action);
    /// As the menu key does, where there is none.
    static void ShowContextMenu();
    void MakeFileMenu();
    void MakeEditMenu();
    void MakeViewMenu();
    void MakeCheckMenu();
    void MakeHelpMenu();
    void ShowAbout();

    SParts m_parts;
    QMenu* m_view = nullptr;
    QAction* m_help = nullptr;
    TActions m_ofDocument; ///< need an open document
    TActions m_ofProject;  ///< need a project
    TActions m_ofErrors;   ///< need an error
};

} // namespace Kesh::Workbench
