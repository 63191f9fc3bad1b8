#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Kesh/SyntaxParser/SemanticTree.h"

#include <map>
#include <string>
#include <utility>

namespace Kesh::CodeAnalyzer {

/// What there is to say of a name that no list has: which listed one may be meant. One thread.
class CNameDetails
{
public:
    /// Not owned.
    explicit CNameDetails(const SyntaxParser::ICompletionData& names) : m_names(names) {}

    SDetails OfTag(const SyntaxParser::SSemanticTreeNode& tag);
    SDetails OfAttribute(const SyntaxParser::SSemanticTreeNode& tag,
                         const SyntaxParser::SSemanticTreeNode& attribute);
    /// In a selector.
    SDetails OfElement(const SyntaxParser::SSemanticTreeNode& element);
    SDetails OfProperty(const SyntaxParser::SSemanticTreeNode& property);

private:
    SDetails Of(const SyntaxParser::SSemanticTreeNode& node, const SyntaxParser::TCompletionList& list);
    const std::wstring& Nearest(const std::wstring& name, const SyntaxParser::TCompletionList& list);

    const SyntaxParser::ICompletionData& m_names;
    /// A mistyped name mostly comes more than once.
    std::map<std::pair<const SyntaxParser::TCompletionList*, std::wstring>, std::wstring> m_known;
};

} // namespace Kesh::CodeAnalyzer
