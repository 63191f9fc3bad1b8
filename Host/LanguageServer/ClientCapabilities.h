#pragma once

#include "LanguageServer/PositionEncoding.h"

#include <nlohmann/json.hpp>

namespace Kesh::LanguageServer {

/// What the client of a server has said that it knows.
struct SClientCapabilities
{
    EPositionEncoding encoding = EPositionEncoding::Utf16; ///< the one that is agreed on
    bool pullsDiagnostics = false;
    bool refreshesDiagnostics = false;
    bool showsProgress = false;
    bool watchesFiles = false;    ///< takes registrations for watched files
    bool versionedEdits = false;  ///< knows edits of a version of a document
    bool resolvesEdits = false;   ///< asks for the edit of a code action when it is picked
    bool answersSettings = false; ///< can be asked for its settings
};

/// Reads the "capabilities" of a request to initialize; whatever is missing or malformed is not known.
SClientCapabilities ReadCapabilities(const nlohmann::json& capabilities);

/// The name of an encoding in the protocol.
const char* NameOf(EPositionEncoding encoding);

/// A member of a member; null when there is none on the way.
nlohmann::json MemberAt(const nlohmann::json& object, std::initializer_list<const char*> path);

} // namespace Kesh::LanguageServer
