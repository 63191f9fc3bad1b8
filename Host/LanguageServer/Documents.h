#pragma once

#include "Application/Document.h"
#include "LanguageServer/PositionEncoding.h"
#include "LanguageServer/ServerText.h"

#include <functional>
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
    std::int64_t taken = -1;   ///< the revision that the last check that began has taken
    std::uint64_t check = 0;   ///< the number of that check; 0: none
    std::int64_t failed = -1;  ///< the revision whose check has failed
    bool crlf = false;         ///< whether the editor ends lines with CR LF
    bool tooLarge = false;     ///< to be checked
    bool checked = false;      ///< whether it has ended, so that all it found is known

    /// Whether what is known was found in the text as it is now.
    bool IsChecked() const { return checked && taken == revision; }

    CServerText& Text() const { return static_cast<CServerText&>(document->GetHolder()); }
};

/// The open documents, each a document of the host. GUI thread only.
class CDocuments
{
public:
    /// `onTooLarge` is told of each document that becomes too large to be checked.
    CDocuments(Host::CApplication& application, std::function<void(const std::wstring& path)> onTooLarge);
    CDocuments(const CDocuments&) = delete;
    CDocuments& operator=(const CDocuments&) = delete;
    /// Closes them.
    ~CDocuments();

    void SetEncoding(EPositionEncoding encoding) { m_encoding = encoding; }
    EPositionEncoding Encoding() const { return m_encoding; }

    /// The parameters are those of the protocol. A document that is open already gets the new text.
    SOpenDocument& Open(const nlohmann::json& item);
    /// As the editor writes it, if it has ever opened the file.
    std::string UriOf(const std::wstring& path) const;
    /// Null for a document that is not open.
    SOpenDocument* Change(const nlohmann::json& params);
    /// Answers the path of what was closed; empty when it was not open.
    std::wstring Close(const std::string& uri);
    SOpenDocument* Find(const std::wstring& path);
    const std::map<std::wstring, SOpenDocument>& All() const { return m_open; }

    /// A check takes the text of an open document as it is.
    void BeginCheck(const std::wstring& path, std::uint64_t number);
    /// Every open document has a new checker: what is known of it, or still comes, is out of date.
    void Outdate();

    /// Has a file checked that the editor does not show, through a document that nobody sees.
    void CheckHidden(const std::wstring& path);
    /// Ends it; answers whether there was one.
    bool EndHidden(const std::wstring& path);

private:
    static void Outdate(SOpenDocument& open);
    void ApplyChange(CServerText& text, const nlohmann::json& change) const;
    std::size_t OffsetOf(const CServerText& text, const nlohmann::json& position) const;

    Host::CApplication& m_application;
    std::function<void(const std::wstring&)> m_onTooLarge;
    EPositionEncoding m_encoding = EPositionEncoding::Utf16;
    std::map<std::wstring, SOpenDocument> m_open; ///< by path
    std::map<std::wstring, std::string> m_uris;   ///< of all that were open
    std::set<std::wstring> m_hidden;
};

} // namespace Kesh::LanguageServer
