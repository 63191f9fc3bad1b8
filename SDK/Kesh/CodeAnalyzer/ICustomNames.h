#pragma once

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The user's own HTML tags and attributes, as a host hands them in. Not locked: change them only while no
/// check runs.
class ICustomNames
{
public:
    /// Adds single names, in any case, to those that are there.
    virtual void AddTags(const std::vector<std::wstring>& names) = 0;
    virtual void AddAttributes(const std::vector<std::wstring>& names) = 0;

protected:
    ~ICustomNames() = default;
};

} // namespace Kesh::CodeAnalyzer
