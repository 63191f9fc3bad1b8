#pragma once

#include "Kesh/CodeAnalyzer/IErrorRow.h"
#include "Window/CAErrorsBarRows.h"
#include "Window/CASortedTree.h"

#include <QElapsedTimer>
#include <QList>
#include <QTimer>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace Kesh::CodeAnalyzer {

/// Arranges the rows of an errors bar: puts those that the host wants into the tree, in the bar's order, and
/// keeps the others aside. What concerns many rows is done in slices, one when the event loop has nothing
/// else to do; until SetGradual() a slice has no end, so that all is done at once. GUI thread.
class CCAErrorsBarFiller
{
public:
    using TItems = CErrorsBarRows::TItems;

    /// Nothing is owned. `tree` shows `list`, whose rows are `rows`.
    CCAErrorsBarFiller(QTreeWidget& tree, const IErrorsBarList& list, const CErrorsBarRows& rows);
    /// Ends the rows that have been taken away, but not ended yet.
    ~CCAErrorsBarFiller();

    /// From now on very many rows come and go; Sort() is to follow.
    void SetGradual();
    bool IsGradual() const { return m_isGradual; }
    /// Whether somebody else has put rows in or taken some out, so that the order of the rows tells nothing.
    /// A host that has them come and go some at a time leaves them alone.
    bool HasForeignRows() const { return AreForeignBeside(0); }

    void SetPick(IErrorRows::TPick pick);
    /// Of all rows, or of those of a file.
    void PickAgain();
    void PickAgain(const std::wstring& fileKey);
    bool IsArranging() const;

    /// Of one file; the bar knows them already.
    void Add(const QList<QTreeWidgetItem*>& rows);
    /// Ends rows, which the bar has forgotten already.
    void Remove(const TItems& rows);
    /// The same for those of many files, in the time that it takes for one.
    void RemoveMany(const TItems& rows);
    /// Has all rows come into the tree again, in the bar's order.
    void Sort();
    /// Very many rows are about to come. They wait for GoOnFilling(), since each file that is put in would
    /// move all rows behind it, and in slices the tree stays empty until then.
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

    /// How much may be done without a pause.
    struct SSlice
    {
        int time;             ///< ms
        std::size_t rows;     ///< that are moved
        std::size_t oneByOne; ///< the same, each to another place
    };
    static const SSlice Endless, Short;

    /// The same when some of the bar's rows are not in the tree yet.
    bool AreForeignBeside(int missing) const;
    void GoOn();
    void Step();
    void PickSlice(const QElapsedTimer& time);
    /// Lists what has been picked, and no longer what has not.
    void FollowPicks();
    void TakeAll();
    /// Empties the tree, to be filled again.
    QList<QTreeWidgetItem*> EmptyTree();
    void InsertHeld();
    /// Ends rows that are not in the tree, some at a time.
    void Bury(const TItems& rows);
    void BurySlice();
    void Order();
    void FillSlice(const QElapsedTimer& time);
    void SelectAgain();
    void PutIn(const QList<QTreeWidgetItem*>& rows);
    void TakeOut(const TItems& rows);
    /// The first of the rows that are in the tree; the rest waits no longer.
    TItems::iterator StopWaiting(TItems& rows);

    QTreeWidget& m_tree;
    CSortedTree m_sorted;
    const CErrorsBarRows& m_rows;
    bool m_isGradual = false;
    SSlice m_slice = Endless;
    IErrorRows::TPick m_pick;
    std::map<std::wstring, std::uint64_t> m_toPick; ///< files by key, and the question's number
    std::uint64_t m_lastQuestion = 0;
    std::set<std::wstring> m_picked; ///< files whose answers have not been followed yet
    EState m_state = EState::Ordered;
    TItems m_waiting; ///< in order
    std::size_t m_next = 0;
    bool m_waitsForMany = false;
    QList<QTreeWidgetItem*> m_held;        ///< all that have come meanwhile, while a slice has no end
    QTreeWidgetItem* m_selected = nullptr; ///< to be selected again once it is in the tree
    int m_rowToSelect = -1;
    QTimer m_step;
    TItems m_buried; ///< taken away, but not ended yet
    QTimer m_burial;
};

} // namespace Kesh::CodeAnalyzer
