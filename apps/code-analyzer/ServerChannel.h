#pragma once

#include <string>
#include <string_view>

namespace Kesh::CommandLine {

struct SOptions;

/// The connection to the client of a language server: standard input and output, or a socket of the client's.
class CServerChannel
{
public:
    /// Throws Base::CWorkError when the client cannot be reached.
    explicit CServerChannel(const SOptions& options);
    ~CServerChannel();
    CServerChannel(const CServerChannel&) = delete;
    CServerChannel& operator=(const CServerChannel&) = delete;

    /// The descriptor to read from. It stays open as long as the program runs: a thread may wait in it.
    int Input() const { return m_input; }
    /// Sends all bytes, or none once the client is gone.
    void Send(std::string_view bytes);

private:
    int m_input;
    int m_output;
};

} // namespace Kesh::CommandLine
