#include "ProjectOpener.h"

#include "Findings/CheckedFiles.h"

#include <QThread>

namespace Kesh::Workbench {

namespace {

void ReadRules(SProjectListing& listing, const TProjectRules& before)
{
    using Findings::CProjectRules;
    listing.rules = std::make_shared<const CProjectRules>(Findings::SRulesForAll(),
                                                          CProjectRules::EFaults::Keep, before.get());
    listing.rules->For(listing.folder + L'/');
}

} // namespace

CProjectOpener::CProjectOpener() = default;

CProjectOpener::~CProjectOpener()
{
    Cancel();
}

void CProjectOpener::Start(const std::wstring& folder, const TProjectRules& before)
{
    Cancel();
    const auto result = std::make_shared<SProjectListing>();
    result->folder = folder;
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    m_thread.reset(QThread::create([folder, before, result, cancelled = m_cancelled] {
        ReadRules(*result, before);
        ProjectManager::SFileQuery query = Findings::CheckedFiles(folder, result->rules);
        query.isCancelled = [&] { return cancelled->load(); };
        query.onError = [&](const std::wstring& path, const std::string& reason) {
            if (path == folder)
                result->problem = QString::fromStdString(reason);
        };
        result->files = ProjectManager::FindFiles(folder, query);
        for (const std::string& fault : result->rules->TakeFaults())
            result->rulesProblem +=
                (result->rulesProblem.isEmpty() ? "" : "\n") + QString::fromStdString(fault);
    }));
    connect(m_thread.get(), &QThread::finished, this, [this, result, cancelled = m_cancelled] {
        if (*cancelled)
            return; // another search has taken its place
        m_thread->wait();
        m_thread.release()->deleteLater();
        emit listed(*result);
    });
    m_thread->start();
}

void CProjectOpener::Cancel()
{
    if (!m_thread)
        return;
    *m_cancelled = true;
    m_thread->wait();
    m_thread.reset();
}

} // namespace Kesh::Workbench
