#include "QuickOpen.h"

#include "DialogSize.h"
#include "Files/FilePath.h"
#include "ProjectManager/FileFinder.h"
#include "Texts.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QThread>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

namespace Kesh::Workbench {

namespace {

constexpr int MaxShown = 100; // who sees more of them types on

/// Less is better; negative: it does not hold the part.
int RankOf(const QString& name, int ownName, const QString& part)
{
    const int inOwn = name.indexOf(part, ownName, Qt::CaseInsensitive);
    if (inOwn >= 0)
        return inOwn == ownName ? 0 : 1;
    return name.contains(part, Qt::CaseInsensitive) ? 2 : -1;
}

} // namespace

QStringList BestNames(const QStringList& names, const QString& typed, int count)
{
    using TRanked = std::tuple<int, int, int>; // rank, length, place
    const QStringList parts = typed.split(' ', Qt::SkipEmptyParts);
    std::vector<TRanked> ranked;
    for (int i = 0; i < names.size(); ++i) {
        const QString& name = names[i];
        const int ownName = name.lastIndexOf('/') + 1;
        int sum = 0;
        bool holds = true;
        for (const QString& part : parts) {
            const int rank = RankOf(name, ownName, part);
            holds = holds && rank >= 0;
            sum += rank;
        }
        if (holds)
            ranked.emplace_back(sum, parts.isEmpty() ? 0 : name.size(), i);
    }
    const auto end =
        ranked.begin() + std::min<std::ptrdiff_t>(count, static_cast<std::ptrdiff_t>(ranked.size()));
    std::partial_sort(ranked.begin(), end, ranked.end());
    QStringList best;
    for (auto it = ranked.begin(); it != end; ++it)
        best.append(names[std::get<2>(*it)]);
    return best;
}

CQuickOpen::CQuickOpen(QWidget* parent) : QDialog(parent), m_text(new QLineEdit), m_list(new QListWidget)
{
    setObjectName(QStringLiteral("quickOpen"));
    setWindowTitle(Tr("Open by name"));
    m_text->setPlaceholderText(Tr("A part of the file's name"));
    m_text->setAccessibleName(m_text->placeholderText());
    m_text->installEventFilter(this);
    m_list->setAccessibleName(Tr("Files"));
    m_list->setUniformItemSizes(true);
    m_list->setTextElideMode(Qt::ElideLeft);
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_text);
    layout->addWidget(m_list);
    connect(m_text, &QLineEdit::textChanged, this, &CQuickOpen::Show);
    connect(m_list, &QListWidget::itemActivated, this, &CQuickOpen::Choose);
    connect(m_list, &QListWidget::itemClicked, this, &CQuickOpen::Choose);
    ResizeOnScreen(*this, {fontMetrics().averageCharWidth() * 70, fontMetrics().height() * 22});
}

CQuickOpen::~CQuickOpen()
{
    Cancel();
}

void CQuickOpen::Cancel()
{
    if (!m_thread)
        return;
    *m_cancelled = true;
    m_thread->wait();
    m_thread.reset();
}

void CQuickOpen::Open(const std::wstring& folder)
{
    if (m_folder != folder)
        m_names.clear();
    m_folder = folder;
    m_text->clear();
    Show();
    show();
    activateWindow();
    m_text->setFocus();
    List(folder);
}

void CQuickOpen::List(const std::wstring& folder)
{
    Cancel();
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    const auto names = std::make_shared<QStringList>();
    m_thread.reset(QThread::create([folder, names, cancelled = m_cancelled] {
        ProjectManager::SFileQuery query;
        query.project = folder;
        query.takesFile = [](const std::wstring&) { return true; };
        query.isCancelled = [&] { return cancelled->load(); };
        for (const std::wstring& file : ProjectManager::FindFiles(folder, query))
            names->append(Host::PathToQt(file.substr(folder.size() + 1)));
    }));
    connect(m_thread.get(), &QThread::finished, this, [this, names, cancelled = m_cancelled] {
        if (*cancelled)
            return;
        m_thread->wait();
        m_thread.release()->deleteLater();
        if (*names == m_names)
            return;
        m_names = *names;
        Show();
    });
    m_thread->start();
}

void CQuickOpen::Show()
{
    m_list->clear();
    m_list->addItems(BestNames(m_names, m_text->text(), MaxShown));
    m_list->setCurrentRow(0);
}

void CQuickOpen::Choose()
{
    const QListWidgetItem* item = m_list->currentItem();
    if (!item)
        return;
    const std::wstring file = m_folder + L'/' + Host::PathFromQt(item->text());
    hide();
    emit chosen(file);
}

bool CQuickOpen::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown: return QCoreApplication::sendEvent(m_list, event);
    case Qt::Key_Return:
    case Qt::Key_Enter: Choose(); return true;
    default: return QDialog::eventFilter(watched, event);
    }
}

} // namespace Kesh::Workbench
