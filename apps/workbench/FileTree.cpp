#include "FileTree.h"

#include "ErrorWatch.h"
#include "Files/FilePath.h"
#include "Texts.h"

#include <QFileSystemModel>
#include <QHash>
#include <QHeaderView>
#include <QTimer>

namespace Kesh::Workbench {

class CFileTree::CModel final : public QFileSystemModel
{
public:
    explicit CModel(CFileTree& tree) : QFileSystemModel(&tree), m_tree(tree)
    {
        setFilter(QDir::AllDirs | QDir::Files | QDir::NoDotAndDotDot);
        setOption(DontUseCustomDirectoryIcons);
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        if (role == Qt::ForegroundRole && !m_marked.isEmpty())
            if (const ESeverity severity = m_marked.value(filePath(index)); severity != ESeverity::None)
                return ColorOf(severity, m_tree.palette().color(QPalette::Base));
        // What colours tell is told in words too.
        if (role == Qt::AccessibleTextRole)
            return WithSeverity(fileName(index), m_marked.value(filePath(index)));
        return QFileSystemModel::data(index, role);
    }

    QHash<QString, ESeverity> m_marked;

private:
    CFileTree& m_tree;
};

CFileTree::CFileTree(QWidget* parent) : QTreeView(parent)
{
    setObjectName(QStringLiteral("fileTree"));
    setAccessibleName(Tr("Project"));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    const auto open = [this](const QModelIndex& index) {
        if (m_model && !m_model->isDir(index))
            emit fileActivated(m_model->filePath(index));
    };
    connect(this, &QTreeView::activated, this, open);
    // Some styles activate with two clicks; one is enough to look into a file.
    connect(this, &QTreeView::clicked, this, open);
}

void CFileTree::SetFolder(const QString& folder)
{
    m_folder = folder;
    setModel(nullptr);
    delete m_model;
    m_model = nullptr;
    if (folder.isEmpty())
        return;
    m_model = new CModel(*this);
    setModel(m_model);
    setRootIndex(m_model->setRootPath(folder));
    // Folders fill when they are ready, which moves what has been scrolled to.
    connect(m_model, &QFileSystemModel::directoryLoaded, this, [this] {
        const QModelIndex current = currentIndex();
        if (current.isValid() && m_model->filePath(current) == m_shown)
            QTimer::singleShot(0, this, [this] { scrollTo(currentIndex()); });
    });
    for (int column = 1; column < m_model->columnCount(); ++column)
        hideColumn(column);
    UpdateErrors();
}

void CFileTree::SetErrorWatch(const CErrorWatch* watch)
{
    m_watch = watch;
    if (watch)
        connect(watch, &CErrorWatch::changed, this, &CFileTree::UpdateErrors);
    UpdateErrors();
}

void CFileTree::ShowFile(const QString& path)
{
    if (!m_model || !path.startsWith(m_folder + '/'))
        return;
    const QModelIndex index = m_model->index(path);
    setCurrentIndex(index);
    scrollTo(index);
    m_shown = path;
}

void CFileTree::UpdateErrors()
{
    if (!m_model)
        return;
    QHash<QString, ESeverity> marked;
    if (m_watch) {
        for (const auto& [file, counts] : m_watch->GetFiles()) {
            const ESeverity severity = counts.errors > 0 ? ESeverity::Error : ESeverity::Warning;
            QString path = Host::PathToQt(file);
            // Up to the project's folder, or to what has been marked as gravely for another file.
            while (path.size() > m_folder.size() && marked.value(path) < severity) {
                marked.insert(path, severity);
                path.truncate(path.lastIndexOf('/'));
            }
        }
    }
    m_model->m_marked = marked;
    viewport()->update();
}

} // namespace Kesh::Workbench
