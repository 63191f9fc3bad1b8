#pragma once

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

class QThread;

namespace Kesh::Workbench {

/// Lists a project's files in the background, so that a large folder does not stop the window.
class CProjectOpener final : public QObject
{
    Q_OBJECT

public:
    CProjectOpener();
    ~CProjectOpener() override;

    /// Lists the files below `folder`; a search that runs is given up. GUI thread.
    void Start(const std::wstring& folder);
    void Cancel();
    bool IsRunning() const { return m_thread != nullptr; }

signals:
    /// On the GUI thread. `problem` is empty when the folder could be read.
    void listed(const std::wstring& folder, const std::vector<std::wstring>& files, const QString& problem);

private:
    std::unique_ptr<QThread> m_thread;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
};

} // namespace Kesh::Workbench
