#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Commands.h"
#include "Files/FilePath.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

constexpr const char* SessionProgram = "code-analyzer-session";

/// Becomes the program that has a whole host in it. This one has not, so that a check starts at once.
int BecomeSession(const SOptions& options)
{
    for (const std::string& folder :
         {Host::ProgramFolder(), Host::ProgramFolder() + "/../" CODE_ANALYZER_LIBEXECDIR,
          std::string(CODE_ANALYZER_FULL_LIBEXECDIR)})
        ::execv((folder + '/' + SessionProgram).c_str(), options.arguments);
    throw Base::CWorkError(
        Base::CCommonString::FromUtf8(std::string(SessionProgram) + ": " + std::strerror(errno)), __LINE__,
        "apps/code-analyzer/SessionLauncher");
}

} // namespace

int RunProject(const SOptions& options)
{
    return BecomeSession(options);
}

int RunLanguageServer(const SOptions& options)
{
    return BecomeSession(options);
}

} // namespace Kesh::CommandLine
