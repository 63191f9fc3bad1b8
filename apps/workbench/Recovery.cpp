#include "Recovery.h"

#include "Application/Application.h"
#include "Base/Exception.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "Files/FilePath.h"
#include "Journal.h"
#include "MessageStrip.h"
#include "Texts.h"

#include <QStringList>
#include <algorithm>
#include <set>
#include <utility>

namespace Kesh::Workbench {

namespace {

const QString Subject = QStringLiteral("recovery");

} // namespace

void CRecovery::Look()
{
    for (CJournalFolder& folder : CJournalFolder::TakeAbandoned(m_place)) {
        bool isComplete = true;
        SJournal journal = folder.Read(isComplete);
        if (journal.texts.empty() && journal.noted == 0 && isComplete)
            folder.Remove();
        else
            m_found.push_back({std::move(folder), std::move(journal), isComplete});
    }
}

std::optional<SSession> CRecovery::GetSession(std::int64_t since) const
{
    const SJournal* newest = nullptr;
    for (const SFound& found : m_found)
        if (!found.journal.isKept && found.journal.noted > (newest ? newest->noted : since))
            newest = &found.journal;
    return newest ? std::optional(newest->session) : std::nullopt;
}

void CRecovery::Bring()
{
    RestoreAll(true);
    // Who had nothing unsaved has told all there is.
    for (SFound& found : m_found)
        if (found.journal.texts.empty() && found.isComplete)
            found.folder.Remove();
    std::erase_if(m_found,
                  [](const SFound& found) { return found.journal.texts.empty() && found.isComplete; });
    if (!m_found.empty())
        Offer();
}

void CRecovery::Offer()
{
    std::set<std::wstring> paths;
    for (const SFound& found : m_found)
        for (const SUnsavedText& text : found.journal.texts)
            paths.insert(text.path);
    if (paths.empty())
        return;
    QStringList names;
    for (const std::wstring& path : paths)
        names.append(Host::PathToQt(path));
    constexpr int Shown = 5;
    const int more = names.size() - Shown;
    QString list = QStringList(names.mid(0, Shown)).join(QStringLiteral(", "));
    if (more > 0)
        list = Tr("%1 (%2 more)").arg(list, QString::number(more));
    m_parts.area.GetMessageStrip().Show(
        Tr("The program ended before these changes were saved: %1").arg(list),
        {{Tr("&Restore"), [this] { RestoreAll(false); }}, {Tr("&Discard"), [this] { GiveUp(); }}}, Subject);
}

void CRecovery::RestoreAll(bool kept)
{
    std::vector<SFound> chosen;
    for (auto found = m_found.begin(); found != m_found.end();) {
        if (kept && !found->journal.isKept) {
            ++found;
            continue;
        }
        chosen.push_back(std::move(*found));
        found = m_found.erase(found);
    }
    // Where two windows had the same file, the later text comes to stand over the earlier one, which undo
    // brings back.
    std::vector<const SUnsavedText*> texts;
    for (const SFound& found : chosen)
        for (const SUnsavedText& text : found.journal.texts)
            texts.push_back(&text);
    std::stable_sort(texts.begin(), texts.end(),
                     [](const SUnsavedText* a, const SUnsavedText* b) { return a->noted < b->noted; });
    for (const SUnsavedText* text : texts)
        RestoreText(*text);
    for (const SFound& found : chosen)
        PutCarets(found.journal);
    for (SFound& found : chosen)
        if (found.isComplete)
            m_parts.journal.TakeOver(std::move(found.folder));
    m_parts.area.CheckDisk();
}

void CRecovery::PutCarets(const SJournal& journal)
{
    const auto& texts = journal.texts;
    for (const SSession::SFile& file : journal.session.files) {
        const std::wstring path = Host::PathFromQt(file.path);
        const auto isOf = [&](const SUnsavedText& text) { return text.path == path; };
        CCodeEditor* editor = m_parts.area.FindEditor(path);
        if (!editor || std::none_of(texts.begin(), texts.end(), isOf))
            continue;
        editor->SetCaretPosition({file.column, file.line});
        editor->CenterCaret();
        editor->SetFolds(file.folds);
    }
}

void CRecovery::GiveUp()
{
    for (SFound& found : std::exchange(m_found, {}))
        found.folder.Remove();
}

void CRecovery::RestoreText(const SUnsavedText& text)
{
    Host::CDocumentService& documents = m_parts.application.Documents();
    Host::CDocument* document = documents.Find(text.path);
    if (!document) {
        try {
            document = &documents.OpenFile(text.path);
        } catch (const Base::CWorkError&) {
            document = &documents.OpenBytes(text.path, {}); // the file has gone, its text is here
        }
        document->GetView()->Activate();
    }
    CCodeEditor* editor = m_parts.area.FindEditor(document->GetPath());
    if (!editor || editor->GetBytes() == text.text)
        return;
    editor->ReplaceBytes(text.text);
    const SyntaxParser::SSourceFormat& format = document->GetFormat();
    if (format.encoding != text.format.encoding || format.byteOrderMark != text.format.byteOrderMark ||
        format.lineEnd != text.format.lineEnd)
        document->SetFormat(text.format);
    document->SetDiskState(text.base);
}

} // namespace Kesh::Workbench
