#pragma once

#include <exception>
#include <string>

namespace Kesh::Host {

/// Receives a text about an operation that was given up; the default prints it on stderr.
using TFaultSink = void (*)(const std::wstring& text);
/// GUI thread, before threads are started.
void SetFaultSink(TFaultSink sink);
/// Any thread.
void ReportFault(const std::wstring& where, const std::string& what);

/// Calls `operation`; an exception from it is reported and goes no further. Whatever a plug-in throws ends
/// what it was doing, never the host.
template <class TOperation> void Guard(const wchar_t* where, TOperation&& operation)
{
    try {
        operation();
    } catch (const std::exception& fault) {
        ReportFault(where, fault.what());
    } catch (...) {
        // The parsing service has exceptions of its own that do not derive from std::exception.
        ReportFault(where, "unknown fault");
    }
}

} // namespace Kesh::Host
