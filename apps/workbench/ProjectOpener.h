#pragma once

#include "ErrorJudge.h"

#include <QObject>
#include <QString>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

class QThread;

namespace Kesh::Workbench {

/// A project as it is found on disk.
struct SProjectListing
{
    std::wstring folder;
    std::vector<std::wstring> files; ///< those that are to be checked
    QString problem;                 ///< empty when the folder could be read
    TProjectRules rules;
    QString rulesProblem; ///< what is wrong with them; empty: nothing
};

/// Lists a project's files in the background, so that a large folder does not stop the window.
class CProjectOpener final : public QObject
{
    Q_OBJECT

public:
    CProjectOpener();
    ~CProjectOpener() override;

    /// Lists the files below `folder` that are to be checked, by the settings that hold there; a search that
    /// runs is given up. What is wrong with the settings now counts as it was `before`. GUI thread.
    void Start(const std::wstring& folder, const TProjectRules& before);
    void Cancel();
    bool IsRunning() const { return m_thread != nullptr; }

signals:
    /// On the GUI thread.
    void listed(const Kesh::Workbench::SProjectListing& listing);

private:
    std::unique_ptr<QThread> m_thread;
    std::shared_ptr<std::atomic<bool>> m_cancelled;
};

} // namespace Kesh::Workbench
