#pragma once

#include "Findings/ProjectRules.h"
#include "Kesh/CodeAnalyzer/Plugin.h"

#include <QObject>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace Kesh::Workbench {

using TProjectRules = std::shared_ptr<const Findings::CProjectRules>;

/// An error and what has been decided about it.
struct SJudgedError
{
    CodeAnalyzer::SCAError error;
    std::int32_t type = 0;    ///< its severity for the user; 0: not wanted
    std::string message = {}; ///< all there is to say, UTF-8; empty: no more than its code says
};

struct SVerdict
{
    std::wstring file;
    std::uint64_t generation = 0;
    std::vector<SJudgedError> errors;          ///< by position
    std::vector<CodeAnalyzer::SHostError> own; ///< what has been found in deciding
    bool hides = false;                        ///< some error is not wanted
};

/// Decides which of a file's errors are wanted, as the command line does: by comments in the file, by its
/// project's settings and baseline. That needs the file's text, so it happens in a thread.
class CErrorJudge final : public QObject
{
    Q_OBJECT

public:
    struct SOrder
    {
        std::wstring file;
        std::uint64_t generation = 0; ///< comes back with the verdict
        std::vector<CodeAnalyzer::SCAError> errors;
        std::optional<std::wstring> text; ///< unset: what is on disk
    };

    /// The source is not owned.
    explicit CErrorJudge(CodeAnalyzer::IErrorsSource& source);
    /// Gives up what has not been decided.
    ~CErrorJudge() override;

    /// Holds for orders that come afterwards.
    void SetRules(TProjectRules rules);
    /// In place of an order for the same file that waits. What has a text goes first.
    void Ask(SOrder order);

signals:
    /// On the GUI thread.
    void judged(const Kesh::Workbench::SVerdict& verdict);

private:
    struct STask
    {
        SOrder order;
        TProjectRules rules;
    };
    void Run();
    SVerdict Decide(STask& task) const;
    void AddMessages(SVerdict& verdict) const;

    CodeAnalyzer::IErrorsSource& m_source;
    CodeAnalyzer::IDiagnosticTexts& m_texts;
    TProjectRules m_rules;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<STask> m_tasks;
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace Kesh::Workbench
