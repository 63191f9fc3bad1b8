#include "LanguageServer/DescribeWorker.h"

#include "Base/Exception.h"
#include "Files/Fault.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "LanguageServer/Diagnostic.h"
#include "SyntaxParser/SourceText.h"

#include <algorithm>

namespace Kesh::LanguageServer {

CDescribeWorker::CDescribeWorker(const SSettings& settings, std::function<void(SDescribed)> done)
    : m_settings(settings), m_done(std::move(done)), m_thread([this] { Run(); })
{
}

CDescribeWorker::~CDescribeWorker()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_orders.clear();
    }
    m_changed.notify_all();
    m_thread.join();
}

void CDescribeWorker::Add(SDescribeOrder order)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto waiting = std::find_if(m_orders.begin(), m_orders.end(), [&](const SDescribeOrder& other) {
            return other.path == order.path;
        });
        if (waiting != m_orders.end())
            m_orders.erase(waiting);
        // What somebody types in goes before what was found in files.
        if (order.revision >= 0)
            m_orders.push_front(std::move(order));
        else
            m_orders.push_back(std::move(order));
    }
    m_changed.notify_all();
}

void CDescribeWorker::Drop(const std::wstring& path)
{
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_orders, [&](const SDescribeOrder& order) { return order.path == path; });
}

bool CDescribeWorker::IsBusy()
{
    const std::lock_guard lock(m_mutex);
    return !m_orders.empty() || m_underway > 0;
}

void CDescribeWorker::Run()
{
    for (;;) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_ending || !m_orders.empty(); });
        if (m_ending)
            return;
        SDescribeOrder order = std::move(m_orders.front());
        m_orders.pop_front();
        ++m_underway;
        lock.unlock();
        std::shared_ptr<SDescribed> described;
        Host::Guard(L"describe",
                    [&] { described = std::make_shared<SDescribed>(Describe(std::move(order))); });
        QMetaObject::invokeMethod(
            &m_context, [this, described] { Finish(described.get()); }, Qt::QueuedConnection);
    }
}

void CDescribeWorker::Finish(SDescribed* described)
{
    {
        const std::lock_guard lock(m_mutex);
        --m_underway;
    }
    if (described)
        m_done(std::move(*described));
}

SDescribed CDescribeWorker::Describe(SDescribeOrder order)
{
    const std::shared_ptr<const std::wstring> shared = order.text;
    std::wstring read;
    try {
        if (!shared)
            read = SyntaxParser::DecodeSource(Host::ReadFileBytes(order.path));
    } catch (const Base::CWorkError&) {
        order.diagnostics.clear(); // the file has gone meanwhile
    }
    const std::wstring_view text = shared ? *shared : read;
    SDescribed described{std::move(order), {}, nlohmann::json::array(), "[]"};
    const SDescribeOrder& done = described.order;
    const Findings::CDescriber describer(m_settings.texts);
    described.findings =
        describer.Describe({done.path, done.path, [&] { return text; }}, done.diagnostics, *done.rules);
    if (described.findings.findings.empty())
        return described;
    CDiagnosticMaker maker(text, done.uri, m_encoding, m_settings.documentation);
    for (const Findings::SFinding& finding : described.findings.findings)
        described.diagnostics.push_back(maker.Make(finding));
    described.text = described.diagnostics.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    return described;
}

} // namespace Kesh::LanguageServer
