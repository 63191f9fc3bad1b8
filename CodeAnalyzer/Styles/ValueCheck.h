#pragma once

#include "Styles/StyleReader.h"
#include "Styles/ValueMatch.h"

#include <string>

namespace Kesh::CodeAnalyzer {

/// Judges values by the syntax of what they are for.
class CValueCheck
{
public:
    CValueCheck(const CStyleText& text, CStyleFindings& findings) : m_text(text), m_findings(findings) {}

    void Begin(const SBlocks& blocks) { m_blocks = &blocks; }

    /// NoSyntax judges only what every value has: units, colours, calculations.
    void CheckDeclaration(const SStyleDeclaration& declaration, StyleTables::TSyntax syntax);
    /// What an author named himself may be anything; a unit or colour that is none hardly is meant.
    void CheckCustom(TTokenIndex name, STokens value);
    /// The value of a media feature.
    void CheckFeature(STokens name, STokens value, StyleTables::TSyntax syntax);

private:
    bool StripImportant(const SStyleDeclaration& declaration, STokens& value);
    bool CheckUnits(STokens value);
    bool CheckUnit(TTokenIndex token, std::int32_t severity);
    bool CheckFunctions(const std::string& property, STokens value, std::int32_t severity);
    bool CheckCommas(STokens value);
    bool IsUnjudged(STokens value) const;
    bool CheckMath();
    bool CheckMathLevel(const SValuePart& function);
    SFix Spaced(TTokenIndex token) const;
    void CheckSyntax(STokens name, STokens value, StyleTables::TSyntax syntax, std::int32_t code);
    void ReportStop(STokens name, std::int32_t code);
    bool ReportWord(const SValuePart& part, const std::string& name, std::int32_t code,
                    const std::string& allowed);
    bool IsHexColour(TTokenIndex token) const;

    const CStyleText& m_text;
    CStyleFindings& m_findings;
    const SBlocks* m_blocks = nullptr;
    CValueParts m_parts;
    CValueMatch m_match;
};

} // namespace Kesh::CodeAnalyzer
