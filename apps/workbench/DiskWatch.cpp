#include "DiskWatch.h"

#include "Application/Application.h"
#include "Files/FilePath.h"
#include "MessageStrip.h"
#include "Texts.h"

#include <utility>

namespace Kesh::Workbench {

namespace {

/// Programs write a file in several steps; the last of them counts.
constexpr int DiskDelay = 150; // ms
/// What is not there cannot be watched: it is looked for.
constexpr int AbsenceInterval = 1000; // ms

QString Shown(const std::wstring& path)
{
    return Host::PathToQt(path);
}

} // namespace

CDiskWatch::CDiskWatch(Host::CDocumentService& documents, CMessageStrip& messages, TReload reload)
    : m_documents(documents), m_messages(messages), m_reload(std::move(reload))
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(DiskDelay);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_delay, qOverload<>(&QTimer::start));
    connect(&m_delay, &QTimer::timeout, this, &CDiskWatch::Check);
    m_absence.setSingleShot(true);
    m_absence.setInterval(AbsenceInterval);
    connect(&m_absence, &QTimer::timeout, this, &CDiskWatch::Check);
}

void CDiskWatch::Follow(const std::wstring& path)
{
    m_watcher.addPath(Shown(path));
}

void CDiskWatch::Leave(const std::wstring& path)
{
    m_watcher.removePath(Shown(path));
    Settle(path);
}

void CDiskWatch::Settle(const std::wstring& path)
{
    m_toldStamps.erase(path);
    m_messages.Withdraw(Shown(path));
}

void CDiskWatch::Check()
{
    for (Host::CDocument* document : m_documents.GetDocuments())
        if (document->IsStale())
            OnChanged(*document);
        else if (Host::StampOf(document->GetPath()).size < 0)
            m_absence.start(); // its text comes from elsewhere
        else {
            if (m_toldStamps.count(document->GetPath()))
                Settle(document->GetPath()); // it is back as it was
            Follow(document->GetPath());
        }
}

void CDiskWatch::OnChanged(Host::CDocument& document)
{
    const std::wstring path = document.GetPath();
    const QString name = Shown(Host::FileName(path));
    const Host::SFileStamp stamp = Host::StampOf(path);
    const bool exists = stamp.size >= 0;
    if (exists)
        Follow(path);
    else
        m_absence.start();
    if (exists && !document.IsModified()) {
        m_reload(document);
        return;
    }
    // The file stays what it is, another one than the document's, until the user has decided.
    const auto [told, isNew] = m_toldStamps.try_emplace(path, stamp);
    if (!isNew && told->second == stamp)
        return;
    told->second = stamp;
    m_messages.Withdraw(Shown(path));
    if (!exists) {
        m_messages.Show(Tr("%1 is no longer on disk. Save it to keep it.").arg(name), {}, Shown(path));
        emit gone(&document);
        return;
    }
    const auto ifOpen = [this, path](auto action) {
        return [this, path, action] {
            if (Host::CDocument* still = m_documents.Find(path))
                action(*still);
        };
    };
    m_messages.Show(
        Tr("%1 has been changed by another program, and has unsaved edits here.").arg(name),
        {{Tr("Co&mpare"), ifOpen([this](Host::CDocument& still) {
              emit compareRequested(&still);
              Settle(still.GetPath()); // the question stays
              Check();
          })},
         {Tr("&Reload"), ifOpen([this](Host::CDocument& still) { m_reload(still); })},
         {Tr("&Keep my edits"), ifOpen([stamp](Host::CDocument& still) { still.AcknowledgeDisk(stamp); })}},
        Shown(path));
}

} // namespace Kesh::Workbench
