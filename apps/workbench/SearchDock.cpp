#include "SearchDock.h"

#include "Application/Application.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorWatch.h"
#include "ProjectManager/ProjectManager.h"
#include "SearchPanel.h"
#include "Texts.h"

namespace Kesh::Workbench {

CSearchDock::CSearchDock(Host::CApplication& application, CDocumentArea& area)
    : QDockWidget(Tr("Find in files")),
      m_area(area),
      m_panel(new CSearchPanel([this, &application](SSearchOrder& order) {
          order.folder = application.Project().GetFolder();
          if (m_watch)
              order.rules = m_watch->GetRules();
          for (Host::CDocument* document : application.Documents().GetDocuments())
              if (document->IsModified())
                  order.unsaved[document->GetPath()] = document->GetBuffer()->GetText(L"\n");
      }))
{
    setObjectName(QStringLiteral("findInFiles"));
    setWidget(m_panel);
    connect(m_panel, &CSearchPanel::openRequested, this,
            [this](const std::wstring& file, const SyntaxParser::SScheme& span) {
                if (!m_area.OpenAt(file, span.start))
                    return;
                m_area.GetCurrentEditor()->SelectSpan(span);
                m_area.GetCurrentEditor()->setFocus();
            });
}

void CSearchDock::Open()
{
    const CCodeEditor* editor = m_area.GetCurrentEditor();
    const QString selected = editor ? editor->selectedText() : QString();
    show();
    raise();
    m_panel->Open(selected.contains('\n') ? QString() : selected);
}

void CSearchDock::Clear()
{
    m_panel->Clear();
}

} // namespace Kesh::Workbench
