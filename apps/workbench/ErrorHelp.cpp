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
#include "Findings/Describe.h"
#include "ProjectManager/ProjectManager.h"
#include "SyntaxParser/ParserComponent.h"
#include "SyntaxParser/SPDocument.h"
#include "Texts.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QMenu>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace Kesh::Workbench {

using QuickFixes::SQuickFix;

namespace {

bool Touches(const SyntaxParser::SScheme& span, const SyntaxParser::CIterator& pos)
{
    return (span.start <= pos && pos <= span.end) || span.start.y == pos.y;
}

} // namespace

CErrorHelp::CErrorHelp(Host::CApplication& application, CDocumentArea& area)
    : m_application(application), m_area(area)
{
}

std::vector<SQuickFix> CErrorHelp::GetFixes() const
{
    Host::CDocument* document = m_area.GetCurrent();
    const CCodeEditor* editor = m_area.GetCurrentEditor();
    if (!document || !editor || !m_plugin)
        return {};
    const std::wstring path = document->GetPath();
    std::vector<CodeAnalyzer::SCAError> errors;
    m_plugin->Errors().GetErrors(path, errors);
    const SyntaxParser::CIterator caret = editor->GetCaretPosition();
    std::erase_if(errors, [&](const CodeAnalyzer::SCAError& error) { return !Touches(error.pos, caret); });
    if (errors.empty())
        return {};
    const std::wstring text = editor->GetContent();
    Findings::CDescriber describer({[this](const CodeAnalyzer::SCAError& error) {
                                        return m_plugin->Errors().GetErrorDescription(error);
                                    },
                                    *m_application.Parser().GetCompletionData(), m_plugin->ErrorDetails(),
                                    nullptr});
    const std::wstring factory = SyntaxParser::FactoryForPath(path);
    const Findings::SFileFindings found =
        describer.Describe({path, path, factory, [&text] { return text; }}, errors);
    const Findings::CTextLines lines(text);
    std::vector<SQuickFix> fixes;
    for (const Findings::SFinding& finding : found.findings)
        for (SQuickFix& fix : QuickFixes::FixesFor(finding, {text, lines, factory}))
            fixes.push_back(std::move(fix));
    return fixes;
}

void CErrorHelp::AddFixes(QMenu& menu)
{
    for (const SQuickFix& fix : GetFixes())
        menu.addAction(QString::fromStdWString(fix.title).replace('&', QStringLiteral("&&")), this,
                       [this, fix] { Apply(fix); });
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
        std::string text = Host::StampOf(file).size >= 0 ? Host::ReadFileBytes(file) : std::string();
        text = fix.kind == SQuickFix::EKind::AddOwnName ? Configuration::WithOwnName(text, fix.list, fix.name)
                                                        : Configuration::WithCodeOff(text, fix.code);
        Host::WriteFileBytes(file, text);
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
