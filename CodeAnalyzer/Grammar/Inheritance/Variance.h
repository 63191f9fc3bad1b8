#pragma once

#include "Grammar/Inheritance/ClassTable.h"

namespace Kesh::CodeAnalyzer {

enum class EFit : std::uint8_t {
    Fits,
    Unknown, ///< that depends on a class that is not known
    Clashes
};

/// Whether what a class declares fits what its parent declares.
class CVariance
{
public:
    /// `version` as IGrammarCheck::SetPhpVersion() takes it. The table outlives this.
    CVariance(CClassTable& table, std::int32_t version) : m_table(table), m_version(version) {}

    /// A method in the place of another one.
    EFit Methods(SBoundMethod& child, SBoundMethod& parent);
    /// The type of a property, which must be the same.
    EFit Same(const SClassType& child, const SBoundClass& childScope, const SClassType& parent,
              const SBoundClass& parentScope);
    /// Whether every value of a type is one of the other.
    EFit Within(const SClassType& part, const SBoundClass& partScope, const SClassType& whole,
                const SBoundClass& wholeScope);

private:
    using TNames = std::vector<std::wstring>;
    /// Where a type is written: there its class is known although the table does not have it yet.
    using TScope = const SBoundClass&;

    EFit Parameter(const SParameter& child, TScope childScope, const SParameter& parent, TScope parentScope);
    const SBoundClass* Lookup(const std::wstring& name, TScope scope);
    EFit IsSubclass(const std::wstring& part, TScope partScope, const std::wstring& whole, TScope wholeScope);
    EFit ClassWithin(const std::wstring& part, TScope partScope, const SClassType& whole, TScope wholeScope);
    EFit AllWithin(const TNames& part, TScope partScope, const SClassType& whole, TScope wholeScope);
    EFit AnyIs(const TNames& part, TScope partScope, const std::wstring& whole, TScope wholeScope);
    bool PermitsSelf(const SClassType& whole, TScope self);

    CClassTable& m_table;
    std::int32_t m_version;
};

} // namespace Kesh::CodeAnalyzer
