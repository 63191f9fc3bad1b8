#include "Markup/MarkupNames.h"

#include <algorithm>
#include <boost/weak_ptr.hpp>
#include <mutex>
#include <vector>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::ICompletionData;
using SyntaxParser::ICompletionItem;
using SyntaxParser::IParserComponent;
using SyntaxParser::TCompletionList;

namespace {

struct SKnownNames
{
    boost::weak_ptr<IParserComponent> component; ///< also keeps another from being taken for this one
    std::shared_ptr<const CMarkupNames> names;
};

bool IsSame(const boost::weak_ptr<IParserComponent>& a, const boost::shared_ptr<IParserComponent>& b)
{
    return !a.owner_before(b) && !b.owner_before(a);
}

bool IsKnown(const TCompletionList& items, std::wstring_view name)
{
    const auto place = std::lower_bound(
        items.begin(), items.end(), name,
        [](const ICompletionItem* item, std::wstring_view n) { return item->GetName() < n; });
    if (place != items.end() && (*place)->GetName() == name)
        return true;
    // A host may give its list in another order. Unknown names are rare, so that the long way is too.
    return std::any_of(items.begin(), items.end(),
                       [&name](const ICompletionItem* item) { return item->GetName() == name; });
}

} // namespace

CMarkupNames::SNameSet::SNameSet(const TCompletionList& list) : items(list)
{
    names.reserve(items.size());
    // Cheap for a sorted list, which is what hosts give.
    for (const ICompletionItem* item : items)
        names.insert(names.end(), item->GetName());
}

std::shared_ptr<const CMarkupNames> CMarkupNames::Of(const boost::shared_ptr<IParserComponent>& component)
{
    static std::mutex mutex;
    static std::vector<SKnownNames> known;
    const ICompletionData& data = *component->GetCompletionData();
    const std::lock_guard lock(mutex);
    known.erase(std::remove_if(known.begin(), known.end(),
                               [&](const SKnownNames& entry) {
                                   const bool same = IsSame(entry.component, component);
                                   return entry.component.expired() || (same && !entry.names->IsOf(data));
                               }),
                known.end());
    for (const SKnownNames& entry : known)
        if (IsSame(entry.component, component))
            return entry.names;
    known.push_back({component, std::make_shared<CMarkupNames>(data)});
    return known.back().names;
}

CMarkupNames::CMarkupNames(const ICompletionData& data)
    : m_data(&data),
      m_lookup(dynamic_cast<const SyntaxParser::INameLookup*>(&data)),
      m_tags(m_lookup ? TCompletionList() : data.GetTags()),
      m_styleProperties(m_lookup ? TCompletionList() : data.GetStyleProperties())
{
}

bool CMarkupNames::IsOf(const ICompletionData& data) const
{
    return m_data == &data && (m_lookup || (m_tags.items == data.GetTags() &&
                                            m_styleProperties.items == data.GetStyleProperties()));
}

bool CMarkupNames::HasTag(std::wstring_view name) const
{
    return m_lookup ? m_lookup->HasTag(name) : m_tags.names.contains(name);
}

bool CMarkupNames::HasStyleProperty(std::wstring_view name) const
{
    return m_lookup ? m_lookup->HasStyleProperty(name) : m_styleProperties.names.contains(name);
}

bool CMarkupNames::HasAttribute(const std::wstring& tag, std::wstring_view name) const
{
    return m_lookup ? m_lookup->HasAttribute(tag, name)
                    : IsKnown(m_data->GetAttributeSource()->GetAttributes(tag), name);
}

} // namespace Kesh::CodeAnalyzer
