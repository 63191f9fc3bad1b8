#include "Diagnostics/Messages.h"

#include "Base/CommonString.h"
#include "Kesh/LangSupport/LangSupport.h"

#include <optional>
#include <string_view>

namespace Kesh::CodeAnalyzer {

namespace {

std::wstring Translated(const char* key)
{
    return LangSupport::CLangSupport::LoadStr(key);
}

/// A piece of the text as a message shows it: on one line and not too long.
std::wstring Quoted(std::wstring_view source)
{
    constexpr std::size_t longest = 60;
    const std::size_t line = source.find_first_of(L"\r\n");
    const bool cut = line != std::wstring_view::npos || source.size() > longest;
    std::wstring text = L"'";
    text += source.substr(0, std::min(line, longest));
    text += cut ? L"...'" : L"'";
    return text;
}

std::optional<std::wstring> ValueOf(std::wstring_view name, const SDetails& details)
{
    for (const SArgument& argument : details.arguments) {
        if (!std::equal(name.begin(), name.end(), argument.name.begin(), argument.name.end()))
            continue;
        switch (argument.kind) {
        case SArgument::Source: return Quoted(argument.value);
        case SArgument::Key: return Translated(Base::CCommonString::ToUtf8(argument.value).c_str());
        default: return argument.value;
        }
    }
    return {};
}

/// The end of what a brace opens.
std::size_t ClosingBrace(std::wstring_view text, std::size_t open)
{
    std::size_t depth = 0;
    for (std::size_t at = open; at < text.size(); ++at) {
        depth += text[at] == L'{';
        if (text[at] == L'}' && --depth == 0)
            return at;
    }
    return std::wstring_view::npos;
}

/// A place is `{` with a letter behind it, and an optional part `{?`: other braces are text.
bool IsPlace(std::wstring_view text, std::size_t at)
{
    return text[at] == L'{' && at + 1 < text.size() &&
           (text[at + 1] == L'?' || (text[at + 1] >= L'a' && text[at + 1] <= L'z'));
}

/// The text with its places filled; nothing where an argument is missing that is not optional.
std::optional<std::wstring> Filled(std::wstring_view text, const SDetails& details)
{
    std::wstring result;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (!IsPlace(text, at)) {
            result += text[at];
            continue;
        }
        const std::size_t end = ClosingBrace(text, at);
        if (end == std::wstring_view::npos)
            return {};
        const std::wstring_view inside = text.substr(at + 1, end - at - 1);
        if (inside.front() == L'?') {
            result += Filled(inside.substr(1), details).value_or(std::wstring());
        } else {
            const auto value = ValueOf(inside, details);
            if (!value)
                return {};
            result += *value;
        }
        at = end;
    }
    return result;
}

} // namespace

std::wstring TitleOf(std::int32_t code)
{
    const SDiagnosticKind* kind = FindKind(code);
    return Translated(kind ? kind->title : "Udefined error");
}

std::wstring MessageOf(const SDiagnostic& diagnostic)
{
    const SDiagnosticKind* kind = FindKind(diagnostic.error.code);
    if (kind && *kind->message)
        if (auto message = Filled(Translated(kind->message), diagnostic.details))
            return *std::move(message);
    return TitleOf(diagnostic.error.code);
}

std::wstring MessageOf(const SRelatedPlace& place)
{
    return Translated(place.message.c_str());
}

} // namespace Kesh::CodeAnalyzer
