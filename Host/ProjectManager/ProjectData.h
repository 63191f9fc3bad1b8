#pragma once

#include "Kesh/ProjectManager/IProjectManager.h"

#include <functional>
#include <string>

namespace Kesh::ProjectManager {

/// The texts kept with a project, files in its subfolder ".code-analyzer". That nor they may be links: they
/// would be neither read nor written. Any thread.
class CProjectData final : public IProjectData
{
public:
    struct SEvents
    {
        std::function<void(const std::wstring& reason)> failed; ///< a text could not be kept
        std::function<void()> ended;                            ///< nobody holds this any more
    };
    /// Both events come in whatever thread it is; either may be unset.
    CProjectData(const std::wstring& projectFolder, SEvents events);
    ~CProjectData() override;

    std::wstring GetData(const std::wstring& name) override;
    void SetData(const std::wstring& name, const std::wstring& text) override;

private:
    void RequireNoLink() const;

    std::wstring m_folder;
    SEvents m_events;
};

} // namespace Kesh::ProjectManager
