#include "Findings/MendText.h"

#include <algorithm>
#include <utility>

namespace Kesh::Findings {

namespace {

using CodeAnalyzer::SCAError;

/// What may fix a finding, the likeliest first.
struct SCandidates
{
    const SCAError* error;
    std::vector<std::vector<SEdit>> ways;
};

void AddEdits(std::vector<SEdit>& edits, const std::vector<SEdit>& more)
{
    // Two findings of one slip are mended by one edit.
    for (const SEdit& edit : more)
        if (std::ranges::find(edits, edit) == edits.end())
            edits.push_back(edit);
}

/// Finds out which of a text's fixes mend it together, with few checks where most of them do.
class CChoice
{
public:
    CChoice(CFixProof& proof, const std::vector<SCandidates>& candidates)
        : m_proof(proof), m_candidates(candidates)
    {
        if (!candidates.empty())
            Take(0, candidates.size());
    }

    const std::vector<SEdit>& Edits() const { return m_edits; }
    std::size_t Count() const { return m_errors.size(); }

private:
    bool Takes(std::size_t first, std::size_t last, std::size_t way)
    {
        std::vector<const SCAError*> errors = m_errors;
        std::vector<SEdit> edits = m_edits;
        for (std::size_t i = first; i < last; ++i) {
            errors.push_back(m_candidates[i].error);
            AddEdits(edits, m_candidates[i].ways[way]);
        }
        if (!m_proof.MendsAll(errors, edits))
            return false;
        m_errors = std::move(errors);
        m_edits = std::move(edits);
        return true;
    }
    void Take(std::size_t first, std::size_t last)
    {
        if (m_proof.IsUsedUp() || Takes(first, last, 0))
            return;
        if (last - first > 1) {
            const std::size_t middle = first + (last - first) / 2;
            Take(first, middle);
            Take(middle, last);
            return;
        }
        for (std::size_t way = 1; way < m_candidates[first].ways.size(); ++way)
            if (Takes(first, last, way))
                return;
    }

    CFixProof& m_proof;
    const std::vector<SCandidates>& m_candidates;
    std::vector<const SCAError*> m_errors;
    std::vector<SEdit> m_edits;
};

std::vector<SCandidates> CandidatesOf(const std::vector<SFinding>& findings, const SFileText& file)
{
    std::vector<SCandidates> candidates;
    for (const SFinding& finding : findings) {
        SCandidates of{&finding.error, {}};
        for (SQuickFix& fix : EditsFor(finding, file))
            if (!fix.isGuess)
                of.ways.push_back(std::move(fix.edits));
        if (!of.ways.empty())
            candidates.push_back(std::move(of));
    }
    return candidates;
}

} // namespace

SMended MendText(CTextCheck& check, const SCheckedFile& file, const std::wstring& factory, std::wstring text,
                 const SRules& rules, SProofBudget budget)
{
    const CDescriber describer(check.Texts(), CDescriber::EDetail::Brief);
    SMended mended{std::move(text)};
    for (;;) {
        std::vector<CodeAnalyzer::SDiagnostic> found = check.Check(mended.text, file.path, factory);
        const CTextLines lines(mended.text);
        const SFileText checked{mended.text, lines, factory, {}};
        CFixProof proof(check, checked, file.path, found, budget);
        SCheckedFile described = file;
        described.text = [&mended] { return std::wstring_view(mended.text); };
        const SFileFindings findings = describer.Describe(described, std::move(found), rules);
        const std::vector<SCandidates> candidates = CandidatesOf(findings.findings, checked);
        const CChoice choice(proof, candidates);
        mended.isAll = !proof.IsUsedUp();
        if (choice.Count() == 0)
            return mended;
        mended.fixed += choice.Count();
        std::wstring next = CEditedText(mended.text, lines, choice.Edits()).Text();
        mended.text = std::move(next);
    }
}

} // namespace Kesh::Findings
