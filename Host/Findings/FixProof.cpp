#include "Findings/FixProof.h"

#include "Base/Exception.h"

#include <algorithm>

namespace Kesh::Findings {

using CodeAnalyzer::SCAError;

namespace {

/// What PHP's parser stops at. Behind it much depends on what was meant there.
bool StopsPhp(std::int32_t code, std::int32_t severity)
{
    return code < CodeAnalyzer::Code::TooNew && severity == CodeAnalyzer::SeverityError;
}

/// What blocks that are not as they were meant lead to.
bool ComesOfBlocks(std::int32_t code)
{
    return code == CodeAnalyzer::Code::LeaveOutsideLoop || code == CodeAnalyzer::Code::LeaveDepth ||
           code == CodeAnalyzer::Code::TryAlone;
}

/// Whether they change which blocks there are.
bool ChangesBlocks(const std::vector<SEdit>& edits, const SFileText& file)
{
    const auto holdsBrace = [](std::wstring_view text) {
        return text.find_first_of(L"{}") != std::wstring_view::npos;
    };
    return std::ranges::any_of(edits, [&](const SEdit& edit) {
        return holdsBrace(edit.text) || holdsBrace(file.lines.Span(edit.span));
    });
}

bool IsTried(const SQuickFix& fix)
{
    return fix.kind == SQuickFix::EKind::Fix;
}

} // namespace

CFixProof::CFixProof(CTextCheck& check, const SFileText& file, std::wstring path,
                     const std::vector<CodeAnalyzer::SDiagnostic>& before, SProofBudget& budget)
    : m_check(check),
      m_file(file),
      m_path(std::move(path)),
      m_budget(budget),
      m_before(Placed(before, file.lines))
{
}

std::optional<CFixProof::TFound> CFixProof::Check(const std::wstring& text)
{
    if (m_budget.checks == 0 || m_budget.characters == 0) {
        m_usedUp = true;
        return {};
    }
    --m_budget.checks;
    m_budget.characters -= std::min(m_budget.characters, text.size());
    try {
        return Placed(m_check.Check(text, m_path, m_file.factory), CTextLines(text));
    } catch (const Base::CWorkError&) {
        return {}; // what cannot be checked is not proved
    }
}

CFixProof::TFound CFixProof::Placed(const std::vector<CodeAnalyzer::SDiagnostic>& diagnostics,
                                    const CTextLines& lines)
{
    TFound found;
    for (const CodeAnalyzer::SDiagnostic& diagnostic : diagnostics) {
        const SCAError& error = diagnostic.error;
        auto& [count, severity] = found[{error.code, lines.Offset(error.pos.start)}];
        ++count;
        severity = error.type;
    }
    return found;
}

CFixProof::EVerdict CFixProof::Judge(const std::vector<const SCAError*>& errors,
                                     const std::vector<SEdit>& edits)
{
    const CEditedText edited(m_file.text, m_file.lines, edits);
    if (!edited.IsSound() || edited.Text() == m_file.text)
        return EVerdict::Fails;
    const std::optional<TFound> after = Check(edited.Text());
    if (!after)
        return EVerdict::Unknown;
    TFound before;
    for (const auto& [place, known] : m_before)
        before[{place.first, edited.NewOffset(place.second)}].first += known.first;
    std::size_t last = 0; // place of an error that is to go, in the new text
    for (const SCAError* error : errors) {
        const std::size_t place = edited.NewOffset(m_file.lines.Offset(error->pos.start));
        last = std::max(last, place);
        // As many as there are without it.
        auto& known = before[{error->code, place}].first;
        known = std::max(0, known - 1);
        const auto stays = after->find({error->code, place});
        if (stays != after->end() && stays->second.first > known)
            return EVerdict::Fails;
    }
    // A brace that belongs there leaves nothing to say of others.
    const bool isPhp =
        std::ranges::any_of(errors, [](const SCAError* error) { return StopsPhp(error->code, error->type); });
    const bool blocks = isPhp && ChangesBlocks(edits, m_file);
    EVerdict verdict = EVerdict::Mends;
    for (const auto& [place, found] : *after) {
        const bool stops = StopsPhp(place.first, found.second);
        if ((isPhp && stops && (blocks || place.second < last)) || (blocks && ComesOfBlocks(place.first)))
            verdict = EVerdict::Helps;
        const auto known = before.find(place);
        if (known != before.end() && found.first <= known->second.first)
            continue;
        // Where an error has been, some warnings are not looked for.
        if (found.second != CodeAnalyzer::SeverityError && !edited.IsTouched(place.second))
            continue;
        if (place.second <= last)
            return EVerdict::Fails;
        verdict = EVerdict::Helps;
    }
    return verdict;
}

CFixProof::EVerdict CFixProof::Try(const SCAError& error, const std::vector<SEdit>& edits)
{
    return Judge({&error}, edits);
}

bool CFixProof::MendsAll(const std::vector<const SCAError*>& errors, const std::vector<SEdit>& edits)
{
    return Judge(errors, edits) == EVerdict::Mends;
}

void CLazyProof::Begin()
{
    m_begun = true;
    try {
        if (CTextCheck* check = m_check())
            m_proof.emplace(*check, m_file, m_path, check->Check(m_file.text, m_path, m_file.factory),
                            m_budget);
    } catch (const Base::CWorkError&) {
        // A text that cannot be checked has no fixes.
    }
}

std::vector<SQuickFix> CLazyProof::Proved(const SFinding& finding)
{
    std::vector<SQuickFix> mending;
    std::vector<SQuickFix> others; // those that help first
    std::vector<SQuickFix> untried;
    for (SQuickFix& fix : FixesFor(finding, m_file)) {
        if (!IsTried(fix)) {
            untried.push_back(std::move(fix));
            continue;
        }
        if (!m_begun)
            Begin();
        const auto verdict = m_proof ? m_proof->Try(finding.error, fix.edits) : CFixProof::EVerdict::Unknown;
        fix.mends = verdict == CFixProof::EVerdict::Mends && mending.empty();
        if (verdict == CFixProof::EVerdict::Mends)
            mending.push_back(std::move(fix));
        else if (verdict == CFixProof::EVerdict::Helps)
            others.push_back(std::move(fix));
    }
    std::ranges::move(others, std::back_inserter(mending));
    std::ranges::move(untried, std::back_inserter(mending));
    return mending;
}

} // namespace Kesh::Findings
