#include "Interrupt.h"

#include <csignal>

namespace Kesh::CommandLine {

namespace {

volatile std::sig_atomic_t s_signal = 0;

} // namespace

void WatchInterrupts()
{
    struct sigaction action = {};
    action.sa_handler = [](int signal) { s_signal = signal; };
    action.sa_flags = static_cast<int>(SA_RESETHAND); // and no restart: whoever waits shall wake up
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

int InterruptSignal()
{
    return s_signal;
}

} // namespace Kesh::CommandLine
