#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace Kesh::Host {

/// File names are bytes; the host keeps them as wide strings. Each byte that is no part of valid UTF-8
/// becomes one character of U+DC80..U+DCFF, so that every name survives the way there and back. Any thread.
std::wstring PathFromBytes(std::string_view bytes);
std::string PathToBytes(std::wstring_view path);
std::wstring PathFromQt(const QString& path);
QString PathToQt(std::wstring_view path);

/// The path made absolute, without "." and "..", not looking at the disk. Any thread.
std::wstring AbsolutePath(const std::wstring& path);
/// The path with all links resolved; AbsolutePath() when the file does not exist. Any thread.
std::wstring ResolvedPath(const std::wstring& path);
/// Where the path ends when it is, or becomes, a link: also one to a file that does not exist. Any thread.
std::wstring LinkTarget(const std::wstring& path);
/// Whether `path` is `folder` or lies below it. Neither is looked for on the disk.
bool LiesIn(const std::wstring& folder, const std::wstring& path);
/// Whether there is a file, or a link to one. Any thread.
bool IsRegularFile(const std::wstring& path);
/// Whether a path that lies in the folder leads to a place outside by links. Any thread.
bool LeadsOut(const std::wstring& folder, const std::wstring& path);
/// The folder of the running program; other parts of the installation lie beside it. Any thread.
std::string ProgramFolder();
/// The part after the last slash.
std::wstring FileName(const std::wstring& path);

/// Makes Qt's own file functions, and its reading of the program's arguments, follow the same rule in every
/// locale. Call once, before the QApplication is made.
void InstallFileNameCodec();

} // namespace Kesh::Host
