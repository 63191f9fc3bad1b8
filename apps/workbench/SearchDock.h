#pragma once

#include <QDockWidget>

namespace Kesh::Host {
class CApplication;
}

namespace Kesh::Workbench {

class CDocumentArea;
class CErrorWatch;
class CSearchPanel;

/// The search in the project's files, at the edge of the window. GUI thread.
class CSearchDock final : public QDockWidget
{
    Q_OBJECT

public:
    /// Neither is owned.
    CSearchDock(Host::CApplication& application, CDocumentArea& area);

    /// Who knows which files the project leaves out; null: nobody. Not owned.
    void SetErrorWatch(CErrorWatch* watch) { m_watch = watch; }
    /// For what is selected in the editor.
    void Open();
    void Clear();

private:
    CDocumentArea& m_area;
    CErrorWatch* m_watch = nullptr;
    CSearchPanel* m_panel;
};

} // namespace Kesh::Workbench
