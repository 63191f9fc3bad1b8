#pragma once

#include "ErrorJudge.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <string>

namespace Kesh::Workbench {

/// Notices when the files that a project's rules were read from become others: its settings with those that
/// they add to, the baseline, composer.json; or when one comes into its folder. GUI thread.
class CSettingsWatch final : public QObject
{
    Q_OBJECT

public:
    CSettingsWatch();

    /// The rules as they have just been read, of a project in this folder; an empty folder ends it.
    void Follow(TProjectRules rules, const std::wstring& folder);
    /// Looks now, for where the system tells nothing.
    void Check();

signals:
    void changed();

private:
    void WatchFiles();

    TProjectRules m_rules;
    std::wstring m_folder;
    QFileSystemWatcher m_watcher;
    QTimer m_delay;
};

} // namespace Kesh::Workbench
