#pragma once

#include "Grammar/BraceIndents.h"
#include "Grammar/GrammarDiagnostic.h"
#include "Grammar/GrammarRepair.h"
#include "Grammar/GrammarTokens.h"
#include "Grammar/PhpGrammarParser.h"
#include "Grammar/RuleReport.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Where a parse stands that cannot go on.
struct SGrammarHalt
{
    const CPhpGrammarParser& parser;
    std::uint32_t stop;                     ///< the token that cannot follow
    const std::vector<std::uint32_t>& open; ///< brackets open before it, the innermost last
    const SGrammarStop& description;
};

/// Says what is wrong, where, and what would fix it.
class CGrammarReporter
{
public:
    /// `tokens` outlive it.
    explicit CGrammarReporter(const CGrammarTokens& tokens) : m_tokens(tokens) {}

    /// A new document, for a version; `versionFrom` asks for that, if it is not empty.
    void Begin(std::int32_t version, const std::wstring& versionFrom);
    /// What has been found so far; in document order once it is finished.
    const std::vector<SGrammarDiagnostic>& Diagnostics() const { return m_diagnostics; }

    /// A small repair lets the parse go on.
    void ReportRepair(const SGrammarHalt& halt, const SGrammarRepair& repair);
    /// Nothing small helps.
    void ReportUnrepaired(const SGrammarHalt& halt);
    /// By the indentation a brace is missing or too many.
    void ReportBrace(const SBraceGuess& guess);
    /// The quote with which the token begins has no partner.
    void ReportLostQuote(std::uint32_t quote);
    /// A token that no PHP holds.
    void ReportLexical(std::uint32_t token);
    /// What the rules have found.
    void AddRuleReports(const std::vector<SRuleReport>& reports);
    /// That was all there is.
    void Finish();

private:
    using K = SyntaxParser::EPhpTokenKind;

    void ReportMissingClosing(std::uint32_t token, std::uint32_t opened);
    void ReportMissingOpening(std::uint32_t token);
    void ReportOddClosing(std::uint32_t token, std::uint32_t opened);
    void ReportOddOpening(std::uint32_t token);
    SGrammarDiagnostic& Add(std::int32_t code, SyntaxParser::SScheme span);
    SyntaxParser::SScheme GapBehind(std::uint32_t token) const;
    void AddFound(SGrammarDiagnostic& diagnostic, const char* place, std::uint32_t token) const;
    void ReportMissing(const SGrammarHalt& halt, K kind);
    void ReportWrong(const SGrammarHalt& halt, K kind);
    void ReportMistyped(const SGrammarHalt& halt, K kind);
    void ReportOdd(const SGrammarHalt& halt);
    std::int32_t OddCode(const SGrammarHalt& halt) const;
    bool EndsNumber(std::uint32_t stop) const;
    bool ReportLateString(std::uint32_t stop);
    void ReportOpenString(std::uint32_t opening, std::uint32_t end);
    K ExpectedBeforeLine(const SGrammarHalt& halt) const;
    bool ReportLostName(std::uint32_t stop);
    bool ReportLostFunction(std::uint32_t stop);
    bool EndsLabel(const SGrammarHalt& halt) const;
    bool ReportForHead(const SGrammarHalt& halt);
    void OfferOtherBracket(SGrammarDiagnostic& diagnostic, const SGrammarHalt& halt) const;
    void OfferDollar(SGrammarDiagnostic& diagnostic, std::uint32_t stop) const;
    bool ReportLoneDo(const SGrammarHalt& halt);
    void OfferBraces(SGrammarDiagnostic& diagnostic, std::uint32_t token) const;
    void AddRuleReport(const SRuleReport& report);
    void KeepTheNewestOfEachPlace();
    std::vector<SArgument> ArgumentsOf(const SRuleReport& report, const SPhpFeature& feature) const;

    const CGrammarTokens& m_tokens;
    std::vector<SGrammarDiagnostic> m_diagnostics;
    std::int32_t m_version = 0;
    std::wstring m_versionFrom;
};

} // namespace Kesh::CodeAnalyzer
