#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <set>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The errors of one file as they are kept with a project.
struct SSavedFileErrors
{
    std::wstring file;
    std::vector<SCAError> errors;
    TDetails details = nullptr;
};

/// The text that keeps errors from one run of the host to the next. Paths go into it as they are: one with a
/// quote, "&" or "<" makes a text that cannot be read back.
std::wstring WriteSavedErrors(const std::vector<SSavedFileErrors>& files);

/// The errors in such a text of those files that are among `lowerFiles` (paths in lower case); none from a
/// text that cannot be read or is of another version.
std::vector<SSavedFileErrors> ReadSavedErrors(const std::wstring& text,
                                              const std::set<std::wstring>& lowerFiles);

} // namespace Kesh::CodeAnalyzer
