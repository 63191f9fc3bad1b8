#pragma once

#include "Window/CAErrorsBarRows.h"

#include <QList>
#include <vector>

class QTreeWidget;

namespace Kesh::CodeAnalyzer {

class IErrorsBarList;

/// Puts rows into a tree where they belong in the order of the list that it shows, and finds them by it. All
/// of its rows must be in that order. GUI thread.
class CSortedTree
{
public:
    using TRows = CErrorsBarRows::TRows;

    /// Neither is owned.
    CSortedTree(QTreeWidget& tree, const IErrorsBarList& list) : m_tree(tree), m_list(list) {}

    /// From now on no two rows are equal: to put them in some at a time, it must be known of all which comes
    /// first. They are to be sorted then.
    void SetTotal() { m_isTotal = true; }
    bool IsDescending() const;
    bool IsBefore(const QTreeWidgetItem* a, const QTreeWidgetItem* b) const;
    /// Shows in the header what the order is.
    void ShowOrder();
    /// Moves the rows that are there, also those of others; equal ones stay as they are. Not for an order
    /// that is total.
    void Sort();
    void Insert(QList<QTreeWidgetItem*> rows);
    /// The places of rows that are there, ascending.
    std::vector<int> Find(const TRows& rows) const;
    /// Ends rows by their places, which are ascending.
    void Remove(const std::vector<int>& places);

private:
    /// The first row from `first` on that does not satisfy `isEarly`, which all rows do that are before it.
    template <class TPredicate> int FindFirst(int first, TPredicate isEarly) const;
    std::vector<int> FindOneByOne(const TRows& rows) const;
    std::vector<int> FindInOrder(const TRows& rows) const;

    QTreeWidget& m_tree;
    const IErrorsBarList& m_list;
    bool m_isTotal = false;
};

} // namespace Kesh::CodeAnalyzer
