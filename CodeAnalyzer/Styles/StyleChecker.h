#pragma once

#include "Styles/AtRuleCheck.h"
#include "Styles/ConditionCheck.h"
#include "Styles/RepeatCheck.h"
#include "Styles/RightDeclarations.h"
#include "Styles/SelectorCheck.h"
#include "Styles/StyleReader.h"
#include "Styles/ValueCheck.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Checks one style after another: sheets, style elements and style attributes. One thread at a time.
class CStyleChecker final : private IStyleRules
{
public:
    /// `report` must outlive the object.
    explicit CStyleChecker(CMarkupReport& report);

    void Begin(SyntaxParser::EStyleKind kind, SMarkupSpan whole);
    void Add(const SStyleToken& token) { m_text.Add(token); }
    /// Reports what is wrong in the style.
    void End();

private:
    void BeginRule(const SStyleRule& rule) override;
    void EndRule() override;
    void Declare(const SStyleDeclaration& declaration) override;
    void FindForeign() override { m_isForeign = true; }

    void Judge(const SStyleDeclaration& declaration);
    bool IsTemplate() const;
    bool CheckTokens();
    bool ReportString(TTokenIndex token);
    bool ReportUrl(TTokenIndex token);
    SFix ClosedOnItsLine(SMarkupSpan span, std::wstring with) const;
    SFix Closed(TTokenIndex open) const;
    void ReportFaults(const SBlocks& blocks);
    void CheckBlock(const SStyleRule& rule);
    bool IsOldFilter(const SStyleDeclaration& declaration) const;
    StyleTables::TSyntax SyntaxOf(const SStyleDeclaration& declaration, const std::string& name);

    CMarkupReport& m_report;
    SyntaxParser::EStyleKind m_kind = SyntaxParser::EStyleKind::Sheet;
    CStyleText m_text;
    CStyleFindings m_findings;
    CValueCheck m_values;
    CSelectorCheck m_selectors;
    CConditionCheck m_conditions;
    CAtRuleCheck m_atRules;
    CRepeatCheck m_repeats;
    const CRightDeclarations::TBorrowed m_right = CRightDeclarations::Borrow();
    std::vector<std::string> m_rules; ///< the names of those around
    bool m_isForeign = false;
};

} // namespace Kesh::CodeAnalyzer
