#include "ProjectOpener.h"

#include "Base/Exception.h"
#include "Configuration/ProjectFiles.h"
#include "Files/FilePath.h"

#include <QThread>

namespace Kesh::Workbench {

namespace {

void ReadRules(SProjectListing& listing)
{
    auto rules = std::make_shared<SProjectRules>();
    QString what; // its own faults name the file
    try {
        if (const std::wstring file = Configuration::FindConfiguration(listing.folder); !file.empty())
            rules->settings = Configuration::ReadConfiguration(file);
        if (const std::wstring& file = rules->settings.baseline; !file.empty()) {
            what = Host::PathToQt(Host::FileName(file)) + QStringLiteral(": ");
            rules->baseline = Findings::CBaseline::Read(file);
        }
    } catch (const Base::CWorkError& fault) {
        // The check goes on as if there were none; what is wrong with it is the user's to mend.
        listing.rulesProblem = what + QString::fromStdWString(fault.GetMessage());
    }
    listing.rules = std::move(rules);
}

} // namespace

CProjectOpener::CProjectOpener() = default;

CProjectOpener::~CProjectOpener()
{
    Cancel();
}

void CProjectOpener::Start(const std::wstring& folder)
{
    Cancel();
    const auto result = std::make_shared<SProjectListing>();
    result->folder = folder;
    m_cancelled = std::make_shared<std::atomic<bool>>(false);
    m_thread.reset(QThread::create([folder, result, cancelled = m_cancelled] {
        ReadRules(*result);
        ProjectManager::SFileQuery query = Configuration::CheckedFiles(folder, result->rules->settings);
        query.isCancelled = [&] { return cancelled->load(); };
        query.onError = [&](const std::wstring& path, const std::string& reason) {
            if (path == folder)
                result->problem = QString::fromStdString(reason);
        };
        result->files = ProjectManager::FindFiles(folder, query);
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
