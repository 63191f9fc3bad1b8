#pragma once

#include <QObject>
#include <QTimer>
#include <atomic>
#include <cstddef>

namespace Kesh::Host {
class CApplication;
class CPlugin;
} // namespace Kesh::Host

namespace Kesh::Workbench {

class CErrorWatch;
class CMainFrame;
class CMessageStrip;
class CStatusLine;

/// The checks as the user sees them: starts and stops them, shows how far the project's is, and says what has
/// failed. GUI thread.
class CCheckControl final : public QObject
{
    Q_OBJECT

public:
    struct SParts
    {
        Host::CApplication& application;
        CMainFrame& frame;
        CStatusLine& status;
        CMessageStrip& messages;
    };

    /// The parts are not owned and outlive all checks.
    explicit CCheckControl(const SParts& parts);

    /// Null: nothing can be checked. Not owned.
    void SetPlugin(Host::CPlugin* plugin, CErrorWatch* watch);
    /// By the name of the validator's command.
    void Run(const char* command);
    /// A check of the project is about to begin.
    void Expect();

signals:
    /// The check of the project has been stopped, or what was stopped counts no more.
    void incomplete(bool isIncomplete);

private:
    void OnProgressText(const QString& text);
    void OnProgressTick();
    void Stop();

    SParts m_parts;
    Host::CPlugin* m_plugin = nullptr;
    CErrorWatch* m_watch = nullptr;
    std::atomic<std::size_t> m_filesAsked{0}; ///< by the project check
    QTimer m_progressTick;
    bool m_stopped = false; ///< the last project check, by the user
};

} // namespace Kesh::Workbench
