#include "Base/Exception.h"
#include "Commands.h"
#include "Files/FilePath.h"
#include "Report/Printable.h"

#include <QtGlobal>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <unistd.h>

namespace Kesh::CommandLine {

void PrintProblem(const std::wstring& path, const std::string& reason)
{
    std::fprintf(stderr, "code-analyzer: %s: %s\n", Printable(path).c_str(), PrintableBytes(reason).c_str());
}

namespace {

int Run(const SOptions& options)
{
    try {
        switch (options.command) {
        case ECommand::Check: return RunCheck(options);
        case ECommand::Project: return RunProject(options);
        case ECommand::LanguageServer: return RunLanguageServer(options);
        case ECommand::Init: return RunInit(options);
        case ECommand::Explain: return RunExplain(options);
        case ECommand::Regions: return RunRegions(options);
        case ECommand::Tree: return RunTree(options);
        }
    } catch (const Base::CWorkError& fault) {
        if (options.command == ECommand::Regions || options.command == ECommand::Tree)
            PrintProblem(Host::PathFromBytes(options.paths.front()), fault.what());
        else
            std::fprintf(stderr, "code-analyzer: %s\n", PrintableBytes(fault.what()).c_str());
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "code-analyzer: %s\n", PrintableBytes(fault.what()).c_str());
    }
    return ExitFailed;
}

/// A file or socket opened later must not become what is printed to: what the caller has closed is held open
/// in the direction that fails.
void OccupyStandardDescriptors()
{
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(fd, F_GETFD) == -1 && errno == EBADF)
            ::open("/dev/null", fd == STDIN_FILENO ? O_WRONLY : O_RDONLY); // takes the lowest free number
}

/// Qt talks about the machine's set-up, which is no concern of a program without a window.
void DropQtChatter(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text)
{
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "code-analyzer: %s\n", PrintableBytes(qUtf8Printable(text)).c_str());
}

} // namespace

} // namespace Kesh::CommandLine

int main(int argc, char** argv)
{
    using namespace Kesh;
    CommandLine::SOptions options;
    int exitCode = CommandLine::ExitClean;
    if (!CommandLine::ParseOptions(argc, argv, options, exitCode))
        return exitCode;

    CommandLine::OccupyStandardDescriptors();
    Host::InstallFileNameCodec();
    qInstallMessageHandler(&CommandLine::DropQtChatter);
    exitCode = CommandLine::Run(options);
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "code-analyzer: standard output: %s\n", std::strerror(errno));
        return CommandLine::ExitFailed;
    }
    return exitCode;
}
