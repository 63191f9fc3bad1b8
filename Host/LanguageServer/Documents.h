#pragma once

#include "Application/Document.h"
#include "LanguageServer/PositionEncoding.h"
#include "LanguageServer/ServerText.h"

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace Kesh::Host {
class CApplication;
}

namespace Kesh::LanguageServer {

/// A document that the editor has open.
struct SOpenDocument
{
    Host::CDocument* document = nullptr;
    std::string uri;
    std::wstring factory;
    std::int64_t version = 0;  ///< the editor's
    std::int64_t revision = 0; ///< ours: grows with every edit, also under an editor that counts wrongly
    std::int64_t begun = -1;   ///< the revision that the last check that began has seen
    bool edited = false;       ///< since it was opened or saved

    CServerText& Text() const { return static_cast<CServerText&>(document->GetHolder()); }
};

/// The open documents, each a document of the host. GUI thread only.
class CDocuments
{
public:
    explicit CDocuments(Host::CApplication& application);
    /// Closes them.
    ~CDocuments();

    void SetEncoding(EPositionEncoding encoding) { m_encoding = encoding; }
    EPositionEncoding Encoding() const { return m_encoding; }

    /// The parameters are those of the protocol. A document that is open already gets the new text.
    SOpenDocument& Open(const nlohmann::json& item);
    /// Null for a document that is not open.
    SOpenDocument* Change(const nlohmann::json& params);
    /// Answers the path of what was closed; empty when it was not open.
    std::wstring Close(const std::string& uri);
    SOpenDocument* Find(const std::wstring& path);
    const std::map<std::wstring, SOpenDocument>& All() const { return m_open; }

    /// Has a file checked that the editor does not show, through a document that nobody sees.
    void CheckHidden(const std::wstring& path);
    /// Ends it; answers whether there was one.
    bool EndHidden(const std::wstring& path);

private:
    void ApplyChange(CServerText& text, const nlohmann::json& change) const;
    std::size_t OffsetOf(const CServerText& text, const nlohmann::json& position) const;

    Host::CApplication& m_application;
    EPositionEncoding m_encoding = EPositionEncoding::Utf16;
    std::map<std::wstring, SOpenDocument> m_open; ///< by path
    std::set<std::wstring> m_hidden;
};

} // namespace Kesh::LanguageServer
