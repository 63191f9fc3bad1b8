#pragma once

#include "Options.h"

namespace Kesh::CommandLine {

/// Each runs one command and answers the exit status. Base::CWorkError means that it could not be done.
int RunCheck(const SOptions& options);
int RunProject(const SOptions& options);
int RunLanguageServer(const SOptions& options);
int RunInit(const SOptions& options);
int RunExplain(const SOptions& options);
int RunRegions(const SOptions& options);
int RunTree(const SOptions& options);

/// Prints a message about a path on stderr.
void PrintProblem(const std::wstring& path, const std::string& reason);

} // namespace Kesh::CommandLine
