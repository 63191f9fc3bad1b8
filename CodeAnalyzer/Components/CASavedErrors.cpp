#include "Components/CASavedErrors.h"

#include "Base/CommonString.h"
#include "Components/CAErrorsStore.h"
#include "Components/CASavedDetails.h"
#include "Components/ErrorsView.h"

#include <QScopeGuard>
#include <atomic>
#include <set>
#include <string>
#include <utility>

namespace Kesh::CodeAnalyzer {

using ProjectManager::IProjectManager;
using ProjectManager::SProjectFilesCache;

namespace {

constexpr const wchar_t* ErrorsItem = L"errors";
constexpr const wchar_t* DetailsItem = L"details";

/// From an IProjectManager or an IProjectData. The thread in which `data` may be used.
template <class TData>
std::vector<SSavedFileErrors> Read(TData& data, const SProjectFilesCache* cache, bool detailed)
{
    if (!cache || cache->files.empty())
        return {};
    std::set<std::wstring> lowerFiles;
    for (const std::wstring& file : cache->files)
        lowerFiles.insert(Base::CCommonString::LowerCaseFast(file));
    std::vector<SSavedFileErrors> files = ReadSavedErrors(data.GetData(ErrorsItem), lowerFiles);
    if (detailed && !files.empty())
        ReadSavedDetails(data.GetData(DetailsItem), files);
    return files;
}

/// The same.
template <class TData> void Write(TData& data, const std::vector<SSavedFileErrors>& files, bool detailed)
{
    data.SetData(ErrorsItem, WriteSavedErrors(files));
    if (detailed)
        data.SetData(DetailsItem, WriteSavedDetails(files));
}

} // namespace

struct CSavedErrors::SLoading
{
    std::function<void()> atEnd;
    std::atomic<bool> isGivenUp{false};
    std::vector<SSavedFileErrors> files; ///< once they have been read
};

std::vector<SSavedFileErrors> CSavedErrors::GetErrors(IProjectManager* pm)
{
    std::vector<SSavedFileErrors> files;
    for (const std::wstring& file : pm->GetFiles()) {
        std::vector<SCAError> errors;
        m_errorsManager->GetErrors(file, errors);
        if (!errors.empty())
            files.push_back({file, std::move(errors), m_errorsManager->GetDetails(file)});
    }
    return files;
}

void CSavedErrors::Save(IProjectManager* pm)
{
    Write(*pm, GetErrors(pm), m_errorsManager->IsDetailed());
}

void CSavedErrors::SaveInBackground(IProjectManager* pm)
{
    const auto data = pm->GetProjectData();
    if (!data)
        return Save(pm);
    const auto files = std::make_shared<std::vector<SSavedFileErrors>>(GetErrors(pm));
    m_background.Run([data, files, detailed = m_errorsManager->IsDetailed()] {
        try {
            Write(*data, *files, detailed);
        } catch (...) {
            // As much as the host lets one know of a text that it could not keep.
        }
    });
}

void CSavedErrors::Load(IProjectManager* pm, IErrorsView* view)
{
    const auto cache = pm->GetFilesCache();
    const auto files = Read(*pm, cache.get(), m_errorsManager->IsDetailed());
    if (view)
        view->BeginMany();
    const auto end = qScopeGuard([view] {
        if (view)
            view->EndMany();
    });
    for (const auto& [file, errors, details] : files)
        m_errorsManager->AddErrorsMT(file, errors, details);
}

bool CSavedErrors::BeginLoading(IProjectManager* pm, IErrorsView* view, std::function<void()> atEnd)
{
    const auto data = pm->GetProjectData();
    if (!data || !view)
        return false;
    GiveUpLoading();
    m_loading = std::make_shared<SLoading>();
    m_loading->atEnd = std::move(atEnd);
    m_background.Run([this, view, data, cache = pm->GetFilesCache(), loading = m_loading,
                      detailed = m_errorsManager->IsDetailed()] {
        if (loading->isGivenUp)
            return;
        try {
            loading->files = Read(*data, cache.get(), detailed);
        } catch (...) {
            // Errors that cannot be restored are found anew.
        }
        QMetaObject::invokeMethod(
            view->Receiver(), [this, loading] { EndLoading(loading); }, Qt::QueuedConnection);
    });
    return true;
}

bool CSavedErrors::GiveUpLoading()
{
    if (m_loading)
        m_loading->isGivenUp = true;
    return std::exchange(m_loading, nullptr) != nullptr;
}

void CSavedErrors::EndLoading(const std::shared_ptr<SLoading>& loading)
{
    if (m_loading != loading)
        return; // the project has gone meanwhile
    m_loading.reset();
    // A document that was open before has been checked meanwhile, or is about to be.
    for (const auto& [file, errors, details] : loading->files)
        if (!m_errorsManager->MayHaveErrors(file))
            m_errorsManager->AddErrorsGradually(file, errors, details);
    loading->atEnd();
}

} // namespace Kesh::CodeAnalyzer
