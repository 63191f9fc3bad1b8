#include "SyntaxParser/HtmlRawText.h"

#include "SyntaxParser/HtmlReferences.h"

namespace Kesh::SyntaxParser {

namespace {

bool IsNameEnd(wchar_t c)
{
    return CHtmlCursor::IsSpace(c) || c == L'/' || c == L'>';
}

bool IsEndTag(const CHtmlCursor& cursor, std::wstring_view tag)
{
    return cursor.Peek(1) == L'/' && cursor.IsNext(tag, 2) && IsNameEnd(cursor.Peek(2 + tag.size()));
}

/// The states of a script's text, in which what looks like a comment may hold end tags.
class CScriptText
{
public:
    explicit CScriptText(CHtmlCursor& cursor) : m_cursor(cursor) {}

    void Skip()
    {
        for (m_cursor.SkipTo(m_stops); !m_cursor.IsAtEnd(); m_cursor.SkipTo(m_stops)) {
            if (m_cursor.Peek() == L'-')
                ReadDash();
            else if (IsEndTag(m_cursor, L"script") && m_state != EState::DoubleEscaped)
                return;
            else
                ReadLessThan();
        }
        if (m_state != EState::Plain)
            m_cursor.Report(EHtmlProblem::EofInScriptHtmlCommentLikeText, {m_escape, m_cursor.At()});
    }

private:
    enum class EState { Plain, Escaped, DoubleEscaped };

    void Enter(EState state)
    {
        m_state = state;
        m_stops = state == EState::Plain ? L"<" : L"<-";
    }

    void ReadLessThan()
    {
        if (m_state == EState::Plain && m_cursor.IsNext(L"<!--")) {
            m_escape = m_cursor.At();
            Enter(EState::Escaped);
            m_cursor.Skip(2); // its dashes may belong to the end as well
            return;
        }
        m_cursor.Skip();
        if (m_state == EState::Escaped && IsScriptNext())
            Enter(EState::DoubleEscaped);
        else if (m_state == EState::DoubleEscaped && m_cursor.Peek() == L'/') {
            m_cursor.Skip();
            if (IsScriptNext())
                Enter(EState::Escaped);
        }
    }

    bool IsScriptNext() const { return m_cursor.IsNext(L"script") && IsNameEnd(m_cursor.Peek(6)); }

    void ReadDash()
    {
        std::size_t dashes = 0;
        while (m_cursor.Peek() == L'-') {
            m_cursor.Skip();
            ++dashes;
        }
        if (dashes >= 2 && m_cursor.Peek() == L'>')
            Enter(EState::Plain);
    }

    CHtmlCursor& m_cursor;
    EState m_state = EState::Plain;
    std::wstring_view m_stops = L"<";
    std::size_t m_escape = 0; ///< where the comment began
};

} // namespace

void SkipHtmlRawText(CHtmlCursor& cursor, std::wstring_view tag)
{
    if (tag == L"plaintext") {
        cursor.MoveTo(cursor.Size());
        return;
    }
    if (tag == L"script") {
        CScriptText(cursor).Skip();
        return;
    }
    const bool hasReferences = tag == L"textarea" || tag == L"title";
    const std::wstring_view stops = hasReferences ? L"<&" : L"<";
    for (cursor.SkipTo(stops); !cursor.IsAtEnd(); cursor.SkipTo(stops)) {
        if (cursor.Peek() == L'&')
            ReadHtmlReference(cursor, false);
        else if (IsEndTag(cursor, tag))
            return;
        else
            cursor.Skip();
    }
}

} // namespace Kesh::SyntaxParser
