#include "SyntaxParser/CompletionData.h"

#include "Base/CommonString.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Kesh::SyntaxParser {

namespace {

// Lists of names: a line with the list's name, then indented lines with names.
constexpr std::string_view NameLists =
#include "markup-names.inc"
    ;

using TNames = std::set<std::wstring, std::less<>>;

std::map<std::string_view, TNames> ReadNameLists()
{
    std::map<std::string_view, TNames> lists;
    TNames* list = &lists[{}];
    for (std::size_t begin = 0; begin < NameLists.size();) {
        const std::size_t lineEnd = NameLists.find('\n', begin);
        if (NameLists[begin] != ' ') {
            list = &lists[NameLists.substr(begin, lineEnd - begin)];
            begin = lineEnd + 1;
            continue;
        }
        const std::size_t name = NameLists.find_first_not_of(' ', begin);
        const std::size_t end = NameLists.find_first_of(" \n", name);
        list->emplace(NameLists.begin() + name, NameLists.begin() + end);
        begin = NameLists[end] == '\n' ? end + 1 : end;
    }
    return lists;
}

class CItem final : public ICompletionItem
{
public:
    explicit CItem(std::wstring name) : m_name(std::move(name)) {}
    const std::wstring& GetName() const override { return m_name; }

private:
    std::wstring m_name;
};

class CBuiltInData final : public ICompletionData, public IAttributeSource
{
public:
    CBuiltInData()
    {
        auto lists = ReadNameLists();
        m_styleProperties = Items(lists["style-properties"]);
        m_globalAttributes = Items(lists["attributes *"]);
        std::map<std::string, TNames> attributes;
        TNames tags;
        const auto addTags = [&](std::string_view list, const TNames& common) {
            for (const std::wstring& tag : lists[list]) {
                tags.insert(tag);
                TNames& names = attributes[Base::CCommonString::ToUtf8(tag)];
                names.insert(common.begin(), common.end());
            }
        };
        addTags("html-tags", {});
        addTags("svg-tags", lists["attributes @svg"]);
        addTags("math-tags", lists["attributes @math"]);
        m_tags = Items(tags);
        for (auto& [tag, names] : attributes) {
            if (const auto own = lists.find("attributes " + tag); own != lists.end())
                names.insert(own->second.begin(), own->second.end());
            if (names.empty())
                continue; // the global ones
            const TNames& global = lists["attributes *"];
            names.insert(global.begin(), global.end());
            m_attributes.emplace(Base::CCommonString::FromUtf8(tag), Items(names));
        }
    }

    const TCompletionList& GetTags() const override { return m_tags; }
    const TCompletionList& GetStyleProperties() const override { return m_styleProperties; }
    const IAttributeSource* GetAttributeSource() const override { return this; }

    const TCompletionList& GetAttributes(const std::wstring& tag) const override
    {
        const auto own = m_attributes.find(Base::CCommonString::LowerCaseFast(tag));
        return own == m_attributes.end() ? m_globalAttributes : own->second;
    }

private:
    TCompletionList Items(const TNames& names)
    {
        TCompletionList list;
        list.reserve(names.size());
        for (const std::wstring& name : names)
            list.push_back(&m_items.try_emplace(name, name).first->second);
        return list;
    }

    std::unordered_map<std::wstring, CItem> m_items; ///< one for all lists that hold the name
    TCompletionList m_tags;
    TCompletionList m_styleProperties;
    TCompletionList m_globalAttributes;
    std::unordered_map<std::wstring, TCompletionList> m_attributes;
};

} // namespace

const ICompletionData* GetBuiltInCompletionData()
{
    static const CBuiltInData data;
    return &data;
}

} // namespace Kesh::SyntaxParser
