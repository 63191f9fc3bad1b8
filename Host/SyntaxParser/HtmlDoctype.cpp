#include "SyntaxParser/HtmlDeclarations.h"

namespace Kesh::SyntaxParser {

namespace {

/// The states of a doctype, up to its ">" or the text's end.
class CDoctypeReader
{
public:
    explicit CDoctypeReader(CHtmlCursor& cursor) : m_cursor(cursor), m_begin(cursor.At()) {}

    void Read()
    {
        m_cursor.Skip(9);
        if (!CHtmlCursor::IsSpace(m_cursor.Peek()) && !IsOver())
            m_cursor.Report(EHtmlProblem::MissingWhitespaceBeforeDoctypeName);
        m_cursor.SkipSpaces();
        if (!ReadName())
            return;
        if (m_cursor.IsNext(L"public"))
            ReadPublic();
        else if (m_cursor.IsNext(L"system"))
            ReadSystem();
        else
            Stray(EHtmlProblem::InvalidCharacterSequenceAfterDoctypeName);
    }

private:
    bool IsOver() const { return m_cursor.Peek() == L'>' || m_cursor.IsAtEnd(); }
    bool IsQuote() const { return m_cursor.Peek() == L'"' || m_cursor.Peek() == L'\''; }

    // Reports what stands where it must not, and skips the rest.
    void Stray(EHtmlProblem problem)
    {
        if (m_cursor.Peek() != MarkupIsland)
            m_cursor.Report(problem);
        m_cursor.SkipTo(L'>');
        m_isRestSkipped = true;
    }

    // At the end of the text, which is an error unless the rest is skipped anyway.
    void AtEnd()
    {
        if (m_cursor.IsAtEnd())
            m_cursor.Report(EHtmlProblem::EofInDoctype, {m_begin, m_cursor.At()});
    }

    bool ReadName()
    {
        if (m_cursor.Peek() == L'>')
            m_cursor.Report(EHtmlProblem::MissingDoctypeName);
        while (!IsOver() && !CHtmlCursor::IsSpace(m_cursor.Peek()))
            m_cursor.Skip();
        m_cursor.SkipSpaces();
        AtEnd();
        return !IsOver();
    }

    // The spaces between a keyword and its identifier. False when there is none.
    bool ReadGap(EHtmlProblem noSpace, EHtmlProblem noIdentifier, EHtmlProblem noQuote)
    {
        m_cursor.Skip(6);
        if (IsQuote())
            m_cursor.Report(noSpace);
        m_cursor.SkipSpaces();
        if (IsQuote())
            return true;
        if (m_cursor.Peek() == L'>')
            m_cursor.Report(noIdentifier);
        else if (!m_cursor.IsAtEnd())
            Stray(noQuote);
        return false;
    }

    // False when a ">" or the end comes before the closing quote.
    bool ReadIdentifier(EHtmlProblem abrupt)
    {
        const wchar_t stops[] = {m_cursor.Peek(), L'>'};
        m_cursor.Skip();
        m_cursor.SkipTo(std::wstring_view(stops, 2));
        if (m_cursor.Peek() == L'>')
            m_cursor.Report(abrupt);
        if (IsOver())
            return false;
        m_cursor.Skip();
        return true;
    }

    void ReadPublic()
    {
        if (ReadGap(EHtmlProblem::MissingWhitespaceAfterDoctypePublicKeyword,
                    EHtmlProblem::MissingDoctypePublicIdentifier,
                    EHtmlProblem::MissingQuoteBeforeDoctypePublicIdentifier) &&
            ReadIdentifier(EHtmlProblem::AbruptDoctypePublicIdentifier)) {
            if (IsQuote())
                m_cursor.Report(EHtmlProblem::MissingWhitespaceBetweenDoctypePublicAndSystemIdentifiers);
            m_cursor.SkipSpaces();
            if (IsQuote())
                ReadSystemIdentifier();
            else if (!IsOver())
                Stray(EHtmlProblem::MissingQuoteBeforeDoctypeSystemIdentifier);
        }
        Finish();
    }

    void ReadSystem()
    {
        if (ReadGap(EHtmlProblem::MissingWhitespaceAfterDoctypeSystemKeyword,
                    EHtmlProblem::MissingDoctypeSystemIdentifier,
                    EHtmlProblem::MissingQuoteBeforeDoctypeSystemIdentifier))
            ReadSystemIdentifier();
        Finish();
    }

    void ReadSystemIdentifier()
    {
        if (!ReadIdentifier(EHtmlProblem::AbruptDoctypeSystemIdentifier))
            return;
        m_cursor.SkipSpaces();
        if (!IsOver())
            Stray(EHtmlProblem::UnexpectedCharacterAfterDoctypeSystemIdentifier);
    }

    void Finish()
    {
        if (!m_isRestSkipped)
            AtEnd();
    }

    CHtmlCursor& m_cursor;
    std::size_t m_begin;
    bool m_isRestSkipped = false;
};

} // namespace

SHtmlToken ReadHtmlDoctype(CHtmlCursor& cursor)
{
    SHtmlToken token;
    token.kind = EHtmlTokenKind::Doctype;
    token.span.begin = cursor.At();
    CDoctypeReader(cursor).Read();
    token.unfinished = cursor.IsAtEnd();
    cursor.Skip(token.unfinished ? 0 : 1);
    token.span.end = cursor.At();
    return token;
}

} // namespace Kesh::SyntaxParser
