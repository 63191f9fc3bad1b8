#include "LanguageServer/ClientCapabilities.h"

#include <algorithm>

namespace Kesh::LanguageServer {

using nlohmann::json;

namespace {

bool IsTrueAt(const json& object, std::initializer_list<const char*> path)
{
    const json value = MemberAt(object, path);
    return value.is_boolean() && value.get<bool>();
}

EPositionEncoding Negotiate(const json& offered)
{
    // The host's own counting needs no conversion; of the others the client's first choice counts.
    for (const json& encoding : offered.is_array() ? offered : json::array()) {
        if (encoding == "utf-32")
            return EPositionEncoding::Utf32;
        if (encoding == "utf-8")
            return EPositionEncoding::Utf8;
        if (encoding == "utf-16")
            return EPositionEncoding::Utf16;
    }
    return EPositionEncoding::Utf16;
}

bool ResolvesEdits(const json& codeAction)
{
    const json properties = MemberAt(codeAction, {"resolveSupport", "properties"});
    return properties.is_array() && std::ranges::find(properties, "edit") != properties.end() &&
           IsTrueAt(codeAction, {"dataSupport"});
}

} // namespace

json MemberAt(const json& object, std::initializer_list<const char*> path)
{
    const json* at = &object;
    for (const char* key : path) {
        if (!at->is_object() || !at->contains(key))
            return {};
        at = &(*at)[key];
    }
    return *at;
}

SClientCapabilities ReadCapabilities(const json& capabilities)
{
    SClientCapabilities client;
    client.encoding = Negotiate(MemberAt(capabilities, {"general", "positionEncodings"}));
    client.pullsDiagnostics = MemberAt(capabilities, {"textDocument", "diagnostic"}).is_object();
    client.refreshesDiagnostics = IsTrueAt(capabilities, {"workspace", "diagnostics", "refreshSupport"});
    client.showsProgress = IsTrueAt(capabilities, {"window", "workDoneProgress"});
    client.watchesFiles =
        IsTrueAt(capabilities, {"workspace", "didChangeWatchedFiles", "dynamicRegistration"});
    client.versionedEdits = IsTrueAt(capabilities, {"workspace", "workspaceEdit", "documentChanges"});
    client.resolvesEdits = ResolvesEdits(MemberAt(capabilities, {"textDocument", "codeAction"}));
    client.answersSettings = IsTrueAt(capabilities, {"workspace", "configuration"});
    return client;
}

const char* NameOf(EPositionEncoding encoding)
{
    switch (encoding) {
    case EPositionEncoding::Utf8: return "utf-8";
    case EPositionEncoding::Utf16: return "utf-16";
    case EPositionEncoding::Utf32: return "utf-32";
    }
    return "utf-16";
}

} // namespace Kesh::LanguageServer
