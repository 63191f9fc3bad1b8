#pragma once

namespace Kesh::SyntaxParser {

/// A handler of regions may implement it as well: it may do without them once the tokens of the text are
/// known. A document that hands tokens on, and whose handlers of regions all wait, may then send the tokens
/// first and make regions only for those that still need them. A service that does not ask sends regions as
/// ever.
class IRegionsOnDemand
{
public:
    /// Asked once BeforeParse has said that the handler takes part in a pass.
    virtual bool WaitsForTokens() const = 0;
    /// Asked of a handler that waits, after the last token: false, and no region need come before
    /// SendRegsEnd.
    virtual bool NeedsRegions() = 0;

protected:
    ~IRegionsOnDemand() = default;
};

} // namespace Kesh::SyntaxParser
