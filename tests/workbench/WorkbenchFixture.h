#pragma once

#include "Application/Settings.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorWatch.h"
#include "LangSupport/Translations.h"
#include "MainWindow.h"
#include "ProjectManager/ProjectManager.h"
#include "Prompts.h"
#include "TempFolder.h"

#include <QTreeWidget>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

/// Answers that are set beforehand.
class CFakePrompts final : public Kesh::Workbench::IPrompts
{
public:
    ESave AskSave(const QStringList& names) override
    {
        m_asked = names;
        return m_save;
    }
    bool Confirm(const QString& question, const QString&) override
    {
        m_asked = QStringList(question);
        return m_confirm;
    }
    QString AskOpenFile(const QString&) override { return m_name; }
    QString AskFolder(const QString&) override { return m_name; }
    QString AskSaveName(const QString&) override { return m_name; }
    int AskLine(int, int) override { return m_line; }

    ESave m_save = ESave::Cancel;
    bool m_confirm = false;
    QString m_name;
    int m_line = 0;
    QStringList m_asked;
};

/// A real window with the real validator, whose checks begin soon after an edit.
class CWorkbenchTest : public ::testing::Test
{
protected:
    CWorkbenchTest();
    ~CWorkbenchTest() override;

    /// Ends the window, if there is one, and makes the next, with the same settings.
    void OpenWindow();
    void CloseWindow() { m_window.reset(); }
    /// As with the mouse, and waits until all is done; false when the window is still there.
    bool CloseByUser();
    Kesh::Workbench::CMainWindow& Window() { return *m_window; }
    Kesh::Workbench::CDocumentArea& Area() { return m_window->GetArea(); }
    Kesh::Host::CDocumentService& Documents() { return m_window->GetApplication().Documents(); }
    Kesh::ProjectManager::IProjectManager& Project();

    /// Opens a project and waits for the end of its check.
    void OpenProject(const std::wstring& folder);
    Kesh::Workbench::CCodeEditor& Open(const std::wstring& path);
    /// The list in the errors bar, and what it shows: "type|file - line|message".
    QTreeWidget* Bar();
    QStringList Rows();
    bool WaitForRows(int count);
    bool WaitFor(const std::function<bool()>& condition);
    /// The messages above the editor, and a click on an answer to the newest.
    QString Strip();
    void Answer(const QString& title);
    /// Underlined stretches as "line:column-line:column", counted from 0.
    QStringList Underlines(Kesh::Workbench::CCodeEditor& editor, bool ofWarnings = false);
    QList<int> MarkedLines(Kesh::Workbench::CCodeEditor& editor, bool withWarnings = false);
    /// Where the character at a place begins, in the editor's viewport.
    QPoint PointOf(Kesh::Workbench::CCodeEditor& editor, int line, int column);
    /// The tip at a point of the editor's viewport; null when there is nothing to say.
    Kesh::Workbench::CErrorTip* TipAt(Kesh::Workbench::CCodeEditor& editor, const QPoint& point);
    void DoubleClickRow(int row);
    void Trigger(const char* action);
    /// Puts a picture of a widget into the folder that SCREENSHOT_DIR names, else into the build folder's.
    void Shoot(QWidget& widget, const char* name);

    CTempFolder m_folder;
    CFakePrompts m_prompts;
    std::unique_ptr<Kesh::Host::CFileSettings> m_settings;
    std::unique_ptr<Kesh::LangSupport::CTranslations> m_translations;
    std::unique_ptr<Kesh::Workbench::CMainWindow> m_window;
};
