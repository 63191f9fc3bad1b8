#include "ErrorHelp.h"

#include "Application/Application.h"
#include "Application/ParserComponent.h"
#include "Application/PluginLoader.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "Configuration/Configuration.h"
#include "Configuration/Edit.h"
#include "DialogSize.h"
#include "DocumentArea.h"
#include "ErrorWatch.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Findings/Describe.h"
#include "Findings/ErrorPage.h"
#include "Findings/MendText.h"
#include "ProjectManager/ProjectManager.h"
#include "SyntaxParser/SPDocument.h"
#include "Texts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QMenu>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

namespace Kesh::Workbench {

using Findings::SQuickFix;

namespace {

bool Touches(const SyntaxParser::SScheme& span, const SyntaxParser::CIterator& pos)
{
    return span.start <= pos && pos <= span.end;
}

} // namespace

CErrorHelp::CErrorHelp(Host::CApplication& application, CDocumentArea& area)
    : m_application(application), m_area(area)
{
}

void CErrorHelp::SetPlugin(Host::CPlugin* plugin, CErrorWatch* watch)
{
    m_plugin = plugin;
    m_watch = watch;
}

std::vector<Findings::SFinding> CErrorHelp::FindingsOf(const TPick& pick, const std::wstring& text) const
{
    const std::wstring path = m_area.GetCurrent()->GetPath();
    std::vector<CodeAnalyzer::SDiagnostic> diagnostics = m_watch->GetDiagnostics(path);
    std::erase_if(diagnostics,
                  [&](const CodeAnalyzer::SDiagnostic& diagnostic) { return !pick(diagnostic.error.pos); });
    // What is not wanted has been left out already: no comment need be looked for.
    return Findings::MakeFindings(std::move(diagnostics), text, m_plugin->Errors().GetTexts());
}

std::vector<CErrorTip::SLine> CErrorHelp::GetTips(const SyntaxParser::CIterator& pos, bool wholeLine) const
{
    const CCodeEditor* editor = m_area.GetCurrentEditor();
    if (!m_area.GetCurrent() || !editor || !m_plugin)
        return {};
    const auto covers = [&](const SyntaxParser::SScheme& span) {
        const auto& [start, end] = span;
        return wholeLine ? start.y == pos.y : start <= pos && (pos < end || pos == start);
    };
    const auto errors = m_watch->GetErrors(m_area.GetCurrent()->GetPath());
    if (std::none_of(errors.begin(), errors.end(), [&](const auto& error) { return covers(error.pos); }))
        return {};
    std::vector<CErrorTip::SLine> lines;
    for (const Findings::SFinding& finding : FindingsOf(covers, editor->GetContent())) {
        const QString text = QString::fromStdWString(finding.message);
        const int code = finding.error.code;
        const auto isAlike = [&](const CErrorTip::SLine& line) {
            return line.text == text && line.code == code;
        };
        if (std::none_of(lines.begin(), lines.end(), isAlike))
            lines.push_back({text, code, !Findings::ErrorPage(code).isEmpty()});
    }
    return lines;
}

std::vector<SQuickFix> CErrorHelp::GetFixes()
{
    Host::CDocument* document = m_area.GetCurrent();
    const CCodeEditor* editor = m_area.GetCurrentEditor();
    if (!document || !editor || !m_plugin)
        return {};
    const SyntaxParser::CIterator caret = editor->GetCaretPosition();
    const std::wstring text = editor->GetContent();
    const Findings::CTextLines lines(text);
    const Findings::SFileText file{text, lines, SyntaxParser::FactoryForPath(document->GetPath())};
    // Those of the line, if there are none just here.
    const auto errors = m_watch->GetErrors(document->GetPath());
    const bool isAtError =
        std::any_of(errors.begin(), errors.end(),
                    [&](const CodeAnalyzer::SCAError& error) { return Touches(error.pos, caret); });
    const auto isMeant = [&](const SyntaxParser::SScheme& span) {
        return isAtError ? Touches(span, caret) : span.start.y == caret.y;
    };
    Findings::CLazyProof proof([this] { return Check(); }, file, document->GetPath());
    std::vector<SQuickFix> fixes;
    for (const Findings::SFinding& finding : FindingsOf(isMeant, text))
        for (SQuickFix& fix : proof.Proved(finding))
            // What two errors have in common is offered once, for the first of them.
            if (std::none_of(fixes.begin(), fixes.end(),
                             [&](const SQuickFix& known) { return known.Title() == fix.Title(); }))
                fixes.push_back(std::move(fix));
    return fixes;
}

QString CErrorHelp::TitleOf(const SQuickFix& fix)
{
    return QString::fromStdWString(fix.Title());
}

void CErrorHelp::AddFixes(QMenu& menu)
{
    for (const SQuickFix& fix : GetFixes())
        menu.addAction(TitleOf(fix).replace('&', QStringLiteral("&&")), this, [this, fix] { Apply(fix); });
}

void CErrorHelp::OfferFixes()
{
    CCodeEditor* editor = m_area.GetCurrentEditor();
    if (!editor)
        return;
    QMenu menu;
    menu.setObjectName(QStringLiteral("fixMenu"));
    AddFixes(menu);
    if (menu.isEmpty())
        menu.addAction(Tr("No fix is known for this."))->setEnabled(false);
    else
        menu.setActiveAction(menu.actions().first());
    menu.exec(editor->viewport()->mapToGlobal(editor->GetCaretPoint()));
}

Findings::CTextCheck* CErrorHelp::Check()
{
    try {
        if (m_check)
            m_check->SetRules(m_watch->GetRules());
        else
            m_check.emplace(Host::CPlugin::Windowed, m_watch->GetRules(), Findings::SWantedChecks{},
                            m_application.GetLangSource());
        return &*m_check;
    } catch (const Base::CWorkError&) {
        return nullptr;
    }
}

void CErrorHelp::FixAll()
{
    Host::CDocument* document = m_area.GetCurrent();
    const CCodeEditor* editor = m_area.GetCurrentEditor();
    Findings::CTextCheck* check = document && editor && m_plugin ? Check() : nullptr;
    if (!check)
        return;
    const std::wstring path = document->GetPath();
    const std::wstring text = editor->GetContent();
    try {
        const Findings::SMended mended =
            Findings::MendText(*check, {path, path, {}, true, true}, SyntaxParser::FactoryForPath(path), text,
                               *m_watch->GetRules()->For(path), Findings::SProofBudget{});
        if (mended.fixed == 0)
            return;
        SQuickFix fix;
        fix.edits = {Findings::EditBetween(text, mended.text, Findings::CTextLines(text))};
        Apply(fix);
    } catch (const Base::CWorkError& fault) {
        emit failed(QString::fromStdWString(fault.GetMessage()));
    }
}

void CErrorHelp::Apply(const SQuickFix& fix)
{
    if (CCodeEditor* editor = m_area.GetCurrentEditor(); editor && !fix.edits.empty()) {
        editor->beginUndoAction();
        // From the end, where an edit does not shift those still to be made.
        for (auto edit = fix.edits.rbegin(); edit != fix.edits.rend(); ++edit)
            editor->ReplaceSpan(edit->span, edit->text);
        editor->endUndoAction();
    } else {
        WriteSettings(fix);
    }
}

void CErrorHelp::WriteSettings(const SQuickFix& fix)
{
    const std::wstring& folder = m_application.Project().GetFolder();
    if (folder.empty()) {
        emit failed(Tr("Only a project can keep this. Open its folder first."));
        return;
    }
    std::wstring file = Configuration::FindConfiguration(folder);
    if (file.empty())
        file = folder + L'/' + Configuration::FileName;
    try {
        Configuration::ChangeSettings(file, [&](const std::string& text) {
            return fix.kind == SQuickFix::EKind::AddOwnName
                       ? Configuration::WithOwnName(text, fix.list, fix.name)
                       : Configuration::WithCodeOff(text, fix.code);
        });
    } catch (const Base::CWorkError& fault) {
        emit failed(Host::PathToQt(file) + QStringLiteral(": ") +
                    QString::fromStdWString(fault.GetMessage()));
        return;
    }
    emit settingsChanged();
}

void CErrorHelp::Explain(int code, QWidget* parent)
{
    const QString page = Findings::ErrorPage(code);
    if (page.isEmpty())
        return;
    auto* dialog = new QDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("explanation"));
    dialog->setWindowTitle(Tr("Error %1").arg(code));
    auto* browser = new QTextBrowser;
    browser->setAccessibleName(dialog->windowTitle());
    browser->setSearchPaths({QStringLiteral(":/documents")}); // where its links lead
    browser->setMarkdown(page);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(Tr("Close"));
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(browser);
    layout->addWidget(buttons);
    ResizeOnScreen(*dialog,
                   {dialog->fontMetrics().averageCharWidth() * 80, dialog->fontMetrics().height() * 24});
    dialog->show();
}

} // namespace Kesh::Workbench
