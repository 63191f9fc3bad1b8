#include "Components/CAErrorDetails.h"

#include "Base/HostComponent.h"
#include "Grammar/PhpGrammarChecker.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Parsers/ErrorCodes.h"
#include "SPBase/reader.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>
#include <tuple>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::CIterator;
using SyntaxParser::ITokenSource;

namespace {

/// Follows where each token ends, to find the end of what stands before an error.
class CTokenEnds final : public SyntaxParser::ITokenHandler
{
public:
    bool BeginTokens() override
    {
        m_ends.clear();
        return true;
    }
    void AddToken(const SyntaxParser::SPhpToken& token) override { m_ends.push_back(token.end); }
    void EndTokens(CIterator /*end*/) override {}

    /// The end of the last token before a place; the place itself when there is none.
    CIterator Before(CIterator place) const
    {
        const auto after = std::upper_bound(m_ends.begin(), m_ends.end(), place);
        return after == m_ends.begin() ? place : *(after - 1);
    }

private:
    std::vector<CIterator> m_ends;
};

/// What the statement parsers find missing before the place of their error.
const wchar_t* MissingText(std::int32_t code)
{
    switch (code) {
    case MissingSemicolon: return L";";
    case MissingBrace: return L"{";
    default: return nullptr;
    }
}

auto KeyOf(const SCAError& error)
{
    const auto& [start, end] = error.pos;
    return std::tuple(start.y, start.x, error.code, end.y, end.x);
}

/// Finds what the grammar check says of a record, however many there are.
class CDiagnosticsByPlace
{
public:
    /// The diagnostics outlive it.
    explicit CDiagnosticsByPlace(const std::vector<SGrammarDiagnostic>& diagnostics)
    {
        m_sorted.reserve(diagnostics.size());
        for (const SGrammarDiagnostic& diagnostic : diagnostics)
            m_sorted.push_back(&diagnostic);
        // Of several about the same, the first counts.
        std::stable_sort(m_sorted.begin(), m_sorted.end(),
                         [](const SGrammarDiagnostic* a, const SGrammarDiagnostic* b) {
                             return KeyOf(a->error) < KeyOf(b->error);
                         });
    }

    /// Null when it says nothing.
    const SGrammarDiagnostic* Find(const SCAError& error) const
    {
        const auto found = std::lower_bound(
            m_sorted.begin(), m_sorted.end(), error,
            [](const SGrammarDiagnostic* a, const SCAError& b) { return KeyOf(a->error) < KeyOf(b); });
        return found != m_sorted.end() && KeyOf((*found)->error) == KeyOf(error) ? *found : nullptr;
    }

private:
    std::vector<const SGrammarDiagnostic*> m_sorted;
};

} // namespace

std::vector<SErrorDetails> CErrorDetails::GetDetails(const std::wstring& path,
                                                     const std::wstring& factoryName,
                                                     const std::wstring& text,
                                                     const std::vector<SCAError>& errors)
{
    std::vector<SErrorDetails> details;
    if (!m_application || errors.empty())
        return details;
    auto parser = Base::GetHostComponent<SyntaxParser::IParserComponent>(m_application, L"IParserComponent");
    const auto reader = boost::make_shared<SyntaxParser::CSimpleReader>();
    reader->SetWhole(text);
    const auto document = parser->CreateDocument(reader, path, factoryName);
    CPhpGrammarChecker grammar;
    CTokenEnds ends;
    if (!document || !grammar.Follow(*document))
        return details;
    boost::dynamic_pointer_cast<ITokenSource>(document->GetComponent(L"ITokenSource").lock())
        ->AddTokenHandler(&ends);
    grammar.Expect(true, m_grammarCheck.GetPhpVersion());
    document->Parse(true);

    const CDiagnosticsByPlace diagnostics(grammar.Diagnostics());
    for (const SCAError& error : errors) {
        if (const SGrammarDiagnostic* found = diagnostics.Find(error))
            details.push_back({error, found->subject, found->related, found->relatedKey, found->insertion,
                               found->insertAt, found->removable});
        else if (const wchar_t* missing = MissingText(error.code))
            details.push_back({error, {}, {}, {}, missing, ends.Before(error.pos.start), false});
        else if (error.code == OddSemicolon)
            details.push_back({error, {}, {}, {}, {}, {}, true});
    }
    return details;
}

} // namespace Kesh::CodeAnalyzer
