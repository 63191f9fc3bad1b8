#include "ServerChannel.h"

#include "Base/Exception.h"
#include "Files/FilePath.h"
#include "Options.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

[[noreturn]] void Fail(const std::string& where, int fault)
{
    throw Base::CWorkError(
        Host::PathFromBytes("cannot reach the client at " + where + ": " + std::strerror(fault)), __LINE__,
        "apps/code-analyzer/ServerChannel");
}

template <class TAddress> int Connect(const TAddress& address, const std::string& where)
{
    const int socket = ::socket(reinterpret_cast<const sockaddr&>(address).sa_family, // NOLINT
                                SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0 ||
        ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) { // NOLINT
        const int fault = errno;
        if (socket >= 0)
            ::close(socket);
        Fail(where, fault);
    }
    return socket;
}

int ConnectToPipe(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        Fail(path, ENAMETOOLONG);
    std::memcpy(address.sun_path, path.data(), path.size());
    return Connect(address, path);
}

int ConnectToPort(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const int socket = Connect(address, "port " + std::to_string(port));
    const int on = 1; // an answer waits for no other
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return socket;
}

} // namespace

CServerChannel::CServerChannel(const SOptions& options) : m_input(STDIN_FILENO), m_output(STDOUT_FILENO)
{
    if (!options.pipe.empty())
        m_input = m_output = ConnectToPipe(options.pipe);
    else if (options.port > 0)
        m_input = m_output = ConnectToPort(options.port);
}

CServerChannel::~CServerChannel()
{
    if (m_input != STDIN_FILENO)
        ::shutdown(m_input, SHUT_RDWR);
}

void CServerChannel::Send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = ::write(m_output, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

} // namespace Kesh::CommandLine
