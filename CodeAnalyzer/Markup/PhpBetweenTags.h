#pragma once

#include <string_view>

namespace Kesh::CodeAnalyzer {

/// What PHP between tags may do to them.
struct SPrinting
{
    bool prints = false; ///< something may be printed
    bool calls = false;  ///< something is called for what it does, not for its value
    bool torn = false; ///< strings that are a part of what is printed have tags whose partners are elsewhere
};

/// Whether names of PHP, and of tags as PHP prints them, go on with it.
bool IsNameCharacter(wchar_t c);

/// Linear. `php` may begin and end inside of an expression.
SPrinting WhatPrints(std::wstring_view php);

} // namespace Kesh::CodeAnalyzer
