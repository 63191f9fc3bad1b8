#include "Grammar/TypeText.h"

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

std::wstring TypeText(const CGrammarTokens& tokens, std::uint32_t& token)
{
    std::wstring text;
    int open = 0;
    for (bool wantsName = true; token < tokens.Count(); ++token) {
        const K kind = tokens[token].kind;
        if (kind == K::End)
            break;
        if (wantsName) {
            open += kind == K::OpenRound;
            wantsName = kind == K::OpenRound || kind == K::Question;
        } else if (kind == K::CloseRound && open > 0) {
            --open;
        } else if (kind == K::BitOr || kind == K::BitAnd) {
            wantsName = true;
        } else {
            break;
        }
        text += tokens.Text(token);
    }
    return text;
}

} // namespace Kesh::CodeAnalyzer
