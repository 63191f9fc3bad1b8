#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"
#include "SyntaxParser/MarkupTrees.h"
#include "SyntaxParser/PrintedStrings.h"

#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

struct SMarkupPassOptions
{
    const CPrintedStrings* printed = nullptr; ///< what PHP prints; null: it is not looked at
    bool isSmarty = false;                    ///< there may be placeholders of Smarty
    bool isStrict = false;                    ///< read as browsers do, also where a quote or ">" is lost
};

/// Hands the markup of a text, and of what its PHP prints, on to the handlers; survives any text in linear
/// time. Ends early, with EndMarkup, once the flag, which may be null, has been set. Placeholders of template
/// engines in HTML are taken for islands. Reentrant.
void RunMarkupPass(std::wstring_view text, EMarkup markup, const std::vector<SIsland>& islands,
                   const SGiveUp* giveUp, const std::vector<IMarkupHandler*>& handlers,
                   const SMarkupPassOptions& options = {});

} // namespace Kesh::SyntaxParser
