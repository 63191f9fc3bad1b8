#pragma once

#include "Kesh/SyntaxParser/IParserComponent.h"
#include "SyntaxParser/NamePatterns.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// A project's own names, in lower case, and patterns of names as CNamePatterns has them.
struct SOwnNames
{
    std::vector<std::wstring> tags;       ///< which take any attribute
    std::vector<std::wstring> attributes; ///< allowed on every tag
    std::vector<std::wstring> properties;

    bool IsEmpty() const { return tags.empty() && attributes.empty() && properties.empty(); }
    friend bool operator==(const SOwnNames&, const SOwnNames&) = default;
};

/// Answers for them; names are asked for in lower case. Any thread.
class COwnNames
{
public:
    explicit COwnNames(const SOwnNames& names)
        : m_tags(names.tags), m_attributes(names.attributes), m_properties(names.properties)
    {
    }

    const CNamePatterns& Tags() const { return m_tags; }
    const CNamePatterns& Attributes() const { return m_attributes; }
    const CNamePatterns& Properties() const { return m_properties; }
    bool HasTag(std::wstring_view name) const { return m_tags.Matches(name); }
    bool HasAttribute(std::wstring_view name) const { return m_attributes.Matches(name); }
    bool HasProperty(std::wstring_view name) const { return m_properties.Matches(name); }

private:
    CNamePatterns m_tags;
    CNamePatterns m_attributes;
    CNamePatterns m_properties;
};

/// The names of `base`, which outlives the answer and is an INameLookup, and those of a project.
std::shared_ptr<const ICompletionData> MakeWidenedData(const ICompletionData& base, const SOwnNames& own);

} // namespace Kesh::SyntaxParser
