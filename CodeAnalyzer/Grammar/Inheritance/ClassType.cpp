#include "Grammar/Inheritance/ClassType.h"

#include "Grammar/TypeRules.h"

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t MostNames = 64;
constexpr std::uint32_t Classes = TypeClass | TypeTraversable;

} // namespace

bool SClassType::IsMixed() const
{
    return (mask & TypeMixed) != 0;
}

SClassType ParseClassType(std::wstring_view text, std::int32_t version, const TNameMeaning& meaning)
{
    SClassType type;
    type.isSet = true;
    type.text = text;
    std::vector<std::wstring> together; // what `&` joins
    const auto end = [&] {
        if (!together.empty())
            type.classes.push_back(std::move(together));
        together.clear();
    };
    std::size_t names = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] == L'?')
            type.mask |= TypeNull;
        else if (text[at] == L'|')
            end();
        const std::size_t next = text.find_first_of(L"?|&()", at);
        if (next == at) {
            ++at;
            continue;
        }
        const std::wstring_view name = text.substr(at, next - at);
        at = next == std::wstring_view::npos ? text.size() : next;
        if (++names > MostNames) {
            type.isUnknown = true;
            return type;
        }
        std::wstring lower = LowerAscii(name);
        const std::uint32_t known = TypeOfName(lower, version);
        if (known & Classes)
            together.push_back(meaning(name));
        else if (known == TypeIterable) {
            type.mask |= TypeArray;
            type.classes.push_back({L"traversable"});
        } else if (known == TypeMixed) {
            type.mask |=
                TypeMixed | TypeInt | TypeFloat | TypeString | TypeBool | TypeNull | TypeArray | TypeObject;
        } else {
            type.mask |= known;
        }
    }
    end();
    return type;
}

} // namespace Kesh::CodeAnalyzer
