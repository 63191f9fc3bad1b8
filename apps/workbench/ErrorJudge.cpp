#include "ErrorJudge.h"

#include "Base/CommonString.h"
#include "Base/Exception.h"
#include "Files/Fault.h"
#include "Files/FileIO.h"
#include "Findings/Describe.h"
#include "SyntaxParser/SourceText.h"

#include <algorithm>
#include <tuple>

namespace Kesh::Workbench {

using CodeAnalyzer::SCAError;

namespace {

auto KeyOf(const SCAError& error)
{
    const auto& [start, end] = error.pos;
    return std::tuple(start.y, start.x, end.y, end.x, error.code);
}

bool IsOwn(const Findings::SFinding& finding)
{
    return Findings::IsHostsOwn(finding.error.code);
}

/// Without a text there are no comments and no lines, so that all that is left is the project's settings.
std::wstring TextOf(CErrorJudge::SOrder& order)
{
    if (order.text)
        return std::move(*order.text);
    try {
        return SyntaxParser::DecodeSource(Host::ReadFileBytes(order.file));
    } catch (const Base::CWorkError&) {
        return {};
    }
}

} // namespace

CErrorJudge::CErrorJudge(CodeAnalyzer::IErrorsSource& source)
    : m_source(source),
      m_texts(source.GetTexts()),
      m_rules(Findings::CProjectRules::None()),
      m_thread([this] { Run(); })
{
}

CErrorJudge::~CErrorJudge()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_tasks.clear();
    }
    m_changed.notify_all();
    m_thread.join();
}

void CErrorJudge::SetRules(TProjectRules rules)
{
    m_rules = std::move(rules);
}

void CErrorJudge::Ask(SOrder order)
{
    {
        const std::lock_guard lock(m_mutex);
        const bool urgent = order.text.has_value();
        std::erase_if(m_tasks, [&](const STask& task) { return urgent && task.order.file == order.file; });
        m_tasks.insert(urgent ? m_tasks.begin() : m_tasks.end(), STask{std::move(order), m_rules});
    }
    m_changed.notify_all();
}

void CErrorJudge::Run()
{
    for (;;) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_ending || !m_tasks.empty(); });
        if (m_ending)
            return;
        STask task = std::move(m_tasks.front());
        m_tasks.pop_front();
        lock.unlock();
        Host::Guard(L"judge errors", [&] {
            auto verdict = std::make_shared<SVerdict>(Decide(task));
            QMetaObject::invokeMethod(
                this, [this, verdict] { emit judged(*verdict); }, Qt::QueuedConnection);
        });
    }
}

SVerdict CErrorJudge::Decide(STask& task) const
{
    SVerdict verdict{task.order.file, task.order.generation, {}, {}, false};
    const std::wstring& file = verdict.file;
    std::vector<SCAError>& errors = task.order.errors;
    std::sort(errors.begin(), errors.end(),
              [](const SCAError& a, const SCAError& b) { return KeyOf(a) < KeyOf(b); });
    std::vector<CodeAnalyzer::SDiagnostic> diagnostics;
    for (const SCAError& error : errors)
        diagnostics.push_back({error, {}});
    const Findings::CDescriber describer(m_texts, Findings::CDescriber::EDetail::Brief);
    std::wstring text;
    const auto read = [&] { return std::wstring_view(text = TextOf(task.order)); };
    Findings::SFileFindings found =
        describer.Describe({file, file, read}, std::move(diagnostics), *task.rules->For(file));
    for (const Findings::SFinding& finding : found.findings)
        if (IsOwn(finding))
            verdict.own.push_back(
                {finding.error, m_texts.GetMessage({finding.error, finding.details}), finding.details});
    std::erase_if(found.findings, IsOwn);
    std::sort(found.findings.begin(), found.findings.end(),
              [](const auto& a, const auto& b) { return KeyOf(a.error) < KeyOf(b.error); });
    auto next = found.findings.begin();
    for (const SCAError& error : errors) {
        SJudgedError& judged = verdict.errors.emplace_back(SJudgedError{error});
        if (next != found.findings.end() && KeyOf(next->error) == KeyOf(error))
            judged.type = (next++)->error.type;
        verdict.hides |= judged.type == 0;
    }
    AddMessages(verdict);
    return verdict;
}

void CErrorJudge::AddMessages(SVerdict& verdict) const
{
    // Of a file with other errors by now the next verdict is to come.
    std::vector<CodeAnalyzer::SDiagnostic> known = m_source.GetDiagnostics(verdict.file);
    std::erase_if(known, [](const CodeAnalyzer::SDiagnostic& each) { return each.details.IsEmpty(); });
    std::sort(known.begin(), known.end(),
              [](const auto& a, const auto& b) { return KeyOf(a.error) < KeyOf(b.error); });
    auto next = known.begin();
    for (SJudgedError& judged : verdict.errors) {
        while (next != known.end() && KeyOf(next->error) < KeyOf(judged.error))
            ++next;
        if (next == known.end())
            break;
        if (KeyOf(next->error) != KeyOf(judged.error))
            continue;
        const std::wstring message = m_texts.GetMessage(*next);
        if (message != m_texts.GetTitle(judged.error.code))
            judged.message = Base::CCommonString::ToUtf8(message);
    }
}

} // namespace Kesh::Workbench
