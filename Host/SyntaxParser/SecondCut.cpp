#include "SyntaxParser/SecondCut.h"

#include "SyntaxParser/PhpTokenPass.h"

#include <utility>

namespace Kesh::SyntaxParser {

namespace {

class CTokenList final : public ITokenHandler
{
public:
    bool BeginTokens() override { return true; }
    void AddToken(const SPhpToken& token) override { tokens.push_back(token); }
    void EndTokens(CIterator /*end*/) override {}

    std::vector<SPhpToken> tokens;
};

} // namespace

std::vector<SPhpToken> CutTokens(std::wstring_view code, CIterator place, bool shortTags)
{
    CTokenList list;
    CPhpTokenPass pass(code, {&list}, shortTags);
    pass.BeginInPhp(place);
    pass.Run(nullptr);
    return std::move(list.tokens);
}

} // namespace Kesh::SyntaxParser
