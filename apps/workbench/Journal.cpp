#include "Journal.h"

#include "Application/Document.h"
#include "CodeEditor.h"
#include "DocumentArea.h"

#include <QDateTime>
#include <utility>

namespace Kesh::Workbench {

namespace {

/// Half of the time after which nothing may be lost: the other half is the disk's.
constexpr int NoteDelay = 1000; // ms

} // namespace

CJournal::CJournal(std::wstring place, CDocumentArea& area, TOpen open)
    : m_place(std::move(place)), m_area(area), m_open(std::move(open))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(NoteDelay);
    connect(&m_timer, &QTimer::timeout, this, &CJournal::Note);
    connect(&area, &CDocumentArea::edited, this, [this](Host::CDocument* document) { NoteText(*document); });
    connect(&area, &CDocumentArea::closing, this, [this](Host::CDocument* document) { Forget(*document); });
    connect(&area, &CDocumentArea::caretMoved, this, &CJournal::NoteSoon);
    connect(&area, &CDocumentArea::currentChanged, this, &CJournal::NoteSoon);
    Resume();
}

CJournal::~CJournal() = default;

void CJournal::Resume()
{
    if (m_writer)
        return;
    m_writer = std::make_unique<CJournalWriter>(m_place);
    connect(m_writer.get(), &CJournalWriter::failed, this, &CJournal::failed);
}

void CJournal::Stop()
{
    m_timer.stop();
    m_writer.reset();
    m_numbers.clear();
    m_edited.clear();
}

void CJournal::NoteSoon()
{
    // Not put off by what follows: who types on and on is to lose nothing either.
    if (m_writer && !m_timer.isActive())
        m_timer.start();
}

void CJournal::NoteText(Host::CDocument& document)
{
    if (!m_writer)
        return;
    if (!m_area.IsUnsaved(document)) {
        Forget(document);
        return;
    }
    m_edited.insert(&document);
    NoteSoon();
}

void CJournal::Forget(Host::CDocument& document)
{
    m_edited.erase(&document);
    const auto noted = m_numbers.find(&document);
    if (noted == m_numbers.end() || !m_writer)
        return;
    // At once: what has been saved must not come back.
    m_writer->Drop(noted->second);
    m_numbers.erase(noted);
}

void CJournal::Note()
{
    m_writer->KeepSession(m_open(), false);
    for (Host::CDocument* document : std::exchange(m_edited, {}))
        KeepText(*document);
}

void CJournal::KeepText(Host::CDocument& document)
{
    const CCodeEditor* editor = m_area.FindEditor(document.GetPath());
    if (!editor || !m_area.IsUnsaved(document))
        return;
    const auto [noted, isNew] = m_numbers.try_emplace(&document, m_nextNumber);
    m_nextNumber += isNew;
    m_writer->Keep(noted->second, {document.GetPath(), document.GetFormat(), document.GetDiskState(),
                                   editor->GetBytes(), QDateTime::currentMSecsSinceEpoch()});
}

void CJournal::TakeOver(CJournalFolder other)
{
    if (!m_writer)
        return;
    Note();
    m_writer->End(std::move(other));
}

bool CJournal::Keep(const SSession& session)
{
    if (!m_writer)
        return false;
    m_timer.stop();
    for (Host::CDocument* document : m_area.GetUnsaved())
        KeepText(*document);
    m_writer->KeepSession(session, true);
    if (!m_writer->Flush()) {
        m_writer->KeepSession(session, false);
        return false;
    }
    m_writer->Leave();
    Stop();
    return true;
}

} // namespace Kesh::Workbench
