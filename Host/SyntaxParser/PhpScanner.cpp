#include "SyntaxParser/PhpScanner.h"

#include "SyntaxParser/SPDocument.h"

#include <algorithm>
#include <utility>

namespace Kesh::SyntaxParser {

using enum EPhpToken;

namespace {

/// How far ahead of its use a text is asked for: it is read once, and then mostly not from a cache.
constexpr std::ptrdiff_t ReadAhead = 256;

/// How much is read between two looks at the cancel flag.
constexpr std::ptrdiff_t LookInterval = 1 << 16;

} // namespace

CPhpScanner::CPhpScanner(std::wstring_view text, const std::vector<IStateRegionHandler*>& handlers,
                         const std::vector<ITokenHandler*>& tokenHandlers, bool shortTags)
    : m_lexer(text, shortTags),
      m_emitter(text.data(), handlers),
      m_tokens(text, tokenHandlers),
      m_php(GetDefRegions()->Php),
      m_text(text.data()),
      m_places(1)
{
    const auto fix = [this](EPhpToken token, ISynRegion* kind) {
        m_fixedKinds[static_cast<std::size_t>(token)] = kind;
    };
    fix(Variable, m_php.VarDefs[PhpVar::Variable]);
    fix(Number, m_php.TokenDefs[PhpToken::Number]);
    fix(CarriedOp, m_php.TokenDefs[PhpToken::Dot]);
    fix(Assign, m_php.TokenDefs[PhpToken::Assign]);
    fix(Arrow, m_php.TokenDefs[PhpToken::Arrow]);
    fix(Comma, m_php.TokenDefs[PhpToken::Comma]);
    for (EPhpToken token : {Symbol, DoubleColon, Backslash})
        fix(token, m_php.TokenDefs[PhpToken::Text]);
}

bool CPhpScanner::Run(std::vector<SIsland>* islands, const SGiveUp* giveUp)
{
    m_islands = islands;
    const wchar_t* p = m_text;
    const wchar_t* pause = p; // up to there nothing need be thought of but reading ahead
    for (;;) {
        if (m_lexer.IsInPhp() && CPhpLexer::IsBlank(*p))
            p = m_emitter.EmitWhile(m_php.TokenDefs[PhpToken::Text], p, &CPhpLexer::IsBlank);
        if (p < pause) {
            __builtin_prefetch(p + ReadAhead);
        } else {
            if (giveUp && giveUp->IsSet())
                return false;
            if (const std::ptrdiff_t left = m_lexer.Limit() - p; left > ReadAhead)
                pause = p + std::min(left - ReadAhead, LookInterval);
        }
        const auto [end, token, kind] = m_lexer.Next(p);
        if (token == End)
            break;
        // Tokens go ahead of their regions, so that the emitter's line is still the one where they begin.
        if (m_tokens.IsWanted() && kind != EPhpTokenKind::Count)
            TokensHere().Write(kind, p, end);
        if (ISynRegion* kind = m_fixedKinds[static_cast<std::size_t>(token)]) {
            m_emitter.Emit(Kind(kind), p, end);
            m_prev = token;
            m_halt = 0;
            p = end;
        } else {
            m_lexer.Take(p, end);
            Scan(token);
            p = m_lexer.Cursor();
        }
    }
    if (m_tokens.IsWanted())
        TokensHere().Finish();
    if (m_islands && m_islandBegin)
        m_islands->push_back({static_cast<std::size_t>(m_islandBegin - m_text),
                              static_cast<std::size_t>(m_lexer.Limit() - m_text)});
    return true;
}

CPhpTokenWriter& CPhpScanner::TokensHere()
{
    m_tokens.Seek(m_emitter.Line(), m_emitter.LineStart());
    return m_tokens;
}

void CPhpScanner::Scan(EPhpToken token)
{
    m_actual = token;
    switch (token) {
    case Blank: EmitPiece(m_php.TokenDefs[PhpToken::Text], m_lexer.Begin(), m_lexer.Cursor()); return;
    case LineComment:
    case HashComment:
    case BlockComment:
    case DocComment:
    case Attribute: ScanComment(token); return;
    case Html: EmitPiece(m_php.TokenDefs[PhpToken::Outside], m_lexer.Begin(), m_lexer.Cursor()); return;
    case OpenTag:
        m_islandBegin = m_lexer.Begin();
        EmitPiece(m_php.TagDefs[PhpTag::Opening], m_lexer.Begin(), m_lexer.Cursor());
        break;
    case OpenTagEcho: { // `<?` and a `=` that acts like `echo`
        const wchar_t* equals = m_lexer.Cursor() - 1;
        m_islandBegin = m_lexer.Begin();
        EmitPiece(m_php.TagDefs[PhpTag::Opening], m_lexer.Begin(), equals);
        EmitPiece(m_php.TokenDefs[PhpToken::ArgumentWord], equals, m_lexer.Cursor());
        break;
    }
    case CloseTag:
        EmitPiece(m_php.TagDefs[PhpTag::Closing], m_lexer.Begin(), m_lexer.Cursor());
        if (m_islands && m_islandBegin)
            m_islands->push_back({static_cast<std::size_t>(m_islandBegin - m_text),
                                  static_cast<std::size_t>(m_lexer.Cursor() - m_text)});
        m_islandBegin = nullptr;
        EndStatement();
        break;
    case Dollar:
        if (*m_lexer.Cursor() == L'$' || CPhpLexer::IsWordStart(*m_lexer.Cursor()))
            Emit(m_php.VarDefs[PhpVar::ExtraDollar]);
        else
            Token(PhpToken::Text);
        break;
    case SingleQuote: ScanString(L'\''); break;
    case DoubleQuote: ScanString(L'"'); break;
    case Backtick: ScanString(L'`'); break;
    case Heredoc: ScanHeredoc(); break;
    case OpenRound:
    case OpenSquare:
    case OpenBrace:
    case CloseRound:
    case CloseSquare:
    case CloseBrace: ScanBracket(token); break;
    case Name:
    case QualifiedName: ScanWord(token); break;
    default:
        if (token < Abstract)
            ScanOperator(token);
        else
            ScanReservedWord(token);
        break;
    }
    m_prev = m_actual;
    if (m_halt > 0)
        ScanDataAfterHalt(token);
}

void CPhpScanner::ScanComment(EPhpToken token)
{
    if (m_tokens.IsWanted()) {
        if (token == Attribute)
            TokensHere().WriteAttribute(m_lexer.Begin(), m_lexer.Cursor());
        else if (token != LineComment)
            TokensHere().WriteComment(m_lexer.Begin(), m_lexer.Cursor());
    }
    switch (token) {
    case LineComment: Comment(PhpComment::Line); break;
    case HashComment: Comment(PhpComment::Hash); break;
    case BlockComment: Comment(PhpComment::Block); break;
    case DocComment: Comment(PhpComment::Doc); break;
    default: Comment(PhpComment::Attribute); break;
    }
}

void CPhpScanner::ScanOperator(EPhpToken token)
{
    switch (token) {
    case DoubleArrow: ScanDoubleArrow(); break;
    case Semicolon: ScanSemicolon(); break;
    case Colon: ScanColon(); break;
    case Question:
        ++Place().ternaries;
        Token(PhpToken::Text);
        break;
    case Ampersand: // what `function &` and `fn &` begin is told by the word
        if (m_prev == Fn || m_prev == Function)
            m_actual = m_prev;
        if (m_prev == Fn)
            Comment(PhpComment::Annotation);
        else
            Token(PhpToken::Text);
        break;
    default: break;
    }
}

// The arrows of `fn` and of `match` are no key arrows; that of a hook begins a statement. To the parsers an
// array in a key is the whole element, and a key arrow after it one too many.
void CPhpScanner::ScanDoubleArrow()
{
    const bool ofFn = (m_prev == CloseRound || m_prev == ReturnType) && m_lastClosed == EPlace::FnParams;
    if (Place().kind == EPlace::HookBody && Place().hookHead) {
        Comment(PhpComment::Annotation);
        SetHookHead(false);
    } else if (ofFn || Place().kind == EPlace::MatchBody || EndsKeyWithArray()) {
        Token(PhpToken::Dot);
    } else {
        Token(PhpToken::DoubleArrow);
    }
}

bool CPhpScanner::EndsKeyWithArray()
{
    if (!Place().isArray || !m_arrayEnd)
        return false;
    const wchar_t* const begin = std::exchange(m_arrayEnd, nullptr);
    return std::find(begin, m_lexer.Begin(), L',') == m_lexer.Begin();
}

void CPhpScanner::ScanColon()
{
    const bool afterParams =
        m_prev == CloseRound && (m_lastClosed == EPlace::FuncParams || m_lastClosed == EPlace::FnParams);
    m_labelColon = false;
    if (afterParams) {
        // In a label a plain `:` would be its end.
        Token(Place().caseLabel && m_lastClosed == EPlace::FnParams ? PhpToken::Dot : PhpToken::Text);
        ScanReturnType();
    } else if (!m_pendingClasses.empty() && m_pendingClasses.back().body == EPlace::EnumBody &&
               m_pendingClasses.back().depth == m_places.size()) {
        Comment(PhpComment::Annotation); // with the type that follows
        m_enumType = true;
    } else if (Place().ternaries > 0) {
        --Place().ternaries;
        if (Place().caseLabel && m_prev == Question)
            Comment(PhpComment::Annotation);
        else
            Token(Place().caseLabel ? PhpToken::Dot : PhpToken::Text);
    } else {
        m_labelColon = !InExpressionBrackets();
        Place().caseLabel = false;
        Token(PhpToken::Text);
    }
}

// A return type, however it is composed, is one word.
void CPhpScanner::ScanReturnType()
{
    const wchar_t* begin = PeekAt();
    const wchar_t* end = begin;
    int depth = 0;
    bool afterName = false;
    for (const wchar_t* p = begin; p < m_lexer.Limit(); p = m_lexer.SkipBlanks(p)) {
        const bool isWord = CPhpLexer::IsWordStart(*p);
        if (isWord && afterName)
            break;
        if (isWord) {
            p = m_lexer.SkipWord(p);
        } else if (*p == L'\\' || *p == L'|' || *p == L'&' || *p == L'?') {
            ++p;
        } else if (*p == L'(') {
            ++depth;
            ++p;
        } else if (*p == L')' && depth > 0) {
            --depth;
            ++p;
        } else {
            break;
        }
        afterName = isWord;
        end = p;
    }
    // Blanks and comments before the type are regions of their own; the caller's token has been emitted.
    while (m_lexer.Cursor() < begin)
        Scan(m_lexer.Next());
    if (end == begin)
        return;
    m_lexer.SetCursor(end);
    if (m_tokens.IsWanted())
        TokensHere().WriteStretch(begin, end);
    EmitPiece(Kind(m_php.TokenDefs[NameKind(begin, end)]), begin, end);
    m_actual = ReturnType;
}

void CPhpScanner::ScanSemicolon()
{
    if (Place().kind == EPlace::FnParams) { // they were never closed
        m_annotation = 0;
        UpdateAnnotated();
    }
    // The `;` of a closure inside a thrown expression does not end the `throw`.
    if (m_throwDepth > 0 && m_places.size() > m_throwDepth) {
        Token(PhpToken::Text);
    } else {
        Token(PhpToken::Semicolon);
    }
    EndStatement();
}

// After a `;` or the closing tag.
void CPhpScanner::EndStatement()
{
    if (m_places.size() <= m_throwDepth)
        m_throwDepth = 0;
    SPlace& place = Place();
    place.ternaries = 0;
    place.memberStarted = place.memberIsHead = false;
    SetHookHead(place.kind == EPlace::HookBody);
    while (!m_pendingClasses.empty() && m_pendingClasses.back().depth >= m_places.size())
        m_pendingClasses.pop_back();
    m_inConst = m_inUse = m_enumType = false;
    place.caseLabel = false;
}

void CPhpScanner::ScanString(wchar_t quote)
{
    const bool isCommand = quote == L'`';
    ISynRegion* start = Kind(m_php.TokenDefs[isCommand ? PhpToken::Text : PhpToken::StringStart]);
    ISynRegion* end = Kind(m_php.TokenDefs[isCommand ? PhpToken::Text : PhpToken::StringEnd]);
    ISynRegion* content = Kind(m_php.TokenDefs[PhpToken::StringContent]);

    const wchar_t* begin = m_lexer.Cursor();
    auto [close, mayHoldLines] = m_lexer.FindQuote(begin, quote);
    if (m_tokens.IsWanted())
        TokensHere().WriteString(m_lexer.Begin(), begin, close);
    m_emitter.Emit(start, m_lexer.Begin(), begin);
    if (mayHoldLines)
        m_emitter.EmitLines(content, begin, close);
    else if (close > begin)
        m_emitter.Emit(content, begin, close);
    if (close < m_lexer.Limit()) {
        m_emitter.Emit(end, close, close + 1);
        ++close;
    }
    m_lexer.SetCursor(close);
}

void CPhpScanner::ScanHeredoc()
{
    const bool leads = LeadsControl();
    const wchar_t* arrows = m_lexer.Cursor() - 3;
    const CPhpLexer::SHeredoc heredoc = m_lexer.FindHeredoc(m_lexer.Cursor());
    if (m_tokens.IsWanted())
        TokensHere().WriteHeredoc(m_lexer.Begin(), heredoc);
    if (arrows > m_lexer.Begin()) // the prefix of a binary string
        m_emitter.Emit(m_php.CommentDefs[PhpComment::Annotation], m_lexer.Begin(), arrows);
    m_lexer.Take(arrows, heredoc.end);
    const auto send = [this](int kind, const wchar_t* begin, const wchar_t* end) {
        EmitPiece(Kind(m_php.TokenDefs[kind]), begin, end);
    };
    if (leads && heredoc.closing) {
        send(PhpToken::StringStart, arrows, heredoc.body);
        send(PhpToken::StringContent, heredoc.body, heredoc.closing);
        send(PhpToken::StringEnd, heredoc.closing, heredoc.end);
    } else {
        send(PhpToken::Text, arrows, arrows + 3);
        send(heredoc.closing ? PhpToken::Heredoc : PhpToken::StringContent, arrows + 3, heredoc.end);
    }
}

// Whether an operand read now is the first of a condition or of a `case`: the parsers of those know a string
// by its start only.
bool CPhpScanner::LeadsControl() const
{
    return m_prev == Case || (m_prev == OpenRound && m_places.back().kind == EPlace::ControlHead);
}

// `__halt_compiler ( ) ;`: after its last token comes data.
void CPhpScanner::ScanDataAfterHalt(EPhpToken token)
{
    if (--m_halt > 0 && token != CloseTag)
        return;
    m_halt = 0;
    if (token == Semicolon && m_lexer.Cursor() < m_lexer.Limit()) {
        const wchar_t* begin = m_lexer.Cursor();
        m_lexer.SetCursor(m_lexer.Limit());
        EmitPiece(m_php.CommentDefs[PhpComment::Data], begin, m_lexer.Limit());
    }
}

void CPhpScanner::EmitPiece(ISynRegion* definition, const wchar_t* begin, const wchar_t* end)
{
    m_emitter.EmitLines(definition, begin, end);
}

void CPhpScanner::Emit(ISynRegion* definition)
{
    m_emitter.Emit(Kind(definition), m_lexer.Begin(), m_lexer.Cursor());
}

wchar_t CPhpScanner::Peek() const
{
    const wchar_t* p = PeekAt();
    return p < m_lexer.Limit() ? *p : L'\0';
}

} // namespace Kesh::SyntaxParser
