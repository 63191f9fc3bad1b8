#include "Base/Exception.h"
#include "Commands.h"
#include "Files/FilePath.h"
#include "Files/Printable.h"
#include "LanguageServer/Framing.h"
#include "LanguageServer/Server.h"
#include "LanguageServer/Uri.h"
#include "ServerChannel.h"
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
#include <optional>
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

/// Reads what the client says in a thread of its own and hands each message to the server's thread.
class CInput
{
public:
    CInput(int descriptor, LanguageServer::CServer& server, std::function<void()> end)
        : m_shared(std::make_shared<SShared>(&server, std::move(end)))
    {
        std::thread(&CInput::Run, descriptor, m_shared).detach();
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

    static void Run(int descriptor, std::shared_ptr<SShared> shared)
    {
        LanguageServer::CMessageReader reader;
        std::string block(1 << 16, '\0');
        for (;;) {
            const ssize_t count = ::read(descriptor, block.data(), block.size());
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

int RunLanguageServer(const SOptions& options)
{
    std::optional<CServerChannel> channel;
    try {
        channel.emplace(options);
    } catch (const Base::CWorkError& fault) {
        std::fprintf(stderr, "code-analyzer: %s\n", Host::Printable(fault.GetMessage()).c_str());
        return ExitFailed;
    }
    CSession session;
    // The client may close its end before all is said.
    std::signal(SIGPIPE, SIG_IGN);
    const auto end = [] { QCoreApplication::quit(); };
    int status = ExitFailed;
    {
        const auto send = [&channel](const std::string& body) {
            channel->Send(LanguageServer::Framed(body));
        };
        LanguageServer::CServer server({session.Application(), session.Plugin(), send, end, Documentation(),
                                        CODE_ANALYZER_VERSION, options.clientProcess});
        CInput input(channel->Input(), server, end);
        QCoreApplication::exec();
        status = server.ExitStatus();
    }
    return status;
}

} // namespace Kesh::CommandLine
