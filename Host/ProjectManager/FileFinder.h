#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Kesh::ProjectManager {

/// What FindFiles() looks for.
struct SFileQuery
{
    /// Whether a file is wanted; gets its path below the folder.
    std::function<bool(const std::wstring& relativePath)> takesFile;
    /// Whether a folder inside is looked into; gets its path below the folder. Unset: all but those that
    /// IsLeftOut() names.
    std::function<bool(const std::wstring& relativePath)> entersFolder;
    /// Told of each folder that could not be read, with the system's reason. May be unset.
    std::function<void(const std::wstring& path, const std::string& reason)> onError;
    /// Where links to files may lead, the folder that is searched included; empty: nowhere else. What leads
    /// out of it is a file of somebody else, which no report must show.
    std::wstring project;
    /// Told of each file that is wanted, but is such a link. May be unset.
    std::function<void(const std::wstring& path)> onLeadsOut;
    /// Asked now and then; true ends the search. May be unset.
    std::function<bool()> isCancelled;
};

/// Whether a folder of this name is left out of projects: hidden ones and those of other people's code.
bool IsLeftOut(const std::wstring& folderName);

/// Whether the search below `folder` would find the file, were it there and no link. Both are absolute. Any
/// thread.
bool IsFoundIn(const std::wstring& folder, const std::wstring& file, const SFileQuery& query);

/// Whether the file is a link to a place that such a search does not follow it to. Any thread.
bool IsForeign(const std::wstring& folder, const std::wstring& file, const SFileQuery& query);

/// The regular files below `folder`, as `folder`, a slash and the rest, sorted. Links to folders are not
/// followed, so the search always ends. Any thread.
std::vector<std::wstring> FindFiles(const std::wstring& folder, const SFileQuery& query);

} // namespace Kesh::ProjectManager
