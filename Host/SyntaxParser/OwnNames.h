#pragma once

#include "Kesh/SyntaxParser/IParserComponent.h"

#include <memory>
#include <string>
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

/// The names of `base`, which outlives the answer and is an INameLookup, and those of a project.
std::shared_ptr<const ICompletionData> MakeWidenedData(const ICompletionData& base, const SOwnNames& own);

} // namespace Kesh::SyntaxParser
