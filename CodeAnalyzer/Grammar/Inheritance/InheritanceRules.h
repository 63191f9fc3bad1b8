#pragma once

#include "Grammar/Inheritance/Variance.h"
#include "Grammar/RuleSet.h"

#include <optional>

namespace Kesh::CodeAnalyzer {

/// What a class has to keep to because of the class that it extends, as far as PHP asks for it before the
/// program runs: where the parent is PHP's own or stands before in the file. Nobody knows the others.
class CInheritanceRules final : public CRuleSet
{
public:
    explicit CInheritanceRules(CRuleScopes& scopes) : CRuleSet(scopes) {}

    /// At the end of the document.
    void Check();

private:
    /// What is wrong with a member, beside what its parent has.
    struct SFault
    {
        std::int32_t code;
        const SBoundMember* parent;
        std::vector<SArgument> arguments;
    };
    template <class TMember> struct SPair
    {
        TMember* child;
        TMember* parent;
        std::uint32_t distance; ///< ancestors between them
    };
    struct SVerdict
    {
        EFit fit = EFit::Fits;
        std::optional<SFault> fault = {};
    };

    void Declare(CClassTable& table, const SDeclaredClass& declaration);
    bool Bind(CClassTable& table, SBoundClass& type, SBoundClass& parent);
    bool CheckParent(const SBoundClass& type, const SBoundClass& parent);
    SVerdict CheckMethod(CVariance& variance, SBoundMethod& child, SBoundMethod& parent);
    SVerdict CheckSignature(CVariance& variance, SBoundMethod& child, SBoundMethod& parent);
    SVerdict CheckProperty(CVariance& variance, const SBoundMember& child, const SBoundMember& parent);
    SVerdict CheckConstant(CVariance& variance, const SBoundMember& child, const SBoundMember& parent);
    void CheckOverrides();
    void CheckOverrides(const SBoundClass& type, SBoundClass& parent);
    void CheckOpen(SBoundClass& type);
    void ReportMember(const SBoundMember& child, const SFault& fault);
    void ReportInClass(const SBoundMember& child, const SFault& fault);
};

} // namespace Kesh::CodeAnalyzer
