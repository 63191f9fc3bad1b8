#include "Application/Application.h"
#include "Base/Exception.h"
#include "DocumentArea.h"
#include "Files/FilePath.h"
#include "Prompts.h"

namespace Kesh::Workbench {

bool CDocumentArea::IsUnsaved(Host::CDocument& document)
{
    return document.IsModified() || document.IsGone();
}

std::vector<Host::CDocument*> CDocumentArea::GetUnsaved() const
{
    std::vector<Host::CDocument*> unsaved = m_application.Documents().GetDocuments();
    std::erase_if(unsaved, [](Host::CDocument* document) { return !IsUnsaved(*document); });
    return unsaved;
}

bool CDocumentArea::SaveAll()
{
    bool all = true;
    for (Host::CDocument* document : m_application.Documents().GetDocuments())
        if (document->IsModified())
            all = Save(*document) && all;
    return all;
}

bool CDocumentArea::MayClose(const std::vector<Host::CDocument*>& documents)
{
    QStringList names;
    for (Host::CDocument* document : documents)
        names.append(Host::PathToQt(document->GetPath()));
    if (names.isEmpty())
        return true;
    switch (m_prompts->AskSave(names)) {
    case IPrompts::ESave::Cancel: return false;
    case IPrompts::ESave::Discard: return true;
    default: break;
    }
    bool all = true;
    for (Host::CDocument* document : documents)
        all = Save(*document) && all;
    return all;
}

bool CDocumentArea::Close(Host::CDocument& document)
{
    if (IsUnsaved(document) && !MayClose({&document}))
        return false;
    Discard(document);
    OnTabChanged();
    return true;
}

bool CDocumentArea::CloseAll()
{
    if (!MayClose(GetUnsaved()))
        return false;
    DiscardAll();
    return true;
}

void CDocumentArea::DiscardAll()
{
    for (Host::CDocument* document : m_application.Documents().GetDocuments())
        Discard(*document);
    OnTabChanged();
}

void CDocumentArea::Discard(Host::CDocument& document)
{
    m_disk.Leave(document.GetPath());
    if (document.IsModified()) {
        try {
            // The validator has seen the edits, and must see them go.
            document.Load();
        } catch (const Base::CWorkError&) {
            // A file that cannot be read has nothing to go back to.
        }
    }
    emit closing(&document);
    m_application.Documents().Close(document);
}

} // namespace Kesh::Workbench
