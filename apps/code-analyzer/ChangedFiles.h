#pragma once

#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// A file as git has it in its index.
struct SStaged
{
    std::wstring repository; ///< a folder of it, absolute; empty: the file on disk is meant
    std::string object;      ///< that holds the bytes
};

struct SChangedFile
{
    std::wstring path; ///< absolute
    SStaged staged;
    bool isLink = false;
};

/// What git says has changed in the repository that `folder` lies in: against the commit at which the work
/// left `ref`, or, when that is empty, what is staged, as it is staged. Deleted files and submodules are left
/// out. Throws Base::CWorkError with git's own words.
std::vector<SChangedFile> ChangedFiles(const std::wstring& folder, const std::string& ref);

/// The bytes that are staged. Throws Base::CWorkError with a text for the user.
std::string ReadStaged(const SStaged& staged);

} // namespace Kesh::CommandLine
