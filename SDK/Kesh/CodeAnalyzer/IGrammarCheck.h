#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace Kesh::CodeAnalyzer {

/// What a host wants of the grammar check of one file.
struct SGrammarChoice
{
    bool enabled = false;
    std::int32_t phpVersion = 0; ///< as below; an unknown one counts as 0
    std::wstring versionFrom =
        {}; ///< who asks for it, for messages, such as "composer.json"; empty: not known
};

/// The check of PHP against its whole grammar, off until a host asks for it. It needs a host whose documents
/// offer the component "ITokenSource". GUI thread; what is set holds for checks that begin afterwards.
class IGrammarCheck
{
public:
    virtual void SetEnabled(bool enabled) = 0;
    virtual bool IsEnabled() const = 0;
    /// The PHP version to judge by, major * 100 + minor (802 is PHP 8.2); 0, which is the default: whatever
    /// is valid in any of PhpVersions passes. False, and all stays as it is, when it is neither 0 nor one of
    /// these.
    virtual bool SetPhpVersion(std::int32_t version) = 0;
    virtual std::int32_t GetPhpVersion() const = 0;

    using TChoices = std::function<SGrammarChoice(const std::wstring& path)>;
    /// Has files be judged each in its own way, while the check is enabled, in place of by the one version.
    /// Asked by each check that begins, on its thread; an empty function ends it.
    virtual void SetChoices(TChoices choices) = 0;
    /// What holds for a file. Any thread.
    virtual SGrammarChoice GetChoice(const std::wstring& path) const = 0;

protected:
    ~IGrammarCheck() = default;
};

} // namespace Kesh::CodeAnalyzer
