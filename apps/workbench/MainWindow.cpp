#include "MainWindow.h"

#include "Application/ParserComponent.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "EditorTheme.h"
#include "ErrorHelp.h"
#include "ErrorPanel.h"
#include "ErrorWatch.h"
#include "FileTree.h"
#include "Files/Fault.h"
#include "Files/FilePath.h"
#include "Files/Printable.h"
#include "FindBar.h"
#include "FormatChoice.h"
#include "Languages.h"
#include "MenuBuilder.h"
#include "MessageStrip.h"
#include "ProjectManager/ProjectManager.h"
#include "SearchPanel.h"
#include "SettingsDialog.h"
#include "StatusLine.h"
#include "Texts.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QStatusBar>
#include <filesystem>

namespace Kesh::Workbench {

namespace {

constexpr int LayoutVersion = 1;
constexpr int ProgressInterval = 100; // ms

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
      m_prompts(&m_dialogs),
      m_frame(*this),
      m_application(
          std::make_unique<Host::CApplication>(Host::CApplication::SParts{m_frame, settings, translations})),
      m_area(new CDocumentArea(*m_application, m_dialogs)),
      m_tree(new CFileTree),
      m_treeDock(new QDockWidget(Tr("Project"), this)),
      m_status(new CStatusLine(*statusBar())),
      m_format(new CFormatChoice(*m_area)),
      m_help(new CErrorHelp(*m_application, *m_area))
{
    s_window = this;
    Host::SetFaultSink(&ShowFault);
    setObjectName(QStringLiteral("workbench"));
    setCentralWidget(m_area);
    setDockNestingEnabled(true);
    m_treeDock->setObjectName(QStringLiteral("projectTree"));
    m_treeDock->setWidget(m_tree);
    addDockWidget(Qt::LeftDockWidgetArea, m_treeDock);
    resizeDocks({m_treeDock}, {fontMetrics().averageCharWidth() * 36}, Qt::Horizontal);
    resize(QSize(1200, 800).boundedTo(screen()->availableSize() * 0.95));
    AddSearchPanel();
    m_status->setParent(this);
    m_format->setParent(this);
    m_status->SetFormatMenus(m_format->GetEncodingMenu(), m_format->GetLineEndMenu());
    m_help->setParent(this);
    setAcceptDrops(true);
    MakeActions();

    connect(m_tree, &CFileTree::fileActivated, this,
            [this](const QString& path) { m_area->Open(Host::PathFromQt(path)); });
    connect(m_area, &CDocumentArea::currentChanged, this, &CMainWindow::OnCurrentChanged);
    connect(m_area, &CDocumentArea::caretMoved, this, &CMainWindow::OnCaretMoved);
    connect(m_area, &CDocumentArea::linkActivated, this,
            [this](const QString& link) { OpenProject(Host::PathFromQt(link)); });
    connect(&m_frame, &CMainFrame::progressTextChanged, this, [this](const QString& text) {
        m_status->ShowProgress(text.isEmpty() ? text : Tr(text.toUtf8().constData()));
        m_status->OfferStop(!text.isEmpty());
        if (text.isEmpty() && m_errors && !m_stopped)
            m_errors->SetChecked(true);
        text.isEmpty() ? m_progressTick.stop() : m_progressTick.start(ProgressInterval);
    });
    connect(m_status, &CStatusLine::stopRequested, this, [this] {
        m_stopped = true;
        if (m_plugin)
            m_plugin->ProjectCheck().Stop();
    });
    connect(&m_progressTick, &QTimer::timeout, this, &CMainWindow::OnProgressTick);
    connect(m_area, &CDocumentArea::urlsDropped, this, &CMainWindow::OpenUrls);
    connect(m_help, &CErrorHelp::failed, this,
            [this](const QString& text) { m_area->GetMessageStrip().Show(text); });
    connect(m_help, &CErrorHelp::settingsChanged, this, &CMainWindow::RefreshProject);
    connect(&m_opener, &CProjectOpener::listed, this, &CMainWindow::OnListed);
    m_area->SetTipSource([this](const SyntaxParser::CIterator& pos, bool wholeLine) {
        return m_help->GetTips(pos, wholeLine);
    });
    connect(m_area, &CDocumentArea::explainRequested, this,
            [this](int code) { m_help->Explain(code, this); });
    connect(m_area, &CDocumentArea::mendRequested, m_help, &CErrorHelp::OfferFixes);
    m_application->Parser().SetFileHook([this](const std::wstring&) { ++m_filesAsked; });
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
    m_application->Threads().GetStartErrorSignal().connect([this] {
        m_area->GetMessageStrip().Show(
            Tr("The check could not be started: the system has no thread to give. Try again later."));
    });

    const SChoices choices = m_preferences.GetChoices();
    QApplication::setPalette(MakePalette(choices.appearance, SystemPalette()));
    m_area->ApplyChoices(choices);
    LoadValidator();
    RestoreLayout();
    ShowWelcome();
    OnCurrentChanged();
}

CMainWindow::~CMainWindow()
{
    m_opener.Cancel();
    m_area->DiscardAll();
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
    ArrangeErrorList();
    ShowPluginMenu(m_frame.FillMenu(), *menuBar(), m_helpMenuAction);
    for (QDockWidget* dock : m_frame.GetDocks()) {
        m_viewMenu->addAction(dock->toggleViewAction());
        tabifyDockWidget(m_searchDock, dock);
    }
    GiveCustomNames(m_preferences.GetChoices());
    m_plugin->ProjectCheck().SetComplete(m_preferences.GetChoices().checksMarkup);
    m_plugin->ProjectCheck().SetGradual(true);
    m_plugin->ProjectCheck().SetThorough(true);
    m_plugin->Errors().GetFailedSignal().connect(
        [this](const std::wstring& file, const std::wstring& reason) {
            m_area->GetMessageStrip().Show(
                Tr("The check of %1 failed: %2")
                    .arg(QString::fromStdWString(file), QString::fromStdWString(reason)));
        });
    m_help->SetPlugin(m_plugin.get(), m_errors.get());
    UseRules(m_rules, m_application->Project().GetFolder());
    connect(m_errors.get(), &CErrorWatch::changed, this, &CMainWindow::OnErrorsChanged);
    m_area->SetErrorWatch(m_errors.get());
    m_tree->SetErrorWatch(m_errors.get());
    OnErrorsChanged();
}

void CMainWindow::UnloadValidator()
{
    m_area->SetErrorWatch(nullptr);
    m_tree->SetErrorWatch(nullptr);
    delete m_panel; // lets the list go, which is the validator's
    m_help->SetPlugin(nullptr, nullptr);
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
    m_prompts = &prompts;
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
    if (!CloseProject())
        return;
    m_status->ShowProgress(Tr("Looking for files..."));
    m_opener.Start(Host::AbsolutePath(folder));
}

void CMainWindow::OnListed(const SProjectListing& listing)
{
    const std::wstring& folder = listing.folder;
    m_status->ShowProgress({});
    const QString shown = Host::PathToQt(folder);
    if (!listing.problem.isEmpty()) {
        m_area->GetMessageStrip().Show(shown + QStringLiteral(": ") + listing.problem);
        return;
    }
    if (!listing.rulesProblem.isEmpty())
        m_area->GetMessageStrip().Show(listing.rulesProblem);
    m_filesAsked = 0;
    m_stopped = false;
    const bool isOpen = m_application->Project().GetFolder() == folder;
    if (m_errors && !isOpen)
        m_errors->SetChecked(false);
    UseRules(listing.rules, folder);
    if (isOpen) {
        m_application->ReopenProject(listing.files);
    } else {
        m_application->OpenProject(folder, listing.files);
        m_tree->SetFolder(shown);
        m_preferences.AddRecentProject(shown);
    }
    ShowWelcome();
    OnCurrentChanged();
}

bool CMainWindow::CloseProject()
{
    m_opener.Cancel();
    if (!m_application->Project().GetProjectManager()->IsOpened())
        return true;
    // While the project is open the errors of its closed files stay, to be kept with it.
    if (!m_area->CloseAll())
        return false;
    m_application->Project().Close();
    ShowNoProject();
    return true;
}

void CMainWindow::ShowNoProject()
{
    UseRules(Findings::CProjectRules::None(), {});
    if (m_errors)
        m_errors->SetChecked(false);
    m_search->Clear();
    m_tree->SetFolder({});
    ShowWelcome();
    OnCurrentChanged();
}

void CMainWindow::RefreshProject()
{
    if (const std::wstring& folder = m_application->Project().GetFolder(); !folder.empty())
        m_opener.Start(folder);
}

void CMainWindow::NewFile()
{
    const QString name = m_prompts->AskSaveName(FolderToStartFrom() + QStringLiteral("/"));
    if (name.isEmpty())
        return;
    const std::wstring path = Host::AbsolutePath(Host::PathFromQt(name));
    try {
        if (Host::StampOf(path).size < 0) {
            if (Host::LinkTarget(path) != path)
                throw Base::CWorkError(L"is a link that leads nowhere", __LINE__,
                                       "apps/workbench/MainWindow");
            Host::WriteFileBytes(path, "");
        }
        m_area->Open(path);
    } catch (const Base::CWorkError& fault) {
        m_area->GetMessageStrip().Show(name + QStringLiteral(": ") +
                                       QString::fromStdWString(fault.GetMessage()));
    }
}

void CMainWindow::ChooseFile()
{
    if (const QString name = m_prompts->AskOpenFile(FolderToStartFrom()); !name.isEmpty())
        m_area->Open(Host::PathFromQt(name));
}

void CMainWindow::ChooseFolder()
{
    if (const QString name = m_prompts->AskFolder(FolderToStartFrom()); !name.isEmpty())
        OpenProject(Host::PathFromQt(name));
}

QString CMainWindow::FolderToStartFrom() const
{
    if (Host::CDocument* document = m_area->GetCurrent())
        return QFileInfo(Host::PathToQt(document->GetPath())).path();
    if (const std::wstring& folder = m_application->Project().GetFolder(); !folder.empty())
        return Host::PathToQt(folder);
    return QDir::homePath();
}

void CMainWindow::GoToLine()
{
    CCodeEditor* editor = m_area->GetCurrentEditor();
    if (!editor)
        return;
    const auto line = static_cast<int>(editor->GetCaretPosition().y);
    if (const int wanted = m_prompts->AskLine(line + 1, editor->lines())) {
        editor->SetCaretPosition({0, wanted - 1});
        editor->CenterCaret();
        editor->setFocus();
    }
}

void CMainWindow::RunCheck(const char* command)
{
    m_filesAsked = 0;
    m_stopped = false;
    if (m_plugin)
        Host::Guard(L"check", [&] { m_plugin->RunCommand(command); });
}

void CMainWindow::EditSettings()
{
    SChoices choices = m_preferences.GetChoices();
    choices.columnWidths = GetErrorColumnWidths();
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
    SetErrorColumnWidths(choices.columnWidths);
    if (m_plugin && choices.checksMarkup != old.checksMarkup) {
        m_plugin->ProjectCheck().SetComplete(choices.checksMarkup);
        RefreshProject();
    }
    if (m_plugin && (choices.customTags != old.customTags ||
                     choices.customAttributes != old.customAttributes || choices.grammar != old.grammar))
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
    for (QAction* action : m_documentActions)
        action->setEnabled(document != nullptr);
    for (QAction* action : m_projectActions)
        action->setEnabled(!folder.empty());
    if (m_panel) {
        std::set<std::wstring> open;
        for (Host::CDocument* each : m_application->Documents().GetDocuments())
            open.insert({each->GetPath(), each->GetResolvedPath()});
        m_panel->SetFolder(Host::PathToQt(folder));
        m_panel->SetOpenFiles(std::move(open));
    }
    QString title = QStringLiteral("Code Analyzer");
    if (!folder.empty())
        title.prepend(Host::PathToQt(Host::FileName(folder)) + QStringLiteral(" - "));
    if (document) {
        title.prepend(Host::PathToQt(Host::FileName(document->GetPath())) + QStringLiteral("[*] - "));
        const auto& format = document->GetFormat();
        QString encoding = EncodingName(format);
        if (!format.valid)
            encoding += QStringLiteral(" (%1)").arg(Tr("not valid"));
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
    if (m_panel)
        m_panel->SetCaret(caret.y < 0 ? std::wstring() : m_area->GetCurrent()->GetPath(), caret);
}

void CMainWindow::OnProgressTick()
{
    const std::size_t total = m_application->Project().GetProjectManager()->GetFiles().size();
    m_status->SetProgress(std::min(m_filesAsked.load(), total), total);
}

void CMainWindow::SaveLayout()
{
    m_preferences.SetLayout("geometry", saveGeometry());
    m_preferences.SetLayout("docks", saveState(LayoutVersion));
    if (const std::vector<int> widths = GetErrorColumnWidths(); widths.size() == 3)
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
        const SSession session = GetSession();
        if (!m_area->CloseAll()) {
            event->ignore();
            return;
        }
        if (!m_cameBack || !session.project.isEmpty() || !session.files.empty())
            m_preferences.SetSession(session);
        SaveLayout();
        m_opener.Cancel();
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
    ShowNoProject();
    show();
}

void CMainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    // Not every file system tells of changes; the user comes back from where they were made.
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        m_area->CheckDisk();
}

} // namespace Kesh::Workbench
