#include "Window/CASortedTree.h"

#include "Window/CAErrorsBarItem.h"

#include <QHeaderView>
#include <QTreeWidget>
#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

int SortColumn(int order)
{
    return order / 2;
}

Qt::SortOrder SortDirection(int order)
{
    return order % 2 == 0 ? Qt::AscendingOrder : Qt::DescendingOrder;
}

} // namespace

bool CSortedTree::IsDescending() const
{
    return SortDirection(m_list.GetSortOrder()) == Qt::DescendingOrder;
}

bool CSortedTree::IsBefore(const QTreeWidgetItem* a, const QTreeWidgetItem* b) const
{
    if (IsDescending())
        std::swap(a, b);
    return m_isTotal
               ? static_cast<const CCAErrorsBarItem*>(a)->IsBefore(static_cast<const CCAErrorsBarItem&>(*b))
               : *a < *b;
}

void CSortedTree::ShowOrder()
{
    const int order = m_list.GetSortOrder();
    m_tree.header()->setSortIndicator(SortColumn(order), SortDirection(order));
}

void CSortedTree::Sort()
{
    const int order = m_list.GetSortOrder();
    m_tree.sortItems(SortColumn(order), SortDirection(order));
}

template <class TPredicate> int CSortedTree::FindFirst(int first, TPredicate isEarly) const
{
    int end = m_tree.topLevelItemCount();
    while (first < end) {
        const int middle = (first + end) / 2;
        if (isEarly(m_tree.topLevelItem(middle)))
            first = middle + 1;
        else
            end = middle;
    }
    return first;
}

std::vector<int> CSortedTree::Find(const TRows& rows) const
{
    // Of one kind there are many, so that their order does not help to find a few of them.
    const bool isByKind = m_list.GetSortOrder() >= IErrorsBarList::DescriptionAscending && !m_isTotal;
    return isByKind && rows.size() <= 16 ? FindOneByOne(rows) : FindInOrder(rows);
}

std::vector<int> CSortedTree::FindOneByOne(const TRows& rows) const
{
    std::vector<int> places;
    for (QTreeWidgetItem* row : rows)
        places.push_back(m_tree.indexOfTopLevelItem(row));
    std::sort(places.begin(), places.end());
    return places;
}

std::vector<int> CSortedTree::FindInOrder(const TRows& rows) const
{
    std::vector<const QTreeWidgetItem*> sorted(rows.begin(), rows.end());
    std::sort(sorted.begin(), sorted.end(),
              [this](const QTreeWidgetItem* a, const QTreeWidgetItem* b) { return IsBefore(a, b); });
    // The next row to be found is equal to the next of the sorted ones, if not that one itself.
    std::vector<int> places;
    for (int place = 0; places.size() < sorted.size() && place < m_tree.topLevelItemCount();) {
        const QTreeWidgetItem* next = sorted[places.size()];
        QTreeWidgetItem* row = m_tree.topLevelItem(place);
        if (rows.contains(row))
            places.push_back(place++);
        else if (IsBefore(row, next))
            place = FindFirst(place + 1, [&](const QTreeWidgetItem* other) { return IsBefore(other, next); });
        else
            ++place;
    }
    return places;
}

void CSortedTree::Insert(QList<QTreeWidgetItem*> rows)
{
    if (!m_isTotal && rows.size() > m_tree.topLevelItemCount() / 10) {
        m_tree.addTopLevelItems(rows);
        return Sort();
    }
    // The rows always are in the current order, so that new ones need only be put where a stable sort of all
    // rows would move them: behind the rows that they are equal to.
    std::stable_sort(rows.begin(), rows.end(),
                     [this](const QTreeWidgetItem* a, const QTreeWidgetItem* b) { return IsBefore(a, b); });
    const auto placeOf = [this](const QTreeWidgetItem* row) {
        return FindFirst(0, [&](const QTreeWidgetItem* other) { return !IsBefore(row, other); });
    };
    // From the back, where a place does not shift those of the rows still to come.
    for (int end = rows.size(); end > 0;) {
        const int place = placeOf(rows[end - 1]);
        int first = end - 1;
        while (first > 0 && placeOf(rows[first - 1]) == place)
            --first;
        m_tree.insertTopLevelItems(place, rows.mid(first, end - first));
        end = first;
    }
    ShowOrder();
}

void CSortedTree::Remove(const std::vector<int>& places)
{
    for (std::size_t end = places.size(); end > 0;) {
        std::size_t first = end - 1;
        while (first > 0 && places[first - 1] == places[first] - 1)
            --first;
        m_tree.model()->removeRows(places[first], static_cast<int>(end - first));
        end = first;
    }
}

} // namespace Kesh::CodeAnalyzer
