#pragma once

#include "Findings/ProjectRules.h"
#include "Kesh/SyntaxParser/Position.h"

#include <QObject>
#include <QString>
#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <vector>

class QThread;

namespace Kesh::Workbench {

/// What is looked for in the files of a project.
struct SSearchOrder
{
    QString text;
    bool matchCase = false;
    bool wholeWords = false;
    bool regExp = false;
    std::wstring folder;
    /// Patterns for the names or paths of files; empty: those that the project's settings include, or all.
    Configuration::TGlobs files;
    std::shared_ptr<const Findings::CProjectRules> rules = Findings::CProjectRules::None();
    /// The text of files that has not been saved.
    std::map<std::wstring, std::wstring> unsaved;
};

struct SSearchHit
{
    std::wstring file;
    SyntaxParser::SScheme span;
    QString line; ///< a part of it, when it is long
};

/// Looks for a text in files, in a thread of its own. Binary files, and folders that are left out of
/// projects, are passed by. GUI thread only.
class CFileSearch final : public QObject
{
    Q_OBJECT

public:
    /// More are not looked for: nobody reads them.
    static constexpr int MaxHits = 20000;

    CFileSearch();
    ~CFileSearch() override;

    /// Gives up a search that runs, and begins this one. Answers what is wrong with the pattern, or nothing.
    QString Start(SSearchOrder order);
    void Stop();
    bool IsRunning() const { return m_cancelled != nullptr; }

signals:
    /// In the order of files and places, some at a time.
    void found(const std::vector<Kesh::Workbench::SSearchHit>& hits);
    /// The search has come to its end, or to as many hits as there may be.
    void finished(int filesSearched, bool complete);

private:
    void OnEnded(QThread* thread, const std::shared_ptr<std::atomic<bool>>& cancelled, int files,
                 bool complete);

    /// The one that searches, and those that have been given up and are not at their end yet.
    std::vector<std::unique_ptr<QThread>> m_threads;
    std::shared_ptr<std::atomic<bool>> m_cancelled; ///< null: nothing is searched
};

} // namespace Kesh::Workbench
