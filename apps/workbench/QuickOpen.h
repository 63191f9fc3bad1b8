#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>
#include <atomic>
#include <memory>
#include <string>

class QLineEdit;
class QListWidget;
class QThread;

namespace Kesh::Workbench {

/// The names that hold all parts of what was typed, the best first, at most `count`: a part that begins the
/// file's own name is better than one in it, and that better than one of its folders. Case does not count.
QStringList BestNames(const QStringList& names, const QString& typed, int count);

/// Opens a file of the project by a part of its name. The files are looked for in the background each time;
/// until that ends those of the last time are offered. GUI thread.
class CQuickOpen final : public QDialog
{
    Q_OBJECT

public:
    explicit CQuickOpen(QWidget* parent);
    ~CQuickOpen() override;

    /// Ready to type, with the files below a folder.
    void Open(const std::wstring& folder);

signals:
    void chosen(const std::wstring& file);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void List(const std::wstring& folder);
    void Cancel();
    void Show();
    void Choose();

    std::wstring m_folder;
    QStringList m_names; ///< below the folder
    QLineEdit* m_text;
    QListWidget* m_list;
    std::unique_ptr<QThread> m_thread;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
};

} // namespace Kesh::Workbench
