#pragma once

#include "Components/CABackground.h"
#include "Components/CASavedErrorsText.h"
#include "Kesh/ProjectManager/IProjectManager.h"

#include <functional>
#include <memory>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CErrorsStore;
class IErrorsView;

/// Keeps the errors of a project's files with the project, and for a host that has asked for it what is known
/// of them beyond their records. GUI thread.
class CSavedErrors
{
public:
    /// Not owned.
    void Init(CErrorsStore* errorsManager) { m_errorsManager = errorsManager; }

    void Save(ProjectManager::IProjectManager* pm);
    /// The same in the background, if the host can have it so.
    void SaveInBackground(ProjectManager::IProjectManager* pm);
    /// What has been saved, into the store. `view` may be null.
    void Load(ProjectManager::IProjectManager* pm, IErrorsView* view);
    /// The same in the background; then it calls `atEnd`, unless it is given up before. False: the host
    /// cannot have it so.
    bool BeginLoading(ProjectManager::IProjectManager* pm, IErrorsView* view, std::function<void()> atEnd);
    bool IsLoading() const { return m_loading != nullptr; }
    /// Whether there was something that has not been read yet.
    bool GiveUpLoading();
    /// For the end of what is read or written in the background.
    void Wait() { m_background.Wait(); }

private:
    struct SLoading;

    /// The errors of the project's files.
    std::vector<SSavedFileErrors> GetErrors(ProjectManager::IProjectManager* pm);
    void EndLoading(const std::shared_ptr<SLoading>& loading);

    CErrorsStore* m_errorsManager = nullptr;
    std::shared_ptr<SLoading> m_loading; ///< null: nothing is being read
    CCABackground m_background;          ///< ends before the rest
};

} // namespace Kesh::CodeAnalyzer
