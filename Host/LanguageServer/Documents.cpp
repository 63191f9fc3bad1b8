#include "LanguageServer/Documents.h"

#include "Application/Application.h"
#include "LanguageServer/Uri.h"
#include "SyntaxParser/SPDocument.h"

namespace Kesh::LanguageServer {

using nlohmann::json;

namespace {

std::wstring FactoryOf(const std::string& language, const std::wstring& path)
{
    if (language == "php")
        return L"PHPSPDocFactory";
    if (language == "html")
        return L"HTMLSPDocFactory";
    if (language == "css")
        return L"CSSSPDocFactory";
    return SyntaxParser::FactoryForPath(path);
}

} // namespace

CDocuments::CDocuments(Host::CApplication& application) : m_application(application)
{
    application.Documents().SetHolderFactory(
        [](Host::CDocument&) { return std::make_unique<CServerText>(); });
}

CDocuments::~CDocuments()
{
    while (!m_hidden.empty())
        EndHidden(std::wstring(*m_hidden.begin()));
    for (const auto& [path, open] : m_open)
        m_application.Documents().Close(*open.document);
}

SOpenDocument& CDocuments::Open(const json& item)
{
    const std::string uri = item.at("uri");
    const std::wstring path = PathOfUri(uri);
    std::wstring text = TextFromUtf8(item.at("text").get_ref<const std::string&>());
    EndHidden(path);
    SOpenDocument& open = m_open[path];
    if (!open.document) {
        open.factory = FactoryOf(item.value("languageId", ""), path);
        open.document = &m_application.Documents().OpenBytes(path, {}, open.factory);
    }
    open.uri = uri;
    open.version = item.value("version", std::int64_t{0});
    ++open.revision;
    open.edited = false;
    open.Text().ReplaceAll(std::move(text));
    open.Text().Announce();
    return open;
}

SOpenDocument* CDocuments::Change(const json& params)
{
    const json& identifier = params.at("textDocument");
    SOpenDocument* open = Find(PathOfUri(identifier.at("uri").get_ref<const std::string&>()));
    if (!open)
        return nullptr;
    const json version = identifier.value("version", json());
    open->version = version.is_number_integer() ? version.get<std::int64_t>() : open->version + 1;
    ++open->revision;
    open->edited = true;
    for (const json& change : params.at("contentChanges"))
        ApplyChange(open->Text(), change);
    open->Text().Announce();
    return open;
}

void CDocuments::ApplyChange(CServerText& text, const json& change) const
{
    std::wstring inserted = TextFromUtf8(change.at("text").get_ref<const std::string&>());
    const auto range = change.find("range");
    if (range == change.end() || range->is_null()) {
        text.ReplaceAll(std::move(inserted));
        return;
    }
    text.Replace(OffsetOf(text, range->at("start")), OffsetOf(text, range->at("end")), inserted);
}

std::size_t CDocuments::OffsetOf(const CServerText& text, const json& position) const
{
    const std::int64_t line = position.at("line");
    return text.Offset(line, ColumnOf(text.Line(line), position.at("character"), m_encoding));
}

std::wstring CDocuments::Close(const std::string& uri)
{
    const std::wstring path = PathOfUri(uri);
    const auto open = m_open.find(path);
    if (open == m_open.end())
        return {};
    m_application.Documents().Close(*open->second.document);
    m_open.erase(open);
    return path;
}

SOpenDocument* CDocuments::Find(const std::wstring& path)
{
    const auto open = m_open.find(path);
    return open == m_open.end() ? nullptr : &open->second;
}

void CDocuments::CheckHidden(const std::wstring& path)
{
    if (m_open.contains(path) || SyntaxParser::FactoryForPath(path).empty())
        return;
    EndHidden(path);
    m_application.Documents().OpenFile(path);
    m_hidden.insert(path);
}

bool CDocuments::EndHidden(const std::wstring& path)
{
    if (m_hidden.erase(path) == 0)
        return false;
    if (Host::CDocument* document = m_application.Documents().Find(path))
        m_application.Documents().Close(*document);
    return true;
}

} // namespace Kesh::LanguageServer
