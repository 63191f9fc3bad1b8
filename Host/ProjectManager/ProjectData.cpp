#include "ProjectManager/ProjectData.h"

#include "Application/FileIO.h"
#include "Application/FilePath.h"
#include "Base/CommonString.h"
#include "Base/Exception.h"

#include <filesystem>

namespace Kesh::ProjectManager {

namespace {

/// Data items are files of this name, so a name must not lead elsewhere.
bool IsDataName(const std::wstring& name)
{
    return !name.empty() && !name.starts_with(L'.') && name.find(L'/') == std::wstring::npos;
}

} // namespace

CProjectData::CProjectData(const std::wstring& projectFolder, SEvents events)
    : m_folder(projectFolder + L"/.code-analyzer"), m_events(std::move(events))
{
}

CProjectData::~CProjectData()
{
    if (m_events.ended)
        m_events.ended();
}

std::wstring CProjectData::GetData(const std::wstring& name)
{
    if (!IsDataName(name))
        return {};
    try {
        return Host::PathFromBytes(Host::ReadFileBytes(m_folder + L'/' + name));
    } catch (const Base::CWorkError&) {
        return {}; // nothing has been kept yet
    }
}

void CProjectData::SetData(const std::wstring& name, const std::wstring& text)
{
    if (!IsDataName(name))
        return;
    try {
        std::error_code error;
        if (std::filesystem::create_directory(Host::PathToBytes(m_folder), error))
            Host::WriteFileBytes(m_folder + L"/.gitignore", "*\n"); // what is kept here is nobody else's
        if (error == std::errc::file_exists)
            error = std::make_error_code(std::errc::not_a_directory);
        if (error)
            throw Base::CWorkError(Base::CCommonString::FromUtf8(error.message()), __LINE__,
                                   "Host/ProjectManager/ProjectData");
        Host::WriteFileBytes(m_folder + L'/' + name, Host::PathToBytes(text));
        Host::RemoveAbandonedCopies(m_folder + L'/' + name);
    } catch (const Base::CWorkError& fault) {
        if (m_events.failed)
            m_events.failed(fault.GetMessage());
    }
}

} // namespace Kesh::ProjectManager
