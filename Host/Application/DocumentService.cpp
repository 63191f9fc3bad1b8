#include "Application/DocumentService.h"

#include "Application/ParserComponent.h"
#include "Base/Exception.h"
#include "Files/FilePath.h"
#include "ProjectManager/ProjectManager.h"
#include "SyntaxParser/SPDocument.h"

#include <algorithm>

namespace Kesh::Host {

CDocumentService::CDocumentService(SyntaxParser::CParserComponent& parser,
                                   ProjectManager::CProjectManager& project)
    : m_parser(parser),
      m_project(project),
      m_makeHolder([](CDocument&) { return std::make_unique<Editor::CMemoryText>(); })
{
}

CDocumentService::~CDocumentService()
{
    while (!m_documents.empty())
        Close(*m_documents.back());
}

SDK::IDocument* CDocumentService::Open(const std::wstring& path, int flag)
{
    try {
        if (m_openGuard && !Find(AbsolutePath(path)))
            if (const std::wstring reason = m_openGuard(path); !reason.empty())
                throw Base::CWorkError(reason, __LINE__, "Host/Application/DocumentService");
        CDocument& document = OpenFile(path);
        if (SDK::IView* view = document.GetView(); view && flag == 0)
            view->Activate();
        return &document;
    } catch (const Base::CWorkError& fault) {
        m_openError(path, fault.GetMessage());
        return nullptr;
    }
}

CDocument& CDocumentService::OpenFile(const std::wstring& path, const std::wstring& factory)
{
    const std::wstring absolute = AbsolutePath(path);
    if (CDocument* present = Find(absolute)) {
        m_current = present;
        return *present;
    }
    auto document = std::make_unique<CDocument>(absolute);
    // Read first: a file that cannot be read must not leave an empty tab behind.
    const SFileStamp stamp = StampOf(absolute);
    const std::string bytes = ReadFileBytes(absolute);
    document->m_holder = m_makeHolder(*document);
    document->SetBytes(bytes);
    document->NoteDisk(stamp, bytes);
    m_project.NoteFile(absolute);
    return Add(std::move(document), factory);
}

CDocument& CDocumentService::OpenBytes(const std::wstring& path, std::string_view bytes,
                                       const std::wstring& factory)
{
    auto document = std::make_unique<CDocument>(AbsolutePath(path));
    document->m_holder = m_makeHolder(*document);
    document->SetBytes(bytes);
    return Add(std::move(document), factory);
}

CDocument& CDocumentService::Add(std::unique_ptr<CDocument> document, const std::wstring& factory)
{
    CDocument& added = *document;
    m_documents.push_back(std::move(document));
    m_current = &added;
    added.m_factory = factory.empty() ? SyntaxParser::FactoryForPath(added.m_path) : factory;
    m_parser.OpenDocument(&added, added.m_factory);
    return added;
}

void CDocumentService::SaveAs(CDocument& document, const std::wstring& path, const SWriteRules& rules)
{
    const std::wstring absolute = AbsolutePath(path);
    const std::string bytes = document.GetBytes();
    WriteFileBytes(absolute, bytes, rules);
    // Checks know a file by its path: under the new name they start afresh.
    m_parser.CloseDocument(&document);
    document.SetPath(absolute);
    document.NoteSaved(bytes);
    m_project.NoteFile(absolute);
    document.m_factory = SyntaxParser::FactoryForPath(absolute);
    m_parser.OpenDocument(&document, document.m_factory);
}

void CDocumentService::Close(CDocument& document)
{
    // What is found in a file outside of the project goes with its document.
    m_parser.CloseDocument(&document, m_project.BelongsToProject(document.GetPath()));
    if (m_current == &document)
        m_current = nullptr;
    const auto found = std::find_if(m_documents.begin(), m_documents.end(),
                                    [&](const auto& candidate) { return candidate.get() == &document; });
    // Its end may have a front end ask for the documents that are left.
    const std::unique_ptr<CDocument> ended = std::move(*found);
    m_documents.erase(found);
}

void CDocumentService::Suspend()
{
    for (const auto& document : m_documents)
        m_parser.CloseDocument(document.get());
}

void CDocumentService::Resume()
{
    for (const auto& document : m_documents)
        m_parser.OpenDocument(document.get(), document->m_factory);
}

CDocument* CDocumentService::Find(const std::wstring& path) const
{
    const std::wstring resolved = ResolvedPath(path);
    for (const auto& document : m_documents)
        if (document->GetResolvedPath() == resolved)
            return document.get();
    return nullptr;
}

std::vector<CDocument*> CDocumentService::GetDocuments() const
{
    std::vector<CDocument*> documents;
    for (const auto& document : m_documents)
        documents.push_back(document.get());
    return documents;
}

} // namespace Kesh::Host
