#include "DocumentArea.h"

#include "Application/Application.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "Comparison.h"
#include "EditorHolder.h"
#include "EditorTheme.h"
#include "ErrorWatch.h"
#include "Files/FilePath.h"
#include "FindBar.h"
#include "FormatChoice.h"
#include "MessageStrip.h"
#include "PlainTip.h"
#include "ProjectManager/ProjectManager.h"
#include "Prompts.h"
#include "Texts.h"

#include <QLabel>
#include <QStackedWidget>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>

namespace Kesh::Workbench {

namespace {

QString Shown(const std::wstring& path)
{
    return Host::PathToQt(path);
}

} // namespace

CDocumentArea::CDocumentArea(Host::CApplication& application, IPrompts& prompts)
    : m_application(application),
      m_prompts(&prompts),
      m_strip(new CMessageStrip),
      m_stack(new QStackedWidget),
      m_welcome(new QLabel),
      m_tabs(new QTabWidget),
      m_findBar(new CFindBar),
      m_disk(application.Documents(), *m_strip, [this](Host::CDocument& document) { Reload(document); })
{
    m_welcome->setAlignment(Qt::AlignCenter);
    m_welcome->setTextFormat(Qt::RichText);
    connect(m_welcome, &QLabel::linkActivated, this, &CDocumentArea::linkActivated);
    m_tabs->setDocumentMode(true);
    m_tabs->setTabsClosable(true);
    m_tabs->setMovable(true);
    m_tabs->setUsesScrollButtons(true);
    m_tabs->setAccessibleName(Tr("Open files"));
    m_stack->addWidget(m_welcome);
    m_stack->addWidget(m_tabs);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_strip);
    layout->addWidget(m_stack, 1);
    layout->addWidget(m_findBar);

    connect(&m_disk, &CDiskWatch::gone, this, &CDocumentArea::edited);
    connect(&m_disk, &CDiskWatch::compareRequested, this, [this](Host::CDocument* document) {
        try {
            ShowComparison(*document, m_choices.fontSize, this);
        } catch (const Base::CWorkError& fault) {
            Report(document->GetPath(), fault.GetMessage());
        }
    });
    connect(m_tabs, &QTabWidget::currentChanged, this, &CDocumentArea::OnTabChanged);
    connect(m_tabs, &QTabWidget::tabCloseRequested, this, [this](int index) {
        if (Host::CDocument* document = DocumentOf(m_tabs->widget(index)))
            Close(*document);
    });
    m_application.Documents().SetHolderFactory(
        [this](Host::CDocument& document) { return MakeHolder(document); });
    m_application.Documents().SetOpenGuard([this](const std::wstring& path) { return Refuse(path); });
    m_application.Documents().GetOpenErrorSignal().connect(
        [this](const std::wstring& path, const std::wstring& reason) { Report(path, reason); });
}

CDocumentArea::~CDocumentArea() = default;

std::unique_ptr<Editor::ITextHolder> CDocumentArea::MakeHolder(Host::CDocument& document)
{
    auto holder = std::make_unique<CEditorHolder>([this](CCodeEditor& editor) {
        m_making = false;
        m_tabs->setCurrentWidget(&editor);
        OnTabChanged();
        UpdateTitle(&editor);
    });
    CCodeEditor* editor = &holder->GetEditor();
    editor->SetLanguageByPath(document.GetPath());
    m_documents[editor] = &document;
    connect(editor, &QObject::destroyed, this, [this, editor] { m_documents.erase(editor); });
    connect(editor, &QsciScintilla::modificationChanged, this, [this, editor] { UpdateTitle(editor); });
    connect(editor, &QsciScintilla::textChanged, this, [this, editor] {
        if (Host::CDocument* changed = DocumentOf(editor))
            emit edited(changed);
    });
    connect(editor, &QsciScintilla::cursorPositionChanged, this, &CDocumentArea::caretMoved);
    connect(editor, &CCodeEditor::visibleLinesChanged, this, [this, editor] { ShowErrors(*editor); });
    connect(editor, &CCodeEditor::urlsDropped, this, &CDocumentArea::urlsDropped);
    editor->setAccessibleName(Shown(Host::FileName(document.GetPath())));
    editor->SetTipSource([this, editor](const SyntaxParser::CIterator& pos, bool wholeLine) {
        return m_tips && DocumentOf(editor) ? m_tips(pos, wholeLine) : std::vector<CErrorTip::SLine>();
    });
    connect(editor, &CCodeEditor::explainRequested, this, &CDocumentArea::explainRequested);
    connect(editor, &CCodeEditor::fixRequested, this, &CDocumentArea::fixRequested);
    connect(editor, &CCodeEditor::menuRequested, this, &CDocumentArea::menuRequested);
    if (m_errors)
        editor->SetErrorIcon(m_errors->GetManager().GetIcon());
    m_making = true; // until the document has its text, nobody may ask it
    m_tabs->addTab(editor, Shown(Host::FileName(document.GetPath())).replace('&', QStringLiteral("&&")));
    m_tabs->setTabToolTip(m_tabs->indexOf(editor), PlainTip(Shown(document.GetPath())));
    ApplyTheme(*editor, m_choices.fontSize);
    m_stack->setCurrentWidget(m_tabs);
    m_disk.Follow(document.GetPath());
    return holder;
}

bool CDocumentArea::OpenAt(const std::wstring& path, const SyntaxParser::CIterator& pos)
{
    const bool isNew = m_application.Documents().Find(path) == nullptr;
    if (!Open(path))
        return false;
    CCodeEditor* editor = GetCurrentEditor();
    editor->SetCaretPosition(pos);
    editor->CenterCaret();
    if (isNew) // it will have its size in a moment
        QTimer::singleShot(0, editor, &CCodeEditor::CenterCaret);
    return true;
}

std::vector<SSession::SFile> CDocumentArea::GetOpenFiles() const
{
    std::vector<SSession::SFile> files;
    for (int index = 0; index < m_tabs->count(); ++index) {
        const auto* editor = qobject_cast<CCodeEditor*>(m_tabs->widget(index));
        if (Host::CDocument* document = DocumentOf(editor)) {
            const SyntaxParser::CIterator caret = editor->GetCaretPosition();
            files.push_back({Shown(document->GetPath()), static_cast<int>(caret.y), static_cast<int>(caret.x),
                             editor->contractedFolds()});
        }
    }
    return files;
}

void CDocumentArea::RestoreFiles(const std::vector<SSession::SFile>& files, int current)
{
    CCodeEditor* front = nullptr;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const SSession::SFile& file = files[i];
        const std::wstring path = Host::PathFromQt(file.path);
        if (Host::StampOf(path).size < 0 || !OpenAt(path, {file.column, file.line}))
            continue;
        GetCurrentEditor()->SetFolds(file.folds);
        if (static_cast<int>(i) == current)
            front = GetCurrentEditor();
    }
    if (front)
        m_tabs->setCurrentWidget(front);
}

bool CDocumentArea::Open(const std::wstring& path)
{
    const bool isNew = m_application.Documents().Find(path) == nullptr;
    if (!m_application.Documents().Open(path, 0))
        return false;
    if (Host::CDocument* document = GetCurrent(); document && isNew)
        TellOfLineEnds(*document);
    return true;
}

Host::CDocument* CDocumentArea::DocumentOf(const QWidget* editor) const
{
    const auto found = m_documents.find(editor);
    return found == m_documents.end() || m_making ? nullptr : found->second;
}

Host::CDocument* CDocumentArea::GetCurrent() const
{
    return DocumentOf(m_tabs->currentWidget());
}

CCodeEditor* CDocumentArea::GetCurrentEditor() const
{
    return qobject_cast<CCodeEditor*>(m_tabs->currentWidget());
}

CCodeEditor* CDocumentArea::FindEditor(const std::wstring& path) const
{
    for (const auto& [editor, document] : m_documents)
        if (document->GetPath() == path)
            return qobject_cast<CCodeEditor*>(const_cast<QWidget*>(editor));
    return nullptr;
}

void CDocumentArea::OnTabChanged()
{
    if (m_making)
        return;
    if (m_tabs->count() == 0)
        m_stack->setCurrentWidget(m_welcome);
    m_findBar->SetEditor(GetCurrentEditor());
    m_application.Documents().SetCurrent(GetCurrent());
    if (CCodeEditor* editor = GetCurrentEditor()) {
        ShowErrors(*editor);
        ColorTab(*editor);
    }
    emit currentChanged();
}

void CDocumentArea::UpdateTitle(const CCodeEditor* editor)
{
    Host::CDocument* document = DocumentOf(editor);
    if (!document)
        return;
    const int index = m_tabs->indexOf(const_cast<CCodeEditor*>(editor));
    QString title = Shown(Host::FileName(document->GetPath())).replace('&', QStringLiteral("&&"));
    if (document->IsModified())
        title += QStringLiteral(" *");
    if (!document->IsGone() && !Host::IsWritable(document->GetPath()))
        title += QStringLiteral(" (%1)").arg(Tr("read-only"));
    m_tabs->setTabText(index, title);
    m_tabs->setTabToolTip(index, PlainTip(Shown(document->GetPath())));
    emit edited(document);
    emit currentChanged();
}

void CDocumentArea::ShowErrors(CCodeEditor& editor)
{
    Host::CDocument* document = DocumentOf(&editor);
    if (!document || !m_errors)
        return;
    const std::wstring path = document->GetPath();
    const int first = editor.GetFirstVisibleLine();
    const int end = editor.GetEndVisibleLine();
    std::vector<CCodeEditor::SMark> marks;
    for (const CodeAnalyzer::SCAError& error : m_errors->GetErrors(path))
        if (error.pos.start.y < end && error.pos.end.y >= first)
            marks.push_back({error.pos, SeverityOf(error)});
    editor.ShowMarks(first, end, marks);
}

void CDocumentArea::ColorTab(const CCodeEditor& editor)
{
    Host::CDocument* document = DocumentOf(&editor);
    const int index = m_tabs->indexOf(const_cast<CCodeEditor*>(&editor));
    if (!document || index < 0)
        return;
    const ESeverity severity = m_errors ? m_errors->GetSeverity(document->GetPath()) : ESeverity::None;
    m_tabs->tabBar()->setAccessibleTabName(index, WithSeverity(Shown(document->GetPath()), severity));
    m_tabs->tabBar()->setTabTextColor(
        index, severity == ESeverity::None ? QColor() : ColorOf(severity, palette().color(QPalette::Window)));
}

void CDocumentArea::OnErrorsChanged(const std::set<std::wstring>& files)
{
    for (const auto& [editor, document] : m_documents) {
        auto* changed = qobject_cast<CCodeEditor*>(const_cast<QWidget*>(editor));
        if (!changed || files.count(document->GetPath()) == 0)
            continue;
        ColorTab(*changed);
        if (changed->isVisible())
            ShowErrors(*changed);
    }
}

void CDocumentArea::SetErrorWatch(CErrorWatch* watch)
{
    m_errors = watch;
    if (!watch)
        return;
    connect(watch, &CErrorWatch::changed, this, &CDocumentArea::OnErrorsChanged);
    for (int index = 0; index < m_tabs->count(); ++index)
        if (auto* editor = qobject_cast<CCodeEditor*>(m_tabs->widget(index)))
            editor->SetErrorIcon(watch->GetManager().GetIcon());
}

void CDocumentArea::ApplyChoices(const SChoices& choices)
{
    m_choices = choices;
    for (int index = 0; index < m_tabs->count(); ++index)
        if (auto* editor = qobject_cast<CCodeEditor*>(m_tabs->widget(index))) {
            ApplyTheme(*editor, choices.fontSize);
            ColorTab(*editor);
        }
}

bool CDocumentArea::WriteDocument(Host::CDocument& document)
{
    const QString name = Shown(Host::FileName(document.GetPath()));
    if (!CanWrite(document))
        return false;
    if (document.IsStale() && Host::StampOf(document.GetPath()).size >= 0 &&
        !m_prompts->Confirm(Tr("%1 has been changed by another program. Save over it?").arg(name),
                            Tr("&Save")))
        return false;
    bool acceptLoss = false;
    if (!document.IsFaithful()) {
        acceptLoss =
            m_prompts->Confirm(Tr("%1 is not valid %2. Saving replaces each invalid byte by a replacement "
                                  "character.")
                                   .arg(name, EncodingName(document.GetFormat())),
                               Tr("&Save"));
        if (!acceptLoss)
            return false;
    }
    if (!WriteAs(document.GetPath(),
                 [&](const Host::SWriteRules& rules) { document.Save(acceptLoss, rules); }))
        return false;
    if (CCodeEditor* editor = FindEditor(document.GetPath()))
        UpdateTitle(editor);
    return true;
}

bool CDocumentArea::WriteAs(const std::wstring& path,
                            const std::function<void(const Host::SWriteRules&)>& write)
{
    const QString name = Shown(Host::FileName(path));
    const std::wstring& project = m_application.Project().GetFolder();
    if (!project.empty() && Host::LeadsOut(project, path) && m_linksOut.count(path) == 0) {
        if (!m_prompts->Confirm(Tr("%1 is a link out of the project, to %2. Save there?")
                                    .arg(name, Shown(Host::ResolvedPath(Host::LinkTarget(path)))),
                                Tr("&Save")))
            return false;
        m_linksOut.insert(path);
    }
    try {
        write({});
        return true;
    } catch (const Host::CNoCopyBeside& fault) {
        if (!m_prompts->Confirm(
                Tr("%1 can only be written over in place: %2. If that were interrupted, a part "
                   "of the file would be lost.")
                    .arg(name, QString::fromStdWString(fault.GetMessage())),
                Tr("&Save")))
            return false;
    }
    write({true, true});
    return true;
}

bool CDocumentArea::Save(Host::CDocument& document)
{
    try {
        const bool written = WriteDocument(document);
        if (written)
            m_disk.Settle(document.GetPath());
        // A file that was replaced as a whole is another one for the watcher.
        m_disk.Follow(document.GetPath());
        return written;
    } catch (const Base::CWorkError& fault) {
        ReportUnsaved(document.GetPath(), fault.GetMessage());
        return false;
    }
}

bool CDocumentArea::SaveAs(Host::CDocument& document)
{
    const QString name = m_prompts->AskSaveName(Shown(document.GetPath()));
    if (name.isEmpty())
        return false;
    const std::wstring path = Host::AbsolutePath(Host::PathFromQt(name));
    if (path == document.GetPath())
        return Save(document);
    if (m_application.Documents().Find(path)) {
        m_strip->Show(Tr("%1 is open in another tab. Close it first.").arg(name));
        return false;
    }
    if (!CanWrite(document))
        return false;
    try {
        const std::wstring before = document.GetPath();
        if (!WriteAs(path, [&](const Host::SWriteRules& rules) {
                m_application.Documents().SaveAs(document, path, rules);
            }))
            return false;
        m_disk.Leave(before);
        m_disk.Follow(path);
    } catch (const Base::CWorkError& fault) {
        ReportUnsaved(path, fault.GetMessage());
        return false;
    }
    if (CCodeEditor* editor = FindEditor(path)) {
        editor->SetLanguageByPath(path);
        ApplyTheme(*editor, m_choices.fontSize);
        UpdateTitle(editor);
    }
    return true;
}

void CDocumentArea::Reload(Host::CDocument& document)
{
    LoadKeepingPlace(document, [&] { document.Load(); });
}

void CDocumentArea::LoadKeepingPlace(Host::CDocument& document, const std::function<void()>& load)
{
    CCodeEditor* editor = FindEditor(document.GetPath());
    const SyntaxParser::CIterator caret = editor->GetCaretPosition();
    const int firstLine = editor->firstVisibleLine();
    const Host::SFileStamp stamp = Host::StampOf(document.GetPath());
    m_disk.Settle(document.GetPath());
    try {
        load();
    } catch (const Base::CWorkError& fault) {
        document.AcknowledgeDisk(stamp); // told once
        Report(document.GetPath(), fault.GetMessage());
        return;
    }
    editor->SetCaretPosition(caret);
    editor->setFirstVisibleLine(firstLine);
    ShowErrors(*editor);
    UpdateTitle(editor);
}

void CDocumentArea::ShowNextTab(int step)
{
    if (const int count = m_tabs->count())
        m_tabs->setCurrentIndex((m_tabs->currentIndex() + step + count) % count);
}

void CDocumentArea::SetWelcomeText(const QString& html)
{
    m_welcome->setText(html);
}

} // namespace Kesh::Workbench
