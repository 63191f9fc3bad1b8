#pragma once

#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Kesh/SyntaxParser/ISPDocument.h"

#include <boost/container/flat_set.hpp>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Known names. The names are the host's own strings, since every open document has such sets; they live as
/// long as the parser component.
using TNameSet = boost::container::flat_set<std::wstring_view>;

/// Cheap for a sorted list, which is what hosts give.
TNameSet MakeNameSet(const SyntaxParser::TCompletionList& items);

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
