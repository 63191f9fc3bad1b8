#include "Window/CAErrorsBarFiller.h"

#include "Window/CAErrorsBarItem.h"

#include <QTreeWidget>
#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <unordered_set>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr int RowsBetweenLooks = 100; // at the clock

CCAErrorsBarItem* RowOf(QTreeWidgetItem* item)
{
    return static_cast<CCAErrorsBarItem*>(item);
}

} // namespace

const CCAErrorsBarFiller::SSlice CCAErrorsBarFiller::Endless{std::numeric_limits<int>::max(),
                                                             std::numeric_limits<std::size_t>::max(),
                                                             std::numeric_limits<std::size_t>::max()};
const CCAErrorsBarFiller::SSlice CCAErrorsBarFiller::Short{8, 1000, 300};

CCAErrorsBarFiller::CCAErrorsBarFiller(QTreeWidget& tree, const IErrorsBarList& list,
                                       const CErrorsBarRows& rows)
    : m_tree(tree), m_sorted(tree, list), m_rows(rows)
{
    m_step.setSingleShot(true);
    QObject::connect(&m_step, &QTimer::timeout, [this] { Step(); });
    m_burial.setSingleShot(true);
    QObject::connect(&m_burial, &QTimer::timeout, [this] { BurySlice(); });
}

CCAErrorsBarFiller::~CCAErrorsBarFiller()
{
    qDeleteAll(m_buried);
}

void CCAErrorsBarFiller::SetGradual()
{
    GoOnFilling();
    m_isGradual = true;
    m_slice = Short;
    m_sorted.SetTotal();
}

bool CCAErrorsBarFiller::AreForeignBeside(int missing) const
{
    return !m_isGradual && static_cast<std::size_t>(m_tree.topLevelItemCount() + m_held.size() + missing) !=
                               m_rows.GetCount();
}

void CCAErrorsBarFiller::SetPick(IErrorRows::TPick pick)
{
    m_pick = std::move(pick);
    PickAgain();
}

void CCAErrorsBarFiller::PickAgain()
{
    ++m_lastQuestion;
    for (const auto& [key, file] : m_rows.GetFiles())
        m_toPick[key] = m_lastQuestion;
    GoOn();
}

void CCAErrorsBarFiller::PickAgain(const std::wstring& fileKey)
{
    if (m_rows.Find(fileKey))
        m_toPick[fileKey] = ++m_lastQuestion;
    GoOn();
}

bool CCAErrorsBarFiller::IsArranging() const
{
    return m_state != EState::Ordered || !m_toPick.empty() || !m_picked.empty();
}

void CCAErrorsBarFiller::GoOn()
{
    const bool isHeld = m_waitsForMany && m_toPick.empty() && m_picked.empty();
    if (IsArranging() && !isHeld && !m_step.isActive())
        m_step.start(0);
}

void CCAErrorsBarFiller::Step()
{
    QElapsedTimer time;
    time.start();
    if (!m_toPick.empty())
        PickSlice(time);
    else if (!m_picked.empty())
        FollowPicks();
    else if (m_waitsForMany)
        return;
    else if (m_state == EState::Taken)
        Order();
    else if (m_state == EState::Filling)
        FillSlice(time);
    GoOn();
}

void CCAErrorsBarFiller::PickSlice(const QElapsedTimer& time)
{
    while (!m_toPick.empty()) {
        const auto [key, question] = *m_toPick.begin();
        if (const auto* rows = m_rows.Find(key)) {
            int asked = 0;
            for (QTreeWidgetItem* item : *rows) {
                CCAErrorsBarItem& row = *RowOf(item);
                if (row.listing.question == question)
                    continue;
                if (asked++ % RowsBetweenLooks == 0 && time.elapsed() >= m_slice.time)
                    return;
                row.listing.isPicked = !m_pick || m_pick(row);
                row.listing.question = question;
            }
            m_picked.insert(key);
        }
        m_toPick.erase(key);
    }
}

void CCAErrorsBarFiller::FollowPicks()
{
    const auto changesIn = [this](const std::wstring& key) {
        TItems changed;
        if (const auto* rows = m_rows.Find(key))
            std::copy_if(rows->begin(), rows->end(), std::back_inserter(changed), [](QTreeWidgetItem* item) {
                return RowOf(item)->listing.isPicked != RowOf(item)->listing.isListed;
            });
        return changed;
    };
    std::size_t changes = 0;
    if (m_state != EState::Taken)
        for (const std::wstring& key : m_picked)
            changes += changesIn(key).size();
    if (changes > std::max(m_slice.rows, m_rows.GetCount() / std::size_t{10})) {
        TakeAll();
        changes = 0;
    }
    if (changes == 0) // or they come with the others
        m_picked.clear();
    for (std::size_t moved = 0; !m_picked.empty() && moved < m_slice.oneByOne;) {
        TItems changed = changesIn(*m_picked.begin());
        const auto in = std::partition(changed.begin(), changed.end(),
                                       [](QTreeWidgetItem* item) { return !RowOf(item)->listing.isPicked; });
        TakeOut({changed.begin(), in});
        PutIn({in, changed.end()});
        moved += changed.size();
        m_picked.erase(m_picked.begin());
    }
}

void CCAErrorsBarFiller::Add(const QList<QTreeWidgetItem*>& rows)
{
    if (static_cast<std::size_t>(rows.size()) > m_slice.rows) {
        for (QTreeWidgetItem* item : rows)
            RowOf(item)->listing.isPicked = false; // until it has been asked about
        return PickAgain(RowOf(rows.first())->GetFileKey());
    }
    QList<QTreeWidgetItem*> wanted;
    for (QTreeWidgetItem* item : rows) {
        CCAErrorsBarItem& row = *RowOf(item);
        row.listing.isPicked = !m_pick || m_pick(row);
        if (row.listing.isPicked)
            wanted.append(item);
    }
    if (m_waitsForMany && !m_isGradual)
        m_held.append(wanted);
    else
        PutIn(wanted);
}

void CCAErrorsBarFiller::PutIn(const QList<QTreeWidgetItem*>& rows)
{
    if (m_state == EState::Taken)
        return;
    const auto isBefore = [this](const QTreeWidgetItem* a, const QTreeWidgetItem* b) {
        return m_sorted.IsBefore(a, b);
    };
    QList<QTreeWidgetItem*> early; // those that no waiting row comes before
    for (QTreeWidgetItem* item : rows) {
        RowOf(item)->listing.isListed = true;
        const auto first = m_waiting.begin() + static_cast<std::ptrdiff_t>(m_next);
        const auto place = std::upper_bound(first, m_waiting.end(), item, isBefore);
        if (place == first)
            early.append(item);
        else
            m_waiting.insert(place, item);
    }
    if (AreForeignBeside(early.size())) {
        m_tree.addTopLevelItems(early);
        m_sorted.Sort();
    } else {
        m_sorted.Insert(early);
    }
    if (m_selected && m_state == EState::Ordered)
        SelectAgain();
}

CCAErrorsBarFiller::TItems::iterator CCAErrorsBarFiller::StopWaiting(TItems& rows)
{
    const auto inTree = std::partition(rows.begin(), rows.end(),
                                       [](const QTreeWidgetItem* item) { return !item->treeWidget(); });
    if (m_state == EState::Filling && inTree != rows.begin()) {
        const std::unordered_set<const QTreeWidgetItem*> gone(rows.begin(), inTree);
        m_waiting.erase(std::remove_if(m_waiting.begin() + static_cast<std::ptrdiff_t>(m_next),
                                       m_waiting.end(),
                                       [&](const QTreeWidgetItem* item) { return gone.contains(item); }),
                        m_waiting.end());
    }
    if (!m_held.isEmpty())
        std::for_each(rows.begin(), inTree, [this](QTreeWidgetItem* item) { m_held.removeOne(item); });
    for (QTreeWidgetItem* item : rows)
        RowOf(item)->listing.isListed = false;
    return inTree;
}

void CCAErrorsBarFiller::TakeOut(const TItems& rows)
{
    TItems gone = rows;
    // Otherwise a neighbour would be selected.
    if (QTreeWidgetItem* current = m_tree.currentItem();
        std::find(gone.begin(), gone.end(), current) != gone.end()) {
        m_selected = current;
        m_tree.setCurrentItem(nullptr);
    }
    const std::vector<int> places = m_sorted.Find({StopWaiting(gone), gone.end()});
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        m_tree.takeTopLevelItem(*place);
}

void CCAErrorsBarFiller::Remove(const TItems& rows)
{
    TItems gone = rows;
    if (std::find(gone.begin(), gone.end(), m_selected) != gone.end())
        m_selected = nullptr;
    if (gone.size() > m_slice.rows) {
        QTreeWidgetItem* selected = m_selected;
        TakeAll();
        if (std::find(gone.begin(), gone.end(), m_selected) != gone.end())
            m_selected = selected;
        Bury(gone);
        return;
    }
    const auto inTree = StopWaiting(gone);
    m_sorted.Remove(m_sorted.Find({inTree, gone.end()}));
    std::for_each(gone.begin(), inTree, std::default_delete<QTreeWidgetItem>());
}

void CCAErrorsBarFiller::RemoveMany(const TItems& rows)
{
    constexpr std::size_t Few = 100;
    if (m_isGradual || rows.size() < Few || rows.size() < m_rows.GetCount())
        return Remove(rows);
    // Taking all rows away and putting some back is quick when few stay.
    TItems gone = rows;
    StopWaiting(gone);
    const std::unordered_set<const QTreeWidgetItem*> ended(gone.begin(), gone.end());
    const QList<QTreeWidgetItem*> all = EmptyTree();
    if (ended.contains(m_selected))
        m_selected = nullptr;
    std::copy_if(all.begin(), all.end(), std::back_inserter(m_waiting),
                 [&](const QTreeWidgetItem* item) { return !ended.contains(item); });
    QElapsedTimer time;
    time.start();
    FillSlice(time);
    Bury(gone);
}

void CCAErrorsBarFiller::Bury(const TItems& rows)
{
    m_buried.insert(m_buried.end(), rows.begin(), rows.end());
    if (!m_burial.isActive()) // enough has been done in this turn
        m_burial.start(0);
}

void CCAErrorsBarFiller::BurySlice()
{
    constexpr int AtOnce = 5000;
    for (int i = 0; i < AtOnce && !m_buried.empty(); ++i) {
        delete m_buried.back();
        m_buried.pop_back();
    }
    if (!m_buried.empty())
        m_burial.start(0);
}

QList<QTreeWidgetItem*> CCAErrorsBarFiller::EmptyTree()
{
    if (const QList<QTreeWidgetItem*> selected = m_tree.selectedItems(); !selected.isEmpty())
        m_selected = selected.first();
    m_tree.viewport()->setUpdatesEnabled(false); // an empty list would only flicker
    m_waiting.clear();
    m_next = 0;
    return m_tree.invisibleRootItem()->takeChildren();
}

void CCAErrorsBarFiller::TakeAll()
{
    EmptyTree();
    m_state = EState::Taken;
    GoOn();
}

void CCAErrorsBarFiller::WaitForMany()
{
    // A selection stays on its row whatever comes: then one file comes after the other.
    m_waitsForMany = m_isGradual || (!HasForeignRows() && m_tree.selectedItems().isEmpty());
    if (m_isGradual)
        TakeAll();
}

void CCAErrorsBarFiller::GoOnFilling()
{
    m_waitsForMany = false;
    InsertHeld();
    GoOn();
}

void CCAErrorsBarFiller::InsertHeld()
{
    if (!m_held.isEmpty())
        PutIn(std::exchange(m_held, {}));
}

void CCAErrorsBarFiller::Sort()
{
    if (!m_isGradual)
        return m_sorted.Sort();
    m_sorted.ShowOrder();
    m_rowToSelect = -1;
    TakeAll();
    if (m_waitsForMany || m_rows.GetCount() > m_slice.rows || !m_toPick.empty() || !m_picked.empty())
        return;
    QElapsedTimer time;
    time.start();
    Order();
    FillSlice(time);
}

void CCAErrorsBarFiller::Order()
{
    // Comparing file by file is enough: files come by their names, and what is before that in the bar's order
    // has few values.
    std::map<std::int32_t, TItems> parts;
    TItems ofFile;
    for (const auto& [key, file] : m_rows.GetFiles()) {
        ofFile.clear();
        for (QTreeWidgetItem* item : file.rows) {
            auto& listing = RowOf(item)->listing;
            listing.isListed = listing.isPicked;
            if (listing.isPicked)
                ofFile.push_back(item);
        }
        std::sort(ofFile.begin(), ofFile.end(),
                  [](QTreeWidgetItem* a, QTreeWidgetItem* b) { return RowOf(a)->IsBeforeInFile(*RowOf(b)); });
        for (QTreeWidgetItem* item : ofFile)
            parts[RowOf(item)->GetPart()].push_back(item);
    }
    for (const auto& [value, rows] : parts)
        m_waiting.insert(m_waiting.end(), rows.begin(), rows.end());
    if (m_sorted.IsDescending())
        std::reverse(m_waiting.begin(), m_waiting.end());
    m_state = EState::Filling;
}

void CCAErrorsBarFiller::FillSlice(const QElapsedTimer& time)
{
    do {
        const std::size_t end = m_next + std::min(m_slice.rows, m_waiting.size() - m_next);
        const QList<QTreeWidgetItem*> rows(m_waiting.begin() + static_cast<std::ptrdiff_t>(m_next),
                                           m_waiting.begin() + static_cast<std::ptrdiff_t>(end));
        m_next = end;
        m_tree.addTopLevelItems(rows);
    } while (m_next < m_waiting.size() && time.elapsed() < m_slice.time);
    m_tree.viewport()->setUpdatesEnabled(true);
    if (m_next < m_waiting.size())
        return;
    m_waiting = {};
    m_next = 0;
    m_state = EState::Ordered;
    SelectAgain();
}

void CCAErrorsBarFiller::SelectAgain()
{
    const bool isFree = m_tree.selectedItems().isEmpty();
    const int wanted = std::exchange(m_rowToSelect, -1);
    QTreeWidgetItem* row = m_selected && m_selected->treeWidget() ? m_selected : m_tree.topLevelItem(wanted);
    if (!isFree || row == m_selected)
        m_selected = nullptr;
    if (!isFree || !row)
        return;
    m_tree.setCurrentItem(row);
    m_tree.scrollToItem(row);
}

void CCAErrorsBarFiller::Forget(const QTreeWidgetItem* row)
{
    if (row == m_selected)
        m_selected = nullptr;
    m_held.removeOne(const_cast<QTreeWidgetItem*>(row));
    // Only a row that somebody else ends is still listed.
    if (m_state == EState::Filling && static_cast<const CCAErrorsBarItem*>(row)->listing.isListed)
        m_waiting.erase(
            std::remove(m_waiting.begin() + static_cast<std::ptrdiff_t>(m_next), m_waiting.end(), row),
            m_waiting.end());
}

} // namespace Kesh::CodeAnalyzer
