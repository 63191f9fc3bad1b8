#pragma once

#include "Files/FileIO.h"

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <string>

namespace Kesh::Host {
class CDocument;
class CDocumentService;
} // namespace Kesh::Host

namespace Kesh::Workbench {

class CMessageStrip;

/// Follows what other programs do to the files of open documents: has them read anew, or asks the user when
/// there are unsaved edits. GUI thread.
class CDiskWatch final : public QObject
{
    Q_OBJECT

public:
    using TReload = std::function<void(Host::CDocument&)>;

    /// Nothing is owned.
    CDiskWatch(Host::CDocumentService& documents, CMessageStrip& messages, TReload reload);

    /// Also for a file that was replaced as a whole, which is another one for the system.
    void Follow(const std::wstring& path);
    void Leave(const std::wstring& path);
    /// The state on disk is the document's, or nobody's concern any more.
    void Settle(const std::wstring& path);
    /// Looks whether open files have changed.
    void Check();

signals:
    /// The file of an open document is not there any more.
    void gone(Kesh::Host::CDocument* document);
    /// The user wants to see what another program has changed.
    void compareRequested(Kesh::Host::CDocument* document);

private:
    void OnChanged(Host::CDocument& document);

    Host::CDocumentService& m_documents;
    CMessageStrip& m_messages;
    TReload m_reload;
    QFileSystemWatcher m_watcher;
    QTimer m_delay;
    QTimer m_absence; ///< runs while a file is gone
    /// What was on disk, by path, when the user was told of it.
    std::map<std::wstring, Host::SFileStamp> m_toldStamps;
};

} // namespace Kesh::Workbench
