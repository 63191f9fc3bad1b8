#pragma once

#include "Kesh/SyntaxParser/IMarkupTokens.h"
#include "SyntaxParser/MarkupTrees.h"
#include "SyntaxParser/PrintedStrings.h"

#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

/// Hands the markup of a text, and of what its PHP prints, on to the handlers; survives any text in linear
/// time. Ends early, with EndMarkup, once the flag, which may be null, has been set. Reentrant.
void RunMarkupPass(std::wstring_view text, EMarkup markup, const std::vector<SIsland>& islands,
                   const CPrintedStrings& printed, const SGiveUp* giveUp,
                   const std::vector<IMarkupHandler*>& handlers);

} // namespace Kesh::SyntaxParser
