#pragma once

#include "Application/Document.h"
#include "Kesh/SDK/IDocument.h"

#include <boost/signals2/signal.hpp>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::ProjectManager {
class CProjectManager;
}
namespace Kesh::SyntaxParser {
class CParserComponent;
}

namespace Kesh::Host {

/// The open documents, each with its syntax document. GUI thread only.
class CDocumentService final : public SDK::IDocumentService
{
public:
    /// Makes what holds the text of a new document.
    using THolderFactory = std::function<std::unique_ptr<Editor::ITextHolder>(CDocument&)>;

    CDocumentService(SyntaxParser::CParserComponent& parser, ProjectManager::CProjectManager& project);
    /// Closes all documents.
    ~CDocumentService();

    /// Reports a failure through the error signal.
    SDK::IDocument* Open(const std::wstring& path, int flag) override;
    SDK::IDocument* GetCurrent() override { return m_current; }

    /// Text in memory unless set.
    void SetHolderFactory(THolderFactory factory) { m_makeHolder = std::move(factory); }
    /// Answers why Open() is not to open a file that can be read; the empty text lets it.
    using TOpenGuard = std::function<std::wstring(const std::wstring& path)>;
    void SetOpenGuard(TOpenGuard guard) { m_openGuard = std::move(guard); }
    /// Open() could not open a file.
    boost::signals2::signal<void(const std::wstring& path, const std::wstring& reason)>& GetOpenErrorSignal()
    {
        return m_openError;
    }

    /// The document of the file, opened when it is not open yet, and made the current one. `factory` names
    /// the language of a file whose ending tells none. Throws Base::CWorkError when it cannot be read.
    CDocument& OpenFile(const std::wstring& path, const std::wstring& factory = {});
    /// A document of this name with the text of `bytes`; nothing is read from disk.
    CDocument& OpenBytes(const std::wstring& path, std::string_view bytes, const std::wstring& factory = {});
    /// Saves under another name, which the document bears from then on; throws like CDocument::Save().
    void SaveAs(CDocument& document, const std::wstring& path, const SWriteRules& rules = {});
    /// Ends a document, saved or not.
    void Close(CDocument& document);
    /// Ends the syntax documents of all documents; Resume() makes new ones. In between a plug-in that follows
    /// them can be replaced.
    void Suspend();
    void Resume();
    /// Null when the file is not open.
    CDocument* Find(const std::wstring& path) const;
    std::vector<CDocument*> GetDocuments() const;
    /// Null: the user works in none.
    void SetCurrent(CDocument* document) { m_current = document; }

private:
    CDocument& Add(std::unique_ptr<CDocument> document, const std::wstring& factory);

    SyntaxParser::CParserComponent& m_parser;
    ProjectManager::CProjectManager& m_project;
    THolderFactory m_makeHolder;
    TOpenGuard m_openGuard;
    boost::signals2::signal<void(const std::wstring&, const std::wstring&)> m_openError;
    std::vector<std::unique_ptr<CDocument>> m_documents;
    CDocument* m_current = nullptr;
};

} // namespace Kesh::Host
