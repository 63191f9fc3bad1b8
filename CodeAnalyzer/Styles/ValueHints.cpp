#include "Styles/ValueHints.h"

#include "Styles/StyleFindings.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using StyleTables::EBasic;
using StyleTables::EN;
using StyleTables::TSyntax;

namespace {

constexpr std::size_t MostWords = 6;

// As the standards write them; in the order of EBasic.
constexpr std::string_view BasicNames[] = {"",
                                           "",
                                           "",
                                           "<custom-ident>",
                                           "<dashed-ident>",
                                           "<string>",
                                           "<url>",
                                           "<number>",
                                           "<integer>",
                                           "<percentage>",
                                           "<length>",
                                           "<angle>",
                                           "<time>",
                                           "<frequency>",
                                           "<resolution>",
                                           "<flex>",
                                           "<dimension>",
                                           "<color>",
                                           "<id>",
                                           "<unicode-range>",
                                           "0",
                                           ""};

} // namespace

std::string AllowedText(const std::vector<TSyntax>& expected)
{
    std::vector<std::string_view> names;
    bool isColour = false;
    std::size_t words = 0;
    for (const TSyntax syntax : expected) {
        const StyleTables::SSyntax& node = StyleTables::At(syntax);
        isColour |= node.kind == EN::Basic && static_cast<EBasic>(node.first) == EBasic::HexColor;
        words += node.kind == EN::Word;
    }
    const bool takesWords = !isColour && words <= MostWords;
    for (const TSyntax syntax : expected) {
        const StyleTables::SSyntax& node = StyleTables::At(syntax);
        std::string_view name;
        if (node.kind == EN::Basic)
            name = BasicNames[node.first];
        else if (node.kind == EN::Word && takesWords)
            name = StyleTables::WordAt(node.first);
        if (!name.empty() && std::ranges::find(names, name) == names.end())
            names.push_back(name);
    }
    if (names.empty() || names.size() > 2 * MostWords)
        return {};
    std::string text;
    for (const std::string_view name : names)
        text.append(text.empty() ? "" : ", ").append(name);
    return words > 0 && !takesWords ? text + ", ..." : text;
}

std::string NearestExpected(std::string_view written, bool isFunction, const std::vector<TSyntax>& expected)
{
    CNearestName nearest(written);
    for (const TSyntax syntax : expected) {
        const StyleTables::SSyntax& node = StyleTables::At(syntax);
        if (node.kind == (isFunction ? EN::Function : EN::Word))
            nearest.Offer(StyleTables::WordAt(node.first));
    }
    if (!isFunction)
        for (const std::string_view wide : {"inherit", "initial", "unset", "revert"})
            nearest.Offer(wide);
    return nearest.Get();
}

std::string NearestFunction(std::string_view written)
{
    CNearestName nearest(written);
    for (TSyntax i = 0; i < StyleTables::Count(); ++i)
        if (StyleTables::At(i).kind == EN::Function)
            nearest.Offer(StyleTables::WordAt(StyleTables::At(i).first));
    for (const std::string_view math : {"calc", "min", "max", "clamp", "var", "env"})
        nearest.Offer(math);
    return nearest.Get();
}

} // namespace Kesh::CodeAnalyzer
