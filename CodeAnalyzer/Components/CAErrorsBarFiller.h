#pragma once

#include "Kesh/CodeAnalyzer/IErrorRow.h"

#include <QElapsedTimer>
#include <QList>
#include <QTimer>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

class QTreeWidgetItem;

namespace Kesh::CodeAnalyzer {

class CCAErrorsBar;

/// Arranges the rows of an errors bar that has very many: puts those that the host wants into the tree, in
/// the bar's order, and keeps the others aside. What concerns many rows is done some at a time, when the
/// event loop has nothing else to do. The rows are the bar's. GUI thread.
class CCAErrorsBarFiller
{
public:
    using TItems = std::vector<QTreeWidgetItem*>;

    explicit CCAErrorsBarFiller(CCAErrorsBar& bar);

    void SetPick(IErrorRows::TPick pick);
    /// Of all rows, or of those of a file.
    void PickAgain();
    void PickAgain(const std::wstring& fileKey);
    bool IsArranging() const;

    /// Of one file; the bar knows them already.
    void Add(const QList<QTreeWidgetItem*>& rows);
    /// Ends rows, which the bar has forgotten already.
    void Remove(const TItems& rows);
    /// Has all rows come into the tree again, in the bar's order.
    void Sort();
    /// Very many rows are about to come: the tree stays empty until GoOnFilling(), since each file that is
    /// put in would move all rows behind it.
    void WaitForMany();
    void GoOnFilling();
    /// Selects the row that will be there, unless another one is selected by then.
    void SelectLater(int row) { m_rowToSelect = row; }
    /// A row is about to die.
    void Forget(const QTreeWidgetItem* row);

private:
    enum class EState {
        Ordered, ///< all rows that are wanted are in the tree
        Taken,   ///< none is, and which comes where is to be found out
        Filling  ///< those from m_waiting on are not there yet
    };

    void GoOn();
    void Step();
    void PickSlice(const QElapsedTimer& time);
    /// Lists what has been picked, and no longer what has not.
    void FollowPicks();
    void TakeAll();
    void Order();
    void FillSlice(const QElapsedTimer& time);
    void SelectAgain();
    void PutIn(const QList<QTreeWidgetItem*>& rows);
    void TakeOut(const TItems& rows);
    /// The first of the rows that are in the tree; the rest waits no longer.
    TItems::iterator StopWaiting(TItems& rows);

    CCAErrorsBar& m_bar;
    IErrorRows::TPick m_pick;
    std::map<std::wstring, std::uint64_t> m_toPick; ///< files by key, and the question's number
    std::uint64_t m_lastQuestion = 0;
    std::set<std::wstring> m_picked; ///< files whose answers have not been followed yet
    EState m_state = EState::Ordered;
    TItems m_waiting; ///< in order
    std::size_t m_next = 0;
    bool m_waitsForMany = false;
    QTreeWidgetItem* m_selected = nullptr; ///< to be selected again once it is in the tree
    int m_rowToSelect = -1;
    QTimer m_step;
};

} // namespace Kesh::CodeAnalyzer
