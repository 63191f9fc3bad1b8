#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorHelp.h"
#include "ErrorPanel.h"
#include "ErrorWatch.h"
#include "Files/FilePath.h"
#include "MainWindow.h"
#include "ProjectManager/ProjectManager.h"
#include "StatusLine.h"
#include "Texts.h"

#include <QDockWidget>
#include <QHeaderView>
#include <QMenu>
#include <QTreeWidget>

namespace Kesh::Workbench {

QTreeView* CMainWindow::GetErrorList() const
{
    for (const QDockWidget* dock : m_frame.GetDocks())
        if (QTreeView* list = dock->findChild<QTreeView*>())
            return list;
    return nullptr;
}

void CMainWindow::ArrangeErrorList()
{
    QTreeView* list = GetErrorList();
    if (!list)
        return;
    if (auto* rows = qobject_cast<QTreeWidget*>(list))
        AddErrorPanel(*rows);
    list->setRootIsDecorated(false);
    list->setAllColumnsShowFocus(true);
    // The end of a path, with the line, tells more than its beginning.
    list->setTextElideMode(Qt::ElideMiddle);
    if (m_preferences.GetColumnWidths().empty()) {
        const int character = list->fontMetrics().averageCharWidth();
        SetErrorColumnWidths({character * 12, character * 40, character * 40});
    }
}

void CMainWindow::AddErrorPanel(QTreeWidget& list)
{
    QDockWidget* dock = nullptr;
    for (QDockWidget* candidate : m_frame.GetDocks())
        if (candidate->widget() == &list)
            dock = candidate;
    if (!dock)
        return;
    m_panel = new CErrorPanel(list, *m_errors);
    dock->setWidget(m_panel);
    connect(m_panel, &CErrorPanel::openRequested, m_area,
            [this](const std::wstring& file, const SyntaxParser::CIterator& pos) {
                if (m_area->OpenAt(file, pos))
                    m_area->GetCurrentEditor()->setFocus();
            });
    connect(m_panel, &CErrorPanel::menuRequested, this, &CMainWindow::ExtendErrorMenu);
    OnCurrentChanged();
}

std::vector<int> CMainWindow::GetErrorColumnWidths() const
{
    std::vector<int> widths;
    if (const QTreeView* list = GetErrorList())
        for (int column = 0; column < list->header()->count(); ++column)
            widths.push_back(list->header()->sectionSize(column));
    return widths;
}

void CMainWindow::SetErrorColumnWidths(const std::vector<int>& widths)
{
    if (const QTreeView* list = GetErrorList())
        for (int column = 0; column < std::min(list->header()->count(), static_cast<int>(widths.size()));
             ++column)
            list->header()->resizeSection(column, widths[static_cast<std::size_t>(column)]);
}

void CMainWindow::GoToError(bool forward)
{
    if (!m_errors)
        return;
    SErrorPlace from;
    from.pos = {-1, -1};
    if (Host::CDocument* document = m_area->GetCurrent())
        from = {document->GetPath(), m_area->GetCurrentEditor()->GetCaretPosition()};
    const std::optional<SErrorPlace> place = m_errors->FindNeighbour(from, forward);
    if (!place || !m_area->OpenAt(place->file, place->pos))
        return;
    m_status->ShowMessage(
        m_errors->GetMessages(place->file, place->pos, false).replace('\n', QStringLiteral(" / ")));
}

void CMainWindow::OnErrorsChanged()
{
    const CErrorWatch::SCounts total = m_errors->GetTotal();
    m_status->ShowCounts(total.errors, total.warnings, m_errors->HasChecked());
    for (QAction* action : m_errorActions)
        action->setEnabled(total.errors + total.warnings > 0);
}

void CMainWindow::ExplainHere()
{
    Host::CDocument* document = m_area->GetCurrent();
    if (!document || !m_errors)
        return;
    if (const auto error =
            m_errors->FindAt(document->GetPath(), m_area->GetCurrentEditor()->GetCaretPosition()))
        m_help->Explain(error->code, this);
}

void CMainWindow::ExtendErrorMenu(QMenu* menu, const std::wstring& file, const CodeAnalyzer::SCAError& error)
{
    const int code = error.code;
    if (!CErrorHelp::GetPage(code).isEmpty())
        menu->addAction(Tr("&Explain"), this, [this, code] { m_help->Explain(code, this); });
    if (Host::CDocument* document = m_area->GetCurrent(); document && document->GetPath() == file) {
        m_area->GetCurrentEditor()->SetCaretPosition(error.pos.start);
        menu->addSeparator();
        m_help->AddFixes(*menu);
    } else if (!m_application->Project().GetFolder().empty()) {
        menu->addAction(Tr("&Ignore code %1 in this project").arg(code), this, [this, code] {
            Findings::SQuickFix fix;
            fix.kind = Findings::SQuickFix::EKind::IgnoreCode;
            fix.code = code;
            m_help->Apply(fix);
        });
    }
}

} // namespace Kesh::Workbench
