#pragma once

#include "Application/Application.h"
#include "Application/PluginLoader.h"
#include "MainFrame.h"
#include "Preferences.h"
#include "ProjectOpener.h"
#include "Prompts.h"
#include "SyntaxParser/OwnNames.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>
#include <QUrl>
#include <atomic>
#include <memory>
#include <string>

class QAction;
class QMenu;
class QDockWidget;
class QTreeView;
class QTreeWidget;

namespace Kesh::Workbench {

class CDocumentArea;
class CErrorHelp;
class CErrorPanel;
class CErrorWatch;
class CFileTree;
class CFormatChoice;
class CSearchPanel;
class CStatusLine;

/// The workbench: a host with a window. It makes the application and loads the code validator.
class CMainWindow final : public QMainWindow
{
    Q_OBJECT

public:
    /// Neither is owned. The translations must be those of the user's language.
    CMainWindow(Host::CFileSettings& settings, LangSupport::ILangSource& translations);
    /// Ends everything in order: documents, project, validator.
    ~CMainWindow() override;

    /// Opens a folder as the project, in the background, or a file.
    void OpenPath(const std::wstring& path);
    void OpenProject(const std::wstring& folder);
    /// Opens what was open when the last window was closed, as far as it is still there.
    void RestoreSession();
    /// False when the user cancels.
    bool CloseProject();

    Host::CApplication& GetApplication() { return *m_application; }
    /// Null when the validator could not be loaded.
    Host::CPlugin* GetPlugin() { return m_plugin.get(); }
    CDocumentArea& GetArea() { return *m_area; }
    CErrorWatch* GetErrorWatch() { return m_errors.get(); }
    CMainFrame& GetFrame() { return m_frame; }
    /// Asks through these instead of dialogs. Not owned.
    void SetPrompts(IPrompts& prompts);
    void ApplyChoices(const SChoices& choices);
    /// Shows a text in the status line.
    void ShowMessage(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void MakeActions();
    void MakeFileMenu();
    void MakeEditMenu();
    void MakeViewMenu();
    void MakeCheckMenu();
    void MakeHelpMenu();
    QAction* AddAction(QMenu& menu, const char* title, const QKeySequence& key, std::function<void()> action);
    void LoadValidator();
    void UnloadValidator();
    void RestartValidator();
    void GiveCustomNames(const SChoices& choices);

    void NewFile();
    void ChooseFile();
    void ChooseFolder();
    void RefreshProject();
    void OnListed(const SProjectListing& listing);
    void GoToLine();
    void GoToError(bool forward);
    void RunCheck(const char* command);
    void EditSettings();
    void FillRecentMenu();
    void ShowWelcome();
    void ShowAbout();
    void ShowNoProject();
    /// When the window was about to go, but has something to say.
    void BackAgain();
    void OnCurrentChanged();
    void OnCaretMoved();
    void OnErrorsChanged();
    void OnProgressTick();
    /// The bar of the validator, which is a list; null when there is none.
    QTreeView* GetErrorList() const;
    void ArrangeErrorList();
    void AddErrorPanel(QTreeWidget& list);
    void ExtendErrorMenu(QMenu* menu, const std::wstring& file, const CodeAnalyzer::SCAError& error);
    /// What a project wants; the next check goes by it.
    void UseRules(TProjectRules rules, const std::wstring& folder);
    void OpenUrls(const QList<QUrl>& urls);
    void ExplainHere();
    void AddSearchPanel();
    void FindInFiles();
    std::vector<int> GetErrorColumnWidths() const;
    void SetErrorColumnWidths(const std::vector<int>& widths);
    SSession GetSession() const;
    void SaveLayout();
    void RestoreLayout();
    QString FolderToStartFrom() const;

    Host::CFileSettings& m_settings;
    CPreferences m_preferences;
    CDialogPrompts m_dialogs;
    IPrompts* m_prompts;
    CMainFrame m_frame;
    std::unique_ptr<Host::CApplication> m_application;
    std::unique_ptr<Host::CPlugin> m_plugin;
    std::unique_ptr<CErrorWatch> m_errors;
    CProjectOpener m_opener;
    std::atomic<std::size_t> m_filesAsked{0}; ///< by the project check
    TProjectRules m_rules = Findings::CProjectRules::None();
    SyntaxParser::SOwnNames m_names; ///< those of the project
    QTimer m_progressTick;
    bool m_stopped = false;  ///< the last project check, by the user
    bool m_leaving = false;  ///< the window closes as soon as the project's errors are on disk
    bool m_stays = false;    ///< they could not be put there
    bool m_cameBack = false; ///< so what was open is known already

    CDocumentArea* m_area;
    CFileTree* m_tree;
    QDockWidget* m_treeDock;
    CSearchPanel* m_search = nullptr;
    QDockWidget* m_searchDock = nullptr;
    CStatusLine* m_status;
    CFormatChoice* m_format;
    CErrorHelp* m_help;
    QMenu* m_recentMenu = nullptr;
    QMenu* m_viewMenu = nullptr;
    QAction* m_helpMenuAction = nullptr;
    std::vector<QAction*> m_documentActions; ///< need an open document
    std::vector<QAction*> m_projectActions;  ///< need a project
    std::vector<QAction*> m_errorActions;    ///< need an error
    QPointer<CErrorPanel> m_panel;
};

} // namespace Kesh::Workbench
