#include "Components/CAErrorsBar.h"

#include "Buffer/ViewIteratorNew.h"
#include "Components/CAComponent.h"
#include "Components/CAErrorsBarItem.h"
#include "Components/CAErrorsEvent.h"
#include "Components/CAErrorsManager.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "Kesh/SDK/IDocument.h"
#include "Kesh/SDK/IServices.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QTimer>
#include <algorithm>
#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <map>
#include <utility>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;

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

CCAErrorsBar::CCAErrorsBar(SDK::IApplication* application, CCAComponent* component, CCAErrorsManager* manager)
    : m_errorsManager(manager), m_application(application), m_component(component)
{
    manager->GetAddedSignal().connect(boost::bind(&CCAErrorsBar::OnAddErrors, this, _1, _2));
    manager->GetRemovedSignal().connect(boost::bind(&CCAErrorsBar::OnRemoveErrors, this, _1));

    // The blanks belong to the keys; they widen the columns.
    const char* const titles[] = {"Type     ", "File     ", "Description      "};
    setColumnCount(3);
    for (int column = 0; column < 3; ++column)
        headerItem()->setText(column,
                              QString::fromStdWString(LangSupport::CLangSupport::LoadStr(titles[column])));
    setUniformRowHeights(true);
    header()->setSectionsClickable(true);
    header()->setSortIndicatorShown(true);
    header()->setMinimumSectionSize(static_cast<int>(application->GetScaleFactor() * 75.0));
    connect(header(), SIGNAL(sectionClicked(int)), this, SLOT(OnHeaderItemClicked(int)));
    LoadColumnsWidth();
    SetColumnsWidth();
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
}

CCAErrorsBar::~CCAErrorsBar()
{
    m_filler.reset();
    clear(); // the rows ask to be forgotten
    for (auto& [key, file] : std::exchange(m_rowsOfFile, {}))
        qDeleteAll(file.rows); // those that are kept aside
    qDeleteAll(m_buried);
}

void CCAErrorsBar::SetGradual()
{
    if (m_filler)
        return;
    EndMany();
    m_filler = std::make_unique<CCAErrorsBarFiller>(*this);
    SortItems();
}

void CCAErrorsBar::SetPick(TPick pick)
{
    SetGradual();
    m_filler->SetPick(std::move(pick));
}

void CCAErrorsBar::PickAgain()
{
    if (m_filler)
        m_filler->PickAgain();
}

void CCAErrorsBar::PickAgain(const std::wstring& file)
{
    if (m_filler)
        m_filler->PickAgain(CCAErrorsBarItem::MakeFileKey(file));
}

void CCAErrorsBar::ExpectMany(bool many)
{
    if (!m_filler)
        return;
    if (many)
        m_filler->WaitForMany();
    else
        m_filler->GoOnFilling();
}

bool CCAErrorsBar::event(QEvent* e)
{
    if (e->type() != CCAErrorsEvent::EventType)
        return QTreeWidget::event(e);
    const auto* message = static_cast<CCAErrorsEvent*>(e);
    switch (message->GetType()) {
    case CCAErrorsEvent::Add:
        AddErrorsMessageHandler(message->GetFileName(), message->GetErrors(), message->GetDetails());
        break;
    case CCAErrorsEvent::ProjectFinished: FinProjectErrorsHandler(); break;
    case CCAErrorsEvent::Remove: RemoveErrorsMessageHandler(message->GetFileName()); break;
    }
    return true;
}

void CCAErrorsBar::AddErrorsMessageHandler(const std::wstring& file, const std::vector<SCAError>& errors,
                                           TDetails details)
{
    m_errorsManager->AddErrorsFormBar(file, errors, std::move(details));
}

void CCAErrorsBar::RemoveErrorsMessageHandler(const std::wstring& file)
{
    m_errorsManager->RemoveErrors(file);
}

void CCAErrorsBar::FinProjectErrorsHandler()
{
    if ((topLevelItemCount() > 0 || (m_filler && m_rowCount > 0)) && m_component)
        m_component->ShowErrorPage(0);
}

QString CCAErrorsBar::SeverityText(std::int32_t type)
{
    return QString::fromStdWString(
        LangSupport::CLangSupport::LoadStr(type == SeverityError ? "Error" : "Warning"));
}

template <class TMake> void CCAErrorsBar::AddRows(const std::wstring& file, std::size_t count, TMake make)
{
    const bool ordered = !HasForeignRows();
    SFileRows& known = m_rowsOfFile[CCAErrorsBarItem::MakeFileKey(file)];
    auto name =
        std::find_if(known.names.begin(), known.names.end(),
                     [&](const std::shared_ptr<SBarFile>& spelling) { return spelling->name == file; });
    if (name == known.names.end())
        name = known.names.insert(known.names.end(), std::make_shared<SBarFile>(file));
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<int>(count));
    known.rows.reserve(known.rows.size() + count);
    for (std::size_t i = 0; i < count; ++i) {
        items.append(make(*name, i));
        known.rows.insert(items.last());
    }
    m_rowCount += count;
    if (m_filler) {
        m_filler->Add(items);
    } else if (m_many) {
        m_later.append(items);
    } else if (ordered) {
        InsertSorted(items);
    } else {
        addTopLevelItems(items);
        SortItems();
    }
}

void CCAErrorsBar::OnAddErrors(const std::wstring& file, const std::vector<SCAError>& errors)
{
    if (!errors.empty()) {
        // Many errors have few texts.
        std::map<std::int32_t, QString> severities, descriptions;
        const auto textOf = [](auto& texts, std::int32_t of, auto load) {
            const auto [text, isNew] = texts.try_emplace(of);
            if (isNew)
                text->second = load();
            return text->second;
        };
        AddRows(file, errors.size(), [&](const std::shared_ptr<SBarFile>& name, std::size_t i) {
            const SCAError& error = errors[i];
            return new CCAErrorsBarItem(
                name, error, textOf(severities, error.type, [&] { return SeverityText(error.type); }),
                textOf(descriptions, error.code,
                       [&] { return QString::fromStdWString(m_errorsManager->GetErrorDescription(error)); }),
                this);
        });
        if (m_rememberedFile == file) // a row is selected from now on
            EndMany();
        if (m_rememberedFile == file && m_rememberedRow >= 0 && m_rememberedRow < topLevelItemCount()) {
            QTreeWidgetItem* row = topLevelItem(m_rememberedRow);
            setCurrentItem(row);
            scrollToItem(row, QAbstractItemView::EnsureVisible);
        } else if (m_rememberedFile == file && IsArranging()) {
            m_filler->SelectLater(m_rememberedRow);
        }
    }
    m_rememberedFile.clear();
    m_rememberedRow = -1;
}

void CCAErrorsBar::ShowHostErrors(const std::wstring& file, const std::vector<SHostError>& errors)
{
    if (const auto known = m_rowsOfFile.find(CCAErrorsBarItem::MakeFileKey(file));
        known != m_rowsOfFile.end()) {
        std::vector<QTreeWidgetItem*> old;
        for (QTreeWidgetItem* row : known->second.rows)
            if (static_cast<CCAErrorsBarItem*>(row)->IsOfHost())
                old.push_back(row);
        qDeleteAll(old); // they are few
    }
    if (errors.empty())
        return;
    AddRows(file, errors.size(), [&](const std::shared_ptr<SBarFile>& name, std::size_t i) {
        auto* item = new CCAErrorsBarItem(name, errors[i].error, SeverityText(errors[i].error.type),
                                          QString::fromStdWString(errors[i].message), this);
        item->SetOfHost();
        return item;
    });
}

void CCAErrorsBar::RememberSelection(const std::wstring& file)
{
    if (const QList<QTreeWidgetItem*> selected = selectedItems(); !selected.isEmpty()) {
        m_rememberedFile = file;
        m_rememberedRow = indexOfTopLevelItem(selected.first());
    }
}

void CCAErrorsBar::RemoveErrorsOf(const std::vector<std::wstring>& files)
{
    if (m_filler && !files.empty()) {
        std::vector<QTreeWidgetItem*> ended;
        RememberSelection(files.back());
        for (const std::wstring& file : files)
            if (const auto known = m_rowsOfFile.find(CCAErrorsBarItem::MakeFileKey(file));
                known != m_rowsOfFile.end()) {
                ended.insert(ended.end(), known->second.rows.begin(), known->second.rows.end());
                m_rowsOfFile.erase(known);
            }
        m_rowCount -= ended.size();
        return m_filler->Remove(ended);
    }
    TRows gone;
    for (const std::wstring& file : files)
        if (const auto known = m_rowsOfFile.find(CCAErrorsBarItem::MakeFileKey(file));
            known != m_rowsOfFile.end())
            gone.insert(known->second.rows.begin(), known->second.rows.end());
    // Taking all rows away and putting some back is quick when few stay.
    if (HasForeignRows() || gone.size() * 2 < m_rowCount || gone.size() < 100) {
        for (const std::wstring& file : files)
            OnRemoveErrors(file);
        return;
    }
    RememberSelection(files.back());
    QTreeWidgetItem* current = gone.contains(currentItem()) ? nullptr : currentItem();
    const QList<QTreeWidgetItem*> rows = invisibleRootItem()->takeChildren();
    QList<QTreeWidgetItem*> left;
    for (QTreeWidgetItem* row : rows)
        (gone.contains(row) ? m_buried : left).append(row);
    addTopLevelItems(left);
    setCurrentItem(current);
    for (const std::wstring& file : files)
        m_rowsOfFile.erase(CCAErrorsBarItem::MakeFileKey(file));
    m_rowCount = static_cast<std::size_t>(left.size());
    BurySlice();
}

void CCAErrorsBar::BeginMany()
{
    // A selection stays on its row whatever comes: then one file comes after the other.
    m_many = !m_filler && !HasForeignRows() && selectedItems().isEmpty();
}

void CCAErrorsBar::EndMany()
{
    PutLaterIn();
    m_many = false;
}

void CCAErrorsBar::PutLaterIn()
{
    if (!m_later.isEmpty())
        InsertSorted(std::exchange(m_later, {}));
}

void CCAErrorsBar::Bury(const std::vector<QTreeWidgetItem*>& rows)
{
    const bool isFirst = m_buried.isEmpty();
    for (QTreeWidgetItem* row : rows)
        m_buried.append(row);
    if (isFirst) // enough has been done in this turn
        QTimer::singleShot(0, this, [this] { BurySlice(); });
}

void CCAErrorsBar::BurySlice()
{
    constexpr int AtOnce = 5000;
    for (int i = 0; i < AtOnce && !m_buried.isEmpty(); ++i)
        delete m_buried.takeLast();
    if (!m_buried.isEmpty())
        QTimer::singleShot(0, this, [this] { BurySlice(); });
}

void CCAErrorsBar::OnRemoveErrors(const std::wstring& file)
{
    RememberSelection(file);

    const std::wstring key = CCAErrorsBarItem::MakeFileKey(file);
    if (HasForeignRows()) {
        RemoveRowsOneByOne(key);
        return;
    }
    const auto found = m_rowsOfFile.find(key);
    if (found == m_rowsOfFile.end())
        return;
    if (m_many && !(*found->second.rows.begin())->treeWidget())
        PutLaterIn();
    const SFileRows gone = std::move(found->second);
    m_rowsOfFile.erase(found);
    m_rowCount -= gone.rows.size();
    if (m_filler)
        m_filler->Remove({gone.rows.begin(), gone.rows.end()});
    else
        RemoveRows(FindRows(gone.rows));
}

void CCAErrorsBar::RemoveRows(const std::vector<int>& rows)
{
    for (std::size_t end = rows.size(); end > 0;) {
        std::size_t first = end - 1;
        while (first > 0 && rows[first - 1] == rows[first] - 1)
            --first;
        model()->removeRows(rows[first], static_cast<int>(end - first));
        end = first;
    }
}

void CCAErrorsBar::RemoveRowsOneByOne(const std::wstring& fileKey)
{
    for (int row = topLevelItemCount() - 1; row >= 0; --row) {
        const auto* item = dynamic_cast<CCAErrorsBarItem*>(topLevelItem(row));
        if (item && item->GetFileKey() == fileKey)
            delete item;
    }
}

void CCAErrorsBar::ForgetRow(CCAErrorsBarItem* item)
{
    if (m_filler)
        m_filler->Forget(item);
    const auto found = m_rowsOfFile.find(item->GetFileKey());
    if (found == m_rowsOfFile.end())
        return;
    m_rowCount -= found->second.rows.erase(item);
    if (found->second.rows.empty())
        m_rowsOfFile.erase(found);
}

bool CCAErrorsBar::IsBefore(const QTreeWidgetItem* a, const QTreeWidgetItem* b) const
{
    if (IsDescending())
        std::swap(a, b);
    // To put rows in some at a time, it must be known of all which comes first.
    return m_filler
               ? static_cast<const CCAErrorsBarItem*>(a)->IsBefore(static_cast<const CCAErrorsBarItem&>(*b))
               : *a < *b;
}

bool CCAErrorsBar::IsDescending() const
{
    return SortDirection(m_sortOrder) == Qt::DescendingOrder;
}

template <class TPredicate> int CCAErrorsBar::FindFirstRow(int first, TPredicate isEarly) const
{
    int end = topLevelItemCount();
    while (first < end) {
        const int middle = (first + end) / 2;
        if (isEarly(topLevelItem(middle)))
            first = middle + 1;
        else
            end = middle;
    }
    return first;
}

std::vector<int> CCAErrorsBar::FindRows(const TRows& items) const
{
    // Of one kind there are many, so that their order does not help to find a few of them.
    const bool isByKind = m_sortOrder >= DescriptionAscending && !m_filler;
    return isByKind && items.size() <= 16 ? FindRowsOneByOne(items) : FindRowsInOrder(items);
}

std::vector<int> CCAErrorsBar::FindRowsOneByOne(const TRows& items) const
{
    std::vector<int> rows;
    for (QTreeWidgetItem* item : items)
        rows.push_back(indexOfTopLevelItem(item));
    std::sort(rows.begin(), rows.end());
    return rows;
}

std::vector<int> CCAErrorsBar::FindRowsInOrder(const TRows& items) const
{
    std::vector<const QTreeWidgetItem*> sorted(items.begin(), items.end());
    std::sort(sorted.begin(), sorted.end(),
              [this](const QTreeWidgetItem* a, const QTreeWidgetItem* b) { return IsBefore(a, b); });
    // The next row to be found is equal to the next item, if not that item itself.
    std::vector<int> rows;
    for (int row = 0; rows.size() < sorted.size() && row < topLevelItemCount();) {
        const QTreeWidgetItem* next = sorted[rows.size()];
        QTreeWidgetItem* item = topLevelItem(row);
        if (items.contains(item))
            rows.push_back(row++);
        else if (IsBefore(item, next))
            row = FindFirstRow(row + 1, [&](const QTreeWidgetItem* other) { return IsBefore(other, next); });
        else
            ++row;
    }
    return rows;
}

void CCAErrorsBar::InsertSorted(QList<QTreeWidgetItem*> items)
{
    if (!m_filler && items.size() > topLevelItemCount() / 10) {
        addTopLevelItems(items);
        return SortItems();
    }
    // The rows always are in the current order, so that new ones need only be put where a stable sort of all
    // rows would move them: behind the rows that they are equal to.
    std::stable_sort(items.begin(), items.end(),
                     [this](const QTreeWidgetItem* a, const QTreeWidgetItem* b) { return IsBefore(a, b); });
    const auto placeOf = [this](const QTreeWidgetItem* item) {
        return FindFirstRow(0, [&](const QTreeWidgetItem* other) { return !IsBefore(item, other); });
    };
    // From the back, where a place does not shift those of the items still to come.
    for (int end = items.size(); end > 0;) {
        const int place = placeOf(items[end - 1]);
        int first = end - 1;
        while (first > 0 && placeOf(items[first - 1]) == place)
            --first;
        insertTopLevelItems(place, items.mid(first, end - first));
        end = first;
    }
    header()->setSortIndicator(SortColumn(m_sortOrder), SortDirection(m_sortOrder));
}

void CCAErrorsBar::RankFiles()
{
    std::vector<SBarFile*> files;
    for (const auto& [key, known] : m_rowsOfFile)
        for (const std::shared_ptr<SBarFile>& name : known.names)
            files.push_back(name.get());
    std::sort(files.begin(), files.end(),
              [](const SBarFile* a, const SBarFile* b) { return a->key < b->key; });
    int rank = 0;
    const SBarFile* last = nullptr;
    for (SBarFile* file : files) {
        file->rank = last && last->key == file->key ? rank : ++rank;
        last = file;
    }
}

void CCAErrorsBar::SortItems()
{
    RankFiles();
    if (m_filler) {
        header()->setSortIndicator(SortColumn(m_sortOrder), SortDirection(m_sortOrder));
        m_filler->Sort();
        return;
    }
    sortItems(SortColumn(m_sortOrder), SortDirection(m_sortOrder));
}

void CCAErrorsBar::OnHeaderItemClicked(int nId)
{
    // A click on the first column after another one was sorted sorts it descending, unlike the others.
    switch (nId) {
    case 0: m_sortOrder = m_sortOrder == TypeAscending ? TypeDescending : TypeAscending; break;
    case 1: m_sortOrder = m_sortOrder == FileAscending ? FileDescending : FileAscending; break;
    case 2:
        m_sortOrder = m_sortOrder == DescriptionAscending ? DescriptionDescending : DescriptionAscending;
        break;
    default: break;
    }
    SortItems();
}

void CCAErrorsBar::LoadColumnsWidth()
{
    const std::wstring section = L"CAEBCTRL";
    SDK::ISettings* settings = m_application->GetSettings();
    if (!settings->HasSection(section))
        return;
    for (int i = 0; i < 10; ++i) {
        const std::wstring width = settings->GetString(section, L"column" + std::to_wstring(i), L"");
        if (width.empty())
            return;
        m_columnsWidth.push_back(QString::fromStdWString(width).toInt());
    }
}

void CCAErrorsBar::SetColumnsWidth()
{
    if (m_columnsWidth.empty()) {
        const int minimum = header()->minimumSectionSize();
        header()->resizeSection(0, minimum);
        header()->resizeSection(1, (width() - minimum) / 2);
        return;
    }
    for (std::size_t i = 0; i < m_columnsWidth.size(); ++i)
        header()->resizeSection(static_cast<int>(i), m_columnsWidth[i]);
}

void CCAErrorsBar::mouseDoubleClickEvent(QMouseEvent* e)
{
    QTreeView::mouseDoubleClickEvent(e);
    const QList<QTreeWidgetItem*> selected = selectedItems();
    if (e->button() != Qt::LeftButton || selected.isEmpty())
        return;
    // Opening a document may change the rows, hence the copies.
    const auto* item = static_cast<CCAErrorsBarItem*>(selected.first());
    const std::wstring file = item->GetFile();
    const SyntaxParser::CIterator start = item->GetPos().start;

    SDK::IDocument* document = m_application->GetDocumentService()->Open(file, 0);
    if (!document)
        return;
    auto* view = dynamic_cast<Editor::IStandartView*>(document->GetView());
    if (!view)
        return;
    const auto pos =
        Editor::CViewTextIterator::FromDoc(*view, Base::CTextIterator(document->GetBuffer(), start));
    view->Activate();
    view->GetCaret()->SetPos(pos.GetPos(), 1);
    view->EnsureVisible(0);
}

} // namespace Kesh::CodeAnalyzer
