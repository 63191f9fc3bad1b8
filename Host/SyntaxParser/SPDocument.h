#pragma once

#include "Kesh/SyntaxParser/ISPDocument.h"

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <functional>
#include <memory>
#include <string>

namespace Kesh::SyntaxParser {

class COwnNames;

/// What a syntax document needs to know about where it comes from.
struct SDocumentSource
{
    std::wstring path;
    std::wstring factory; ///< "PHPSPDocFactory", "HTMLSPDocFactory" or "CSSSPDocFactory"
    SDK::IDocument* document = nullptr;
    Editor::IDocBuffer* buffer = nullptr;
    bool shortTags = true; ///< whether `<?` alone opens PHP
    /// Whether the file begins with a byte order mark, which no reader of an open document hands on. Asked in
    /// each parse, on its thread; null: it does not.
    std::function<bool()> hasMark = {};
    std::shared_ptr<const COwnNames> names = {}; ///< of its project; null: none
    /// Set once nobody wants what a parse finds, which then ends soon. May be null.
    std::shared_ptr<const std::atomic<bool>> giveUp = {};
};

/// The factory name for a path by its ending: PHP for .php .phtml .inc .tpl .ctp, HTML for .html .htm, CSS
/// for .css, in any case; empty for anything else.
std::wstring FactoryForPath(const std::wstring& path);

/// A syntax document over `reader`; null for an unknown factory. Any thread.
boost::shared_ptr<ISPDocument> MakeSPDocument(boost::shared_ptr<IReader> reader,
                                              const SDocumentSource& source);

/// All region kinds of the host: one set for the whole process.
CDefRegions* GetDefRegions();
/// The kinds of CSS tree nodes.
ISynRegion* GetCssPropertyNameKind();
ISynRegion* GetCssElementNameKind();
/// A CSS name that is not checked: a custom property, a name that PHP makes.
ISynRegion* GetCssOtherKind();

} // namespace Kesh::SyntaxParser
