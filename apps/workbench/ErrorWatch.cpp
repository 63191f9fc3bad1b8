#include "ErrorWatch.h"

#include "Findings/Describe.h"
#include "Texts.h"

#include <QElapsedTimer>
#include <algorithm>
#include <utility>

namespace Kesh::Workbench {

using CodeAnalyzer::SCAError;

namespace {

/// Many files change at once during a project check; the window need not follow each.
constexpr int AskDelay = 20;  // ms
constexpr int TellDelay = 20; // ms

void Move(CodeAnalyzer::SDiagnostic& diagnostic, const CEditLog& edits)
{
    diagnostic.error.pos = edits.Moved(diagnostic.error.pos);
    for (CodeAnalyzer::SRelatedPlace& related : diagnostic.details.related)
        related.pos = edits.Moved(related.pos);
    for (CodeAnalyzer::SFix& fix : diagnostic.details.fixes)
        for (CodeAnalyzer::STextEdit& edit : fix.edits)
            edit.span = edits.Moved(edit.span);
}

} // namespace

ESeverity SeverityOf(const SCAError& error)
{
    return error.type == CodeAnalyzer::SeverityError ? ESeverity::Error : ESeverity::Warning;
}

CErrorWatch::CErrorWatch(CodeAnalyzer::IErrorsSource& source, CodeAnalyzer::IErrorsManager& manager)
    : m_source(source), m_manager(manager), m_judge(source), m_rules(Findings::CProjectRules::None())
{
    const auto once = [this](QTimer& timer, int delay, auto action) {
        timer.setSingleShot(true);
        timer.setInterval(delay);
        connect(&timer, &QTimer::timeout, this, action);
    };
    once(m_ask, AskDelay, [this] { AskJudge(); });
    once(m_tell, TellDelay, [this] { emit changed(std::exchange(m_decided, {})); });
    connect(&m_judge, &CErrorJudge::judged, this, &CErrorWatch::OnJudged);
    for (const auto& [file, errors] : source.GetAllErrors())
        OnAdded(file, errors);
    m_added = source.GetAddedSignal().connect(
        [this](const std::wstring& file, const std::vector<SCAError>& errors) { OnAdded(file, errors); });
    m_removed = source.GetRemovedSignal().connect([this](const std::wstring& file) { OnRemoved(file); });
    m_begun =
        source.GetCheckBegunSignal().connect([this](const CodeAnalyzer::SCheck& check) { OnBegun(check); });
    m_ended = source.GetCheckEndedSignal().connect(
        [this](const CodeAnalyzer::SCheck& check, CodeAnalyzer::ECheckEnd end) { OnEnded(check, end); });
}

void CErrorWatch::OnAdded(const std::wstring& file, const std::vector<SCAError>& errors)
{
    if (!errors.empty())
        Renew(file).isShown = true;
}

void CErrorWatch::OnRemoved(const std::wstring& file)
{
    const bool isFirst = !std::exchange(m_hasChecked, true); // a check drops what it is about to find anew
    if (m_states.count(file) == 0) {
        if (isFirst)
            TellSoon(file);
        return;
    }
    ForgetCounts(file);
    Renew(file);
}

CErrorWatch::SState& CErrorWatch::Renew(const std::wstring& file)
{
    SState& state = m_states[file];
    state.generation = ++m_generation;
    state.isJudged = false;
    NoteChange(file);
    return state;
}

void CErrorWatch::NoteChange(const std::wstring& file)
{
    // The store is locked now, so whoever wants to read it has to wait.
    m_changed.insert(file);
    if (!m_ask.isActive())
        m_ask.start();
}

void CErrorWatch::OnBegun(const CodeAnalyzer::SCheck& check)
{
    if (CEditLog* edits = m_editsOf ? m_editsOf(check.file) : nullptr)
        edits->BeginCheck();
}

void CErrorWatch::OnEnded(const CodeAnalyzer::SCheck& check, CodeAnalyzer::ECheckEnd end)
{
    if (CEditLog* edits = check.ofDocument && m_editsOf ? m_editsOf(check.file) : nullptr)
        edits->EndCheck(end == CodeAnalyzer::ECheckEnd::Complete);
    if (end == CodeAnalyzer::ECheckEnd::Complete)
        Renew(check.file).isChecked = true;
}

void CErrorWatch::AskJudge()
{
    constexpr int SliceTime = 8; // ms
    QElapsedTimer time;
    time.start();
    while (!m_changed.empty() && time.elapsed() < SliceTime) {
        const std::wstring file = *m_changed.begin();
        m_changed.erase(m_changed.begin());
        const auto found = m_states.find(file);
        if (found == m_states.end())
            continue;
        SState& state = found->second;
        CErrorJudge::SOrder order{file, state.generation, {}, {}};
        m_source.GetErrors(file, order.errors);
        if (order.errors.empty() && !state.isChecked) {
            Forget(file); // nobody has looked at it: its errors have only been taken away
            continue;
        }
        if (m_textOf)
            order.text = m_textOf(file);
        m_judge.Ask(std::move(order));
    }
    if (!m_changed.empty())
        m_ask.start();
}

void CErrorWatch::OnJudged(const SVerdict& verdict)
{
    const auto found = m_states.find(verdict.file);
    if (found == m_states.end() || found->second.generation != verdict.generation)
        return; // out of date
    SState& state = found->second;
    const bool hadOwn = !state.verdict.own.empty();
    m_hiding += verdict.hides - state.verdict.hides;
    state.verdict = verdict;
    if (hadOwn || !state.verdict.own.empty())
        m_source.ShowHostErrors(verdict.file, state.verdict.own);
    state.isJudged = true;
    state.isChecked = false;
    Count(verdict);
    if (verdict.errors.empty() && verdict.own.empty()) {
        Forget(verdict.file);
    } else {
        state.isShown = true;
        TellSoon(verdict.file);
    }
}

void CErrorWatch::Count(const SVerdict& verdict)
{
    ForgetCounts(verdict.file);
    SCounts counts;
    const auto count = [&](std::int32_t type) {
        ++(type == CodeAnalyzer::SeverityError ? counts.errors : counts.warnings);
    };
    for (const SJudgedError& error : verdict.errors)
        if (error.type != 0)
            count(error.type);
    for (const CodeAnalyzer::SHostError& own : verdict.own)
        count(own.error.type);
    if (counts.errors + counts.warnings == 0)
        return;
    m_files[verdict.file] = counts;
    m_total.errors += counts.errors;
    m_total.warnings += counts.warnings;
}

void CErrorWatch::TellSoon(const std::wstring& file)
{
    m_decided.insert(file);
    if (!m_tell.isActive())
        m_tell.start();
}

void CErrorWatch::Forget(const std::wstring& file)
{
    const auto found = m_states.find(file);
    m_hiding -= found->second.verdict.hides;
    if (found->second.isShown)
        TellSoon(file);
    m_states.erase(found);
}

void CErrorWatch::ForgetCounts(const std::wstring& file)
{
    const auto found = m_files.find(file);
    if (found == m_files.end())
        return;
    m_total.errors -= found->second.errors;
    m_total.warnings -= found->second.warnings;
    m_files.erase(found);
}

void CErrorWatch::SetRules(TProjectRules rules)
{
    m_rules = std::move(rules);
    m_judge.SetRules(m_rules);
    for (const auto& [file, state] : m_states)
        Renew(file);
}

std::int32_t CErrorWatch::TypeBySettings(const std::wstring& file, const SCAError& error) const
{
    const Findings::TRules rules = m_rules->For(file);
    return rules->settings.Excludes(file) ? 0 : rules->LevelOf(error, file);
}

bool CErrorWatch::HidesUndecided(const std::wstring& file) const
{
    // Nothing shows up only to go again.
    const auto state = m_states.find(file);
    return m_rules->For(file)->baseline || (state != m_states.end() && state->second.verdict.hides);
}

std::int32_t CErrorWatch::TypeOf(const std::wstring& file, const SCAError& error) const
{
    if (Findings::IsHostsOwn(error.code))
        return error.type; // found in deciding
    if (const SJudgedError* judged = FindJudged(file, error))
        return judged->type;
    return HidesUndecided(file) ? 0 : TypeBySettings(file, error);
}

void CErrorWatch::SetChecked(bool hasChecked)
{
    m_hasChecked = hasChecked;
    TellSoon({});
}

ESeverity CErrorWatch::GetSeverity(const std::wstring& file) const
{
    const auto found = m_files.find(file);
    if (found == m_files.end())
        return ESeverity::None;
    return found->second.errors > 0 ? ESeverity::Error : ESeverity::Warning;
}

const CEditLog* CErrorWatch::EditsOf(const std::wstring& file) const
{
    const CEditLog* edits = m_editsOf ? m_editsOf(file) : nullptr;
    return edits && !edits->IsEmpty() ? edits : nullptr;
}

SyntaxParser::SScheme CErrorWatch::WhereNow(const std::wstring& file,
                                            const SyntaxParser::SScheme& stored) const
{
    const CEditLog* edits = EditsOf(file);
    return edits ? edits->Moved(stored) : stored;
}

const SJudgedError* CErrorWatch::FindJudged(const std::wstring& file, const SCAError& stored) const
{
    const auto state = m_states.find(file);
    if (state == m_states.end() || !state->second.isJudged)
        return nullptr;
    const std::vector<SJudgedError>& errors = state->second.verdict.errors;
    const auto found = std::lower_bound(errors.begin(), errors.end(), stored,
                                        [](const SJudgedError& judged, const SCAError& wanted) {
                                            return judged.error.pos.start < wanted.pos.start;
                                        });
    for (auto judged = found; judged != errors.end() && judged->error.pos.start == stored.pos.start; ++judged)
        if (judged->error.code == stored.code && judged->error.pos.end == stored.pos.end)
            return &*judged;
    return nullptr;
}

template <class TAction> void CErrorWatch::ForEach(const std::wstring& file, TAction action)
{
    const auto state = m_states.find(file);
    if (state == m_states.end())
        return;
    const CEditLog* edits = EditsOf(file);
    const auto tell = [&](const SCAError& stored, std::int32_t type) {
        if (type != 0)
            action(stored, SCAError{edits ? edits->Moved(stored.pos) : stored.pos, stored.code, type});
    };
    if (state->second.isJudged) {
        for (const SJudgedError& judged : state->second.verdict.errors)
            tell(judged.error, judged.type);
        for (const CodeAnalyzer::SHostError& own : state->second.verdict.own)
            tell(own.error, own.error.type);
    } else if (!HidesUndecided(file)) {
        std::vector<SCAError> stored;
        m_source.GetErrors(file, stored);
        for (const SCAError& error : stored)
            tell(error, TypeBySettings(file, error));
    }
}

std::vector<SCAError> CErrorWatch::GetErrors(const std::wstring& file)
{
    std::vector<SCAError> errors;
    ForEach(file, [&](const SCAError&, const SCAError& now) { errors.push_back(now); });
    return errors;
}

std::vector<CodeAnalyzer::SDiagnostic> CErrorWatch::GetDiagnostics(const std::wstring& file)
{
    std::vector<CodeAnalyzer::SDiagnostic> diagnostics = m_source.GetDiagnostics(file);
    std::erase_if(diagnostics, [&](CodeAnalyzer::SDiagnostic& diagnostic) {
        diagnostic.error.type = TypeOf(file, diagnostic.error);
        return diagnostic.error.type == 0;
    });
    if (const auto state = m_states.find(file); state != m_states.end())
        for (const CodeAnalyzer::SHostError& own : state->second.verdict.own)
            diagnostics.push_back({own.error, own.details});
    if (const CEditLog* edits = EditsOf(file))
        for (CodeAnalyzer::SDiagnostic& diagnostic : diagnostics)
            Move(diagnostic, *edits);
    return diagnostics;
}

QString CErrorWatch::MessageOf(const std::wstring& file, const SCAError& error) const
{
    if (const SJudgedError* judged = FindJudged(file, error); judged && !judged->message.empty())
        return QString::fromStdString(judged->message);
    if (const auto state = m_states.find(file); state != m_states.end())
        for (const CodeAnalyzer::SHostError& own : state->second.verdict.own)
            if (own.error.code == error.code && own.error.pos == error.pos)
                return QString::fromStdWString(own.message);
    return QString::fromStdWString(m_source.GetTexts().GetTitle(error.code));
}

std::optional<SCAError> CErrorWatch::FindAt(const std::wstring& file, const SyntaxParser::CIterator& pos)
{
    std::optional<SCAError> covering, onLine;
    for (const SCAError& error : GetErrors(file)) {
        const auto& [start, end] = error.pos;
        if (start <= pos && (pos < end || pos == start) && (!covering || covering->pos.start <= start))
            covering = error;
        if (start.y == pos.y && !onLine)
            onLine = error;
    }
    return covering ? covering : onLine;
}

QString CErrorWatch::GetMessages(const std::wstring& file, const SyntaxParser::CIterator& pos)
{
    QStringList messages;
    ForEach(file, [&](const SCAError& stored, const SCAError& now) {
        const auto& [start, end] = now.pos;
        if (start <= pos && (pos < end || pos == start))
            messages.append(QStringLiteral("%1 [%2]").arg(MessageOf(file, stored)).arg(stored.code));
    });
    messages.removeDuplicates();
    return messages.join('\n');
}

std::optional<SErrorPlace> CErrorWatch::FindNeighbour(const SErrorPlace& from, bool forward)
{
    // The outermost error of a file that lies beyond a place; without one, of all of them.
    const auto outermost = [&](const std::wstring& file, const SyntaxParser::CIterator* beyond) {
        std::optional<SErrorPlace> best;
        for (const SCAError& error : GetErrors(file)) {
            const SyntaxParser::CIterator& pos = error.pos.start;
            if (beyond && !(forward ? *beyond < pos : pos < *beyond))
                continue;
            if (!best || (forward ? pos < best->pos : best->pos < pos))
                best = {file, pos};
        }
        return best;
    };
    if (const auto place = outermost(from.file, &from.pos))
        return place;
    // Round the end, and last through the whole file again; the first file that has errors is enough.
    const auto search = [&](auto begin, auto end) {
        std::optional<SErrorPlace> place;
        for (auto state = begin; state != end && !place; ++state)
            place = outermost(state->first, nullptr);
        return place;
    };
    using TReverse = decltype(m_states)::reverse_iterator;
    const auto here = m_states.lower_bound(from.file);
    const auto behind = m_states.upper_bound(from.file);
    const auto place = forward ? search(behind, m_states.end()) : search(TReverse(here), m_states.rend());
    if (place)
        return place;
    return forward ? search(m_states.begin(), behind) : search(m_states.rbegin(), TReverse(here));
}

} // namespace Kesh::Workbench
