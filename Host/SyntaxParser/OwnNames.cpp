#include "SyntaxParser/OwnNames.h"

#include "Base/CommonString.h"
#include "Kesh/SyntaxParser/INameLookup.h"

#include <algorithm>
#include <deque>
#include <map>
#include <mutex>

namespace Kesh::SyntaxParser {

namespace {

class CItem final : public ICompletionItem
{
public:
    explicit CItem(const std::wstring& name) : m_name(name) {}
    const std::wstring& GetName() const override { return m_name; }

private:
    std::wstring m_name;
};

/// Lists hold single names; patterns only answer.
class CWidenedData final : public ICompletionData, public IAttributeSource, public INameLookup
{
public:
    CWidenedData(const ICompletionData& base, const SOwnNames& own)
        : m_base(base), m_lookup(dynamic_cast<const INameLookup&>(base)), m_own(own)
    {
        m_attributes = Items(m_own.Attributes());
        m_tags = Widened(base.GetTags(), Items(m_own.Tags()));
        m_styleProperties = Widened(base.GetStyleProperties(), Items(m_own.Properties()));
    }

    const TCompletionList& GetTags() const override { return m_tags; }
    const TCompletionList& GetStyleProperties() const override { return m_styleProperties; }
    const IAttributeSource* GetAttributeSource() const override { return this; }

    const TCompletionList& GetAttributes(const std::wstring& tag) const override
    {
        const TCompletionList& list = m_base.GetAttributeSource()->GetAttributes(tag);
        if (m_attributes.empty())
            return list;
        const std::lock_guard lock(m_mutex);
        // Most tags share one list.
        const auto [known, isNew] = m_lists.try_emplace(&list);
        if (isNew)
            known->second = Widened(list, m_attributes);
        return known->second;
    }

    bool HasTag(std::wstring_view name) const override { return m_lookup.HasTag(name) || m_own.HasTag(name); }
    bool HasStyleProperty(std::wstring_view name) const override
    {
        return m_lookup.HasStyleProperty(name) || m_own.HasProperty(name);
    }
    bool HasAttribute(std::wstring_view tag, std::wstring_view name) const override
    {
        // Nobody has said what an own tag takes.
        return m_lookup.HasAttribute(tag, name) || m_own.HasAttribute(name) ||
               m_own.HasTag(Base::CLowerCase(tag).View());
    }

private:
    TCompletionList Items(const CNamePatterns& own)
    {
        TCompletionList list;
        for (const std::wstring& name : own.Names())
            list.push_back(&m_items.emplace_back(name));
        return list;
    }

    static TCompletionList Widened(TCompletionList list, const TCompletionList& own)
    {
        list.insert(list.end(), own.begin(), own.end());
        const auto precedes = [](const ICompletionItem* a, const ICompletionItem* b) {
            return a->GetName() < b->GetName();
        };
        const auto equals = [](const ICompletionItem* a, const ICompletionItem* b) {
            return a->GetName() == b->GetName();
        };
        std::stable_sort(list.begin(), list.end(), precedes);
        list.erase(std::unique(list.begin(), list.end(), equals), list.end());
        return list;
    }

    const ICompletionData& m_base;
    const INameLookup& m_lookup;
    COwnNames m_own;
    std::deque<CItem> m_items;
    TCompletionList m_attributes; ///< own ones
    TCompletionList m_tags;
    TCompletionList m_styleProperties;
    mutable std::mutex m_mutex;
    mutable std::map<const TCompletionList*, TCompletionList> m_lists;
};

} // namespace

std::shared_ptr<const ICompletionData> MakeWidenedData(const ICompletionData& base, const SOwnNames& own)
{
    return std::make_shared<CWidenedData>(base, own);
}

} // namespace Kesh::SyntaxParser
