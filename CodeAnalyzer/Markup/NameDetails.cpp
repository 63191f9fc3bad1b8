#include "Markup/NameDetails.h"

#include "Base/CommonString.h"
#include "Base/EditDistance.h"

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SSemanticTreeNode;
using SyntaxParser::TCompletionList;

SDetails CNameDetails::OfTag(const SSemanticTreeNode& tag)
{
    return Of(tag, m_names.GetTags());
}

SDetails CNameDetails::OfAttribute(const SSemanticTreeNode& tag, const SSemanticTreeNode& attribute)
{
    return Of(attribute, m_names.GetAttributeSource()->GetAttributes(tag.name));
}

SDetails CNameDetails::OfElement(const SSemanticTreeNode& element)
{
    return Of(element, m_names.GetTags());
}

SDetails CNameDetails::OfProperty(const SSemanticTreeNode& property)
{
    return Of(property, m_names.GetStyleProperties());
}

SDetails CNameDetails::Of(const SSemanticTreeNode& node, const TCompletionList& list)
{
    SDetails details;
    details.arguments.push_back({"name", node.name});
    const std::wstring& nearest = Nearest(node.name, list);
    if (nearest.empty())
        return details;
    details.arguments.push_back({"nearest", nearest});
    // A tag's span begins with its "<".
    SyntaxParser::SScheme span = node.span;
    span.start = {span.end.x - static_cast<std::int64_t>(node.name.size()), span.end.y};
    if (span.start.x >= 0)
        details.fixes.push_back({EFix::Rename, {{span, nearest}}});
    return details;
}

const std::wstring& CNameDetails::Nearest(const std::wstring& name, const TCompletionList& list)
{
    std::wstring lower = Base::CCommonString::LowerCaseFast(name);
    const auto [known, isNew] = m_known.try_emplace({&list, std::move(lower)});
    if (isNew) {
        Base::CNearestText nearest(known->first.second);
        for (const SyntaxParser::ICompletionItem* item : list)
            nearest.Offer(item->GetName());
        known->second = nearest.Get();
    }
    return known->second;
}

} // namespace Kesh::CodeAnalyzer
