#pragma once

#include "Kesh/SyntaxParser/INameLookup.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Kesh/SyntaxParser/ISPDocument.h"

#include <boost/container/flat_set.hpp>
#include <boost/shared_ptr.hpp>
#include <memory>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// The names of HTML and CSS that a host knows, shared by all of its documents. Sets are made only of the
/// lists of a host that cannot look names up itself, and again only when its lists have become other ones.
/// Names are compared as they are. Any thread.
class CMarkupNames
{
public:
    /// The names that a parser component knows now; usable as long as the component lives.
    static std::shared_ptr<const CMarkupNames>
    Of(const boost::shared_ptr<SyntaxParser::IParserComponent>& component);

    explicit CMarkupNames(const SyntaxParser::ICompletionData& data);

    const SyntaxParser::ICompletionData& Data() const { return *m_data; }
    bool HasTag(std::wstring_view name) const;
    bool HasStyleProperty(std::wstring_view name) const;
    /// Whether `tag`, as written, takes the attribute.
    bool HasAttribute(const std::wstring& tag, std::wstring_view name) const;

private:
    /// One list and its names, which are the host's own strings.
    struct SNameSet
    {
        SyntaxParser::TCompletionList items;
        boost::container::flat_set<std::wstring_view> names;

        explicit SNameSet(const SyntaxParser::TCompletionList& list);
    };

    bool IsOf(const SyntaxParser::ICompletionData& data) const;

    const SyntaxParser::ICompletionData* m_data;
    const SyntaxParser::INameLookup* m_lookup; ///< null: the host has none
    SNameSet m_tags;
    SNameSet m_styleProperties;
};

/// Holds a document's semantic data locked.
class CSemanticDataLock
{
public:
    explicit CSemanticDataLock(SyntaxParser::ISPDocument& document) : m_document(document)
    {
        m_document.LockSemanticData();
    }
    ~CSemanticDataLock() { m_document.UnlockSemanticData(); }
    CSemanticDataLock(const CSemanticDataLock&) = delete;
    CSemanticDataLock& operator=(const CSemanticDataLock&) = delete;

private:
    SyntaxParser::ISPDocument& m_document;
};

} // namespace Kesh::CodeAnalyzer
