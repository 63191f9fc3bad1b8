#pragma once

#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// What git says has changed in the repository that `folder` lies in: against the commit at which the work
/// left `ref`, or, when that is empty, what is staged. Deleted files are left out. Absolute paths. Throws
/// Base::CWorkError with git's own words.
std::vector<std::wstring> ChangedFiles(const std::wstring& folder, const std::string& ref);

} // namespace Kesh::CommandLine
