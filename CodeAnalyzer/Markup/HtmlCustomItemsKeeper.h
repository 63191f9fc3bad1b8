#pragma once

#include "Kesh/CodeAnalyzer/ICustomNames.h"

#include <set>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The user's own HTML tags and attributes, in lower case. Not locked: workers read it, so change it only
/// while no check runs.
class CHtmlCustomItemsKeeper : public ICustomNames
{
public:
    /// `name` in any case.
    bool HaveTag(const std::wstring& name) const;
    bool HaveAttribute(const std::wstring& name) const;

    void AddTags(const std::vector<std::wstring>& names) override;
    void AddAttributes(const std::vector<std::wstring>& names) override;

    const std::set<std::wstring>& GetTags() const { return m_tags; }
    const std::set<std::wstring>& GetAttributes() const { return m_attributes; }

private:
    std::set<std::wstring> m_tags;
    std::set<std::wstring> m_attributes;
};

} // namespace Kesh::CodeAnalyzer
