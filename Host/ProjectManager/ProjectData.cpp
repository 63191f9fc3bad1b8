#include "ProjectManager/ProjectData.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"

#include <filesystem>

namespace Kesh::ProjectManager {

namespace {

/// Data items are files of this name, so a name must not lead elsewhere.
bool IsDataName(const std::wstring& name)
{
    return !name.empty() && !name.starts_with(L'.') && name.find(L'/') == std::wstring::npos;
}

[[noreturn]] void Fail(const std::string& reason)
{
    throw Base::CWorkError(Base::CCommonString::FromUtf8(reason), __LINE__,
                           "Host/ProjectManager/ProjectData");
}

} // namespace

/// A folder that came with the project may be a link to anywhere.
void CProjectData::RequireNoLink() const
{
    std::error_code ignored;
    if (std::filesystem::is_symlink(std::filesystem::symlink_status(Host::PathToBytes(m_folder), ignored)))
        Fail(".code-analyzer is a link, and nothing is written through it");
}

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
        RequireNoLink();
        return Host::PathFromBytes(Host::ReadFileBytes(m_folder + L'/' + name, false));
    } catch (const Base::CWorkError&) {
        return {}; // nothing has been kept yet
    }
}

void CProjectData::SetData(const std::wstring& name, const std::wstring& text)
{
    if (!IsDataName(name))
        return;
    try {
        RequireNoLink();
        std::error_code error;
        std::filesystem::create_directory(Host::PathToBytes(m_folder), error);
        if (error == std::errc::file_exists)
            error = std::make_error_code(std::errc::not_a_directory);
        if (error)
            Fail(error.message());
        constexpr Host::SWriteRules inside{false};
        const std::wstring ignore = m_folder + L"/.gitignore"; // what is kept here is nobody else's
        if (!std::filesystem::exists(std::filesystem::symlink_status(Host::PathToBytes(ignore), error)))
            Host::WriteFileBytes(ignore, "*\n", inside);
        Host::WriteFileBytes(m_folder + L'/' + name, Host::PathToBytes(text), inside);
        Host::RemoveAbandonedParts(m_folder);
    } catch (const Base::CWorkError& fault) {
        if (m_events.failed)
            m_events.failed(fault.GetMessage());
    }
}

} // namespace Kesh::ProjectManager
