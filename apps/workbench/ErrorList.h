#pragma once

#include "Kesh/SyntaxParser/Position.h"

#include <QObject>
#include <QPointer>
#include <string>
#include <vector>

class QMenu;
class QTreeView;
class QTreeWidget;

namespace Kesh::CodeAnalyzer {
struct SCAError;
}
namespace Kesh::Host {
class CApplication;
}

namespace Kesh::Workbench {

class CDocumentArea;
class CErrorHelp;
class CErrorPanel;
class CErrorWatch;
class CMainFrame;
class CStatusLine;

/// The validator's list of errors in the window: its looks, the way from an error to its place, and what can
/// be done there. GUI thread.
class CErrorList final : public QObject
{
    Q_OBJECT

public:
    struct SParts
    {
        Host::CApplication& application;
        CMainFrame& frame;
        CDocumentArea& area;
        CStatusLine& status;
        CErrorHelp& help;
        QWidget& window;
    };

    /// The parts are not owned.
    explicit CErrorList(const SParts& parts);

    /// The validator has come, with its list; null: is about to go, with it. Not owned.
    void SetWatch(CErrorWatch* watch);
    /// Gives the columns a width when the user has chosen none.
    void ArrangeColumns();
    /// Empty without a list.
    std::vector<int> GetColumnWidths() const;
    void SetColumnWidths(const std::vector<int>& widths);

    /// Another document is in front, or the project is another one.
    void FollowCurrent();
    /// A negative line: there is no caret.
    void FollowCaret(const SyntaxParser::CIterator& caret);
    void SetIncomplete(bool isIncomplete);
    void Focus();
    void GoToNeighbour(bool forward);
    /// Shows the page on the error at the caret.
    void ExplainHere();

private:
    /// Null when there is none.
    QTreeView* GetList() const;
    void AddPanel(QTreeWidget& list);
    void ExtendMenu(QMenu* menu, const std::wstring& file, const CodeAnalyzer::SCAError& error);

    SParts m_parts;
    CErrorWatch* m_watch = nullptr;
    QPointer<CErrorPanel> m_panel;
    bool m_isIncomplete = false;
};

} // namespace Kesh::Workbench
