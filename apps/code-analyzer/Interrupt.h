#pragma once

namespace Kesh::CommandLine {

/// From now on Ctrl-C and a polite request to end are noted instead of obeyed, once: the second one ends the
/// process.
void WatchInterrupts();
/// The signal that asked to end; 0: none has.
int InterruptSignal();

} // namespace Kesh::CommandLine
