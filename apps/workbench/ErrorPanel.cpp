#include "ErrorPanel.h"

#include "ErrorRowDelegate.h"
#include "Files/FilePath.h"
#include "Texts.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <utility>

namespace Kesh::Workbench {

namespace {

constexpr int CaretDelay = 120;     // ms: who holds an arrow key down does not look at the list
constexpr int FilterDelay = 60;     // ms
constexpr int TypeAheadTime = 1000; // ms
constexpr int SettleDelay = 20;     // ms
constexpr int LossTime = 10000;     // ms: a check takes no longer

const CodeAnalyzer::IErrorRow* RowOf(const QTreeWidgetItem* item)
{
    return dynamic_cast<const CodeAnalyzer::IErrorRow*>(item);
}

} // namespace

CErrorPanel::CErrorPanel(QTreeWidget& list, CErrorWatch& watch)
    : m_list(&list),
      m_rows(dynamic_cast<CodeAnalyzer::IErrorRows*>(&list)),
      m_watch(watch),
      m_delegate(new CErrorRowDelegate(this)),
      m_text(new QLineEdit),
      m_severity(new QComboBox),
      m_scope(new QComboBox),
      m_counts(new QLabel)
{
    setObjectName(QStringLiteral("errorPanel"));
    m_text->setObjectName(QStringLiteral("errorFilter"));
    m_text->setPlaceholderText(Tr("Filter by file or message"));
    m_text->setAccessibleName(Tr("Filter by file or message"));
    m_text->setClearButtonEnabled(true);
    m_severity->setObjectName(QStringLiteral("errorFilterSeverity"));
    m_severity->setAccessibleName(Tr("Severity"));
    m_severity->addItems({Tr("Errors and warnings"), Tr("Errors only"), Tr("Warnings only")});
    m_scope->setObjectName(QStringLiteral("errorFilterScope"));
    m_scope->setAccessibleName(Tr("Where"));
    m_scope->addItems({Tr("Everywhere"), Tr("In this file"), Tr("In open files"), Tr("In the project")});
    m_counts->setObjectName(QStringLiteral("errorPanelCounts"));
    list.setAccessibleName(Tr("Errors"));
    Arrange(list);

    m_delegate->SetTypeSource([this](int index) {
        const std::optional<SRow> row = GetRow(m_list ? m_list->topLevelItem(index) : nullptr);
        return row ? row->error.type : 0;
    });
    list.setItemDelegate(m_delegate);
    m_delegate->SetLineSource([this](int index) {
        const std::optional<SRow> row = GetRow(m_list ? m_list->topLevelItem(index) : nullptr);
        return row && HasMoved(*row) ? std::optional(row->error.pos.start.y) : std::nullopt;
    });
    m_delegate->SetMessageSource([this](int index) {
        const std::optional<SRow> row = GetRow(m_list ? m_list->topLevelItem(index) : nullptr);
        return row ? row->message : QString();
    });
    // Several rows can be copied at once.
    list.setSelectionMode(QAbstractItemView::ExtendedSelection);
    list.installEventFilter(this);
    list.viewport()->installEventFilter(this);
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    list.setMinimumHeight(list.fontMetrics().height() * 2); // small screens need no more
    connect(&list, &QTreeWidget::customContextMenuRequested, this, &CErrorPanel::ShowMenu);
    connect(list.model(), &QAbstractItemModel::rowsInserted, this, &CErrorPanel::OnRowsChanged);
    connect(list.model(), &QAbstractItemModel::rowsRemoved, this, &CErrorPanel::OnRowsChanged);
    if (m_rows)
        m_rows->SetPick([this](const CodeAnalyzer::IErrorRow& row) { return Passes(row); });
    const auto once = [this](QTimer& timer, int delay, void (CErrorPanel::*action)()) {
        timer.setSingleShot(true);
        timer.setInterval(delay);
        connect(&timer, &QTimer::timeout, this, action);
    };
    connect(&list, &QTreeWidget::currentItemChanged, this, &CErrorPanel::NameRow);
    connect(list.model(), &QAbstractItemModel::rowsAboutToBeRemoved, this,
            [this](const QModelIndex&, int first, int last) { NoteLoss(first, last); });
    once(m_caretTimer, CaretDelay, &CErrorPanel::FollowCaret);
    once(m_filterStart, FilterDelay, &CErrorPanel::Filter);
    once(m_settled, SettleDelay, &CErrorPanel::OnSettled);
    m_typedTimer.setSingleShot(true);
    m_typedTimer.setInterval(TypeAheadTime);
    connect(m_text, &QLineEdit::textChanged, &m_filterStart, qOverload<>(&QTimer::start));
    for (QComboBox* choice : {m_severity, m_scope})
        connect(choice, qOverload<int>(&QComboBox::currentIndexChanged), this, &CErrorPanel::Filter);
    connect(&watch, &CErrorWatch::changed, this, &CErrorPanel::OnWatchChanged);
    ShowCounts();
}

void CErrorPanel::Arrange(QTreeWidget& list)
{
    auto* line = new QHBoxLayout;
    line->setContentsMargins(4, 2, 4, 2);
    line->addWidget(m_text, 1);
    line->addWidget(m_severity);
    line->addWidget(m_scope);
    line->addSpacing(6);
    line->addWidget(m_counts);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(line);
    layout->addWidget(&list, 1);
    setFocusProxy(&list);
}

CErrorPanel::~CErrorPanel()
{
    if (!m_list)
        return;
    m_list->removeEventFilter(this);
    m_list->viewport()->removeEventFilter(this);
    if (m_rows)
        m_rows->SetPick({});
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setMinimumHeight(0);
    m_list->setItemDelegate(new QStyledItemDelegate(m_list));
    m_list->setParent(nullptr);
}

std::optional<CErrorPanel::SRow> CErrorPanel::GetRow(const QTreeWidgetItem* item) const
{
    // The one that has the keys, unless others are selected.
    if (!item && m_list) {
        const QModelIndexList selected = m_list->selectionModel()->selectedRows();
        item = m_list->currentItem();
        if (!selected.isEmpty() && !(item && item->isSelected()))
            item = m_list->topLevelItem(selected.first().row());
    }
    if (!item)
        return {};
    const CodeAnalyzer::IErrorRow* known = RowOf(item);
    if (!known)
        return {};
    SRow row{known->GetFile(), known->GetError(), {}, known->GetError().pos};
    row.message = m_watch.MessageOf(row.file, row.error);
    row.error.type = m_watch.TypeOf(row.file, row.error);
    row.error.pos = m_watch.WhereNow(row.file, row.error.pos);
    return row;
}

bool CErrorPanel::HasMoved(const SRow& row)
{
    return row.error.pos != row.foundAt;
}

void CErrorPanel::NameRow(QTreeWidgetItem* item)
{
    const std::optional<SRow> row = item ? GetRow(item) : std::nullopt;
    if (!row)
        return;
    const bool isError = row->error.type == CodeAnalyzer::SeverityError;
    item->setData(0, Qt::AccessibleTextRole,
                  QStringLiteral("%1, %2").arg(isError ? Tr("Error") : Tr("Warning"), Describe(*row)));
}

void CErrorPanel::SetIncomplete(bool isIncomplete)
{
    m_isIncomplete = isIncomplete;
    ShowCounts();
}

void CErrorPanel::FollowEdits()
{
    if (m_list)
        m_list->viewport()->update();
}

QString CErrorPanel::Describe(const SRow& row) const
{
    return QStringLiteral("%1:%2: %3 [%4]")
        .arg(m_delegate->Shorten(Host::PathToQt(row.file)), QString::number(row.error.pos.start.y + 1),
             row.message, QString::number(row.error.code));
}

void CErrorPanel::SetFolder(const QString& folder)
{
    if (m_folder == folder)
        return;
    m_folder = folder;
    m_prefix = Host::PathFromQt(folder) + L'/';
    m_delegate->SetFolder(folder);
    if (m_list)
        m_list->viewport()->update();
    if (m_scope->currentIndex() == InProject)
        Filter();
}

void CErrorPanel::SetOpenFiles(std::set<std::wstring> files)
{
    const bool isNews = m_openFiles != files;
    m_openFiles = std::move(files);
    if (isNews && m_scope->currentIndex() == OpenFiles)
        Filter();
}

void CErrorPanel::SetCaret(const std::wstring& file, const SyntaxParser::CIterator& pos)
{
    const bool otherFile = m_caret.file != file;
    m_caret = {file, pos};
    if (otherFile && m_scope->currentIndex() == ThisFile)
        m_filterStart.start();
    m_caretTimer.start();
}

// The keys of the list.

bool CErrorPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::MouseButtonPress)
        m_lost.reset(); // the user chooses
    if (watched == m_list && event->type() == QEvent::KeyPress && OnListKey(*static_cast<QKeyEvent*>(event)))
        return true;
    // The list knows places as they were found.
    const std::optional<SRow> row =
        event->type() == QEvent::MouseButtonDblClick && watched != m_list ? GetRow() : std::nullopt;
    if (row && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton && HasMoved(*row)) {
        OpenSelected();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void CErrorPanel::keyPressEvent(QKeyEvent* event)
{
    // What the filter's line leaves over.
    if (event->key() == Qt::Key_Escape && !m_text->text().isEmpty()) {
        m_text->clear();
    } else if (event->key() == Qt::Key_Down && m_list && m_list->topLevelItemCount() > 0) {
        if (m_list->selectedItems().isEmpty())
            m_list->setCurrentItem(m_list->topLevelItem(0));
        m_list->setFocus();
    } else {
        QWidget::keyPressEvent(event);
    }
}

bool CErrorPanel::OnListKey(QKeyEvent& event)
{
    if (event.matches(QKeySequence::Copy)) {
        Copy(false);
    } else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) {
        OpenSelected();
    } else if (!event.text().isEmpty() && event.text()[0].isPrint() &&
               !(event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))) {
        TypeAhead(event.text());
    } else {
        return false;
    }
    return true;
}

void CErrorPanel::TypeAhead(const QString& text)
{
    const bool goesOn = m_typedTimer.isActive();
    m_typed = goesOn ? m_typed + text : text;
    m_typedTimer.start();
    const auto startsSo = [this](const QTreeWidgetItem& item) {
        const CodeAnalyzer::IErrorRow* row = RowOf(&item);
        const std::wstring file = row ? row->GetFile() : std::wstring();
        for (const QString& text :
             {Host::PathToQt(Host::FileName(file)), m_delegate->Shorten(Host::PathToQt(file)), item.text(2)})
            if (text.startsWith(m_typed, Qt::CaseInsensitive))
                return true;
        return false;
    };
    const int count = m_list->topLevelItemCount();
    const int current = m_list->indexOfTopLevelItem(m_list->currentItem());
    for (int i = goesOn ? 0 : 1; i <= count && count > 0; ++i) {
        QTreeWidgetItem* item = m_list->topLevelItem((std::max(current, 0) + i) % count);
        if (startsSo(*item)) {
            m_list->setCurrentItem(item);
            return;
        }
    }
}

void CErrorPanel::Copy(bool pathOnly)
{
    QModelIndexList rows = m_list->selectionModel()->selectedRows();
    if (rows.isEmpty())
        rows.append(m_list->currentIndex());
    std::sort(rows.begin(), rows.end());
    QStringList lines;
    for (const QModelIndex& index : rows)
        if (const std::optional<SRow> row = GetRow(m_list->topLevelItem(index.row())))
            lines.append(pathOnly ? Host::PathToQt(row->file) : Describe(*row));
    if (pathOnly)
        lines.removeDuplicates();
    if (!lines.isEmpty())
        QApplication::clipboard()->setText(lines.join('\n'));
}

void CErrorPanel::OpenSelected()
{
    if (const std::optional<SRow> row = GetRow())
        emit openRequested(row->file, row->error.pos.start);
}

void CErrorPanel::ShowMenu(const QPoint& point)
{
    const std::optional<SRow> row = GetRow();
    if (!row)
        return;
    QMenu menu;
    menu.setObjectName(QStringLiteral("errorMenu"));
    menu.addAction(Tr("&Open"), this, &CErrorPanel::OpenSelected);
    menu.addAction(Tr("&Copy"), this, [this] { Copy(false); })->setShortcut(QKeySequence::Copy);
    menu.addAction(Tr("Copy the &path"), this, [this] { Copy(true); });
    emit menuRequested(&menu, row->file, row->error);
    menu.exec(m_list->viewport()->mapToGlobal(point));
}

// The filter.

bool CErrorPanel::HasFilter() const
{
    return !m_text->text().isEmpty() || m_severity->currentIndex() != 0 ||
           m_scope->currentIndex() != Everywhere;
}

void CErrorPanel::OnWatchChanged(const std::set<std::wstring>& files)
{
    const bool hid = std::exchange(m_hides, m_watch.MayHide());
    if (m_hides != hid)
        Filter();
    else if (m_rows && (m_hides || HasFilter()))
        for (const std::wstring& file : files)
            m_rows->PickAgain(file);
    ShowCounts();
}

bool CErrorPanel::Passes(const CodeAnalyzer::IErrorRow& row) const
{
    const std::wstring& file = row.GetFile();
    const CodeAnalyzer::SCAError error = row.GetError();
    const std::int32_t type = m_watch.TypeOf(file, error);
    if (type == 0)
        return false;
    const bool isError = type == CodeAnalyzer::SeverityError;
    if (m_severity->currentIndex() != 0 && isError != (m_severity->currentIndex() == 1))
        return false;
    const auto place = [&] {
        return m_delegate->Shorten(Host::PathToQt(file)) + QStringLiteral(" - ") +
               QString::number(m_watch.WhereNow(file, error.pos).start.y + 1);
    };
    const QString& text = m_text->text();
    if (!text.isEmpty() && !row.GetMessage().contains(text, Qt::CaseInsensitive) &&
        !place().contains(text, Qt::CaseInsensitive) &&
        !m_watch.MessageOf(file, error).contains(text, Qt::CaseInsensitive))
        return false;
    switch (m_scope->currentIndex()) {
    case ThisFile: return file == m_caret.file;
    case OpenFiles: return m_openFiles.count(file) != 0;
    case InProject: return !m_folder.isEmpty() && file.starts_with(m_prefix);
    default: return true;
    }
}

void CErrorPanel::Filter()
{
    m_filterStart.stop();
    if (m_list && m_rows)
        m_rows->PickAgain();
    OnRowsChanged();
}

void CErrorPanel::OnRowsChanged()
{
    if (!m_settled.isActive())
        m_settled.start();
}

void CErrorPanel::OnSettled()
{
    if (!m_list || !m_rows)
        return;
    if (m_rows->IsArranging())
        return m_settled.start();
    ShowCounts();
    KeepNear();
    if (!m_list->currentItem() || !m_list->currentItem()->isSelected())
        m_caretTimer.start();
}

void CErrorPanel::NoteLoss(int first, int last)
{
    QTreeWidgetItem* current = m_list ? m_list->currentItem() : nullptr;
    const int row = current && current->isSelected() ? m_list->indexOfTopLevelItem(current) : -1;
    const CodeAnalyzer::IErrorRow* known = row >= first && row <= last ? RowOf(current) : nullptr;
    if (!known || m_lost)
        return;
    m_lost = SLost{known->GetFile(), known->GetError(), {}};
    m_lost->since.start();
}

void CErrorPanel::KeepNear()
{
    if (!m_lost)
        return;
    if (m_lost->since.elapsed() > LossTime) {
        m_lost.reset();
        return;
    }
    QTreeWidgetItem* nearest = nullptr;
    std::tuple<std::int64_t, bool, std::int64_t> least;
    const CodeAnalyzer::SCAError& lost = m_lost->error;
    for (int row = 0; row < m_list->topLevelItemCount(); ++row) {
        QTreeWidgetItem* item = m_list->topLevelItem(row);
        const CodeAnalyzer::IErrorRow* known = RowOf(item);
        if (!known || known->GetFile() != m_lost->file)
            continue;
        const CodeAnalyzer::SCAError error = known->GetError();
        // What is on the same line, and of the same kind, comes first.
        const std::tuple distance(std::abs(error.pos.start.y - lost.pos.start.y), error.code != lost.code,
                                  std::abs(error.pos.start.x - lost.pos.start.x));
        if (!nearest || distance < least) {
            nearest = item;
            least = distance;
        }
    }
    if (!nearest)
        return; // the check of the file may still be under way
    m_lost.reset();
    m_list->setCurrentItem(nearest);
    m_list->scrollToItem(nearest);
}

void CErrorPanel::FollowCaret()
{
    if (!m_list || m_list->hasFocus() || m_caret.file.empty())
        return;
    const std::optional<CodeAnalyzer::SCAError> error = m_watch.FindAt(m_caret.file, m_caret.pos);
    if (!error)
        return;
    const auto shows = [&](const QTreeWidgetItem* item) {
        const CodeAnalyzer::IErrorRow* row = RowOf(item);
        if (!row || row->GetFile() != m_caret.file)
            return false;
        const CodeAnalyzer::SCAError shown = row->GetError();
        return shown.code == error->code && m_watch.WhereNow(m_caret.file, shown.pos) == error->pos;
    };
    QTreeWidgetItem* found = m_list->currentItem();
    for (int row = 0; !shows(found) && row < m_list->topLevelItemCount(); ++row)
        found = m_list->topLevelItem(row);
    if (!shows(found))
        return;
    m_list->setCurrentItem(found);
    m_list->scrollToItem(found);
}

void CErrorPanel::ShowCounts()
{
    const CErrorWatch::SCounts total = m_watch.GetTotal();
    QString text = total.errors + total.warnings == 0
                       ? QString()
                       : Tr("Errors: %1, warnings: %2").arg(total.errors).arg(total.warnings);
    if (HasFilter())
        text = Tr("%1 (%2 shown)").arg(text).arg(m_list ? m_list->topLevelItemCount() : 0);
    if (m_isIncomplete)
        text +=
            (text.isEmpty() ? QString() : QStringLiteral(" - ")) + Tr("incomplete: the check was stopped");
    m_counts->setText(text);
}

} // namespace Kesh::Workbench
