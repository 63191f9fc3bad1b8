#pragma once

#include "Grammar/Inheritance/BoundClass.h"

namespace Kesh::CodeAnalyzer {

/// Reads the members of classes out of the document's tokens, those that somebody asks for.
class CDeclarationReader
{
public:
    /// `scopes` outlives the reader.
    explicit CDeclarationReader(const CRuleScopes& scopes) : m_scopes(scopes) {}

    void ReadMembers(SBoundClass& type) const;
    SSignature Signature(const SBoundMethod& method) const;
    /// The type that begins at the member's type token.
    SClassType Type(const SBoundMember& member) const;

private:
    /// The type at a token, which becomes the one behind it.
    SClassType TypeAt(std::uint32_t& token, const SBoundClass& type) const;
    bool ReadParameter(std::uint32_t& token, const SBoundClass& type, SSignature& signature) const;
    std::uint32_t Skip(std::uint32_t token) const;

    const CRuleScopes& m_scopes;
};

} // namespace Kesh::CodeAnalyzer
