#include "ErrorPanel.h"

#include "Application/FilePath.h"
#include "ErrorRowDelegate.h"
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

namespace Kesh::Workbench {

namespace {

constexpr int CaretDelay = 120;     // ms: who holds an arrow key down does not look at the list
constexpr int FilterDelay = 60;     // ms
constexpr int SliceTime = 12;       // ms: the window stays alive between two slices
constexpr int TypeAheadTime = 1000; // ms
const QString LineMark = QStringLiteral(" - ");

QString FileOf(const QTreeWidgetItem& item)
{
    const QString text = item.text(1);
    return text.left(text.lastIndexOf(LineMark));
}

int LineOf(const QTreeWidgetItem& item)
{
    const QString text = item.text(1);
    return text.midRef(text.lastIndexOf(LineMark) + LineMark.size()).toInt() - 1;
}

bool LooksLike(const QTreeWidgetItem& a, const QTreeWidgetItem& b)
{
    return a.text(1) == b.text(1) && a.text(2) == b.text(2) && a.text(0) == b.text(0);
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
    line->addWidget(m_counts);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(line);
    layout->addWidget(&list, 1);
    setFocusProxy(&list);

    list.setItemDelegate(m_delegate);
    list.installEventFilter(this);
    list.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&list, &QTreeWidget::customContextMenuRequested, this, &CErrorPanel::ShowMenu);
    const auto filterSoon = [this] {
        if (IsFiltering())
            m_filterStart.start();
    };
    connect(list.model(), &QAbstractItemModel::rowsInserted, this, filterSoon);
    connect(list.model(), &QAbstractItemModel::rowsRemoved, this, filterSoon);
    const auto once = [this](QTimer& timer, int delay, void (CErrorPanel::*action)()) {
        timer.setSingleShot(true);
        timer.setInterval(delay);
        connect(&timer, &QTimer::timeout, this, action);
    };
    once(m_caretTimer, CaretDelay, &CErrorPanel::FollowCaret);
    once(m_filterStart, FilterDelay, &CErrorPanel::RestartFilter);
    once(m_filterStep, 0, &CErrorPanel::FilterSlice);
    m_typedTimer.setSingleShot(true);
    m_typedTimer.setInterval(TypeAheadTime);
    connect(m_text, &QLineEdit::textChanged, &m_filterStart, qOverload<>(&QTimer::start));
    for (QComboBox* choice : {m_severity, m_scope})
        connect(choice, qOverload<int>(&QComboBox::currentIndexChanged), this, &CErrorPanel::RestartFilter);
    connect(&watch, &CErrorWatch::changed, this, &CErrorPanel::ShowCounts);
    connect(&watch, &CErrorWatch::settingsChanged, this, &CErrorPanel::RestartFilter);
    ShowCounts();
}

CErrorPanel::~CErrorPanel()
{
    if (!m_list)
        return;
    m_list->removeEventFilter(this);
    m_list->setItemDelegate(new QStyledItemDelegate(m_list));
    m_list->setParent(nullptr);
}

std::optional<CErrorPanel::SRow> CErrorPanel::GetRow(const QTreeWidgetItem* item) const
{
    if (!item && m_list && !m_list->selectedItems().isEmpty())
        item = m_list->selectedItems().first();
    if (!item)
        return {};
    SRow row;
    row.file = Host::PathFromQt(FileOf(*item));
    row.message = item->text(2);
    // The row tells no more than it shows; of several that look alike each stands for the next of the errors.
    int alike = 0;
    for (int above = m_list->indexOfTopLevelItem(const_cast<QTreeWidgetItem*>(item)) - 1;
         above >= 0 && LooksLike(*m_list->topLevelItem(above), *item); --above)
        ++alike;
    std::optional<SRow> found;
    for (const CodeAnalyzer::SCAError& error : m_watch.GetErrors(row.file)) {
        if (error.pos.start.y != LineOf(*item) || m_watch.GetMessage(error) != row.message)
            continue;
        row.error = error;
        found = row;
        if (alike-- == 0)
            break;
    }
    return found;
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
        const QString name = item->text(1).section('/', -1);
        if (!item->isHidden() && (name.startsWith(m_typed, Qt::CaseInsensitive) ||
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

bool CErrorPanel::IsFiltering() const
{
    return m_watch.HasSettings() || !m_text->text().isEmpty() || m_severity->currentIndex() != 0 ||
           m_scope->currentIndex() != Everywhere;
}

bool CErrorPanel::Passes(const QTreeWidgetItem& item) const
{
    if (m_watch.HasSettings() && !GetRow(&item))
        return false;
    const bool isError = item.text(0) == Tr("Error");
    if (m_severity->currentIndex() != 0 && isError != (m_severity->currentIndex() == 1))
        return false;
    const QString& text = m_text->text();
    if (!text.isEmpty() && !m_delegate->Shorten(item.text(1)).contains(text, Qt::CaseInsensitive) &&
        !item.text(2).contains(text, Qt::CaseInsensitive))
        return false;
    const QString file = FileOf(item);
    switch (m_scope->currentIndex()) {
    case ThisFile: return Host::PathFromQt(file) == m_caret.file;
    case OpenFiles: return m_isOpen && m_isOpen(Host::PathFromQt(file));
    case InProject: return !m_folder.isEmpty() && file.startsWith(m_folder + '/');
    default: return true;
    }
}

void CErrorPanel::RestartFilter()
{
    m_nextRow = 0;
    m_passed = 0;
    FilterSlice();
}

void CErrorPanel::FilterSlice()
{
    if (!m_list || m_nextRow < 0)
        return;
    QElapsedTimer time;
    time.start();
    // Rows that come or go meanwhile have it all done again.
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
    const QString place = Host::PathToQt(m_caret.file) + LineMark + QString::number(error->pos.start.y + 1);
    const QString message = m_watch.GetMessage(*error);
    const auto shows = [&](const QTreeWidgetItem* item) {
        return item && item->text(1) == place && item->text(2) == message;
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
    if (IsFiltering())
        text = Tr("%1 (%2 shown)").arg(text).arg(m_shown);
    m_counts->setText(text);
}

} // namespace Kesh::Workbench
