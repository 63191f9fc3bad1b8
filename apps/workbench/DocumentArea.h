#pragma once

#include "CodeEditor.h"
#include "DiskWatch.h"
#include "Kesh/SyntaxParser/Position.h"
#include "Preferences.h"
#include "SyntaxParser/SourceText.h"

#include <QTabWidget>
#include <QUrl>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class QLabel;
class QStackedWidget;

namespace Kesh::Host {
class CApplication;
class CDocument;
} // namespace Kesh::Host
namespace Kesh::Editor {
class ITextHolder;
}

namespace Kesh::Workbench {

class CErrorWatch;
class CFindBar;
class CMessageStrip;
class IPrompts;

/// The open documents in their tabs: opening, saving, closing, following what happens on disk, and the marks
/// of their errors.
class CDocumentArea final : public QWidget
{
    Q_OBJECT

public:
    /// Neither is owned.
    CDocumentArea(Host::CApplication& application, IPrompts& prompts);
    /// The documents must have been closed.
    ~CDocumentArea() override;

    /// Opens or shows a file; a failure becomes a message above the editor.
    bool Open(const std::wstring& path);
    /// The same, with the caret at a place in the middle of the view.
    bool OpenAt(const std::wstring& path, const SyntaxParser::CIterator& pos);
    /// The files in their tabs, with carets and folds, and the way back to them; what is gone is left out.
    std::vector<SSession::SFile> GetOpenFiles() const;
    void RestoreFiles(const std::vector<SSession::SFile>& files, int current);
    /// Null when no tab is open.
    Host::CDocument* GetCurrent() const;
    CCodeEditor* GetCurrentEditor() const;
    /// Null for a document that has no tab.
    CCodeEditor* FindEditor(const std::wstring& path) const;

    /// These answer false when the user cancels or the file cannot be written.
    bool Save(Host::CDocument& document);
    bool SaveAs(Host::CDocument& document);
    bool SaveAll();
    bool Close(Host::CDocument& document);
    bool CloseAll();
    /// Whether its text would be lost with its tab: it has unsaved edits, or no file any more.
    static bool IsUnsaved(Host::CDocument& document);
    std::vector<Host::CDocument*> GetUnsaved() const;
    /// Reads the file anew in another encoding; false when the user would rather keep unsaved edits.
    bool ReopenWith(Host::CDocument& document, SyntaxParser::EEncoding encoding);
    /// How the next saves write it.
    void ChangeFormat(Host::CDocument& document, const SyntaxParser::SSourceFormat& format);
    /// Closes without a question.
    void DiscardAll();

    /// Asks through these from now on.
    void SetPrompts(IPrompts& prompts) { m_prompts = &prompts; }
    /// Where errors come from; null for nowhere. Not owned.
    void SetErrorWatch(CErrorWatch* watch);
    /// What is to be said of a place in the editor in front.
    void SetTipSource(CCodeEditor::TTipSource source) { m_tips = std::move(source); }
    void ApplyChoices(const SChoices& choices);
    /// Looks whether open files have changed on disk.
    void CheckDisk() { m_disk.Check(); }
    void ShowNextTab(int step);

    CMessageStrip& GetMessageStrip() { return *m_strip; }
    CFindBar& GetFindBar() { return *m_findBar; }
    QTabWidget& GetTabs() { return *m_tabs; }
    /// What is shown while no file is open; links in it are reported by linkActivated.
    void SetWelcomeText(const QString& html);

signals:
    /// Another document is in front, or none; or what is to be told of it has changed.
    void currentChanged();
    void caretMoved();
    /// The text of a document has changed, or whether it is saved.
    void edited(Kesh::Host::CDocument* document);
    /// A document is about to be closed, and its unsaved edits to be given up.
    void closing(Kesh::Host::CDocument* document);
    void linkActivated(const QString& link);
    void urlsDropped(const QList<QUrl>& urls);
    void explainRequested(int code);
    /// What is at the caret is to be fixed.
    void fixRequested();
    /// Of what can be done in the editor in front.
    void menuRequested(const QPoint& globalPoint);

private:
    std::unique_ptr<Editor::ITextHolder> MakeHolder(Host::CDocument& document);
    Host::CDocument* DocumentOf(const QWidget* editor) const;
    void OnTabChanged();
    void UpdateTitle(const CCodeEditor* editor);
    void ShowErrors(CCodeEditor& editor);
    void ColorTab(const CCodeEditor& editor);
    void OnErrorsChanged(const std::set<std::wstring>& files);
    bool WriteDocument(Host::CDocument& document);
    /// Calls `write` as the user agrees to; false without that.
    bool WriteAs(const std::wstring& path, const std::function<void(const Host::SWriteRules&)>& write);
    /// Whether the encoding has all characters; if not, says so.
    bool CanWrite(Host::CDocument& document);
    void Reload(Host::CDocument& document);
    void LoadKeepingPlace(Host::CDocument& document, const std::function<void()>& load);
    /// Why the file is not to be opened; empty if it is.
    std::wstring Refuse(const std::wstring& path);
    void OpenAnyway(const std::wstring& path);
    void TellOfLineEnds(Host::CDocument& document);
    /// Asks what to do with unsaved texts; false when they are to stay, or could not be saved.
    bool MayClose(const std::vector<Host::CDocument*>& documents);
    /// Closes without a question; what is on disk is what has last been checked.
    void Discard(Host::CDocument& document);
    void Report(const std::wstring& path, const std::wstring& reason);
    void ReportUnsaved(const std::wstring& path, const std::wstring& reason);

    Host::CApplication& m_application;
    IPrompts* m_prompts;
    CMessageStrip* m_strip;
    QStackedWidget* m_stack;
    QLabel* m_welcome;
    QTabWidget* m_tabs;
    CFindBar* m_findBar;
    CErrorWatch* m_errors = nullptr;
    CCodeEditor::TTipSource m_tips;
    SChoices m_choices;
    std::map<const QWidget*, Host::CDocument*> m_documents; ///< by editor
    bool m_making = false;                                  ///< a document is not complete yet
    std::set<std::wstring> m_linksOut;                      ///< through which the user has agreed to save
    std::wstring m_refused; ///< the binary file that Open() was asked for last
    CDiskWatch m_disk;
};

} // namespace Kesh::Workbench
