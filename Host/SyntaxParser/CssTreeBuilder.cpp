#include "SyntaxParser/CssTreeBuilder.h"

#include "Base/CommonString.h"
#include "SyntaxParser/CssNames.h"
#include "SyntaxParser/HtmlTags.h"
#include "SyntaxParser/OwnNames.h"
#include "SyntaxParser/SPDocument.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Kesh::SyntaxParser {

namespace {

bool IsSpace(wchar_t c)
{
    return c == L' ' || (c >= L'\t' && c <= L'\r' && c != L'\v');
}

// The bracket that ends what `kind` opens; End when it opens nothing.
ECssToken ClosingOf(ECssToken kind)
{
    switch (kind) {
    case ECssToken::Function:
    case ECssToken::ParenOpen: return ECssToken::ParenClose;
    case ECssToken::SquareOpen: return ECssToken::SquareClose;
    case ECssToken::BraceOpen: return ECssToken::BraceClose;
    default: return ECssToken::End;
    }
}

} // namespace

void CCssTreeBuilder::Build(SStretch part, ECssText kind)
{
    const CScanFence fence(m_text, part.end);
    m_scanner.SetPos(part.begin);
    m_blocks.assign(1, kind == ECssText::Sheet ? ECssBlock::Sheet : ECssBlock::Style);
    while (!m_text.IsCancelled()) {
        const SCssToken token = m_scanner.Next();
        switch (token.kind) {
        case ECssToken::End: return;
        case ECssToken::Space:
        case ECssToken::Semicolon: break;
        case ECssToken::BraceOpen: m_blocks.push_back(BlockOfRule(m_blocks.back())); break;
        case ECssToken::BraceClose:
            if (m_blocks.size() > 1)
                m_blocks.pop_back();
            break;
        case ECssToken::AtKeyword: ReadAtRule(token); break;
        default: ReadStatement(token);
        }
    }
}

void CCssTreeBuilder::ReadAtRule(SCssToken keyword)
{
    const SCssToken end = SkipStatement(EBraces::End);
    if (end.kind != ECssToken::BraceOpen)
        return;
    const std::wstring name = LowerName({keyword.place.begin + 1, keyword.place.end});
    if (name == L"nest")
        ReadSelectors({keyword.place.end, end.place.begin});
    m_scanner.SetPos(end.place.end);
    m_blocks.push_back(BlockOfAtRule(name, m_blocks.back()));
}

void CCssTreeBuilder::ReadStatement(SCssToken first)
{
    if (IsMadeStatement(first))
        return;
    SStretch name = first.place;
    SCssToken word = first;
    if (first.kind == ECssToken::Star) {
        word = m_scanner.Next();
        name.end = word.place.end;
    }
    const bool named = word.kind == ECssToken::Ident && NextSignificant().kind == ECssToken::Colon;
    const bool spaced = named && IsSpace(m_text.Scan()[m_scanner.GetPos()]);
    const bool custom = named && m_text.Scanned(name).substr(0, 2) == L"--";
    m_scanner.SetPos(first.place.begin);
    const SCssToken end = SkipStatement(custom ? EBraces::Skip : EBraces::End);

    // No selector has a blank after its colon: "color: red" that runs into a rule lacks its ";".
    if (end.kind != ECssToken::BraceOpen || spaced) {
        if (named)
            AddProperty(name);
    } else {
        ReadSelectors({first.place.begin, end.place.begin});
    }
    m_scanner.SetPos(end.place.begin);
}

bool CCssTreeBuilder::IsMadeStatement(SCssToken first)
{
    if (first.kind != ECssToken::Ident || !m_text.IsMade(first.place))
        return false;
    const SCssToken next = m_scanner.Next();
    switch (next.kind) {
    case ECssToken::Space:
    case ECssToken::Comma:
    case ECssToken::Semicolon:
    case ECssToken::BraceOpen:
    case ECssToken::BraceClose:
    case ECssToken::End: m_scanner.SetPos(next.place.begin); return true;
    default: m_scanner.SetPos(first.place.end); return false;
    }
}

void CCssTreeBuilder::ReadSelectors(SStretch prelude)
{
    const CScanFence fence(m_text, prelude.end);
    const bool keyframes = m_blocks.back() == ECssBlock::Keyframes;
    m_scanner.SetPos(prelude.begin);
    m_selector.clear();
    bool start = true;  // whether an identifier here names an element
    bool named = false; // whether a name stands before, with nothing but blanks between
    for (;;) {
        const SCssToken token = m_scanner.Next();
        switch (token.kind) {
        case ECssToken::End:
            for (const SName& name : m_selector)
                Add(name.place, name.kind);
            return;
        case ECssToken::Space: start = true; continue;
        case ECssToken::Comma:
        case ECssToken::Combinator:
        case ECssToken::Bar:
        case ECssToken::Ampersand: start = true; break;
        case ECssToken::Star:
        case ECssToken::Hash:
        case ECssToken::ParenClose: start = false; break;
        case ECssToken::Period:
            if (m_scanner.Next().kind != ECssToken::Ident)
                return;
            start = false;
            break;
        case ECssToken::Colon: {
            const EPseudo pseudo = ReadPseudo();
            if (pseudo == EPseudo::Wrong)
                return;
            start = pseudo == EPseudo::Selectors;
            break;
        }
        case ECssToken::SquareOpen:
            SkipBrackets(token.kind);
            start = false;
            break;
        case ECssToken::Percentage:
            if (!keyframes)
                return;
            if (named) // a range of the timeline: "entry 25%"
                m_selector.back().kind = GetCssOtherKind();
            break;
        case ECssToken::Ident:
            if (!start)
                return;
            start = false;
            named = ReadElement(token.place);
            continue;
        default: return; // whatever this is, it selects nothing
        }
        named = false;
    }
}

bool CCssTreeBuilder::ReadElement(SStretch place)
{
    const wchar_t* after = m_text.Scan() + place.end;
    if ((after[0] == L'|' && after[1] != L'|') || m_text.IsMade(place))
        return false; // a namespace, or nothing to be read
    // "x:-moz-any-link" names no element on purpose, to be read by one browser only.
    const bool hack = after[0] == L':' && after[after[1] == L':' ? 2 : 1] == L'-';
    const std::wstring name = LowerName(place);
    const bool free = hack || m_text.IsTouched(place) || name.front() == L'-' || name.front() == L'_' ||
                      IsCustomElementName(name) || (m_own && m_own->HasTag(name)) ||
                      m_blocks.back() == ECssBlock::Foreign;
    m_selector.push_back({place, free ? GetCssOtherKind() : GetCssElementNameKind()});
    return true;
}

CCssTreeBuilder::EPseudo CCssTreeBuilder::ReadPseudo()
{
    SCssToken token = m_scanner.Next();
    if (token.kind == ECssToken::Colon)
        token = m_scanner.Next();
    if (token.kind == ECssToken::Ident)
        return EPseudo::Plain;
    if (token.kind != ECssToken::Function)
        return EPseudo::Wrong;
    if (TakesSelectors(LowerName({token.place.begin, token.place.end - 1})))
        return EPseudo::Selectors;
    SkipBrackets(token.kind);
    return EPseudo::Plain;
}

SCssToken CCssTreeBuilder::SkipStatement(EBraces braces)
{
    for (;;) {
        const SCssToken token = m_scanner.Next();
        switch (token.kind) {
        case ECssToken::BraceOpen:
            if (braces == EBraces::Skip) {
                SkipBrackets(token.kind);
                break;
            }
            [[fallthrough]];
        case ECssToken::BraceClose:
        case ECssToken::Semicolon:
        case ECssToken::End: m_scanner.SetPos(token.place.begin); return token;
        case ECssToken::Function:
        case ECssToken::ParenOpen:
        case ECssToken::SquareOpen: SkipBrackets(token.kind); break;
        default: break;
        }
    }
}

void CCssTreeBuilder::SkipBrackets(ECssToken open)
{
    m_brackets.assign(1, ClosingOf(open));
    while (!m_brackets.empty()) {
        const ECssToken kind = m_scanner.Next().kind;
        if (kind == ECssToken::End)
            return;
        if (kind == m_brackets.back())
            m_brackets.pop_back();
        else if (const ECssToken closing = ClosingOf(kind); closing != ECssToken::End)
            m_brackets.push_back(closing);
    }
}

SCssToken CCssTreeBuilder::NextSignificant()
{
    SCssToken token = m_scanner.Next();
    while (token.kind == ECssToken::Space)
        token = m_scanner.Next();
    return token;
}

void CCssTreeBuilder::AddProperty(SStretch place)
{
    switch (m_blocks.back()) {
    case ECssBlock::Style: {
        // "*zoom" and "_height" are meant for one old browser, which reads past the first character.
        const wchar_t first = m_text.Scanned(place).front();
        const bool free = m_text.IsTouched(place) || first == L'*' || first == L'_' ||
                          m_text.Scanned(place).substr(0, 2) == L"--" ||
                          (m_own && m_own->HasProperty(LowerName(place)));
        Add(place, free ? GetCssOtherKind() : GetCssPropertyNameKind());
        break;
    }
    case ECssBlock::Foreign: Add(place, GetCssOtherKind()); break;
    case ECssBlock::Sheet:
    case ECssBlock::Keyframes: break; // rules only
    }
}

void CCssTreeBuilder::Add(SStretch place, ISynRegion* kind)
{
    SSemanticTreeNode node;
    node.kind = SemanticCss;
    node.regionKind = kind;
    node.name = UnescapeCss(m_text.Written(place));
    node.span = m_text.Span(place);
    m_css.Add(0, std::move(node));
}

std::wstring CCssTreeBuilder::LowerName(SStretch place) const
{
    return Base::CCommonString::LowerCaseFast(UnescapeCss(m_text.Scanned(place)));
}

} // namespace Kesh::SyntaxParser
