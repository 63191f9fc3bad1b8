#pragma once

#include "JournalFolder.h"

#include <QString>
#include <optional>
#include <string>
#include <vector>

namespace Kesh::Host {
class CApplication;
}

namespace Kesh::Workbench {

class CDocumentArea;
class CJournal;

/// What earlier windows have left unsaved, found at the start: what a user has kept comes back by itself,
/// what a fault has left is offered. Nothing of it goes before it is noted anew or the user gives it up. GUI
/// thread.
class CRecovery
{
public:
    struct SParts
    {
        Host::CApplication& application;
        CDocumentArea& area;
        CJournal& journal;
    };
    /// The journals lie in `place`. The parts are not owned.
    CRecovery(std::wstring place, const SParts& parts) : m_place(std::move(place)), m_parts(parts) {}

    /// Looks what there is, and takes it from other windows that start.
    void Look();
    /// What was open when a window ended by a fault, if that was after `since` (ms since 1970).
    std::optional<SSession> GetSession(std::int64_t since) const;
    /// Brings back, or offers, what Look() has found.
    void Bring();

private:
    struct SFound
    {
        CJournalFolder folder;
        SJournal journal;
        bool isComplete;
    };
    void RestoreAll(bool kept);
    /// Where they were in texts that have come back.
    void PutCarets(const SJournal& journal);
    void GiveUp();
    void RestoreText(const SUnsavedText& text);
    void Offer();

    const std::wstring m_place;
    SParts m_parts;
    std::vector<SFound> m_found;
};

} // namespace Kesh::Workbench
