#include "Report/Output.h"

#include "Base/CommonString.h"
#include "Files/FilePath.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace Kesh::CommandLine {

namespace {

[[noreturn]] void Fail(const std::wstring& name, const std::wstring& reason)
{
    throw Base::CWorkError(L"cannot write " + name + L": " + reason, __LINE__,
                           "apps/code-analyzer/Report/Output");
}

/// Calls something and says of what goes wrong which file it is about.
template <class TCall> void Try(const std::wstring& name, TCall&& call)
{
    try {
        call();
    } catch (const Base::CWorkError& fault) {
        Fail(name, fault.GetMessage());
    }
}

} // namespace

COutput::COutput(const std::string& file) : m_name(Host::PathFromBytes(file))
{
    std::error_code ignored;
    const auto kind = std::filesystem::status(file, ignored).type();
    if (kind == std::filesystem::file_type::fifo || kind == std::filesystem::file_type::character) {
        m_stream = m_device = std::fopen(file.c_str(), "we");
        if (!m_device)
            Fail(m_name, Base::CCommonString::FromUtf8(std::strerror(errno)));
        return;
    }
    if (Host::LeadsOut(L".", m_name))
        Fail(m_name, L"is a link that leads out of the current folder; name the file that it leads to");
    // A report can be had again: in a folder that takes no other file it is written over the old one.
    Try(m_name, [&] {
        m_file = std::make_unique<Host::CFileReplacement>(m_name, Host::SWriteRules{true, true});
    });
}

COutput::~COutput()
{
    if (m_device)
        std::fclose(m_device);
}

void COutput::Write(std::string_view bytes)
{
    if (m_file)
        Try(m_name, [&] { m_file->Write(bytes); });
    else if (std::fwrite(bytes.data(), 1, bytes.size(), m_stream) != bytes.size() && m_device)
        Fail(m_name, Base::CCommonString::FromUtf8(std::strerror(errno)));
    // Of standard output main() looks whether all of it arrived.
}

void COutput::Commit()
{
    if (m_file)
        Try(m_name, [&] { m_file->Commit(); });
    if (m_device && std::fflush(m_device) != 0)
        Fail(m_name, Base::CCommonString::FromUtf8(std::strerror(errno)));
}

bool COutput::IsTerminal() const
{
    return Stream() && ::isatty(::fileno(Stream()));
}

} // namespace Kesh::CommandLine
