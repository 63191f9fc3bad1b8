#include "Files/Fault.h"

#include "Base/CommonString.h"
#include "Files/Printable.h"

#include <atomic>
#include <cstdio>

namespace Kesh::Host {

namespace {

void PrintFault(const std::wstring& text)
{
    std::fprintf(stderr, "code-analyzer: %s\n", Printable(text).c_str());
}

std::atomic<TFaultSink> s_sink{&PrintFault};

} // namespace

void SetFaultSink(TFaultSink sink)
{
    s_sink = sink ? sink : &PrintFault;
}

void ReportFault(const std::wstring& where, const std::string& what)
{
    s_sink.load()(where + L": " + Base::CCommonString::FromUtf8(what));
}

} // namespace Kesh::Host
