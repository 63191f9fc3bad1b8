#pragma once

#include "Preferences.h"
#include "ProjectOpener.h"
#include "SettingsWatch.h"
#include "SyntaxParser/OwnNames.h"

#include <QObject>
#include <memory>
#include <optional>
#include <string>

class QMenu;

namespace Kesh::Host {
class CApplication;
class CPlugin;
} // namespace Kesh::Host

namespace Kesh::Workbench {

class CCheckControl;
class CDocumentArea;
class CErrorWatch;
class CFileTree;
class CStatusLine;

/// The project that is open, from its opening to its end: what its settings want, and which were open before.
/// GUI thread.
class CProjectSession final : public QObject
{
    Q_OBJECT

public:
    struct SParts
    {
        Host::CApplication& application;
        CPreferences& preferences;
        CDocumentArea& area;
        CFileTree& tree;
        CStatusLine& status;
        CCheckControl& check;
    };

    /// The parts are not owned and outlive the project.
    explicit CProjectSession(const SParts& parts);

    /// Null: nobody checks. Not owned.
    void SetPlugin(Host::CPlugin* plugin, CErrorWatch* watch);

    /// Opens a folder in the background, once the open project is closed.
    void Open(const std::wstring& folder);
    /// False when the user cancels.
    bool Close();
    /// Looks for the files of the open project anew, and at its settings.
    void Refresh();
    /// The user has chosen other names that the HTML check accepts.
    void TakeNames();
    /// Looks whether its settings are others now.
    void CheckSettings() { m_settings.Check(); }
    /// The end of a search for files.
    void Cancel() { m_opener.Cancel(); }
    /// The project has been closed.
    void ShowNone();

    SSession GetOpen() const;
    /// Opens what was open before, as far as it is still there.
    void Restore(const SSession& session);
    void FillRecentMenu(QMenu& menu);
    void ShowWelcome();

signals:
    /// A project has been opened or read anew, or closed.
    void changed();
    /// Nothing of the last project is to be seen any more.
    void closed();

private:
    void OnListed(const SProjectListing& listing);
    /// What a project wants; the next check goes by it. Also at the start, with an empty folder.
    void UseRules(TProjectRules rules);

    SParts m_parts;
    Host::CPlugin* m_plugin = nullptr;
    CErrorWatch* m_watch = nullptr;
    CProjectOpener m_opener;
    CSettingsWatch m_settings;
    TProjectRules m_rules = Findings::CProjectRules::None();
    SyntaxParser::SOwnNames m_names; ///< the user's
};

} // namespace Kesh::Workbench
