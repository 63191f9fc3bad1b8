#include "SyntaxParser/PhpScanner.h"

#include <algorithm>
#include <array>
#include <string>

namespace Kesh::SyntaxParser {

using enum EPhpToken;

std::wstring CPhpScanner::LowerWord(const wchar_t* begin, const wchar_t* end)
{
    std::wstring word(begin, end);
    std::transform(word.begin(), word.end(), word.begin(),
                   [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c | 0x20 : c; });
    return word;
}

// The word "php" is blank to the parsers, for the sake of short tags, and begins nothing; a name must do
// both.
PhpToken::EIndex CPhpScanner::NameKind(const wchar_t* begin, const wchar_t* end) const
{
    const bool isBlank = end - begin == 3 && m_prev != OpenTag && LowerWord(begin, end) == L"php";
    if (!isBlank)
        return PhpToken::Word;
    const bool beginsValue =
        m_prev == Case || m_prev == Assign || m_places.back().kind == EPlace::ControlHead;
    return beginsValue ? PhpToken::Keyword : PhpToken::ConstantWord;
}

void CPhpScanner::ScanWord(EPhpToken /*token*/)
{
    Place().memberStarted = true;
    if (m_prev == Function) {
        Emit(m_php.ExtraDefs[PhpExtra::DeclaredName]);
        m_actual = DeclaredName;
    } else if (m_enumType) {
        m_enumType = false;
        Comment(PhpComment::Annotation);
    } else if (const PhpToken::EIndex kind = NameKind(m_lexer.Begin(), m_lexer.Cursor()); IsEnumCase()) {
        Token(kind == PhpToken::Word ? PhpToken::ConstantWord : kind);
    } else if (kind != PhpToken::Word && Peek() == L'(') {
        Emit(m_php.ExtraDefs[PhpExtra::CalledWord]);
    } else {
        Token(kind);
    }
}

// The name of a case may be a word that would begin something else.
bool CPhpScanner::IsEnumCase() const
{
    return m_prev == Case && m_places.back().kind == EPlace::EnumBody;
}

// Whether a reserved word only names something here.
bool CPhpScanner::IsNamePlace(EPhpToken token) const
{
    if (m_prev == Arrow || m_prev == DoubleColon || m_prev == Namespace)
        return true;
    // Keywords and modifiers have a meaning among the rules for traits.
    if (m_places.back().kind == EPlace::TraitRules)
        return token != Keyword && token != Abstract && token != Final && token != Static;
    if ((m_prev == Comma || m_prev == OpenRound) && IsArgumentName())
        return true;
    // The name of a constant is followed by `=`.
    if (m_inConst || m_prev == Const) {
        const wchar_t* p = PeekAt();
        return *p == L'=' && p[1] != L'=' && p[1] != L'>';
    }
    return false;
}

// `name:` in an argument list.
bool CPhpScanner::IsArgumentName() const
{
    if (m_places.back().kind != EPlace::Group)
        return false;
    const wchar_t* p = PeekAt();
    return *p == L':' && p[1] != L':';
}

void CPhpScanner::ScanReservedWord(EPhpToken token)
{
    if (m_prev == Function) {
        Emit(m_php.ExtraDefs[PhpExtra::DeclaredName]);
        m_actual = DeclaredName;
        return;
    }
    if (IsEnumCase()) {
        Token(PhpToken::ConstantWord);
        m_actual = Name;
        return;
    }
    if (IsNamePlace(token)) {
        Token(PhpToken::Word);
        m_actual = Name;
        return;
    }

    const wchar_t next = token == Array || token == List || token == Match || token == Fn || token == Readonly
                             ? Peek()
                             : L'\0';
    bool isName = false;
    switch (token) {
    case Array:
    case List: isName = next != L'('; break;
    case Match: isName = next != L'('; break;
    case Fn: isName = next != L'(' && next != L'&'; break;
    case Readonly: isName = next == L'(' && !InClassBody() && Place().kind != EPlace::FuncParams; break;
    default: break;
    }
    if (isName) {
        Token(PhpToken::Word);
        m_actual = Name;
        return;
    }

    switch (token) {
    case Match:
    case Fn: Emit(m_php.ExtraDefs[PhpExtra::CalledWord]); break;
    case New: Token(PhpToken::PrefixWord); break;
    case IncludeWord: // `yield from` may be cut by a line break
        EmitPiece(Kind(m_php.TokenDefs[PhpToken::ArgumentWord]), m_lexer.Begin(), m_lexer.Cursor());
        break;
    case ConstantWord: Token(PhpToken::ConstantWord); break;
    case HaltCompiler:
        Emit(m_php.ExtraDefs[PhpExtra::CalledWord]);
        m_halt = 4;
        break;
    case Declare: Comment(PhpComment::Annotation); break;
    case Function:
        Place().memberIsHead = true;
        if (m_inUse) // what it imports is not declared here
            m_actual = Keyword;
        Emit(m_php.ExtraDefs[PhpExtra::Function]);
        break;
    case Use:
        Place().memberIsHead = true;
        if (m_prev == CloseRound && m_lastClosed == EPlace::FuncParams)
            m_actual = ClosureUse;
        else
            m_inUse = true;
        Token(PhpToken::Keyword);
        break;
    case Const:
        m_inConst = !m_inUse;
        Token(PhpToken::Keyword);
        break;
    case Case:
        Place().ternaries = 0;
        Place().caseLabel = true;
        Token(PhpToken::Keyword);
        break;
    case Default:
        if (Place().kind == EPlace::MatchBody) {
            Token(PhpToken::Word);
        } else {
            Place().ternaries = 0;
            Token(PhpToken::Keyword);
        }
        break;
    case Throw: {
        const bool isStatement = IsStatementStart();
        if (isStatement && m_throwDepth == 0)
            m_throwDepth = m_places.size();
        Token(isStatement ? PhpToken::Keyword : PhpToken::PrefixWord);
        break;
    }
    case Class:
        m_pendingClasses.push_back({m_places.size(), EPlace::ClassBody});
        Emit(m_php.ClassDefs[PhpClass::Class]);
        break;
    case Interface:
        m_pendingClasses.push_back({m_places.size(), EPlace::ClassBody});
        Emit(m_php.InterfaceDefs[PhpInterface::Interface]);
        break;
    case Trait:
        m_pendingClasses.push_back({m_places.size(), EPlace::ClassBody});
        Token(PhpToken::Keyword);
        break;
    case Enum: ScanEnum(); break;
    case Static: ScanStatic(); break;
    case Abstract:
    case Final:
    case Readonly:
    case Var: ScanModifier(token); break;
    default: Token(PhpToken::Keyword); break;
    }
    Place().memberStarted = true;
}

// `enum` followed by a name declares one; anywhere else it is a name itself.
void CPhpScanner::ScanEnum()
{
    const wchar_t* begin = PeekAt();
    const std::wstring name = LowerWord(begin, m_lexer.SkipWord(begin));
    if (begin == m_lexer.Cursor() || name.empty() || name == L"extends" || name == L"implements") {
        Token(PhpToken::Word);
        m_actual = Name;
        return;
    }
    m_pendingClasses.push_back({m_places.size(), EPlace::EnumBody});
    Emit(m_php.ClassDefs[PhpClass::Class]);
}

void CPhpScanner::ScanStatic()
{
    const wchar_t* next = PeekAt();
    const std::wstring word = LowerWord(next, m_lexer.SkipWord(next));
    const bool isClosure = word == L"fn" || (word == L"function" && !InClassBody());
    const bool isType = m_prev == New || m_prev == Keyword || (*next == L':' && next[1] == L':') ||
                        InExpressionBrackets() || m_prev == Question || m_prev == Symbol;
    if (isClosure)
        Token(PhpToken::PrefixWord);
    else if (isType && !(m_prev == Keyword && (InClassBody())))
        Token(PhpToken::ConstantWord);
    else
        Token(PhpToken::Keyword);
}

// A modifier that no parser knows is nothing to them; one that stands alone before a property stands for the
// word that declares it.
void CPhpScanner::ScanModifier(EPhpToken token)
{
    const bool first = InClassBody() && !Place().memberStarted;
    if (token == Var || (first && DeclaresBareProperty()))
        Emit(m_php.VarDefs[PhpVar::PropertyWord]);
    else if (token == Readonly)
        Comment(PhpComment::Annotation);
    else
        Token(PhpToken::Keyword);
}

// Whether a variable follows, after other modifiers and a type, without a word that already declares it.
bool CPhpScanner::DeclaresBareProperty() const
{
    static constexpr std::array<std::wstring_view, 10> others{L"public", L"protected", L"private", L"static",
                                                              L"var",    L"function",  L"const",   L"class",
                                                              L"use",    L"case"};
    for (const wchar_t* p = PeekAt(); p < m_lexer.Limit(); p = m_lexer.SkipBlanks(p)) {
        if (*p == L'$')
            return true;
        if (CPhpLexer::IsWordStart(*p)) {
            const wchar_t* end = m_lexer.SkipWord(p);
            if (std::find(others.begin(), others.end(), LowerWord(p, end)) != others.end())
                return false;
            p = end;
        } else if (*p == L'?' || *p == L'|' || *p == L'&' || *p == L'\\' || *p == L'(' || *p == L')') {
            ++p;
        } else {
            return false;
        }
    }
    return false;
}

} // namespace Kesh::SyntaxParser
