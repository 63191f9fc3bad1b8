#include "SyntaxParser/PhpScanner.h"

namespace Kesh::SyntaxParser {

using enum EPhpToken;

void CPhpScanner::ScanBracket(EPhpToken token)
{
    switch (token) {
    case OpenRound: {
        const EPlace kind = RoundKind();
        const bool annotate = m_prev == Declare || (Place().kind == EPlace::HookBody && Place().hookHead);
        if (annotate)
            AnnotateFrom(m_places.size() + 1);
        Open(kind, m_prev == Array);
        Token(PhpToken::Opening);
        if (kind == EPlace::FnParams) // parameters are no arguments
            AnnotateFrom(m_places.size());
        break;
    }
    case OpenSquare:
        Open(EPlace::Square, m_prev != Variable && m_prev != Name && m_prev != CloseSquare);
        Token(PhpToken::Opening);
        break;
    case OpenBrace: ScanOpenBrace(); break;
    default: ScanClosing(token); break;
    }
}

void CPhpScanner::Open(EPlace kind, bool isArray)
{
    m_places.push_back({kind});
    Place().isArray = isArray;
    if (isArray)
        m_arrayEnd = nullptr;
    UpdateAnnotated();
}

// What a `(` opens is told by the word before it.
CPhpScanner::EPlace CPhpScanner::RoundKind() const
{
    switch (m_prev) {
    case Function:
    case DeclaredName: return EPlace::FuncParams;
    case Fn: return EPlace::FnParams;
    case Match: return EPlace::MatchHead;
    case If:
    case Elseif:
    case While:
    case For:
    case Foreach:
    case Switch:
    case Catch:
    case Declare: return EPlace::ControlHead;
    case ClosureUse: return EPlace::FuncParams;
    default: return EPlace::Group;
    }
}

void CPhpScanner::ScanOpenBrace()
{
    const EPlace kind = BraceKind();
    const bool inParams = Place().kind == EPlace::FuncParams && StartsHooks();
    SetHookHead(false);
    if (inParams) // the hooks of a promoted property
        AnnotateFrom(m_places.size() + 1);
    Open(kind);
    Token(PhpToken::Opening);
    SetHookHead(kind == EPlace::HookBody && !inParams);
}

// Whether the brace opens the hooks of a promoted property, and not a body whose parameters lack their `)`.
bool CPhpScanner::StartsHooks() const
{
    const wchar_t* p = PeekAt();
    if (*p == L'#') // an attribute
        return true;
    std::wstring word;
    do {
        if (*p == L'&')
            p = m_lexer.SkipBlanks(p + 1);
        const wchar_t* end = m_lexer.SkipWord(p);
        word = LowerWord(p, end);
        p = m_lexer.SkipBlanks(end);
    } while (word == L"final");
    return (word == L"get" || word == L"set") &&
           (*p == L'{' || *p == L'(' || *p == L';' || (*p == L'=' && p[1] == L'>'));
}

CPhpScanner::EPlace CPhpScanner::BraceKind()
{
    if (m_prev == Dollar || m_prev == Arrow || m_prev == DoubleColon)
        return EPlace::OtherBrace;
    if (m_prev == CloseRound && m_lastClosed == EPlace::MatchHead)
        return EPlace::MatchBody;
    if (!m_pendingClasses.empty() && m_pendingClasses.back().depth == m_places.size()) {
        const EPlace body = m_pendingClasses.back().body;
        m_pendingClasses.pop_back();
        return body;
    }
    if (InClassBody() && m_inUse)
        return EPlace::TraitRules;
    if (InClassBody() && !Place().memberIsHead)
        return EPlace::HookBody;
    return EPlace::Block;
}

void CPhpScanner::ScanClosing(EPhpToken token)
{
    const bool endsFnParams = Place().kind == EPlace::FnParams && m_places.size() == m_annotation;
    const bool annotated = m_annotation > 0 && m_places.size() >= m_annotation && !endsFnParams;
    ISynRegion* definition = m_php.TokenDefs[PhpToken::Closing];
    m_emitter.Emit(annotated ? m_php.CommentDefs[PhpComment::Annotation] : definition, m_lexer.Begin(),
                   m_lexer.Cursor());
    if (m_places.size() == 1)
        return;

    m_lastClosed = Place().kind;
    if (Place().isArray)
        m_arrayEnd = m_lexer.Cursor();
    m_places.pop_back();
    if (m_annotation > m_places.size())
        m_annotation = 0;
    if (m_throwDepth > m_places.size())
        m_throwDepth = 0;
    while (!m_pendingClasses.empty() && m_pendingClasses.back().depth > m_places.size())
        m_pendingClasses.pop_back();
    UpdateAnnotated();
    if (token != CloseBrace)
        return;
    // A block ends a statement, a member or a hook.
    m_inUse = false;
    SPlace& place = Place();
    place.memberStarted = place.memberIsHead = false;
    if (place.kind == EPlace::HookBody)
        SetHookHead(true);
}

bool CPhpScanner::InClassBody() const
{
    return m_places.back().kind == EPlace::ClassBody || m_places.back().kind == EPlace::EnumBody;
}

// Whether no statement can begin here.
bool CPhpScanner::InExpressionBrackets() const
{
    switch (m_places.back().kind) {
    case EPlace::Block:
    case EPlace::ClassBody:
    case EPlace::EnumBody:
    case EPlace::TraitRules:
    case EPlace::HookBody: return false;
    default: return true;
    }
}

bool CPhpScanner::IsStatementStart() const
{
    if (InExpressionBrackets())
        return false;
    switch (m_prev) {
    case EPhpToken::End:
    case OpenTag:
    case CloseTag:
    case Semicolon:
    case OpenBrace:
    case Else:
    case Do: return true;
    case CloseBrace: return m_lastClosed != EPlace::MatchBody && m_lastClosed != EPlace::OtherBrace;
    case CloseRound: return m_lastClosed == EPlace::ControlHead;
    case Colon: return m_labelColon;
    default: return false;
    }
}

void CPhpScanner::AnnotateFrom(std::size_t depth)
{
    if (m_annotation == 0)
        m_annotation = depth;
    UpdateAnnotated();
}

} // namespace Kesh::SyntaxParser
