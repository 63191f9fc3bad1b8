#include "Window/CAErrorsBar.h"

#include "Buffer/ViewIteratorNew.h"
#include "Components/CAErrorsEvent.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "Kesh/SDK/IDocument.h"
#include "Kesh/SDK/IServices.h"
#include "Window/CAComponent.h"
#include "Window/CAErrorsBarItem.h"
#include "Window/CAErrorsManager.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <algorithm>
#include <boost/bind/bind.hpp>
#include <boost/bind/placeholders.hpp>
#include <map>
#include <utility>

namespace Kesh::CodeAnalyzer {

using namespace boost::placeholders;

CCAErrorsBar::CCAErrorsBar(SDK::IApplication* application, CCAComponent* component, CCAErrorsManager* manager)
    : m_errorsManager(manager),
      m_application(application),
      m_component(component),
      m_filler(std::make_unique<CCAErrorsBarFiller>(*this, *this, m_rows))
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
    m_rows.Clear();
}

void CCAErrorsBar::SetGradual()
{
    if (m_filler->IsGradual())
        return;
    m_filler->SetGradual();
    SortItems();
}

void CCAErrorsBar::SetPick(TPick pick)
{
    SetGradual();
    m_filler->SetPick(std::move(pick));
}

void CCAErrorsBar::PickAgain()
{
    m_filler->PickAgain();
}

void CCAErrorsBar::PickAgain(const std::wstring& file)
{
    m_filler->PickAgain(CCAErrorsBarItem::MakeFileKey(file));
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
    if ((topLevelItemCount() > 0 || (m_filler->IsGradual() && m_rows.GetCount() > 0)) && m_component)
        m_component->ShowErrorPage(0);
}

template <class TMake> void CCAErrorsBar::AddRows(const std::wstring& file, std::size_t count, TMake make)
{
    const std::shared_ptr<SBarFile> name = m_rows.MakeName(file);
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<int>(count));
    for (std::size_t i = 0; i < count; ++i)
        items.append(make(name, i));
    m_rows.Add(name->key, items);
    m_filler->Add(items);
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
                name, error,
                textOf(severities, error.type, [&] { return CCAErrorsBarItem::SeverityText(error.type); }),
                textOf(descriptions, error.code,
                       [&] { return QString::fromStdWString(m_errorsManager->GetErrorDescription(error)); }),
                this);
        });
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
    if (const auto* rows = m_rows.Find(CCAErrorsBarItem::MakeFileKey(file))) {
        std::vector<QTreeWidgetItem*> old;
        for (QTreeWidgetItem* row : *rows)
            if (static_cast<CCAErrorsBarItem*>(row)->IsOfHost())
                old.push_back(row);
        qDeleteAll(old); // they are few
    }
    if (errors.empty())
        return;
    AddRows(file, errors.size(), [&](const std::shared_ptr<SBarFile>& name, std::size_t i) {
        auto* item =
            new CCAErrorsBarItem(name, errors[i].error, CCAErrorsBarItem::SeverityText(errors[i].error.type),
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
    if (m_filler->HasForeignRows()) {
        for (const std::wstring& file : files)
            OnRemoveErrors(file);
        return;
    }
    if (files.empty())
        return;
    RememberSelection(files.back());
    CErrorsBarRows::TItems gone;
    for (const std::wstring& file : files) {
        const CErrorsBarRows::TItems rows = m_rows.Take(file);
        gone.insert(gone.end(), rows.begin(), rows.end());
    }
    m_filler->RemoveMany(gone);
}

void CCAErrorsBar::BeginMany()
{
    // With a file remembered, one of the next rows is to be selected.
    if (!m_filler->IsGradual() && m_rememberedFile.empty())
        m_filler->WaitForMany();
}

void CCAErrorsBar::EndMany()
{
    if (!m_filler->IsGradual())
        m_filler->GoOnFilling();
}

void CCAErrorsBar::ExpectMany(bool many)
{
    if (!m_filler->IsGradual()) // others may select and sort meanwhile
        return;
    if (many)
        m_filler->WaitForMany();
    else
        m_filler->GoOnFilling();
}

void CCAErrorsBar::OnRemoveErrors(const std::wstring& file)
{
    RememberSelection(file);
    if (m_filler->HasForeignRows())
        return RemoveRowsOneByOne(CCAErrorsBarItem::MakeFileKey(file));
    if (const CErrorsBarRows::TItems gone = m_rows.Take(file); !gone.empty())
        m_filler->Remove(gone);
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
    m_rows.Forget(*item);
}

void CCAErrorsBar::SortItems()
{
    m_rows.RankFiles();
    m_filler->Sort();
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
