#pragma once

#include <cstdint>

namespace Kesh::CodeAnalyzer {

/// The check of PHP against its whole grammar, off until a host asks for it. It needs a host whose documents
/// offer the component "ITokenSource". GUI thread; what is set holds for checks that begin afterwards.
class IGrammarCheck
{
public:
    virtual void SetEnabled(bool enabled) = 0;
    virtual bool IsEnabled() const = 0;
    /// The PHP version to judge by, major * 100 + minor (802 is PHP 8.2); 0, which is the default: whatever
    /// is valid in any version from 5.3 on passes.
    virtual void SetPhpVersion(std::int32_t version) = 0;
    virtual std::int32_t GetPhpVersion() const = 0;

protected:
    ~IGrammarCheck() = default;
};

} // namespace Kesh::CodeAnalyzer
