#include "ErrorPanel.h"

#include "Application/FilePath.h"
#include "ErrorRowDelegate.h"
#include "Kesh/CodeAnalyzer/IErrorRow.h"
#include "Texts.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace Kesh::Workbench {

namespace {

constexpr int CaretDelay = 120;     // ms: who holds an arrow key down does not look at the list
constexpr int FilterDelay = 60;     // ms
constexpr int SliceTime = 12;       // ms: the window stays alive between two slices
constexpr int TypeAheadTime = 1000; // ms
constexpr int MaxAtOnce = 2000;     // rows that are looked at when they come, and not some at a time

const CodeAnalyzer::IErrorRow* RowOf(const QTreeWidgetItem* item)
{
    return dynamic_cast<const CodeAnalyzer::IErrorRow*>(item);
}

} // namespace

CErrorPanel::CErrorPanel(QTreeWidget& list, CErrorWatch& watch)
    : m_list(&list),
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

    m_delegate->SetTypeSource([this](int index) {
        const std::optional<SRow> row = GetRow(m_list ? m_list->topLevelItem(index) : nullptr);
        return row ? row->error.type : 0;
    });
    list.setItemDelegate(m_delegate);
    list.installEventFilter(this);
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    list.setMinimumHeight(list.fontMetrics().height() * 2); // small screens need no more
    connect(&list, &QTreeWidget::customContextMenuRequested, this, &CErrorPanel::ShowMenu);
    connect(list.model(), &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { OnRowsInserted(first, last); });
    connect(list.model(), &QAbstractItemModel::rowsRemoved, this, [this] {
        if (IsFiltering())
            FilterSoon();
    });
    const auto once = [this](QTimer& timer, int delay, void (CErrorPanel::*action)()) {
        timer.setSingleShot(true);
        timer.setInterval(delay);
        connect(&timer, &QTimer::timeout, this, action);
    };
    once(m_caretTimer, CaretDelay, &CErrorPanel::FollowCaret);
    once(m_filterStart, FilterDelay, &CErrorPanel::StartFilter);
    once(m_filterStep, 0, &CErrorPanel::FilterSlice);
    m_typedTimer.setSingleShot(true);
    m_typedTimer.setInterval(TypeAheadTime);
    connect(m_text, &QLineEdit::textChanged, this, [this] {
        m_nextRow = -1; // what is looked for has become another
        m_filterStart.start();
    });
    for (QComboBox* choice : {m_severity, m_scope})
        connect(choice, qOverload<int>(&QComboBox::currentIndexChanged), this, &CErrorPanel::RestartFilter);
    connect(&watch, &CErrorWatch::changed, this, &CErrorPanel::OnWatchChanged);
    ShowCounts();
}

CErrorPanel::~CErrorPanel()
{
    if (!m_list)
        return;
    m_list->removeEventFilter(this);
    m_list->setMinimumHeight(0);
    m_list->setItemDelegate(new QStyledItemDelegate(m_list));
    m_list->setParent(nullptr);
}

std::optional<CErrorPanel::SRow> CErrorPanel::GetRow(const QTreeWidgetItem* item) const
{
    if (!item && m_list && !m_list->selectedItems().isEmpty())
        item = m_list->selectedItems().first();
    if (!item)
        return {};
    const CodeAnalyzer::IErrorRow* known = RowOf(item);
    if (!known)
        return {};
    SRow row{known->GetFile(), known->GetError(), item->text(2)};
    row.error.type = m_watch.TypeOf(row.file, row.error);
    return row;
}

QString CErrorPanel::Describe(const SRow& row) const
{
    return QStringLiteral("%1:%2: %3 [%4]")
        .arg(m_delegate->Shorten(Host::PathToQt(row.file)), QString::number(row.error.pos.start.y + 1),
             row.message, QString::number(row.error.code));
}

void CErrorPanel::SetFolder(const QString& folder)
{
    m_folder = folder;
    m_delegate->SetFolder(folder);
    if (m_list)
        m_list->viewport()->update();
    if (m_scope->currentIndex() == InProject)
        RestartFilter();
}

void CErrorPanel::SetCaret(const std::wstring& file, const SyntaxParser::CIterator& pos)
{
    const bool otherFile = m_caret.file != file;
    m_caret = {file, pos};
    if (otherFile && (m_scope->currentIndex() == ThisFile || m_scope->currentIndex() == OpenFiles))
        m_filterStart.start();
    m_caretTimer.start();
}

// The keys of the list.

bool CErrorPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_list && event->type() == QEvent::KeyPress && OnListKey(*static_cast<QKeyEvent*>(event)))
        return true;
    return QWidget::eventFilter(watched, event);
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
    const int count = m_list->topLevelItemCount();
    const int current = m_list->indexOfTopLevelItem(m_list->currentItem());
    for (int i = goesOn ? 0 : 1; i <= count && count > 0; ++i) {
        QTreeWidgetItem* item = m_list->topLevelItem((std::max(current, 0) + i) % count);
        const CodeAnalyzer::IErrorRow* row = RowOf(item);
        if (row && !item->isHidden() &&
            (Host::PathToQt(Host::FileName(row->GetFile())).startsWith(m_typed, Qt::CaseInsensitive) ||
             item->text(2).startsWith(m_typed, Qt::CaseInsensitive))) {
            m_list->setCurrentItem(item);
            return;
        }
    }
}

void CErrorPanel::Copy(bool pathOnly)
{
    if (const std::optional<SRow> row = GetRow())
        QApplication::clipboard()->setText(pathOnly ? Host::PathToQt(row->file) : Describe(*row));
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

// The filter looks at all rows, some at a time.

bool CErrorPanel::HasFilter() const
{
    return !m_text->text().isEmpty() || m_severity->currentIndex() != 0 ||
           m_scope->currentIndex() != Everywhere;
}

bool CErrorPanel::IsFiltering() const
{
    return HasFilter() || m_hides;
}

void CErrorPanel::OnWatchChanged()
{
    // Once nothing is hidden any more, all rows have to be looked at for a last time.
    const bool hid = std::exchange(m_hides, m_watch.MayHide());
    if (hid || m_hides)
        FilterSoon();
    ShowCounts();
}

void CErrorPanel::OnRowsInserted(int first, int last)
{
    m_hides = m_watch.MayHide();
    if (!IsFiltering())
        return;
    // What is not to be seen never is.
    for (int row = first; row <= std::min(last, first + MaxAtOnce); ++row)
        if (QTreeWidgetItem* item = m_list->topLevelItem(row); !Passes(*item))
            item->setHidden(true);
    FilterSoon();
}

void CErrorPanel::FilterSoon()
{
    if (!m_filterStart.isActive())
        m_filterStart.start();
}

bool CErrorPanel::Passes(const QTreeWidgetItem& item) const
{
    const CodeAnalyzer::IErrorRow* row = RowOf(&item);
    if (!row)
        return true;
    const std::wstring& file = row->GetFile();
    const std::int32_t type = m_watch.TypeOf(file, row->GetError());
    if (type == 0)
        return false;
    const bool isError = type == CodeAnalyzer::SeverityError;
    if (m_severity->currentIndex() != 0 && isError != (m_severity->currentIndex() == 1))
        return false;
    const QString& text = m_text->text();
    if (!text.isEmpty() && !item.text(2).contains(text, Qt::CaseInsensitive) &&
        !m_delegate->Shorten(item.text(1)).contains(text, Qt::CaseInsensitive))
        return false;
    switch (m_scope->currentIndex()) {
    case ThisFile: return file == m_caret.file;
    case OpenFiles: return m_isOpen && m_isOpen(file);
    case InProject: return !m_folder.isEmpty() && file.starts_with(Host::PathFromQt(m_folder) + L'/');
    default: return true;
    }
}

void CErrorPanel::RestartFilter()
{
    m_filterStart.stop();
    m_nextRow = 0;
    m_passed = 0;
    FilterSlice();
}

void CErrorPanel::StartFilter()
{
    m_nextRow < 0 ? RestartFilter() : FilterSoon();
}

void CErrorPanel::FilterSlice()
{
    if (!m_list || m_nextRow < 0)
        return;
    QElapsedTimer time;
    time.start();
    // Rows that come or go meanwhile have it all done again, but not before it has been done once.
    const int count = m_list->topLevelItemCount();
    while (m_nextRow < count && time.elapsed() < SliceTime) {
        QTreeWidgetItem* item = m_list->topLevelItem(m_nextRow++);
        const bool hide = !Passes(*item);
        m_passed += !hide;
        if (item->isHidden() != hide)
            item->setHidden(hide);
    }
    if (m_nextRow < count) {
        m_filterStep.start();
        return;
    }
    m_nextRow = -1;
    m_shown = m_passed;
    ShowCounts();
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
        return shown.pos == error->pos && shown.code == error->code;
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
        text = Tr("%1 (%2 shown)").arg(text).arg(m_shown);
    m_counts->setText(text);
}

} // namespace Kesh::Workbench
