#pragma once

#include "Grammar/RuleScopes.h"

#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Rules of one subject. The grammar calls them with what it recognises, in the order in which it does.
class CRuleSet
{
public:
    CRuleSet(const CRuleSet&) = delete;
    CRuleSet& operator=(const CRuleSet&) = delete;

protected:
    explicit CRuleSet(CRuleScopes& scopes) : m_scopes(scopes) {}
    ~CRuleSet() = default;

    const CGrammarTokens& Tokens() const { return m_scopes.tokens; }
    std::wstring_view Text(std::uint32_t token) const { return m_scopes.tokens.Text(token); }
    /// Whether it is the word, which is written with small letters, in any case.
    template <std::size_t Size> bool IsWord(std::uint32_t token, const wchar_t (&lower)[Size]) const
    {
        return Text(token).size() == Size - 1 && IsSameWord(Text(token), lower);
    }
    bool IsThis(std::uint32_t token) const { return Text(token) == std::wstring_view(L"$this", 5); }
    bool IsSuperglobal(std::uint32_t token) const;
    std::int32_t Version() const { return m_scopes.version; }
    /// Whether the version is this one or a later one, or any.
    bool IsFrom(std::int32_t version) const { return m_scopes.version == 0 || m_scopes.version >= version; }

    SFunctionScope& Function() { return m_scopes.functions.back(); }
    SClassScope* Class() { return m_scopes.classes.empty() ? nullptr : &m_scopes.classes.back(); }

    void Report(std::int32_t code, std::uint32_t token, SRelatedToken related = {}, EFix fix = EFix::None)
    {
        m_scopes.Report(code, token, related, fix);
    }
    void Report(std::int32_t code, const SGrammarValue& value) { m_scopes.Report(code, value.first); }
    void Report(SRuleReport report) { m_scopes.Report(std::move(report)); }
    void Needs(EFeature feature, const SGrammarValue& value) { m_scopes.Needs(feature, value.first); }
    /// What stands in brackets, where they make no difference.
    static SGrammarValue Ungrouped(SGrammarValue value)
    {
        if (value.kind == EValue::Group)
            value.kind = value.inner;
        return value;
    }
    /// Whether PHP works the value out before the program runs, all that is in it too.
    bool IsWorkedOut(const SGrammarValue& value) const;
    /// A value that has to be known before the program runs.
    void CheckConstant(const SGrammarValue& value, bool allowNew);

    CRuleScopes& m_scopes;

private:
    static bool IsSameWord(std::wstring_view text, const wchar_t* lower);
};

} // namespace Kesh::CodeAnalyzer
