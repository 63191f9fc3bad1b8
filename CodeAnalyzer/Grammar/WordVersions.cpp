#include "Grammar/WordVersions.h"

#include "Grammar/GrammarTokens.h"

#include <string>
#include <unordered_map>

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

/// The words that no name could be of all versions, or from one on.
std::unordered_map<std::wstring_view, std::int32_t> MakeWords()
{
    std::unordered_map<std::wstring_view, std::int32_t> words;
    for (std::size_t i = 0; i < static_cast<std::size_t>(K::Count); ++i) {
        const K kind = static_cast<K>(i);
        if (ClassOf(kind) == SyntaxParser::EPhpTokenClass::Word && kind != K::Enum)
            words.emplace(TextOf(kind), ReservedSince(kind));
    }
    // What shares a kind with another word.
    for (const wchar_t* word :
         {L"require", L"include_once", L"require_once", L"die", L"__class__", L"__dir__", L"__file__",
          L"__function__", L"__line__", L"__method__", L"__namespace__"})
        words.emplace(word, 0);
    return words;
}

} // namespace

bool HasReservedPart(std::wstring_view name, std::int32_t version)
{
    static const auto words = MakeWords();
    const bool isRelative = !name.starts_with(L'\\') && LowerAscii(name).starts_with(L"namespace\\");
    if (isRelative)
        name.remove_prefix(std::wstring_view(L"namespace\\").size());
    while (!name.empty()) {
        const std::size_t end = name.find(L'\\');
        const auto found = words.find(LowerAscii(name.substr(0, end)));
        if (found != words.end() && found->second <= version)
            return true;
        name.remove_prefix(end == std::wstring_view::npos ? name.size() : end + 1);
    }
    return false;
}

} // namespace Kesh::CodeAnalyzer
