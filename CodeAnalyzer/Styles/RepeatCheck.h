#pragma once

#include "Styles/StyleReader.h"

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// Finds properties given twice in one block with values of the same kind. Values of other kinds, and ones
/// that only newer browsers know, are how sheets serve old browsers too.
class CRepeatCheck
{
public:
    CRepeatCheck(const CStyleText& text, CStyleFindings& findings) : m_text(text), m_findings(findings) {}

    void Begin() { m_blocks.assign(1, {}); }
    void BeginBlock() { m_blocks.emplace_back(); }
    void EndBlock() { m_blocks.pop_back(); }
    void Declare(const SStyleDeclaration& declaration);

private:
    struct SEarlier
    {
        SStyleDeclaration declaration;
        std::optional<std::string> kind; ///< worked out when the property comes again
    };

    STokens WholeOf(const SStyleDeclaration& declaration) const;
    std::string KindOf(STokens value) const;

    const CStyleText& m_text;
    CStyleFindings& m_findings;
    std::vector<std::unordered_map<std::string, SEarlier>> m_blocks;
};

} // namespace Kesh::CodeAnalyzer
