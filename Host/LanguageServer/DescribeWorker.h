#pragma once

#include "Findings/Describe.h"
#include "Kesh/CodeAnalyzer/Plugin.h"
#include "LanguageServer/PositionEncoding.h"

#include <QObject>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <thread>

namespace Kesh::LanguageServer {

/// A file whose records are to become diagnostics.
struct SDescribeOrder
{
    std::wstring path;
    std::string uri;
    std::wstring factory;
    std::int64_t revision = -1;               ///< of an open document; -1: the text is that on disk
    std::shared_ptr<const std::wstring> text; ///< null: to be read from disk
    std::vector<CodeAnalyzer::SDiagnostic> diagnostics;
    Findings::TRules rules;
};

struct SDescribed
{
    SDescribeOrder order;
    Findings::SFileFindings findings;
    nlohmann::json diagnostics; ///< one for each finding
    std::string text = "[]";    ///< the same as it is sent, so that the thread that sends need not write it
};

/// Makes diagnostics in a thread of its own, so that the one that listens to the editor never waits for it.
class CDescribeWorker
{
public:
    struct SSettings
    {
        CodeAnalyzer::IDiagnosticTexts& texts;
        std::string documentation; ///< the URI of the list of errors; empty: there is none
    };
    /// `done` is called on the thread that makes the worker, which runs an event loop.
    CDescribeWorker(const SSettings& settings, std::function<void(SDescribed)> done);
    /// Waits for the order that is being worked on.
    ~CDescribeWorker();

    void SetEncoding(EPositionEncoding encoding) { m_encoding = encoding; }
    /// Takes the place of an order for the same file that waits.
    void Add(SDescribeOrder order);
    /// Forgets an order for the file that waits.
    void Drop(const std::wstring& path);
    /// Whether anything that was ordered is still to come.
    bool IsBusy();

private:
    void Run();
    SDescribed Describe(SDescribeOrder order);
    void Finish(SDescribed* described);

    SSettings m_settings;
    std::function<void(SDescribed)> m_done;
    std::atomic<EPositionEncoding> m_encoding{EPositionEncoding::Utf16};
    QObject m_context;  ///< receives the results, in the thread that made it
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_changed;
    std::deque<SDescribeOrder> m_orders;
    std::size_t m_underway = 0; ///< orders taken whose results have not been given
    bool m_ending = false;
    std::thread m_thread;
};

} // namespace Kesh::LanguageServer
