#include "Grammar/Inheritance/BuiltinClasses.h"

#include "Base/CommonString.h"

#include <algorithm>
#include <iterator>

namespace Kesh::CodeAnalyzer {

namespace {

struct SBuiltinClass
{
    std::string_view key;
    std::string_view name;
    std::string_view text; ///< as scripts/make-php-classes.php says
};

#include "php-classes.inc"

constexpr std::int32_t TableVersion = 802;

/// The pieces of a text one after the other.
class CPieces
{
public:
    CPieces(std::wstring_view text, wchar_t separator) : m_rest(text), m_separator(separator) {}

    bool AtEnd() const { return m_ended; }
    std::wstring_view Next()
    {
        const std::size_t end = m_rest.find(m_separator);
        const std::wstring_view piece = m_rest.substr(0, end);
        m_ended = end == std::wstring_view::npos;
        m_rest = m_ended ? std::wstring_view() : m_rest.substr(end + 1);
        return piece;
    }

private:
    std::wstring_view m_rest;
    wchar_t m_separator;
    bool m_ended = false;
};

std::uint16_t ModifiersOf(std::wstring_view flags, bool& byReference)
{
    std::uint16_t modifiers = 0;
    for (const wchar_t flag : flags) {
        switch (flag) {
        case L'u': modifiers |= ModPublic; break;
        case L'o': modifiers |= ModProtected; break;
        case L'i': modifiers |= ModPrivate; break;
        case L's': modifiers |= ModStatic; break;
        case L'a': modifiers |= ModAbstract; break;
        case L'f': modifiers |= ModFinal; break;
        case L'r': modifiers |= ModReadonly; break;
        default: byReference = true; break;
        }
    }
    return modifiers;
}

SClassType TypeOf(std::wstring_view text, const SBoundClass& type)
{
    if (text == L"-")
        return {};
    return ParseClassType(text, TableVersion, [&](std::wstring_view name) {
        const std::wstring lower = LowerAscii(name);
        return lower == L"self" ? type.key : lower == L"parent" ? type.parentKey : lower;
    });
}

SParameter ParameterOf(std::wstring_view text, const SBoundClass& type)
{
    CPieces pieces(text, L':');
    SParameter parameter;
    parameter.type = TypeOf(pieces.Next(), type);
    for (const wchar_t mark : pieces.Next()) {
        parameter.byReference |= mark == L'&';
        parameter.isVariadic |= mark == L'.';
        parameter.isOptional |= mark == L'?';
    }
    parameter.name = pieces.Next();
    parameter.value = L"...";
    return parameter;
}

void ReadMember(std::wstring_view text, SBoundClass& type)
{
    CPieces pieces(text, L' ');
    const std::wstring_view kind = pieces.Next();
    SBoundMethod member;
    bool byReference = false;
    member.modifiers = ModifiersOf(pieces.Next(), byReference);
    member.name = pieces.Next();
    if (kind == L"c") {
        std::wstring key = member.name;
        type.constants.Add(std::move(key), std::move(member));
        return;
    }
    std::wstring_view result = pieces.Next();
    if (kind == L"p") {
        member.type = TypeOf(result, type);
        std::wstring key = member.name;
        type.properties.Add(std::move(key), std::move(member));
        return;
    }
    SSignature signature;
    signature.byReference = byReference;
    signature.isTentative = result.starts_with(L'~');
    if (signature.isTentative)
        result.remove_prefix(1);
    signature.result = TypeOf(result, type);
    while (!pieces.AtEnd())
        signature.parameters.push_back(ParameterOf(pieces.Next(), type));
    member.signature = std::move(signature);
    std::wstring key = LowerAscii(member.name);
    type.methods.Add(std::move(key), std::move(member));
}

} // namespace

void OwnMembers(SBoundClass& type)
{
    for (SBoundMethod& method : type.methods.all)
        method.owner = &type;
    for (SBoundMember& property : type.properties.all)
        property.owner = &type;
    for (SBoundMember& constant : type.constants.all)
        constant.owner = &type;
}

std::optional<SBoundClass> ReadBuiltinClass(const std::wstring& key)
{
    const std::string name = Base::CCommonString::ToUtf8(key);
    const auto* found = std::lower_bound(
        std::begin(BuiltinClasses), std::end(BuiltinClasses), name,
        [](const SBuiltinClass& known, const std::string& wanted) { return known.key < wanted; });
    if (found == std::end(BuiltinClasses) || found->key != name)
        return {};
    SBoundClass type;
    type.key = key;
    type.name = Base::CCommonString::FromUtf8(std::string(found->name));
    const std::wstring text = Base::CCommonString::FromUtf8(std::string(found->text));
    CPieces pieces(text, L';');
    const std::wstring_view kind = pieces.Next();
    type.kind = kind == L"interface" ? InterfaceKind : ClassKind;
    type.modifiers = kind == L"final" ? ModFinal : 0;
    type.parentKey = LowerAscii(pieces.Next());
    if (const std::wstring_view interfaces = pieces.Next(); !interfaces.empty())
        for (CPieces names(interfaces, L','); !names.AtEnd();)
            type.interfaces.push_back(LowerAscii(names.Next()));
    while (!pieces.AtEnd())
        ReadMember(pieces.Next(), type);
    type.isRead = true;
    return type;
}

} // namespace Kesh::CodeAnalyzer
