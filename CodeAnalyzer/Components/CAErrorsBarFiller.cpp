#include "Components/CAErrorsBarFiller.h"

#include "Components/CAErrorsBar.h"
#include "Components/CAErrorsBarItem.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <unordered_set>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr int SliceTime = 8;          // ms
constexpr std::size_t AtOnce = 1000;  // rows that are moved without a pause
constexpr std::size_t OneByOne = 300; // the same, each to another place
constexpr int RowsBetweenLooks = 100; // at the clock

CCAErrorsBarItem* RowOf(QTreeWidgetItem* item)
{
    return static_cast<CCAErrorsBarItem*>(item);
}

} // namespace

CCAErrorsBarFiller::CCAErrorsBarFiller(CCAErrorsBar& bar) : m_bar(bar)
{
    m_step.setSingleShot(true);
    QObject::connect(&m_step, &QTimer::timeout, [this] { Step(); });
}

void CCAErrorsBarFiller::SetPick(IErrorRows::TPick pick)
{
    m_pick = std::move(pick);
    PickAgain();
}

void CCAErrorsBarFiller::PickAgain()
{
    ++m_lastQuestion;
    for (const auto& [key, file] : m_bar.m_rowsOfFile)
        m_toPick[key] = m_lastQuestion;
    GoOn();
}

void CCAErrorsBarFiller::PickAgain(const std::wstring& fileKey)
{
    if (m_bar.m_rowsOfFile.contains(fileKey))
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
        if (const auto file = m_bar.m_rowsOfFile.find(key); file != m_bar.m_rowsOfFile.end()) {
            int asked = 0;
            for (QTreeWidgetItem* item : file->second.rows) {
                CCAErrorsBarItem& row = *RowOf(item);
                if (row.listing.question == question)
                    continue;
                if (asked++ % RowsBetweenLooks == 0 && time.elapsed() >= SliceTime)
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
        if (const auto file = m_bar.m_rowsOfFile.find(key); file != m_bar.m_rowsOfFile.end())
            std::copy_if(file->second.rows.begin(), file->second.rows.end(), std::back_inserter(changed),
                         [](QTreeWidgetItem* item) {
                             return RowOf(item)->listing.isPicked != RowOf(item)->listing.isListed;
                         });
        return changed;
    };
    std::size_t changes = 0;
    if (m_state != EState::Taken)
        for (const std::wstring& key : m_picked)
            changes += changesIn(key).size();
    if (changes > std::max(AtOnce, m_bar.m_rowCount / std::size_t{10})) {
        TakeAll();
        changes = 0;
    }
    if (changes == 0) // or they come with the others
        m_picked.clear();
    for (std::size_t moved = 0; !m_picked.empty() && moved < OneByOne;) {
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
    if (static_cast<std::size_t>(rows.size()) > AtOnce) {
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
    PutIn(wanted);
}

void CCAErrorsBarFiller::PutIn(const QList<QTreeWidgetItem*>& rows)
{
    if (m_state == EState::Taken)
        return;
    const auto isBefore = [this](const QTreeWidgetItem* a, const QTreeWidgetItem* b) {
        return m_bar.IsBefore(a, b);
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
    m_bar.InsertSorted(early);
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
    for (QTreeWidgetItem* item : rows)
        RowOf(item)->listing.isListed = false;
    return inTree;
}

void CCAErrorsBarFiller::TakeOut(const TItems& rows)
{
    TItems gone = rows;
    // Otherwise a neighbour would be selected.
    if (QTreeWidgetItem* current = m_bar.currentItem();
        std::find(gone.begin(), gone.end(), current) != gone.end()) {
        m_selected = current;
        m_bar.setCurrentItem(nullptr);
    }
    const std::vector<int> places = m_bar.FindRows({StopWaiting(gone), gone.end()});
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        m_bar.takeTopLevelItem(*place);
}

void CCAErrorsBarFiller::Remove(const TItems& rows)
{
    TItems gone = rows;
    if (std::find(gone.begin(), gone.end(), m_selected) != gone.end())
        m_selected = nullptr;
    if (gone.size() > AtOnce) {
        QTreeWidgetItem* selected = m_selected;
        TakeAll();
        if (std::find(gone.begin(), gone.end(), m_selected) != gone.end())
            m_selected = selected;
        m_bar.Bury(gone);
        return;
    }
    const auto inTree = StopWaiting(gone);
    m_bar.RemoveRows(m_bar.FindRows({inTree, gone.end()}));
    std::for_each(gone.begin(), inTree, std::default_delete<QTreeWidgetItem>());
}

void CCAErrorsBarFiller::TakeAll()
{
    if (const QList<QTreeWidgetItem*> selected = m_bar.selectedItems(); !selected.isEmpty())
        m_selected = selected.first();
    m_bar.viewport()->setUpdatesEnabled(false); // an empty list would only flicker
    m_bar.invisibleRootItem()->takeChildren();
    m_waiting.clear();
    m_next = 0;
    m_state = EState::Taken;
    GoOn();
}

void CCAErrorsBarFiller::WaitForMany()
{
    m_waitsForMany = true;
    TakeAll();
}

void CCAErrorsBarFiller::GoOnFilling()
{
    m_waitsForMany = false;
    GoOn();
}

void CCAErrorsBarFiller::Sort()
{
    m_rowToSelect = -1;
    TakeAll();
    if (m_waitsForMany || m_bar.m_rowCount > AtOnce || !m_toPick.empty() || !m_picked.empty())
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
    for (const auto& [key, file] : m_bar.m_rowsOfFile) {
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
    if (m_bar.IsDescending())
        std::reverse(m_waiting.begin(), m_waiting.end());
    m_state = EState::Filling;
}

void CCAErrorsBarFiller::FillSlice(const QElapsedTimer& time)
{
    do {
        const std::size_t end = std::min(m_next + AtOnce, m_waiting.size());
        const QList<QTreeWidgetItem*> rows(m_waiting.begin() + static_cast<std::ptrdiff_t>(m_next),
                                           m_waiting.begin() + static_cast<std::ptrdiff_t>(end));
        m_next = end;
        m_bar.addTopLevelItems(rows);
    } while (m_next < m_waiting.size() && time.elapsed() < SliceTime);
    m_bar.viewport()->setUpdatesEnabled(true);
    if (m_next < m_waiting.size())
        return;
    m_waiting = {};
    m_next = 0;
    m_state = EState::Ordered;
    SelectAgain();
}

void CCAErrorsBarFiller::SelectAgain()
{
    const bool isFree = m_bar.selectedItems().isEmpty();
    const int wanted = std::exchange(m_rowToSelect, -1);
    QTreeWidgetItem* row = m_selected && m_selected->treeWidget() ? m_selected : m_bar.topLevelItem(wanted);
    if (!isFree || row == m_selected)
        m_selected = nullptr;
    if (!isFree || !row)
        return;
    m_bar.setCurrentItem(row);
    m_bar.scrollToItem(row);
}

void CCAErrorsBarFiller::Forget(const QTreeWidgetItem* row)
{
    if (row == m_selected)
        m_selected = nullptr;
    // Only a row that somebody else ends is still listed.
    if (m_state == EState::Filling && static_cast<const CCAErrorsBarItem*>(row)->listing.isListed)
        m_waiting.erase(
            std::remove(m_waiting.begin() + static_cast<std::ptrdiff_t>(m_next), m_waiting.end(), row),
            m_waiting.end());
}

} // namespace Kesh::CodeAnalyzer
