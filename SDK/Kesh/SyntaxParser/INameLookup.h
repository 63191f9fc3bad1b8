#pragma once

#include <string_view>

namespace Kesh::SyntaxParser {

/// Tells of a single name whether it is in the lists of an ICompletionData. A host may implement it in the
/// object that is its ICompletionData; then nobody needs sets of names made from the lists. Names are
/// compared as they are. Any thread.
class INameLookup
{
public:
    virtual bool HasTag(std::wstring_view name) const = 0;
    virtual bool HasStyleProperty(std::wstring_view name) const = 0;
    /// Whether `tag`, as written and in any case, takes the attribute; a tag that is not listed takes the
    /// global ones.
    virtual bool HasAttribute(std::wstring_view tag, std::wstring_view name) const = 0;

protected:
    ~INameLookup() = default;
};

} // namespace Kesh::SyntaxParser
