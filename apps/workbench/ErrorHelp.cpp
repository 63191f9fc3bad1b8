#include "ErrorHelp.h"

#include "Application/Application.h"
#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Application/PluginLoader.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "Configuration/Configuration.h"
#include "Configuration/Edit.h"
#include "DocumentArea.h"
#include "ErrorWatch.h"
#include "Findings/Describe.h"
#include "Findings/NameErrors.h"
#include "ProjectManager/ProjectManager.h"
#include "SyntaxParser/ParserComponent.h"
#include "SyntaxParser/SPDocument.h"
#include "Texts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextBrowser>
#include <QVBoxLayout>
#include <algorithm>

namespace Kesh::Workbench {

using QuickFixes::SQuickFix;

namespace {

/// In longer texts the details would take more time than a hover has.
constexpr std::size_t MaxExplainedLength = 400000;

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
    std::vector<CodeAnalyzer::SCAError> errors = m_watch->GetErrors(path);
    std::erase_if(errors, [&](const CodeAnalyzer::SCAError& error) { return !pick(error.pos); });
    // What the window has found itself needs no description, and its comment must not be taken for idle.
    std::vector<Findings::SFinding> findings;
    for (const CodeAnalyzer::SCAError& error : errors)
        if (error.code == Findings::UnusedIgnore) {
            Findings::SFinding& own = findings.emplace_back();
            own.error = error;
            const QString message = m_watch->GetMessage(path, error);
            own.message = message.section(':', 0, 0).toStdWString();
            own.detail = message.mid(static_cast<int>(own.message.size())).toStdWString();
        }
    std::erase_if(errors, [](const auto& error) { return error.code == Findings::UnusedIgnore; });
    if (errors.empty())
        return findings;
    const bool isShort = text.size() < MaxExplainedLength;
    Findings::CDescriber describer({[this](const CodeAnalyzer::SCAError& error) {
                                        return m_plugin->Errors().GetErrorDescription(error);
                                    },
                                    *m_application.Parser().GetCompletionData(),
                                    isShort ? m_plugin->ErrorDetails() : nullptr, nullptr});
    const auto described = describer.Describe(
        {path, path, SyntaxParser::FactoryForPath(path), [&text] { return text; }}, errors);
    for (const Findings::SFinding& finding : described.findings)
        if (finding.error.code != Findings::UnusedIgnore)
            findings.push_back(finding);
    return findings;
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
        QString text = QString::fromStdWString(finding.message);
        if (Findings::IsNameError(finding.error.code)) {
            text += QStringLiteral(" '%1'").arg(QString::fromStdWString(Findings::NameOf(finding)));
            if (!finding.nearest.empty())
                text += Tr(", did you mean '%1'?").arg(QString::fromStdWString(finding.nearest));
        } else {
            text += QString::fromStdWString(finding.detail);
        }
        const int code = finding.error.code;
        const auto isAlike = [&](const CErrorTip::SLine& line) {
            return line.text == text && line.code == code;
        };
        if (std::none_of(lines.begin(), lines.end(), isAlike))
            lines.push_back({text, code, !GetPage(code).isEmpty()});
    }
    return lines;
}

std::vector<SQuickFix> CErrorHelp::GetFixes() const
{
    Host::CDocument* document = m_area.GetCurrent();
    const CCodeEditor* editor = m_area.GetCurrentEditor();
    if (!document || !editor || !m_plugin)
        return {};
    const SyntaxParser::CIterator caret = editor->GetCaretPosition();
    const std::wstring text = editor->GetContent();
    const Findings::CTextLines lines(text);
    const QuickFixes::SFileText file{text, lines, SyntaxParser::FactoryForPath(document->GetPath())};
    // Those of the line, if there are none just here.
    const auto errors = m_watch->GetErrors(document->GetPath());
    const bool isAtError =
        std::any_of(errors.begin(), errors.end(),
                    [&](const CodeAnalyzer::SCAError& error) { return Touches(error.pos, caret); });
    const auto isMeant = [&](const SyntaxParser::SScheme& span) {
        return isAtError ? Touches(span, caret) : span.start.y == caret.y;
    };
    std::vector<SQuickFix> fixes;
    for (const Findings::SFinding& finding : FindingsOf(isMeant, text))
        for (SQuickFix& fix : QuickFixes::FixesFor(finding, file))
            // What two errors have in common is offered once, for the first of them.
            if (std::none_of(fixes.begin(), fixes.end(),
                             [&](const SQuickFix& known) { return known.title == fix.title; }))
                fixes.push_back(std::move(fix));
    return fixes;
}

QString CErrorHelp::TitleOf(const SQuickFix& fix)
{
    // A text of the project, or a number, stands in an otherwise fixed title.
    static const QRegularExpression variable(QStringLiteral("(?<=').*?(?='( |$))|\\d+"),
                                             QRegularExpression::DotMatchesEverythingOption);
    const QString title = QString::fromStdWString(fix.title);
    const QRegularExpressionMatch match = variable.match(title);
    if (!match.hasMatch())
        return Tr(title.toUtf8().constData());
    const QString key = title.left(match.capturedStart()) + "%1" + title.mid(match.capturedEnd());
    return Tr(key.toUtf8().constData()).replace(QStringLiteral("%1"), match.captured());
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
        menu.addAction(Tr("Nothing is known to mend this."))->setEnabled(false);
    else
        menu.setActiveAction(menu.actions().first());
    menu.exec(editor->viewport()->mapToGlobal(editor->GetCaretPoint()));
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

QString CErrorHelp::GetPage(int code)
{
    QFile file(QStringLiteral(":/documents/errors.md"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    const int begin = text.indexOf(QStringLiteral("\n## %1\n").arg(code));
    if (begin < 0)
        return {};
    const int end = text.indexOf(QStringLiteral("\n## "), begin + 1);
    return text.mid(begin, end < 0 ? -1 : end - begin).trimmed();
}

void CErrorHelp::Explain(int code, QWidget* parent)
{
    const QString page = GetPage(code);
    if (page.isEmpty())
        return;
    auto* dialog = new QDialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName(QStringLiteral("explanation"));
    dialog->setWindowTitle(Tr("Error %1").arg(code));
    auto* browser = new QTextBrowser;
    browser->setAccessibleName(dialog->windowTitle());
    browser->setMarkdown(page);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->button(QDialogButtonBox::Close)->setText(Tr("Close"));
    connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(browser);
    layout->addWidget(buttons);
    dialog->resize(dialog->fontMetrics().averageCharWidth() * 80, dialog->fontMetrics().height() * 24);
    dialog->show();
}

} // namespace Kesh::Workbench
