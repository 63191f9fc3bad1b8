#include "Grammar/Inheritance/DeclarationReader.h"

#include "Grammar/TypeText.h"

namespace Kesh::CodeAnalyzer {

using K = SyntaxParser::EPhpTokenKind;

namespace {

bool Opens(K kind)
{
    switch (kind) {
    case K::OpenRound:
    case K::OpenSquare:
    case K::OpenBrace:
    case K::AttributeStart:
    case K::CodeBrace:
    case K::DollarBrace: return true;
    default: return false;
    }
}

bool Closes(K kind)
{
    return kind == K::CloseRound || kind == K::CloseSquare || kind == K::CloseBrace;
}

std::wstring Shortened(std::wstring_view value)
{
    constexpr std::size_t most = 20;
    return value.size() > most || value.find(L'\n') != std::wstring_view::npos ? L"..." : std::wstring(value);
}

bool IsModifier(K kind)
{
    switch (kind) {
    case K::Public:
    case K::Protected:
    case K::Private:
    case K::Readonly:
    case K::Final:
    case K::PublicSet:
    case K::ProtectedSet:
    case K::PrivateSet: return true;
    default: return false;
    }
}

} // namespace

void CDeclarationReader::ReadMembers(SBoundClass& type) const
{
    type.isRead = true;
    for (const SMember& member : type.declaration->members) {
        SBoundMethod read;
        read.modifiers = member.modifiers;
        read.token = member.name;
        read.typeToken = member.type;
        read.isOverride = member.isOverride;
        read.name = m_scopes.tokens.Text(member.name);
        read.owner = &type;
        if (!(read.modifiers & ModAccess))
            read.modifiers |= ModPublic;
        std::wstring key = member.kind == SMember::Method ? LowerAscii(read.name) : read.name;
        if (member.kind == SMember::Method && type.kind == InterfaceKind)
            read.modifiers |= ModAbstract;
        switch (member.kind) {
        case SMember::Method: type.methods.Add(std::move(key), std::move(read)); break;
        case SMember::Property: type.properties.Add(std::move(key), std::move(read)); break;
        case SMember::Constant: type.constants.Add(std::move(key), std::move(read)); break;
        }
    }
}

SClassType CDeclarationReader::TypeAt(std::uint32_t& token, const SBoundClass& type) const
{
    return ParseClassType(TypeText(m_scopes.tokens, token), m_scopes.version, [&](std::wstring_view name) {
        const std::wstring lower = LowerAscii(name);
        if (lower == L"self")
            return type.key;
        return lower == L"parent" ? type.parentKey : m_scopes.imports.ClassAt(type.declaration->name, name);
    });
}

SClassType CDeclarationReader::Type(const SBoundMember& member) const
{
    std::uint32_t token = member.typeToken;
    return token == NoToken ? SClassType() : TypeAt(token, *member.owner);
}

// Behind a bracket that is opened here and all that stands in it.
std::uint32_t CDeclarationReader::Skip(std::uint32_t token) const
{
    int depth = 0;
    do {
        const K kind = m_scopes.tokens[token].kind;
        if (kind == K::End)
            return token;
        depth += Opens(kind) - Closes(kind);
        ++token;
    } while (depth > 0);
    return token;
}

bool CDeclarationReader::ReadParameter(std::uint32_t& token, const SBoundClass& type,
                                       SSignature& signature) const
{
    const CGrammarTokens& tokens = m_scopes.tokens;
    while (tokens[token].kind == K::AttributeStart)
        token = Skip(token);
    bool isPromoted = false;
    for (; IsModifier(tokens[token].kind); ++token)
        isPromoted = true;
    SParameter parameter;
    const auto isBehindType = [&](K kind) {
        return kind == K::Variable || kind == K::BitAndBeforeVariable || kind == K::Ellipsis ||
               kind == K::End;
    };
    if (!isBehindType(tokens[token].kind))
        parameter.type = TypeAt(token, type);
    parameter.byReference = tokens[token].kind == K::BitAndBeforeVariable;
    token += parameter.byReference;
    parameter.isVariadic = tokens[token].kind == K::Ellipsis;
    token += parameter.isVariadic;
    if (tokens[token].kind != K::Variable)
        return false;
    parameter.name = tokens.Text(token++);
    if (tokens[token].kind == K::Assign) {
        const std::uint32_t value = ++token;
        while (tokens[token].kind != K::Comma && !Closes(tokens[token].kind) &&
               tokens[token].kind != K::OpenBrace && tokens[token].kind != K::End)
            token = Skip(token);
        if (token == value)
            return false;
        const SGrammarToken& last = tokens[token - 1];
        parameter.value = Shortened(
            {tokens[value].text, static_cast<std::size_t>(last.text + last.size - tokens[value].text)});
        parameter.isOptional = true;
        const std::wstring lower = LowerAscii(parameter.value);
        const bool isNull = lower == L"null" || lower == L"\\null";
        if (isNull && parameter.type.isSet && !isPromoted && !parameter.type.IsMixed())
            parameter.type.mask |= TypeNull;
    }
    if (tokens[token].kind == K::OpenBrace)
        token = Skip(token);
    signature.parameters.push_back(std::move(parameter));
    return true;
}

SSignature CDeclarationReader::Signature(const SBoundMethod& method) const
{
    const CGrammarTokens& tokens = m_scopes.tokens;
    SSignature signature;
    std::uint32_t token = method.token;
    const K before = tokens[token - 1].kind;
    signature.byReference = before == K::BitAnd || before == K::BitAndBeforeVariable;
    signature.isUnknown = tokens[++token].kind != K::OpenRound;
    if (signature.isUnknown)
        return signature;
    ++token;
    while (tokens[token].kind != K::CloseRound) {
        constexpr std::size_t most = 256;
        signature.isUnknown = signature.parameters.size() == most ||
                              !ReadParameter(token, *method.owner, signature) ||
                              (tokens[token].kind != K::Comma && tokens[token].kind != K::CloseRound);
        if (signature.isUnknown)
            return signature;
        token += tokens[token].kind == K::Comma;
    }
    if (tokens[++token].kind == K::Colon)
        signature.result = TypeAt(++token, *method.owner);
    return signature;
}

} // namespace Kesh::CodeAnalyzer
