#pragma once

#include "JournalWriter.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace Kesh::Host {
class CDocument;
}

namespace Kesh::Workbench {

class CDocumentArea;

/// Has noted on disk what the user would lose if the window ended now: unsaved texts, tabs and carets, all of
/// it within two seconds of a change. What is saved leaves it. GUI thread; the disk is written in another.
class CJournal final : public QObject
{
    Q_OBJECT

public:
    using TOpen = std::function<SSession()>;

    /// The journal lies in a folder in `place`. `open` tells what is open. The area is not owned.
    CJournal(std::wstring place, CDocumentArea& area, TOpen open);
    ~CJournal() override;

    /// Ends another journal, whose texts are unsaved texts of this window now, once they are noted here.
    void TakeOver(CJournalFolder other);
    /// Notes all that is unsaved, for the next window to find it. False when that cannot be written; else
    /// nothing is noted any more.
    bool Keep(const SSession& session);
    /// The user has decided about all that was unsaved: nothing is noted any more.
    void Stop();
    /// What happens is noted again, in a new place.
    void Resume();

signals:
    void failed(const QString& reason);

private:
    void NoteText(Host::CDocument& document);
    void Forget(Host::CDocument& document);
    void NoteSoon();
    void Note();
    void KeepText(Host::CDocument& document);

    const std::wstring m_place;
    CDocumentArea& m_area;
    TOpen m_open;
    std::unique_ptr<CJournalWriter> m_writer;  ///< null: nothing is noted
    std::map<Host::CDocument*, int> m_numbers; ///< of those that are noted
    int m_nextNumber = 0;
    std::set<Host::CDocument*> m_edited;
    QTimer m_timer;
};

} // namespace Kesh::Workbench
