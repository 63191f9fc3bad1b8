#include "Markup/PhpBetweenTags.h"

#include "Markup/HtmlElements.h"

#include <algorithm>
#include <array>

using namespace std::string_view_literals;

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::wstring_view Blanks = L" \t\r\n\f";

/// Whether something is called there that is no part of the language, or printed.
bool MayPrint(std::wstring_view php)
{
    static constexpr std::array<std::wstring_view, 16> Words = {
        L"if",    L"elseif", L"foreach", L"for",     L"while", L"switch",   L"isset",    L"empty",
        L"array", L"list",   L"count",   L"declare", L"catch", L"in_array", L"function", L"strlen"};
    static constexpr std::wstring_view Printing[] = {L"<?=", L"echo", L"print", L"include", L"require"};
    for (std::size_t i = php.find(L'('); i != std::wstring_view::npos; i = php.find(L'(', i + 1)) {
        std::size_t end = i;
        while (end > 0 && Blanks.find(php[end - 1]) != std::wstring_view::npos)
            --end;
        std::size_t begin = end;
        while (begin > 0 && IsNameCharacter(php[begin - 1]))
            --begin;
        const std::wstring_view name = php.substr(begin, end - begin);
        if (!name.empty() && std::ranges::find(Words, name) == Words.end())
            return true;
    }
    return std::ranges::any_of(
        Printing, [&](std::wstring_view word) { return php.find(word) != std::wstring_view::npos; });
}

/// Start tags less end tags.
int BalanceOf(std::wstring_view php)
{
    int balance = 0;
    for (std::size_t i = php.find(L'<'); i != std::wstring_view::npos; i = php.find(L'<', i + 1)) {
        std::size_t end = i + 1;
        while (end < php.size() && IsNameCharacter(php[end]))
            ++end;
        if (end < php.size() && end == i + 1 && php[end] == L'/')
            --balance;
        else if (const auto name = php.substr(i + 1, end - i - 1); !name.empty())
            balance += (ElementFlags(name) & (ElementVoid | ElementKnown)) == ElementKnown ? 1 : 0;
    }
    return balance;
}

} // namespace

bool IsNameCharacter(wchar_t c)
{
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_' ||
           c > 0x7F;
}

SPrinting WhatPrints(std::wstring_view php)
{
    constexpr std::wstring_view Values[] = {L"echo", L"print", L"printf", L"return"};
    constexpr std::wstring_view Tag = L"<?php";
    SPrinting result;
    bool isValue = !php.starts_with(L"<?"sv); // the rest of an expression
    for (std::size_t begin = 0; begin < php.size();) {
        std::size_t end = begin;
        while (end < php.size() && php[end] != L';' && php[end] != L'{' && php[end] != L'}')
            ++end;
        std::wstring_view statement = php.substr(begin, end - begin);
        const bool isFirst = !result.prints && MayPrint(statement);
        result.prints = result.prints || isFirst;
        begin = end + 1;
        for (bool again = true; again;) {
            statement.remove_prefix(std::min(statement.find_first_not_of(Blanks), statement.size()));
            again = statement.starts_with(Tag);
            if (again)
                statement.remove_prefix(Tag.size());
        }
        isValue = isValue || statement.starts_with(L"<?="sv) ||
                  std::ranges::any_of(Values, [&](std::wstring_view word) {
                      return statement.starts_with(word) &&
                             (statement.size() == word.size() || !IsNameCharacter(statement[word.size()]));
                  });
        const std::size_t call = statement.find(L'(');
        if (isValue)
            result.torn = result.torn || BalanceOf(statement) != 0;
        else if (!result.calls && call != std::wstring_view::npos &&
                 statement.substr(0, call).find(L'=') == std::wstring_view::npos)
            result.calls = isFirst || MayPrint(statement);
        isValue = false;
    }
    return result.prints ? result : SPrinting();
}

} // namespace Kesh::CodeAnalyzer
