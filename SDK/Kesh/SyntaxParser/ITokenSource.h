#pragma once

#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/Position.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace Kesh::SyntaxParser {

class ISPDocument;

/// The PHP tokens, one kind for every operator and word of the grammar. A word has the kind of its spelling
/// wherever it stands, but for `enum`, which is an Identifier where no enumeration follows.
enum class EPhpTokenKind : std::uint8_t {
#define PHP_TOKEN(kind, tokenClass, symbol, text) kind,
#include "Kesh/SyntaxParser/PhpTokens.def"
#undef PHP_TOKEN
    Count
};

/// What sort of token a kind is.
enum class EPhpTokenClass : std::uint8_t {
    Piece,       ///< a name, a literal, a tag or a part of a string
    Bad,         ///< what no PHP holds
    Punctuation, ///< brackets, separators, arrows
    Operator,
    Word ///< a reserved word, which may name a member all the same
};

/// By kind. Outside of the functions below: there they would be made anew for each call.
inline constexpr EPhpTokenClass PhpTokenClasses[] = {
#define PHP_TOKEN(kind, tokenClass, symbol, text) EPhpTokenClass::tokenClass,
#include "Kesh/SyntaxParser/PhpTokens.def"
#undef PHP_TOKEN
};
inline constexpr std::wstring_view PhpTokenTexts[] = {
#define PHP_TOKEN(kind, tokenClass, symbol, text) L##text,
#include "Kesh/SyntaxParser/PhpTokens.def"
#undef PHP_TOKEN
};

constexpr EPhpTokenClass ClassOf(EPhpTokenKind kind)
{
    return PhpTokenClasses[static_cast<std::size_t>(kind)];
}

/// How a token of the kind is written, where it is always written alike (a word in any case); else empty.
constexpr std::wstring_view TextOf(EPhpTokenKind kind)
{
    return PhpTokenTexts[static_cast<std::size_t>(kind)];
}

/// One token, valid only during the call that delivers it.
struct SPhpToken
{
    EPhpTokenKind kind = EPhpTokenKind::End;
    CIterator start;
    CIterator end;          ///< just after the last character
    std::wstring_view text; ///< its characters stay until the pass has ended
};

/// Receives the PHP tokens of each pass, without blanks and comments: BeginTokens, AddToken for each in
/// document order, EndTokens, all before the AfterParse of the region handlers. The thread that parses.
class ITokenHandler
{
public:
    /// True takes part in the pass; otherwise nothing more of it comes.
    virtual bool BeginTokens() = 0;
    virtual void AddToken(const SPhpToken& token) = 0;
    /// `end` is the end of the text.
    virtual void EndTokens(CIterator end) = 0;
    /// As AddToken for each of `count` tokens, for a host that has several at hand.
    virtual void AddTokens(const SPhpToken* tokens, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i)
            AddToken(tokens[i]);
    }

protected:
    ~ITokenHandler() = default;
};

/// Hands on the PHP tokens from which the regions are made; a document component by the name "ITokenSource",
/// which a host need not have.
class ITokenSource : public SDK::IComponent1<ISPDocument>
{
public:
    /// Registers `handler` for every later pass. It stays owned by the caller and must live as long as the
    /// document is parsed.
    virtual void AddTokenHandler(ITokenHandler* handler) = 0;
    /// The text of the pass that is under way, followed by a NUL character; empty for a host that cuts a text
    /// only once.
    virtual std::wstring_view GetText() const { return {}; }
    /// The tokens of a piece of code that stands at `place`: of that text, cut otherwise than before, or of
    /// any other. `code` is followed by a NUL character, and is what their texts are part of.
    virtual std::vector<SPhpToken> Cut(std::wstring_view /*code*/, CIterator /*place*/) const { return {}; }

protected:
    ~ITokenSource() = default;
};

} // namespace Kesh::SyntaxParser
