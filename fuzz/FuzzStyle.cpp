// Any bytes as a style sheet and as a style attribute: the tokens follow each other, and the check ends with
// places in the text.

#include "Require.h"
#include "SyntaxParser/SourceText.h"
#include "markup/StyleHandler.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

using namespace Kesh;

namespace {

void RequireSound(const CodeAnalyzer::CStyleHandler& handler, std::size_t size)
{
    std::size_t end = 0;
    for (const SyntaxParser::SStyleToken& token : handler.tokens) {
        Require(token.span.begin == end && token.span.end > end);
        end = token.span.end;
    }
    Require(end == size);
    for (const CodeAnalyzer::SDiagnostic& found : handler.found)
        Require(found.error.pos.start <= found.error.pos.end);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring text =
        SyntaxParser::DecodeSource(std::string_view(reinterpret_cast<const char*>(data), size));
    std::vector<SyntaxParser::SIsland> islands;
    if (const std::size_t begin = text.find(L"<?"); begin != std::wstring::npos)
        islands.push_back({begin, std::min(text.find(L"?>", begin), text.size())});
    for (const auto kind : {SyntaxParser::EStyleKind::Sheet, SyntaxParser::EStyleKind::Attribute}) {
        CodeAnalyzer::CStyleHandler handler(kind);
        PassStyle(text, islands, handler);
        RequireSound(handler, text.size());
    }
    return 0;
}
