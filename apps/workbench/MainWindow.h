#pragma once

#include "Application/Application.h"
#include "Application/PluginLoader.h"
#include "FileCommands.h"
#include "MainFrame.h"
#include "Preferences.h"
#include "Prompts.h"
#include "Recovery.h"
#include "SyntaxParser/OwnNames.h"
#include "Window/Display.h"

#include <QMainWindow>
#include <QUrl>
#include <memory>
#include <string>
#include <vector>

class QDockWidget;

namespace Kesh::Workbench {

class CCheckControl;
class CDocumentArea;
class CErrorHelp;
class CErrorList;
class CErrorWatch;
class CFileTree;
class CFormatChoice;
class CJournal;
class CProjectSession;
class CQuickOpen;
class CSearchDock;
class CStatusLine;
class CWindowMenus;

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
    /// Opens these folders and files, or what was open when the last window ended, as far as it is still
    /// there; and brings back, or offers, what earlier windows have left unsaved.
    void Begin(const std::vector<std::wstring>& paths = {});
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
    void MakeDocks();
    void Wire();
    void FollowProjectData();
    void FollowUnsaved();
    void LoadValidator();
    void ShowValidator();
    void UnloadValidator();
    void RestartValidator();
    void GiveCustomNames(const SChoices& choices);

    void EditSettings();
    /// When the window was about to go, but has something to say.
    void BackAgain();
    void OnCurrentChanged();
    void OnCaretMoved();
    void OnErrorsChanged();
    void OpenUrls(const QList<QUrl>& urls);
    void SaveLayout();
    void RestoreLayout();

    Host::CFileSettings& m_settings;
    CPreferences m_preferences;
    CDialogPrompts m_dialogs;
    CMainFrame m_frame;
    Host::CDisplay m_display;
    std::unique_ptr<Host::CApplication> m_application;
    std::unique_ptr<Host::CPlugin> m_plugin;
    std::unique_ptr<CErrorWatch> m_errors;
    bool m_leaving = false;  ///< the window closes as soon as the project's errors are on disk
    bool m_stays = false;    ///< they could not be put there
    bool m_cameBack = false; ///< so what was open is known already

    CDocumentArea* m_area;
    CFileTree* m_tree;
    QDockWidget* m_treeDock;
    CSearchDock* m_search;
    CQuickOpen* m_quickOpen;
    CStatusLine* m_status;
    CFormatChoice* m_format;
    CErrorHelp* m_help;
    CErrorList* m_errorList;
    CCheckControl* m_check;
    CProjectSession* m_project;
    CFileCommands m_files;
    std::unique_ptr<CJournal> m_journal;
    CRecovery m_recovery;
    CWindowMenus* m_menus;
};

} // namespace Kesh::Workbench
