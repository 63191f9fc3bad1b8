#include "LanguageServer/Uri.h"

#include "Files/FilePath.h"

#include <QByteArray>
#include <algorithm>

namespace Kesh::LanguageServer {

namespace {

constexpr std::string_view FileScheme = "file://";

} // namespace

std::wstring PathOfUri(std::string_view uri)
{
    if (!uri.starts_with(FileScheme)) {
        // One name below what is no folder: its slashes must lead nowhere.
        std::wstring name = L':' + Host::PathFromBytes(uri);
        std::replace(name.begin(), name.end(), L'/', L'|');
        return L"/dev/null/" + name;
    }
    std::string_view rest = uri.substr(FileScheme.size());
    // A host name may stand before the path; only this machine's files are known.
    rest.remove_prefix(std::min(rest.find('/'), rest.size()));
    rest = rest.substr(0, rest.find_first_of("?#"));
    const QByteArray bytes = QByteArray::fromPercentEncoding({rest.data(), static_cast<int>(rest.size())});
    return Host::AbsolutePath(
        Host::PathFromBytes({bytes.constData(), static_cast<std::size_t>(bytes.size())}));
}

std::string UriOfPath(const std::wstring& path)
{
    return std::string(FileScheme) +
           QByteArray::fromStdString(Host::PathToBytes(path)).toPercentEncoding("/").toStdString();
}

} // namespace Kesh::LanguageServer
