#include "SyntaxParser/CompletionData.h"

#include "Base/CommonString.h"
#include "Kesh/SyntaxParser/INameLookup.h"
#include "SyntaxParser/NameTables.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <unordered_map>
#include <utility>

namespace Kesh::SyntaxParser {

namespace {

class CItem final : public ICompletionItem
{
public:
    explicit CItem(std::string_view name) : m_name(name.begin(), name.end()) {}
    const std::wstring& GetName() const override { return m_name; }

private:
    std::wstring m_name;
};

/// The tables in the shape of lists, for those who want all names.
class CNameLists
{
public:
    CNameLists()
        : m_items(NameTables::All().begin(), NameTables::All().end()),
          m_tags(List(NameTables::Tags())),
          m_styleProperties(List(NameTables::StyleProperties())),
          m_globalAttributes(List(NameTables::GlobalAttributes()))
    {
        for (const TNameIndex tag : NameTables::Tags())
            if (const auto attributes = NameTables::AttributesOf(tag); !attributes.IsEmpty())
                m_attributes.emplace(m_items[tag].GetName(), List(Union(attributes)));
    }

    const TCompletionList& Tags() const { return m_tags; }
    const TCompletionList& StyleProperties() const { return m_styleProperties; }
    const TCompletionList& Attributes(const std::wstring& tag) const
    {
        const auto own = m_attributes.find(Base::CCommonString::LowerCaseFast(tag));
        return own == m_attributes.end() ? m_globalAttributes : own->second;
    }

private:
    static std::vector<TNameIndex> Union(const NameTables::STagAttributes& attributes)
    {
        std::vector<TNameIndex> names(NameTables::GlobalAttributes().begin(),
                                      NameTables::GlobalAttributes().end());
        for (const TNameIndexes part : {attributes.own, attributes.svg, attributes.math})
            names.insert(names.end(), part.begin(), part.end());
        std::sort(names.begin(), names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
        return names;
    }

    TCompletionList List(TNameIndexes names) const
    {
        TCompletionList list;
        list.reserve(names.size());
        for (const TNameIndex name : names)
            list.push_back(&m_items[name]);
        return list;
    }

    std::vector<CItem> m_items; ///< one for all lists that hold the name
    TCompletionList m_tags;
    TCompletionList m_styleProperties;
    TCompletionList m_globalAttributes;
    std::unordered_map<std::wstring, TCompletionList> m_attributes;
};

const CNameLists& Lists()
{
    static const CNameLists lists;
    return lists;
}

class CBuiltInData final : public ICompletionData, public IAttributeSource, public INameLookup
{
public:
    const TCompletionList& GetTags() const override { return Lists().Tags(); }
    const TCompletionList& GetStyleProperties() const override { return Lists().StyleProperties(); }
    const IAttributeSource* GetAttributeSource() const override { return this; }
    const TCompletionList& GetAttributes(const std::wstring& tag) const override
    {
        return Lists().Attributes(tag);
    }

    bool HasTag(std::wstring_view name) const override { return Has(NameTables::Tags(), name); }
    bool HasStyleProperty(std::wstring_view name) const override
    {
        return Has(NameTables::StyleProperties(), name);
    }
    bool HasAttribute(std::wstring_view tag, std::wstring_view name) const override
    {
        const auto attribute = NameTables::Find(name);
        if (!attribute)
            return false;
        if (NameTables::Has(NameTables::GlobalAttributes(), *attribute))
            return true;
        const auto element = NameTables::Find(Base::CLowerCase(tag).View());
        if (!element)
            return false;
        const auto [own, svg, math] = NameTables::AttributesOf(*element);
        return NameTables::Has(own, *attribute) || NameTables::Has(svg, *attribute) ||
               NameTables::Has(math, *attribute);
    }

private:
    static bool Has(TNameIndexes list, std::wstring_view name)
    {
        const auto found = NameTables::Find(name);
        return found && NameTables::Has(list, *found);
    }
};

} // namespace

const ICompletionData* GetBuiltInCompletionData()
{
    static const CBuiltInData data;
    return &data;
}

} // namespace Kesh::SyntaxParser
