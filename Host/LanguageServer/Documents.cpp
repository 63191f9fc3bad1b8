#include "LanguageServer/Documents.h"

#include "Application/Application.h"
#include "Application/ParserComponent.h"
#include "LanguageServer/Connection.h"
#include "LanguageServer/Uri.h"
#include "SyntaxParser/SPDocument.h"

#include <QScopeGuard>
#include <algorithm>

namespace Kesh::LanguageServer {

using nlohmann::json;

namespace {

/// What lies beyond is as far behind the end as anything can be.
constexpr std::int64_t MaxNumber = 0x7FFFFFFF;

std::wstring FactoryOf(const std::string& language, const std::wstring& path)
{
    // Templates are full of what only their engine understands: the code validator leaves them alone.
    if (path.ends_with(L".tpl") || path.ends_with(L".ctp"))
        return {};
    if (language == "php")
        return L"PHPSPDocFactory";
    if (language == "html")
        return L"HTMLSPDocFactory";
    if (language == "css")
        return L"CSSSPDocFactory";
    return SyntaxParser::FactoryForPath(path);
}

std::int64_t WholeNumber(const json& value)
{
    if (!value.is_number_integer())
        throw SResponseError{InvalidParams, "a line and a character are whole numbers"};
    if (value.is_number_unsigned())
        return static_cast<std::int64_t>(std::min<std::uint64_t>(value.get<std::uint64_t>(), MaxNumber));
    return std::clamp<std::int64_t>(value.get<std::int64_t>(), -1, MaxNumber);
}

} // namespace

CDocuments::CDocuments(Host::CApplication& application, std::function<void(const std::wstring&)> onTooLarge)
    : m_application(application), m_onTooLarge(std::move(onTooLarge))
{
    application.Documents().SetHolderFactory(
        [](Host::CDocument&) { return std::make_unique<CServerText>(); });
}

void CDocuments::BeginCheck(const std::wstring& path, std::uint64_t number)
{
    SOpenDocument* open = Find(path);
    if (!open)
        return;
    open->taken = open->revision;
    open->check = number;
    open->checked = false;
    const bool wasTooLarge = std::exchange(open->tooLarge, open->Text().IsTooLarge());
    if (open->tooLarge && !wasTooLarge)
        m_onTooLarge(path);
}

void CDocuments::Outdate()
{
    for (auto& [path, open] : m_open)
        Outdate(open);
}

void CDocuments::Outdate(SOpenDocument& open)
{
    ++open.revision;
    open.check = 0;
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
    const std::string& given = item.at("text").get_ref<const std::string&>();
    std::wstring text = TextFromUtf8(given);
    const std::string language = item.value("languageId", "");
    const std::int64_t version = item.value("version", std::int64_t{0});
    // From here on nothing is wrong with the message.
    EndHidden(path);
    SOpenDocument& open = m_open[path];
    if (!open.document) {
        open.factory = FactoryOf(language, path);
        open.document = &m_application.Documents().OpenBytes(path, {}, open.factory);
        Outdate(open);
    }
    open.uri = m_uris[path] = uri;
    open.version = version;
    const std::size_t firstEnd = given.find('\n');
    open.crlf = firstEnd != std::string::npos && firstEnd > 0 && given[firstEnd - 1] == '\r';
    ++open.revision;
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
    if (version.is_number_integer())
        open->version = version.get<std::int64_t>();
    ++open->revision;
    // Whatever is wrong with one of the changes, what those before it have made of the text is checked.
    const auto announce = qScopeGuard([open] { open->Text().Announce(); });
    for (const json& change : params.at("contentChanges"))
        ApplyChange(open->Text(), change);
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
    const std::int64_t line = WholeNumber(position.at("line"));
    return text.Offset(line, ColumnOf(text.Line(line), WholeNumber(position.at("character")), m_encoding));
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

std::string CDocuments::UriOf(const std::wstring& path) const
{
    const auto known = m_uris.find(path);
    return known == m_uris.end() ? UriOfPath(path) : known->second;
}

SOpenDocument* CDocuments::Find(const std::wstring& path)
{
    const auto open = m_open.find(path);
    return open == m_open.end() ? nullptr : &open->second;
}

void CDocuments::CheckHidden(const std::wstring& path)
{
    const std::wstring factory = m_application.Parser().FactoryOfFile(path);
    if (m_open.contains(path) || factory.empty())
        return;
    EndHidden(path);
    m_application.Documents().OpenFile(path, factory);
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
