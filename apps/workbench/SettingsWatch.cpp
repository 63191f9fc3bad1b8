#include "SettingsWatch.h"

#include "Configuration/Composer.h"
#include "Configuration/Configuration.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"

#include <QFileInfo>
#include <QStringList>
#include <utility>

namespace Kesh::Workbench {

namespace {

/// Programs write a file in several steps, and several files one after another.
constexpr int WatchDelay = 150; // ms

} // namespace

CSettingsWatch::CSettingsWatch()
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(WatchDelay);
    for (const auto signal : {&QFileSystemWatcher::fileChanged, &QFileSystemWatcher::directoryChanged})
        connect(&m_watcher, signal, &m_delay, qOverload<>(&QTimer::start));
    connect(&m_delay, &QTimer::timeout, this, &CSettingsWatch::Check);
}

void CSettingsWatch::Follow(TProjectRules rules, const std::wstring& folder)
{
    m_rules = std::move(rules);
    m_folder = folder;
    if (const QStringList watched = m_watcher.files() + m_watcher.directories(); !watched.isEmpty())
        m_watcher.removePaths(watched);
    if (!m_folder.empty())
        WatchFiles();
}

void CSettingsWatch::WatchFiles()
{
    // A file that is replaced by another one is told of by its folder only.
    QStringList paths{Host::PathToQt(m_folder)};
    for (const auto& [file, stamp] : m_rules->Sources()) {
        const QString path = Host::PathToQt(file);
        paths.append({path, QFileInfo(path).path()});
    }
    paths.removeDuplicates();
    m_watcher.addPaths(paths);
}

void CSettingsWatch::Check()
{
    if (m_folder.empty())
        return;
    auto sources = m_rules->Sources();
    for (const wchar_t* name : {Configuration::FileName, Configuration::ComposerFileName})
        sources.try_emplace(m_folder + L'/' + name);
    for (const auto& [file, stamp] : sources)
        if (!(Host::StampOf(file) == stamp)) {
            emit changed();
            return;
        }
    WatchFiles(); // what a program has replaced is another file for the system
}

} // namespace Kesh::Workbench
