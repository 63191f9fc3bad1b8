#pragma once

#include "Kesh/SDK/IComponent.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>
#include <string>
#include <vector>

namespace Kesh::SDK {
class IApplication;
}

namespace Kesh::ProjectManager {

/// The project's files as they were found when it was opened.
struct SProjectFilesCache
{
    std::vector<std::wstring> files; ///< full paths
};

/// The texts kept with one project, also when it has been closed meanwhile. Any thread.
class IProjectData
{
public:
    virtual ~IProjectData() = default;
    /// As those of IProjectManager.
    virtual std::wstring GetData(const std::wstring& name) = 0;
    virtual void SetData(const std::wstring& name, const std::wstring& text) = 0;
};

/// The open project. GetFiles, GetFilesCache, IsOpened and BelongsToProject are safe from any thread, the
/// rest belongs to the GUI thread.
class IProjectManager
{
public:
    using CloseProjectSignal = boost::signals2::signal<void(IProjectManager*)>;

    virtual int IsOpened() = 0;
    virtual int BelongsToProject(const std::wstring& path) = 0;
    /// Full paths, in the order in which the project lists them.
    virtual std::vector<std::wstring> GetFiles() = 0;
    /// Null when no project is open.
    virtual boost::shared_ptr<const SProjectFilesCache> GetFilesCache() = 0;
    /// Non-zero when the project closes only to be opened again at once, so that what is known of its files
    /// may stay.
    virtual int IsReopening() = 0;
    /// A named text kept with the project; the empty text when there is none. SetData replaces it as a whole
    /// or not at all.
    virtual std::wstring GetData(const std::wstring& name) = 0;
    virtual void SetData(const std::wstring& name, const std::wstring& text) = 0;
    /// Emitted while the project is still open.
    virtual CloseProjectSignal& GetCloseProjectSignal() = 0;
    /// The texts of the project that is open, for those who take their time to make or to read them. A host
    /// that ends waits until nobody holds this any more. Null: no project is open, or this host has none.
    virtual boost::shared_ptr<IProjectData> GetProjectData() { return {}; }

protected:
    ~IProjectManager() = default;
};

/// Component name "IPMComponent".
class IPMComponent : public SDK::IComponent1<SDK::IApplication>
{
public:
    /// Never null; owned by the component.
    virtual IProjectManager* GetProjectManager() = 0;

protected:
    ~IPMComponent() = default;
};

} // namespace Kesh::ProjectManager
