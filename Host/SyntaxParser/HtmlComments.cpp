#include "SyntaxParser/HtmlDeclarations.h"

namespace Kesh::SyntaxParser {

namespace {

// The state after "<" in a comment.
void ReadLessThan(CHtmlCursor& cursor)
{
    if (!cursor.IsNext(L"<!--"))
        return;
    // One that closes the comment at once is the comment's own end.
    const bool isEnd = cursor.Peek(4) == L'>' || cursor.At() + 4 == cursor.Size();
    if (!isEnd && cursor.Peek(4) != MarkupIsland)
        cursor.Report(EHtmlProblem::NestedComment, {cursor.At(), cursor.At() + 4});
}

// The states from "--" on. True when the comment ends there.
bool ReadEnd(CHtmlCursor& cursor)
{
    while (cursor.Peek(2) == L'-')
        cursor.Skip();
    if (cursor.Peek(2) == L'>') {
        cursor.Skip(3);
        return true;
    }
    if (cursor.Peek(2) == L'!' && cursor.Peek(3) == L'>') {
        cursor.Report(EHtmlProblem::IncorrectlyClosedComment, {cursor.At(), cursor.At() + 4});
        cursor.Skip(4);
        return true;
    }
    return false;
}

// Up to and with the end; false at the text's.
bool ReadContent(CHtmlCursor& cursor)
{
    for (cursor.SkipTo(L"<-"); !cursor.IsAtEnd(); cursor.SkipTo(L"<-")) {
        if (cursor.Peek() == L'<')
            ReadLessThan(cursor);
        else if (cursor.Peek(1) == L'-' && ReadEnd(cursor))
            return true;
        cursor.Skip();
    }
    return false;
}

SHtmlToken Finish(CHtmlCursor& cursor, EHtmlTokenKind kind, std::size_t begin, bool isClosed)
{
    SHtmlToken token;
    token.kind = kind;
    token.span = {begin, cursor.At()};
    token.unfinished = !isClosed;
    return token;
}

} // namespace

SHtmlToken ReadHtmlComment(CHtmlCursor& cursor)
{
    const std::size_t begin = cursor.At();
    cursor.Skip(4);
    const std::size_t dashes = cursor.Peek() == L'-' ? 1 : 0;
    bool isClosed = cursor.Peek(dashes) == L'>';
    if (isClosed) {
        cursor.Report(EHtmlProblem::AbruptClosingOfEmptyComment, {begin, cursor.At() + dashes + 1});
        cursor.Skip(dashes + 1);
    } else {
        isClosed = ReadContent(cursor);
    }
    if (!isClosed)
        cursor.Report(EHtmlProblem::EofInComment, {begin, cursor.At()});
    return Finish(cursor, EHtmlTokenKind::Comment, begin, isClosed);
}

SHtmlToken ReadHtmlCData(CHtmlCursor& cursor)
{
    const std::size_t begin = cursor.At();
    cursor.Skip(9);
    bool isClosed = false;
    for (cursor.SkipTo(L']'); !isClosed && !cursor.IsAtEnd();) {
        isClosed = cursor.IsNext(L"]]>");
        cursor.Skip(isClosed ? 3 : 1);
        if (!isClosed)
            cursor.SkipTo(L']');
    }
    if (!isClosed)
        cursor.Report(EHtmlProblem::EofInCdata, {begin, cursor.At()});
    return Finish(cursor, EHtmlTokenKind::CData, begin, isClosed);
}

SHtmlToken ReadBogusComment(CHtmlCursor& cursor)
{
    const std::size_t begin = cursor.At();
    cursor.SkipTo(L'>');
    const bool isClosed = !cursor.IsAtEnd();
    cursor.Skip(isClosed ? 1 : 0);
    return Finish(cursor, EHtmlTokenKind::Comment, begin, isClosed);
}

} // namespace Kesh::SyntaxParser
