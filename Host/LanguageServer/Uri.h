#pragma once

#include <string>
#include <string_view>

namespace Kesh::LanguageServer {

/// The host's path for a document's URI. A URI that names no file on this machine ("untitled:1") becomes a
/// path that no file has.
std::wstring PathOfUri(std::string_view uri);
/// The file URI of an absolute path.
std::string UriOfPath(const std::wstring& path);

} // namespace Kesh::LanguageServer
