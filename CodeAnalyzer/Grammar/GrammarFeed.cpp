#include "Grammar/GrammarFeed.h"

#include "Grammar/WordVersions.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EPhpTokenClass;
using SyntaxParser::EPhpTokenKind;

namespace {

/// Whether the name of a member follows.
bool ReachesMember(EPhpTokenKind kind)
{
    return kind == EPhpTokenKind::Arrow || kind == EPhpTokenKind::NullsafeArrow ||
           kind == EPhpTokenKind::DoubleColon;
}

using K = EPhpTokenKind;

/// What tokens are fed to: a parse, or a probe that only sees whether they fit.
struct SParseSink
{
    SGrammarParse& parse;

    bool Accepts(TGrammarSymbol symbol) const { return parse.parser.Accepts(symbol); }
    bool Push(TGrammarSymbol symbol, std::uint32_t token) { return parse.parser.Push(symbol, token); }
    void Needs(EFeature feature, std::uint32_t token) { parse.rules.Needs(feature, token); }
    void GiveUp() { parse.parser.Pop(StatementPlaceOf(parse.parser).depth); }
};
struct SProbeSink
{
    CGrammarProbe& probe;

    bool Accepts(TGrammarSymbol symbol) const { return probe.Accepts(symbol); }
    bool Push(TGrammarSymbol symbol, std::uint32_t /*token*/) { return probe.Take(symbol); }
    void Needs(EFeature /*feature*/, std::uint32_t /*token*/) {}
    void GiveUp() { probe.Pop(StatementPlaceOf(probe).depth); }
};

template <class TSink> bool PushKind(TSink& sink, K kind, std::uint32_t token)
{
    return sink.Push(kind == K::Count ? OffsetBraceSymbol() : GrammarSymbol(kind), token);
}

// What no PHP holds is told, and taken for what it was meant to be.
template <class TSink> bool PushBad(TSink& sink, K kind, std::uint32_t token)
{
    switch (kind) {
    case K::BadNumber: PushKind(sink, K::Number, token); break;
    case K::BadString:
    case K::BadHeredoc:
        if (sink.Accepts(GrammarSymbol(K::String)))
            PushKind(sink, K::String, token);
        break;
    case K::BadEscape:
        if (sink.Accepts(GrammarSymbol(K::String)))
            PushKind(sink, K::String, token);
        else if (sink.Accepts(GrammarSymbol(K::StringPart)))
            PushKind(sink, K::StringPart, token);
        break;
    default: break;
    }
    return true;
}

} // namespace

wchar_t CGrammarFeed::NextCharacter(std::uint32_t token) const
{
    const wchar_t* p = m_tokens[token].text + m_tokens[token].size;
    while (*p == L' ' || *p == L'\t' || *p == L'\r' || *p == L'\n')
        ++p;
    return *p;
}

// What a word or a brace is where it stands, and in the version that is asked for.
template <class TSink> EPhpTokenKind CGrammarFeed::KindFor(const TSink& sink, std::uint32_t token) const
{
    const K kind = m_tokens[token].kind;
    if (kind != K::OpenBrace) {
        const K word = WordKind(token);
        const bool wasName = m_version != 0 && m_version < ReservedSince(word) &&
                             !sink.Accepts(GrammarSymbol(word)) && sink.Accepts(GrammarSymbol(K::Identifier));
        return wasName ? K::Identifier : word;
    }
    const K before = token > 0 ? m_tokens[token - 1].kind : K::End;
    if (before != K::Variable && before != K::CloseSquare && before != K::CloseBrace &&
        before != K::Identifier && before != K::String)
        return kind;
    // People write it without a blank; with one it is mostly a body behind a head that was not closed.
    const SGrammarToken& last = m_tokens[token - 1];
    if (last.text + last.size != m_tokens[token].text)
        return kind;
    return !sink.Accepts(GrammarSymbol(kind)) && sink.Accepts(OffsetBraceSymbol()) ? K::Count : kind;
}

// Whether the word leads its line and is no name, since what follows can follow none.
bool CGrammarFeed::IsBehindUnfinishedLine(std::uint32_t token) const
{
    const wchar_t next = NextCharacter(token);
    const bool goesOn =
        next == L'$' || next == L'_' || (next >= L'a' && next <= L'z') || (next >= L'A' && next <= L'Z');
    if (!goesOn || !m_tokens.LeadsLine(token))
        return false;
    switch (m_tokens[token].kind) {
    case K::And:
    case K::As:
    case K::Instanceof:
    case K::Or:
    case K::Xor: return false;
    default: {
        // A word that joins values may follow a name.
        const wchar_t* p = m_tokens[token].text + m_tokens[token].size;
        while (*p == L' ' || *p == L'\t' || *p == L'\n')
            ++p;
        std::wstring word;
        for (; (*p >= L'a' && *p <= L'z') || (*p >= L'A' && *p <= L'Z'); ++p)
            word += *p;
        word = LowerAscii(word);
        return word != L"and" && word != L"or" && word != L"xor" && word != L"instanceof" && word != L"as";
    }
    }
}

// Whether `function` says what is imported, or is itself a name: behind `use`, `const`, or in a group of
// imports.
bool CGrammarFeed::TellsWhatIsImported(std::uint32_t word) const
{
    if (word == 0)
        return false;
    const K before = m_tokens[word - 1].kind;
    return before == K::Const || before == K::Use || before == K::Comma ||
           (before == K::OpenBrace && word > 1 && m_tokens[word - 2].kind == K::Backslash);
}

EPhpTokenKind CGrammarFeed::WordKind(std::uint32_t token) const
{
    const K kind = m_tokens[token].kind;
    const K before = token > 0 ? m_tokens[token - 1].kind : K::End;
    if (!IsWordKind(kind) || kind == K::HaltCompiler)
        return kind;
    // `from` is no part of a member's name.
    if (ReachesMember(before))
        return kind == K::YieldFrom || IsBehindUnfinishedLine(token) ? kind : K::Identifier;
    if (kind == K::Enum && m_version != 0 && m_version < 803 &&
        (NextCharacter(token) == L'/' || NextCharacter(token) == L'#'))
        return K::Identifier; // it declared something only where blanks alone followed
    const bool afterRef = (before == K::BitAnd || before == K::BitAndBeforeVariable) && token > 1;
    const std::uint32_t word = token - (afterRef ? 2 : 1);
    // `function` declares something only where it is no name itself.
    if (kind != K::YieldFrom && (afterRef || token > 0) && m_tokens[word].kind == K::Function &&
        (word == 0 || !ReachesMember(m_tokens[word - 1].kind)) && !TellsWhatIsImported(word))
        return IsBehindUnfinishedLine(token) ? kind : K::Identifier;
    if (kind == K::Match && m_version < 800 && NextCharacter(token) != L'(')
        return K::Identifier;
    if (kind == K::Fn && m_version < 704 && NextCharacter(token) != L'(' && NextCharacter(token) != L'&')
        return K::Identifier;
    return kind;
}

template <class TSink> bool CGrammarFeed::ApplyEdit(TSink& sink, std::uint32_t token, bool& dropped) const
{
    const auto after =
        std::upper_bound(m_edits.begin(), m_edits.end(), token,
                         [](std::uint32_t t, const SGrammarEdit& edit) { return t < edit.token; });
    if (after == m_edits.begin())
        return true;
    const SGrammarEdit& edit = *(after - 1);
    if (edit.token == token) {
        if (edit.givesUp)
            sink.GiveUp();
        for (const K kind : edit.inserted)
            if (!PushKind(sink, kind, token))
                return false;
    }
    dropped = token < edit.token + edit.dropped;
    return true;
}

void CGrammarFeed::AddEdit(const SGrammarEdit& edit)
{
    const auto same = std::find_if(m_edits.begin(), m_edits.end(), [&](const SGrammarEdit& other) {
        return other.token == edit.token && !other.givesUp && other.dropped == 0 && !edit.givesUp;
    });
    if (same != m_edits.end()) {
        same->inserted.insert(same->inserted.end(), edit.inserted.begin(), edit.inserted.end());
        same->dropped = edit.dropped;
        return;
    }
    m_edits.insert(
        std::upper_bound(m_edits.begin(), m_edits.end(), edit.token,
                         [](std::uint32_t t, const SGrammarEdit& other) { return t < other.token; }),
        edit);
}

template <class TSink> bool CGrammarFeed::FeedTo(TSink sink, std::uint32_t token) const
{
    bool dropped = false;
    if (!m_edits.empty() && !ApplyEdit(sink, token, dropped))
        return false;
    if (dropped)
        return true;
    const K kind = m_tokens[token].kind;
    if (!IsWordKind(kind) && kind != K::OpenBrace) {
        if (ClassOf(kind) == EPhpTokenClass::Bad)
            return PushBad(sink, kind, token);
        if (kind == K::OldCast || kind == K::Spaceship)
            sink.Needs(kind == K::OldCast ? EFeature::OldCast : EFeature::Spaceship, token);
        return PushKind(sink, kind, token);
    }
    return PushKind(sink, KindFor(sink, token), token);
}

bool CGrammarFeed::Feed(SGrammarParse& parse, std::uint32_t token) const
{
    if (!FeedTo(SParseSink{parse}, token))
        return false;
    if (m_version != 0 && m_version < 800) [[unlikely]]
        AskOfOldVersion(parse.rules, token);
    return true;
}

// What the grammar takes for a name was none once.
void CGrammarFeed::AskOfOldVersion(CPhpRules& rules, std::uint32_t token) const
{
    const K kind = m_tokens[token].kind;
    const bool isQualified =
        kind == K::QualifiedName || kind == K::FullyQualifiedName || kind == K::RelativeName;
    if (isQualified && HasReservedPart(m_tokens.Text(token), m_version))
        rules.Needs(EFeature::NameKeyword, token);
    else if (IsWordKind(kind) && kind != K::Class && token > 0 && m_tokens[token - 1].kind == K::DoubleColon)
        rules.versions.MemberName(ValueOfToken(token));
}

bool CGrammarFeed::Feed(CGrammarProbe& probe, std::uint32_t token) const
{
    return FeedTo(SProbeSink{probe}, token);
}

} // namespace Kesh::CodeAnalyzer
