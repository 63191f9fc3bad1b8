#include "Commands.h"
#include "Files/FilePath.h"
#include "LanguageServer/Framing.h"
#include "LanguageServer/Server.h"
#include "LanguageServer/Uri.h"
#include "Session.h"

#include <QCoreApplication>
#include <QFile>
#include <QTimer>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

/// The list of errors beside the program, as a URI; empty when it is not there.
std::string Documentation()
{
    // From the folder of a build, or from the one that installed programs keep for themselves.
    for (const char* up : {"/..", "/../.."}) {
        const QString file =
            QCoreApplication::applicationDirPath() + up + "/share/doc/code-analyzer/errors.md";
        if (QFile::exists(file))
            return LanguageServer::UriOfPath(Host::AbsolutePath(Host::PathFromQt(file)));
    }
    return "";
}

void SendMessage(const std::string& body)
{
    const std::string message = LanguageServer::Framed(body);
    std::fwrite(message.data(), 1, message.size(), stdout);
    std::fflush(stdout);
}

/// Reads standard input in a thread of its own and hands each message to the server's thread.
class CInput
{
public:
    CInput(LanguageServer::CServer& server, std::function<void()> end)
        : m_shared(std::make_shared<SShared>(&server, std::move(end)))
    {
        std::thread(&CInput::Run, m_shared).detach();
    }
    /// The thread may wait for input that never comes; nothing of it is needed any more.
    ~CInput()
    {
        const std::lock_guard lock(m_shared->mutex);
        m_shared->server = nullptr;
    }

private:
    struct SShared
    {
        SShared(LanguageServer::CServer* s, std::function<void()> e) : server(s), end(std::move(e)) {}

        std::mutex mutex;
        LanguageServer::CServer* server; ///< null once the program ends
        std::function<void()> end;
    };

    static void Run(std::shared_ptr<SShared> shared)
    {
        LanguageServer::CMessageReader reader;
        std::string block(1 << 16, '\0');
        for (;;) {
            const ssize_t count = ::read(STDIN_FILENO, block.data(), block.size());
            if (count < 0 && errno == EINTR)
                continue;
            if (count <= 0)
                break;
            reader.Feed({block.data(), static_cast<std::size_t>(count)});
            while (auto message = reader.Next())
                Post(*shared, [server = shared->server, message = std::move(*message)] {
                    if (message.fault.empty())
                        server->Receive(message.body);
                    else
                        server->ReceiveFault(message.fault);
                });
        }
        Post(*shared, shared->end);
    }

    /// What is posted runs before the server ends, or not at all.
    template <class TCall> static void Post(SShared& shared, TCall call)
    {
        const std::lock_guard lock(shared.mutex);
        if (shared.server)
            QMetaObject::invokeMethod(qApp, std::move(call), Qt::QueuedConnection);
    }

    std::shared_ptr<SShared> m_shared;
};

} // namespace

int RunLanguageServer(const SOptions& /*options*/)
{
    CSession session;
    // The client may close its end before all is said.
    std::signal(SIGPIPE, SIG_IGN);
    const auto end = [] { QCoreApplication::quit(); };
    int status = ExitFailed;
    {
        LanguageServer::CServer server({session.Application(), session.Plugin(), &SendMessage, end,
                                        Documentation(), CODE_ANALYZER_VERSION});
        CInput input(server, end);
        QCoreApplication::exec();
        status = server.ExitStatus();
    }
    return status;
}

} // namespace Kesh::CommandLine
