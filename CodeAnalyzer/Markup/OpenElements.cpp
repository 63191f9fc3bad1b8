#include "Markup/OpenElements.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

/// A longer condition is compared as it is written.
constexpr std::size_t LongestRead = 1000;

/// Takes the brackets off that surround the whole.
void Unwrap(std::wstring& text)
{
    while (text.size() > 1 && text.front() == L'(' && text.back() == L')') {
        int depth = 0;
        for (std::size_t i = 0; i + 1 < text.size(); ++i) {
            depth += text[i] == L'(' ? 1 : text[i] == L')' ? -1 : 0;
            if (depth == 0)
                return;
        }
        text = text.substr(1, text.size() - 2);
    }
}

} // namespace

SCondition ReadCondition(std::wstring_view text)
{
    SCondition condition;
    condition.text.resize(text.size());
    const auto end = std::ranges::remove_copy_if(text, condition.text.begin(), [](wchar_t c) {
                         return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r';
                     }).out;
    condition.text.erase(end, condition.text.end());
    if (condition.text.size() > LongestRead)
        return condition;
    Unwrap(condition.text);
    const bool isOne = condition.text.find_first_of(L"&|<>=?") == std::wstring::npos;
    while (isOne && condition.text.starts_with(L'!')) {
        condition.negated = !condition.negated;
        condition.text.erase(0, 1);
        Unwrap(condition.text);
    }
    if (isOne)
        return condition;
    // `a != b` is the opposite of `a == b`.
    for (const std::wstring_view sign : {L"!==", L"!="})
        if (const std::size_t place = condition.text.find(sign);
            place != std::wstring::npos && condition.text.find_first_of(L"&|?") == std::wstring::npos) {
            condition.text[place] = L'=';
            condition.negated = true;
            break;
        }
    return condition;
}

} // namespace Kesh::CodeAnalyzer
