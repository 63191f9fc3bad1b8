#include "SearchPanel.h"

#include "Files/FilePath.h"
#include "PlainTip.h"
#include "Texts.h"

#include <QAbstractTableModel>
#include <QCheckBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTreeView>

namespace Kesh::Workbench {

namespace {

/// Without the letter behind "&": it is that of the same choice in the window's other search.
QString Plain(QString title)
{
    return title.remove('&');
}

} // namespace

/// What was found: the place, below the folder, and its line.
class CSearchPanel::CModel final : public QAbstractTableModel
{
public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_hits.size());
    }
    int columnCount(const QModelIndex& /*parent*/) const override { return 2; }
    QVariant headerData(int section, Qt::Orientation /*orientation*/, int role) const override
    {
        if (role != Qt::DisplayRole)
            return {};
        return section == 0 ? Tr("Place") : Tr("Line");
    }
    QVariant data(const QModelIndex& index, int role) const override
    {
        const SSearchHit& hit = At(index.row());
        if (role == Qt::ToolTipRole)
            return PlainTip(index.column() == 0 ? Host::PathToQt(hit.file) : hit.line);
        if (role != Qt::DisplayRole)
            return {};
        if (index.column() == 1)
            return hit.line;
        return QStringLiteral("%1:%2")
            .arg(Host::PathToQt(hit.file.substr(m_prefix)))
            .arg(hit.span.start.y + 1);
    }

    void Clear(const std::wstring& folder)
    {
        beginResetModel();
        m_hits.clear();
        m_prefix = folder.size() + 1;
        endResetModel();
    }
    void Add(const std::vector<SSearchHit>& hits)
    {
        const int first = static_cast<int>(m_hits.size());
        beginInsertRows({}, first, first + static_cast<int>(hits.size()) - 1);
        m_hits.insert(m_hits.end(), hits.begin(), hits.end());
        endInsertRows();
    }
    const SSearchHit& At(int row) const { return m_hits[static_cast<std::size_t>(row)]; }

private:
    std::vector<SSearchHit> m_hits;
    std::size_t m_prefix = 0;
};

CSearchPanel::CSearchPanel(TPlace place)
    : m_place(std::move(place)),
      m_model(new CModel(this)),
      m_list(new QTreeView),
      m_text(new QLineEdit),
      m_files(new QLineEdit),
      m_matchCase(new QCheckBox(Plain(Tr("Match ca&se")))),
      m_wholeWords(new QCheckBox(Plain(Tr("&Whole words")))),
      m_regExp(new QCheckBox(Plain(Tr("Regular e&xpression")))),
      m_start(new QPushButton),
      m_state(new QLabel)
{
    setObjectName(QStringLiteral("searchPanel"));
    const auto prepare = [](QLineEdit& edit, const char* name, const QString& title) {
        edit.setObjectName(QLatin1String(name));
        edit.setPlaceholderText(title);
        edit.setAccessibleName(title);
    };
    prepare(*m_text, "searchText", Tr("Find in the project's files"));
    prepare(*m_files, "searchFiles", Tr("In files such as *.php, or all"));
    m_start->setObjectName(QStringLiteral("searchStart"));
    m_state->setObjectName(QStringLiteral("searchState"));
    m_state->setTextFormat(Qt::PlainText);
    m_list->setObjectName(QStringLiteral("searchHits"));
    m_list->setAccessibleName(Tr("Found places"));
    m_list->setModel(m_model);
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setMinimumHeight(fontMetrics().height() * 2);
    m_list->setAllColumnsShowFocus(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->header()->resizeSection(0, fontMetrics().averageCharWidth() * 44);
    Arrange();
    setFocusProxy(m_text);
    for (QLineEdit* edit : {m_text, m_files})
        connect(edit, &QLineEdit::returnPressed, this, &CSearchPanel::Start);
    connect(m_start, &QPushButton::clicked, this, [this] { IsRunning() ? Stop() : Start(); });
    connect(m_list, &QTreeView::activated, this, &CSearchPanel::OpenRow);
    connect(&m_search, &CFileSearch::found, this, [this](const std::vector<SSearchHit>& hits) {
        m_model->Add(hits);
        ShowState(Tr("Found: %1").arg(m_model->rowCount({})));
    });
    connect(&m_search, &CFileSearch::finished, this, [this](int files, bool complete) {
        const QString text = complete ? Tr("Found: %1, in %2 files that were searched") : Tr("The first %1");
        ShowState(complete ? text.arg(m_model->rowCount({})).arg(files) : text.arg(CFileSearch::MaxHits));
    });
    ShowState({});
}

void CSearchPanel::Arrange()
{
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->addWidget(m_text, 0, 0);
    layout->addWidget(m_files, 0, 1);
    layout->addWidget(m_start, 0, 2);
    auto* choices = new QHBoxLayout;
    for (QCheckBox* choice : {m_matchCase, m_wholeWords, m_regExp})
        choices->addWidget(choice);
    choices->addWidget(m_state, 1, Qt::AlignRight);
    layout->addLayout(choices, 1, 0, 1, 3);
    layout->addWidget(m_list, 2, 0, 1, 3);
    layout->setColumnStretch(0, 2);
    layout->setColumnStretch(1, 1);
}

void CSearchPanel::Open(const QString& text)
{
    if (!text.isEmpty())
        m_text->setText(text);
    m_text->selectAll();
    m_text->setFocus();
}

void CSearchPanel::Clear()
{
    m_search.Stop();
    m_model->Clear({});
    ShowState({});
}

void CSearchPanel::Start()
{
    if (m_text->text().isEmpty())
        return;
    SSearchOrder order;
    order.text = m_text->text();
    order.matchCase = m_matchCase->isChecked();
    order.wholeWords = m_wholeWords->isChecked();
    order.regExp = m_regExp->isChecked();
    for (const QString& glob : m_files->text().split(QRegularExpression("[\\s,;]+"), Qt::SkipEmptyParts))
        order.files.push_back(Host::PathToBytes(Host::PathFromQt(glob)));
    m_place(order);
    if (order.folder.empty())
        return;
    m_model->Clear(order.folder);
    const QString problem = m_search.Start(std::move(order)); // in English, as the pattern's language is
    ShowState(problem.isEmpty() ? Tr("Searching...") : problem);
}

void CSearchPanel::Stop()
{
    m_search.Stop();
    ShowState(Tr("Stopped. Found: %1").arg(m_model->rowCount({})));
}

void CSearchPanel::ShowState(const QString& text)
{
    m_state->setText(text);
    m_start->setText(IsRunning() ? Tr("Stop") : Tr("Find"));
}

void CSearchPanel::OpenRow(const QModelIndex& index)
{
    const SSearchHit hit = m_model->At(index.row());
    emit openRequested(hit.file, hit.span);
}

void CSearchPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && IsRunning())
        Stop();
    else if (event->key() == Qt::Key_Down && m_model->rowCount({}) > 0)
        GoToHits();
    else
        QWidget::keyPressEvent(event);
}

void CSearchPanel::GoToHits()
{
    if (!m_list->currentIndex().isValid())
        m_list->setCurrentIndex(m_model->index(0, 0));
    m_list->setFocus();
}

} // namespace Kesh::Workbench
