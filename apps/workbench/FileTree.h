#pragma once

#include <QTreeView>
#include <map>
#include <set>
#include <string>

namespace Kesh::Workbench {

class CErrorWatch;

/// The files of the project's folder; those with errors, and the folders they lie in, stand out.
class CFileTree final : public QTreeView
{
    Q_OBJECT

public:
    explicit CFileTree(QWidget* parent = nullptr);

    /// An empty path shows nothing.
    void SetFolder(const QString& folder);
    void SetErrorWatch(const CErrorWatch* watch);
    /// Selects a file, if it lies in the folder.
    void ShowFile(const QString& path);

signals:
    void fileActivated(const QString& path);

private:
    class CModel;
    void UpdateErrors();

    CModel* m_model = nullptr;
    const CErrorWatch* m_watch = nullptr;
    QString m_folder;
    QString m_shown; ///< the file that was last to be shown
};

} // namespace Kesh::Workbench
