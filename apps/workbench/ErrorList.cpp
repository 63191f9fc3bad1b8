#include "ErrorList.h"

#include "Application/Application.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorHelp.h"
#include "ErrorPanel.h"
#include "ErrorWatch.h"
#include "Files/FilePath.h"
#include "Findings/ErrorPage.h"
#include "MainFrame.h"
#include "ProjectManager/ProjectManager.h"
#include "StatusLine.h"
#include "Texts.h"

#include <QDockWidget>
#include <QHeaderView>
#include <QMenu>
#include <QTreeWidget>
#include <algorithm>
#include <set>

namespace Kesh::Workbench {

CErrorList::CErrorList(const SParts& parts) : m_parts(parts) {}

QTreeView* CErrorList::GetList() const
{
    for (const QDockWidget* dock : m_parts.frame.GetDocks())
        if (QTreeView* list = dock->findChild<QTreeView*>())
            return list;
    return nullptr;
}

void CErrorList::SetWatch(CErrorWatch* watch)
{
    m_watch = watch;
    if (!watch) {
        delete m_panel; // lets the list go, which is the validator's
        return;
    }
    QTreeView* list = GetList();
    if (!list)
        return;
    if (auto* rows = qobject_cast<QTreeWidget*>(list))
        AddPanel(*rows);
    list->setRootIsDecorated(false);
    list->setAllColumnsShowFocus(true);
    // The end of a path, with the line, tells more than its beginning.
    list->setTextElideMode(Qt::ElideMiddle);
}

void CErrorList::ArrangeColumns()
{
    if (const QTreeView* list = GetList()) {
        const int character = list->fontMetrics().averageCharWidth();
        SetColumnWidths({character * 12, character * 40, character * 40});
    }
}

void CErrorList::AddPanel(QTreeWidget& list)
{
    QDockWidget* dock = nullptr;
    for (QDockWidget* candidate : m_parts.frame.GetDocks())
        if (candidate->widget() == &list)
            dock = candidate;
    if (!dock)
        return;
    m_panel = new CErrorPanel(list, *m_watch);
    dock->setWidget(m_panel);
    m_panel->SetIncomplete(m_isIncomplete);
    connect(m_panel, &CErrorPanel::openRequested, this,
            [this](const std::wstring& file, const SyntaxParser::CIterator& pos) {
                if (m_parts.area.OpenAt(file, pos))
                    m_parts.area.GetCurrentEditor()->setFocus();
            });
    connect(&m_parts.area, &CDocumentArea::edited, m_panel, &CErrorPanel::FollowEdits);
    connect(m_panel, &CErrorPanel::menuRequested, this, &CErrorList::ExtendMenu);
}

std::vector<int> CErrorList::GetColumnWidths() const
{
    std::vector<int> widths;
    if (const QTreeView* list = GetList())
        for (int column = 0; column < list->header()->count(); ++column)
            widths.push_back(list->header()->sectionSize(column));
    return widths;
}

void CErrorList::SetColumnWidths(const std::vector<int>& widths)
{
    if (const QTreeView* list = GetList())
        for (int column = 0; column < std::min(list->header()->count(), static_cast<int>(widths.size()));
             ++column)
            list->header()->resizeSection(column, widths[static_cast<std::size_t>(column)]);
}

void CErrorList::FollowCurrent()
{
    if (!m_panel)
        return;
    std::set<std::wstring> open;
    for (Host::CDocument* each : m_parts.application.Documents().GetDocuments())
        open.insert({each->GetPath(), each->GetResolvedPath()});
    m_panel->SetFolder(Host::PathToQt(m_parts.application.Project().GetFolder()));
    m_panel->SetOpenFiles(std::move(open));
}

void CErrorList::FollowCaret(const SyntaxParser::CIterator& caret)
{
    if (m_panel)
        m_panel->SetCaret(caret.y < 0 ? std::wstring() : m_parts.area.GetCurrent()->GetPath(), caret);
}

void CErrorList::SetIncomplete(bool isIncomplete)
{
    m_isIncomplete = isIncomplete;
    if (m_panel)
        m_panel->SetIncomplete(isIncomplete);
}

void CErrorList::Focus()
{
    for (QDockWidget* dock : m_parts.frame.GetDocks()) {
        dock->show();
        dock->raise();
        dock->widget()->setFocus();
    }
}

void CErrorList::GoToNeighbour(bool forward)
{
    if (!m_watch)
        return;
    SErrorPlace from;
    from.pos = {-1, -1};
    if (Host::CDocument* document = m_parts.area.GetCurrent())
        from = {document->GetPath(), m_parts.area.GetCurrentEditor()->GetCaretPosition()};
    const std::optional<SErrorPlace> place = m_watch->FindNeighbour(from, forward);
    if (!place || !m_parts.area.OpenAt(place->file, place->pos))
        return;
    m_parts.status.ShowMessage(
        m_watch->GetMessages(place->file, place->pos).replace('\n', QStringLiteral(" / ")));
}

void CErrorList::ExplainHere()
{
    Host::CDocument* document = m_parts.area.GetCurrent();
    if (!document || !m_watch)
        return;
    if (const auto error =
            m_watch->FindAt(document->GetPath(), m_parts.area.GetCurrentEditor()->GetCaretPosition()))
        m_parts.help.Explain(error->code, &m_parts.window);
}

void CErrorList::ExtendMenu(QMenu* menu, const std::wstring& file, const CodeAnalyzer::SCAError& error)
{
    const int code = error.code;
    CErrorHelp& help = m_parts.help;
    if (!Findings::ErrorPage(code).isEmpty())
        menu->addAction(Tr("&Explain"), this, [this, code] { m_parts.help.Explain(code, &m_parts.window); });
    if (Host::CDocument* document = m_parts.area.GetCurrent(); document && document->GetPath() == file) {
        m_parts.area.GetCurrentEditor()->SetCaretPosition(error.pos.start);
        menu->addSeparator();
        help.AddFixes(*menu);
    } else if (!m_parts.application.Project().GetFolder().empty()) {
        menu->addAction(Tr("&Ignore code %1 in this project").arg(code), this, [this, code] {
            Findings::SQuickFix fix;
            fix.kind = Findings::SQuickFix::EKind::IgnoreCode;
            fix.code = code;
            m_parts.help.Apply(fix);
        });
    }
}

} // namespace Kesh::Workbench
