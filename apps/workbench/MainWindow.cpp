#include "MainWindow.h"

#include "Application/ParserComponent.h"
#include "Base/Exception.h"
#include "CheckControl.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "EditorTheme.h"
#include "ErrorHelp.h"
#include "ErrorList.h"
#include "ErrorWatch.h"
#include "FileTree.h"
#include "Files/Fault.h"
#include "Files/FilePath.h"
#include "Files/Printable.h"
#include "FindBar.h"
#include "FormatChoice.h"
#include "Journal.h"
#include "Languages.h"
#include "MenuBuilder.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "ProjectSession.h"
#include "QuickOpen.h"
#include "SearchDock.h"
#include "SettingsDialog.h"
#include "StatusLine.h"
#include "Texts.h"
#include "WindowMenus.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDropEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QPointer>
#include <QScreen>
#include <QStatusBar>
#include <filesystem>

namespace Kesh::Workbench {

namespace {

constexpr int LayoutVersion = 1;

/// What the system gave the program, whatever later windows have made of it.
const QPalette& SystemPalette()
{
    static const QPalette palette = QApplication::palette();
    return palette;
}

QPointer<CMainWindow> s_window; ///< where faults are shown

/// Any thread.
void ShowFault(const std::wstring& text)
{
    std::fprintf(stderr, "code-analyzer-workbench: %s\n", Host::Printable(text).c_str());
    QMetaObject::invokeMethod(
        qApp,
        [shown = QString::fromStdWString(text)] {
            if (s_window)
                s_window->ShowMessage(shown);
        },
        Qt::QueuedConnection);
}

} // namespace

CMainWindow::CMainWindow(Host::CFileSettings& settings, LangSupport::ILangSource& translations)
    : m_settings(settings),
      m_preferences(settings),
      m_dialogs(this),
      m_frame(*this),
      m_application(std::make_unique<Host::CApplication>(
          Host::CApplication::SParts{m_frame, settings, translations, &m_display})),
      m_area(new CDocumentArea(*m_application, m_dialogs)),
      m_tree(new CFileTree),
      m_treeDock(new QDockWidget(Tr("Project"), this)),
      m_search(new CSearchDock(*m_application, *m_area)),
      m_quickOpen(new CQuickOpen(this)),
      m_status(new CStatusLine(*statusBar())),
      m_format(new CFormatChoice(*m_area)),
      m_help(new CErrorHelp(*m_application, *m_area)),
      m_errorList(new CErrorList({*m_application, m_frame, *m_area, *m_status, *m_help, *this})),
      m_check(new CCheckControl({*m_application, m_frame, *m_status, m_area->GetMessageStrip()})),
      m_project(new CProjectSession({*m_application, m_preferences, *m_area, *m_tree, *m_status, *m_check})),
      m_files(*m_application, *m_area, *m_project, m_dialogs),
      m_journal(std::make_unique<CJournal>(m_preferences.GetJournalPlace(), *m_area,
                                           [this] { return m_project->GetOpen(); })),
      m_recovery(m_preferences.GetJournalPlace(), {*m_application, *m_area, *m_journal})
{
    s_window = this;
    Host::SetFaultSink(&ShowFault);
    setObjectName(QStringLiteral("workbench"));
    for (QObject* part :
         std::initializer_list<QObject*>{m_status, m_format, m_help, m_errorList, m_check, m_project})
        part->setParent(this);
    setAcceptDrops(true);
    MakeDocks();
    m_status->SetFormatMenus(m_format->GetEncodingMenu(), m_format->GetLineEndMenu());
    m_menus = new CWindowMenus({*this, *m_area, *m_format, *m_help, *m_errorList, *m_check, *m_project,
                                m_files, *m_tree, *m_treeDock, *m_search});
    m_menus->setParent(this);
    Wire();
    FollowProjectData();
    FollowUnsaved();

    const SChoices choices = m_preferences.GetChoices();
    QApplication::setPalette(MakePalette(choices.appearance, SystemPalette()));
    m_area->ApplyChoices(choices);
    LoadValidator();
    RestoreLayout();
    m_project->ShowWelcome();
    OnCurrentChanged();
}

void CMainWindow::MakeDocks()
{
    setCentralWidget(m_area);
    setDockNestingEnabled(true);
    m_treeDock->setObjectName(QStringLiteral("projectTree"));
    m_treeDock->setWidget(m_tree);
    addDockWidget(Qt::LeftDockWidgetArea, m_treeDock);
    resizeDocks({m_treeDock}, {fontMetrics().averageCharWidth() * 36}, Qt::Horizontal);
    resize(QSize(1200, 800).boundedTo(screen()->availableSize() * 0.95));
    addDockWidget(Qt::BottomDockWidgetArea, m_search);
    m_search->hide();
}

void CMainWindow::Wire()
{
    connect(m_tree, &CFileTree::fileActivated, this,
            [this](const QString& path) { m_area->Open(Host::PathFromQt(path)); });
    connect(m_area, &CDocumentArea::currentChanged, this, &CMainWindow::OnCurrentChanged);
    connect(m_area, &CDocumentArea::caretMoved, this, &CMainWindow::OnCaretMoved);
    connect(m_area, &CDocumentArea::urlsDropped, this, &CMainWindow::OpenUrls);
    connect(m_area, &CDocumentArea::explainRequested, this,
            [this](int code) { m_help->Explain(code, this); });
    connect(m_area, &CDocumentArea::fixRequested, m_help, &CErrorHelp::OfferFixes);
    m_area->SetTipSource([this](const SyntaxParser::CIterator& pos, bool wholeLine) {
        return m_help->GetTips(pos, wholeLine);
    });
    connect(m_help, &CErrorHelp::failed, this,
            [this](const QString& text) { m_area->GetMessageStrip().Show(text); });
    connect(m_help, &CErrorHelp::settingsChanged, m_project, &CProjectSession::Refresh);
    connect(m_project, &CProjectSession::changed, this, &CMainWindow::OnCurrentChanged);
    connect(m_check, &CCheckControl::incomplete, m_errorList, &CErrorList::SetIncomplete);
    connect(m_project, &CProjectSession::closed, this, [this] { m_errorList->SetIncomplete(false); });
    connect(m_project, &CProjectSession::closed, m_search, &CSearchDock::Clear);
    connect(m_menus, &CWindowMenus::quickOpenRequested, this,
            [this] { m_quickOpen->Open(m_application->Project().GetFolder()); });
    connect(m_quickOpen, &CQuickOpen::chosen, this, [this](const std::wstring& file) {
        if (m_area->Open(file))
            m_area->GetCurrentEditor()->setFocus();
    });
    connect(m_menus, &CWindowMenus::settingsRequested, this, &CMainWindow::EditSettings);
}

void CMainWindow::FollowProjectData()
{
    m_application->Project().GetDataErrorSignal().connect([this](const std::wstring& reason) {
        m_area->GetMessageStrip().Show(
            Tr("The project's errors could not be kept: %1").arg(QString::fromStdWString(reason)));
        // For when the window is about to close.
        std::fprintf(stderr, "code-analyzer-workbench: the project's errors could not be kept: %s\n",
                     Host::Printable(reason).c_str());
        m_stays = true;
    });
    m_application->Project().GetDataReleasedSignal().connect([this] {
        if (m_leaving && !m_application->Project().IsDataHeld())
            m_stays ? BackAgain() : static_cast<void>(close());
    });
}

void CMainWindow::FollowUnsaved()
{
    connect(m_journal.get(), &CJournal::failed, this, [this](const QString& reason) {
        m_area->GetMessageStrip().Show(
            Tr("Unsaved changes cannot be noted on disk; a fault would lose them: %1").arg(reason));
    });
}

CMainWindow::~CMainWindow()
{
    m_project->Cancel();
    m_area->DiscardAll();
    m_journal.reset();
    m_application->Project().Close();
    UnloadValidator();
    m_application->Project().DeliverDataNotices();
    delete m_area; // its holders' factory and signals point into the application
    m_application.reset();
    Host::SetFaultSink(nullptr);
}

void CMainWindow::LoadValidator()
{
    try {
        m_plugin = std::make_unique<Host::CPlugin>(*m_application);
    } catch (const Base::CWorkError& fault) {
        m_area->GetMessageStrip().Show(QString::fromStdWString(fault.GetMessage()));
        return;
    }
    m_frame.AddBars();
    m_errors = std::make_unique<CErrorWatch>(m_plugin->Errors(), m_plugin->ErrorsManager());
    m_errors->SetTextSource([this](const std::wstring& file) -> std::optional<std::wstring> {
        // Asked for many files; to find one by all its spellings would take too long.
        for (Host::CDocument* document : m_application->Documents().GetDocuments())
            if (document->GetPath() == file)
                return document->GetBuffer()->GetText(L"\n");
        return {};
    });
    m_errors->SetEditSource([this](const std::wstring& file) {
        CCodeEditor* editor = m_area->FindEditor(file);
        return editor ? &editor->GetEdits() : nullptr;
    });
    ShowValidator();
    GiveCustomNames(m_preferences.GetChoices());
    m_plugin->ProjectCheck().SetComplete(m_preferences.GetChoices().checksMarkup);
    m_check->SetPlugin(m_plugin.get(), m_errors.get());
    m_help->SetPlugin(m_plugin.get(), m_errors.get());
    m_project->SetPlugin(m_plugin.get(), m_errors.get());
    connect(m_errors.get(), &CErrorWatch::changed, this, &CMainWindow::OnErrorsChanged);
    m_area->SetErrorWatch(m_errors.get());
    m_tree->SetErrorWatch(m_errors.get());
    m_search->SetErrorWatch(m_errors.get());
    OnErrorsChanged();
}

void CMainWindow::ShowValidator()
{
    m_errorList->SetWatch(m_errors.get());
    if (m_preferences.GetColumnWidths().empty())
        m_errorList->ArrangeColumns();
    ShowPluginMenu(m_frame.FillMenu(), *menuBar(), m_menus->GetHelpAction());
    for (QDockWidget* dock : m_frame.GetDocks()) {
        m_menus->GetViewMenu().addAction(dock->toggleViewAction());
        tabifyDockWidget(m_search, dock);
    }
    OnCurrentChanged();
}

void CMainWindow::UnloadValidator()
{
    m_area->SetErrorWatch(nullptr);
    m_tree->SetErrorWatch(nullptr);
    m_search->SetErrorWatch(nullptr);
    m_errorList->SetWatch(nullptr);
    m_help->SetPlugin(nullptr, nullptr);
    m_project->SetPlugin(nullptr, nullptr);
    m_check->SetPlugin(nullptr, nullptr);
    m_errors.reset();
    m_plugin.reset();
}

void CMainWindow::RestartValidator()
{
    // The validator's own names may only change while nothing is checked; between two of its lives nothing
    // is.
    const QByteArray layout = saveState(LayoutVersion);
    ProjectManager::IProjectManager& project = *m_application->Project().GetProjectManager();
    const std::wstring folder = m_application->Project().GetFolder();
    const std::vector<std::wstring> files = project.GetFiles();
    const bool hadProject = project.IsOpened();
    m_application->Documents().Suspend();
    m_application->Project().Close();
    UnloadValidator();
    LoadValidator();
    restoreState(layout, LayoutVersion);
    if (hadProject)
        m_application->OpenProject(folder, files);
    m_application->Documents().Resume();
}

void CMainWindow::GiveCustomNames(const SChoices& choices)
{
    const auto wide = [](const QStringList& names) {
        std::vector<std::wstring> wideNames;
        for (const QString& name : names)
            wideNames.push_back(name.toStdWString());
        return wideNames;
    };
    m_plugin->CustomNames().AddTags(wide(choices.customTags));
    m_plugin->CustomNames().AddAttributes(wide(choices.customAttributes));
}

void CMainWindow::SetPrompts(IPrompts& prompts)
{
    m_files.SetPrompts(prompts);
    m_area->SetPrompts(prompts);
}

void CMainWindow::OpenPath(const std::wstring& path)
{
    std::error_code error;
    if (std::filesystem::is_directory(Host::PathToBytes(path), error))
        OpenProject(path);
    else
        m_area->Open(path);
}

void CMainWindow::OpenProject(const std::wstring& folder)
{
    m_project->Open(folder);
}

bool CMainWindow::CloseProject()
{
    return m_project->Close();
}

void CMainWindow::Begin(const std::vector<std::wstring>& paths)
{
    m_recovery.Look();
    for (const std::wstring& path : paths)
        OpenPath(path);
    if (paths.empty())
        m_project->Restore(
            m_recovery.GetSession(m_preferences.GetSessionTime()).value_or(m_preferences.GetSession()));
    m_recovery.Bring();
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

void CMainWindow::EditSettings()
{
    SChoices choices = m_preferences.GetChoices();
    choices.columnWidths = m_errorList->GetColumnWidths();
    CSettingsDialog dialog(choices, GetLanguages(m_preferences.GetTranslationFolder()), this);
    if (dialog.exec() == QDialog::Accepted)
        ApplyChoices(dialog.GetChoices());
}

void CMainWindow::ApplyChoices(const SChoices& choices)
{
    const SChoices old = m_preferences.GetChoices();
    m_preferences.SetChoices(choices);
    QApplication::setPalette(MakePalette(choices.appearance, SystemPalette()));
    m_area->ApplyChoices(choices);
    m_errorList->SetColumnWidths(choices.columnWidths);
    m_project->TakeNames();
    if (m_plugin && (choices.checksMarkup != old.checksMarkup || choices.presets != old.presets)) {
        m_plugin->ProjectCheck().SetComplete(choices.checksMarkup);
        m_project->Refresh();
    }
    if (m_plugin &&
        (choices.customTags != old.customTags || choices.customAttributes != old.customAttributes ||
         choices.grammar != old.grammar || choices.markup != old.markup))
        RestartValidator();
}

void CMainWindow::ShowMessage(const QString& text)
{
    m_status->ShowMessage(text);
}

void CMainWindow::OnCurrentChanged()
{
    Host::CDocument* document = m_area->GetCurrent();
    const std::wstring& folder = m_application->Project().GetFolder();
    m_menus->SetHasDocument(document != nullptr);
    m_menus->SetHasProject(!folder.empty());
    m_errorList->FollowCurrent();
    QString title = QStringLiteral("Code Analyzer");
    if (!folder.empty())
        title.prepend(Host::PathToQt(Host::FileName(folder)) + QStringLiteral(" - "));
    if (document) {
        title.prepend(Host::PathToQt(Host::FileName(document->GetPath())) + QStringLiteral("[*] - "));
        const auto& format = document->GetFormat();
        QString encoding = EncodingName(format);
        if (!format.valid)
            encoding += QStringLiteral(" (%1)").arg(Tr("not valid"));
        if (m_area->GetCurrentEditor()->IsPlain())
            encoding += QStringLiteral(" (%1)").arg(Tr("large file: plain text"));
        QString lineEnds = LineEndName(format.lineEnd);
        if (format.mixedLineEnds)
            lineEnds += QStringLiteral(" (%1)").arg(Tr("mixed"));
        m_status->ShowFormat(encoding, lineEnds);
        m_tree->ShowFile(Host::PathToQt(document->GetPath()));
    } else {
        m_status->ShowFormat({}, {});
    }
    setWindowTitle(title);
    setWindowModified(document && document->IsModified());
    OnCaretMoved();
}

void CMainWindow::OnCaretMoved()
{
    const CCodeEditor* editor = m_area->GetCurrentEditor();
    const SyntaxParser::CIterator caret =
        editor && m_area->GetCurrent() ? editor->GetCaretPosition() : SyntaxParser::CIterator{-1, -1};
    m_status->ShowCaret(caret.y, caret.x);
    m_errorList->FollowCaret(caret);
}

void CMainWindow::OnErrorsChanged()
{
    const CErrorWatch::SCounts total = m_errors->GetTotal();
    m_status->ShowCounts(total.errors, total.warnings, m_errors->HasChecked());
    m_menus->SetHasErrors(total.errors + total.warnings > 0);
}

void CMainWindow::SaveLayout()
{
    m_preferences.SetLayout("geometry", saveGeometry());
    m_preferences.SetLayout("docks", saveState(LayoutVersion));
    if (const std::vector<int> widths = m_errorList->GetColumnWidths(); widths.size() == 3)
        m_preferences.SetColumnWidths(widths);
    m_settings.GetStore().sync();
}

void CMainWindow::RestoreLayout()
{
    restoreGeometry(m_preferences.GetLayout("geometry"));
    restoreState(m_preferences.GetLayout("docks"), LayoutVersion);
}

void CMainWindow::closeEvent(QCloseEvent* event)
{
    ProjectManager::CProjectManager& project = m_application->Project();
    if (!m_leaving) {
        const SSession session = m_project->GetOpen();
        // Who logs off is not to be held up by questions.
        const bool keeps = (m_preferences.GetChoices().hotExit || qApp->isSavingSession()) &&
                           !m_area->GetUnsaved().empty() && m_journal->Keep(session);
        if (keeps) {
            m_area->DiscardAll();
        } else if (!m_area->CloseAll()) {
            event->ignore();
            return;
        }
        if (!m_cameBack || !session.project.isEmpty() || !session.files.empty())
            m_preferences.SetSession(session);
        SaveLayout();
        m_journal->Stop(); // what it knew is in the settings now
        m_project->Cancel();
        m_stays = false;
        project.Close();
    }
    // A session that ends does not wait for who does not close at once.
    while (project.IsDataHeld() && qApp->isSavingSession())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    m_leaving = project.IsDataHeld();
    event->setAccepted(!m_leaving);
    if (m_leaving)
        hide(); // until the project's errors are on disk
}

void CMainWindow::BackAgain()
{
    m_leaving = false;
    m_cameBack = true;
    m_project->ShowNone();
    show();
    m_journal->Resume();
    m_recovery.Look(); // for what has just been kept
    m_recovery.Bring();
}

void CMainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    // Not every file system tells of changes; the user comes back from where they were made.
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
        m_area->CheckDisk();
        m_project->CheckSettings();
    }
}

} // namespace Kesh::Workbench
