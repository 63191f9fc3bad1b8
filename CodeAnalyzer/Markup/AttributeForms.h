#pragma once

#include "Markup/HtmlFacts.h"

#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Whether a value has the form of a number that the standard asks for. Any thread.
bool IsNumber(std::wstring_view value, EValueForm form);

/// What is wrong with a URL, as a message's key; null: nothing that browsers do not put right. Blanks around
/// it do not count.
const wchar_t* FindUrlFault(std::wstring_view url);

} // namespace Kesh::CodeAnalyzer
