#pragma once

#include "Files/FileReplacement.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace Kesh::Host {

/// Larger texts are refused, wherever they come from: a check holds the text several times over, at four
/// bytes a character.
constexpr std::size_t MaxFileBytes = std::size_t{64} << 20;
/// What is said of them: "larger than 64 MiB".
std::string TooLarge();

/// The bytes of a regular file. Throws Base::CWorkError with a text for the user ("No such file or
/// directory", "not a regular file", ...) that does not name the path. Any thread.
std::string ReadFileBytes(const std::wstring& path, bool followsLinks = true);
/// The same without a new string for each file: the bytes lie in `buffer`, which only ever grows.
std::string_view ReadFileInto(std::string& buffer, const std::wstring& path, bool followsLinks = true);
/// So many bytes, at most, of the beginning of a regular file; none when it cannot be read. Any thread.
std::string ReadFileStart(const std::wstring& path, std::size_t size);
/// Replaces the file as a whole or leaves it as it was, as CFileReplacement does, and throws like it. Any
/// thread.
void WriteFileBytes(const std::wstring& path, std::string_view bytes, const SWriteRules& rules = {});
/// Whether the user may write the file, as far as its mode says. Any thread.
bool IsWritable(const std::wstring& path);
/// Removes what writers of files in this folder have left behind when they were killed an hour ago or
/// earlier. Any thread.
void RemoveAbandonedParts(const std::wstring& folder);

/// What became of a file on disk since it was looked at: equal stamps mean no change. Programs set the time
/// of a file as they like, but not that of its last change, and another file has another number.
struct SFileStamp
{
    long long seconds = 0;
    long long nanoseconds = 0;
    long long size = -1; ///< -1: there is no such file
    long long changeSeconds = 0;
    long long changeNanoseconds = 0;
    long long inode = 0;
    long long device = 0;

    friend bool operator==(const SFileStamp&, const SFileStamp&) = default;
};
SFileStamp StampOf(const std::wstring& path);

} // namespace Kesh::Host
