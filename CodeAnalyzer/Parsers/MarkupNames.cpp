#include "Parsers/MarkupNames.h"

namespace Kesh::CodeAnalyzer {

TNameSet MakeNameSet(const SyntaxParser::TCompletionList& items)
{
    TNameSet set;
    set.reserve(items.size() + 2);
    for (const SyntaxParser::ICompletionItem* item : items)
        set.insert(set.end(), item->GetName());
    return set;
}

} // namespace Kesh::CodeAnalyzer
