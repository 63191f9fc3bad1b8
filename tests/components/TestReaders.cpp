#include "Base/Exception.h"
#include "SPBase/reader.h"

#include <gtest/gtest.h>

namespace Kesh::SyntaxParser {

namespace {

std::wstring Walk(IReader& reader)
{
    std::wstring text;
    while (reader.NextChar())
        text += reader.ReadChar();
    return text;
}

TEST(Readers, KeepLinesWithTheirLineFeeds)
{
    const struct
    {
        std::wstring text, forward, backward;
        CIterator end;
    } cases[] = {
        {L"", L"", L"", {0, 0}},
        {L"a\r\nb", L"a\nb", L"a\nb", {1, 1}},
        {L"a\rb", L"ab", L"ab", {1, 1}},
        {L"a\r", L"a", L"a", {1, 0}},
        {L"a\r\r\nb", L"a\nb", L"a\nb", {1, 2}},
        {L"\n\n", L"\n\n", L"\n\n", {0, 2}},
        {L"a\xFE0F\x1F600\n\x1F600", L"a\xFE0F\x1F600\n\x1F600", L"a\xFE0F\x1F600\n\x1F600", {1, 1}},
        {std::wstring(L"ab\0cd", 5), L"ab", std::wstring(L"ab\0cd", 5), {2, 0}},
    };
    for (const auto& c : cases) {
        CSimpleReader forward(c.text);
        EXPECT_EQ(forward.GetText(), c.forward);
        EXPECT_EQ(forward.GetEnd(), c.end) << c.text.size();
        CBackSimpleReader backward(c.text);
        EXPECT_EQ(backward.GetText(), c.backward);
        EXPECT_EQ(backward.GetEnd(), (CIterator{0, 0}));
    }
    // A lone carriage return breaks the line of the forward reader only.
    EXPECT_EQ(CSimpleReader(L"a\rb").GetFirstString(), L"a");
    EXPECT_EQ(CBackSimpleReader(L"a\rb").GetFirstString(), L"ab");
    CSimpleReader whole;
    whole.SetWhole({L"a\0\r\nb\0c", 7});
    EXPECT_EQ(whole.GetText(), (std::wstring{L"a\0\nb\0c", 6}));
    EXPECT_EQ(whole.GetText({0, 1}, {3, 1}), (std::wstring{L"b\0c", 3}));
    whole.SetText({L"a\0b", 3});
    EXPECT_EQ(whole.GetText(), L"a") << "where a text ends with a zero";
    EXPECT_EQ(CSimpleReader(L" \tfirst line \nsecond").GetFirstString(), L"first line");
}

TEST(Readers, WalkInTheirDirection)
{
    CSimpleReader forward(L"ab\ncd");
    EXPECT_EQ(Walk(forward), L"ab\ncd");
    EXPECT_TRUE(forward.PrevChar());
    EXPECT_EQ(forward.ReadChar(), L'c');
    CBackSimpleReader backward(L"ab\ncd");
    EXPECT_EQ(Walk(backward), L"dc\nba");
    EXPECT_TRUE(backward.PrevChar());
    EXPECT_EQ(backward.ReadChar(), L'b');

    for (const CIterator pos : {CIterator{0, 0}, CIterator{2, 0}, CIterator{0, 1}, CIterator{1, 1}}) {
        for (IReader* reader : {static_cast<IReader*>(&forward), static_cast<IReader*>(&backward)}) {
            reader->SetPos(pos);
            EXPECT_TRUE(reader->NextChar());
            EXPECT_EQ(reader->GetPos(), pos);
        }
    }
}

TEST(Readers, NothingMoreToRead)
{
    EXPECT_EQ(Walk(*std::make_unique<CSimpleReader>()), L"");
    // An empty first line counts as an empty text, and an empty line further down as its end.
    CSimpleReader odd;
    odd.AddLine(L"more");
    EXPECT_EQ(Walk(odd), L"");
    CSimpleReader cleared(L"text");
    cleared.Clear();
    EXPECT_EQ(Walk(cleared), L"");
    EXPECT_EQ(cleared.GetEnd(), (CIterator{0, 0}));
    EXPECT_EQ(cleared.GetFirstString(), L"");
    CBackSimpleReader back(L"ab");
    Walk(back);
    EXPECT_FALSE(back.NextChar());
    back.Reset();
    EXPECT_FALSE(back.PrevChar());
}

TEST(Readers, GiveTextBetweenTwoPositions)
{
    const struct
    {
        CIterator from, to;
        const wchar_t* text;
    } cases[] = {
        {{0, 0}, {0, 0}, L""},     {{1, 0}, {3, 0}, L"b\n"}, {{1, 0}, {2, 2}, L"b\ncd\nef"},
        {{0, 1}, {0, 2}, L"cd\n"}, {{3, 0}, {0, 1}, L""},    {{9, 0}, {1, 1}, L"c"},
        {{-1, 0}, {1, 0}, L"a"},
    };
    CSimpleReader forward(L"ab\ncd\nefg");
    CBackSimpleReader backward(L"ab\ncd\nefg");
    for (const auto& c : cases) {
        EXPECT_EQ(forward.GetText(c.from, c.to), c.text);
        EXPECT_EQ(backward.GetText(c.from, c.to), c.text);
    }
}

TEST(Readers, RefuseWhatIsNoSpan)
{
    CSimpleReader forward(L"ab\ncd");
    EXPECT_THROW(forward.GetText({2, 0}, {1, 0}), CCriticalError);
    EXPECT_THROW(forward.GetText({0, 1}, {1, 0}), CCriticalError);
    EXPECT_THROW(forward.GetText({-1, -1}, {1, 0}), CCriticalError);
    try {
        forward.GetText({0, 0}, {0, 2});
        FAIL() << "a line below the text was read";
    } catch (const Base::CCriticalError& error) {
        EXPECT_STREQ(error.what(), "Critical error: nEnd.y < (int)m_string.size()");
        EXPECT_EQ(error.GetLine(), 124);
        EXPECT_EQ(error.GetFile(), "Lib/SPBase/reader");
    }
    CBackSimpleReader backward(L"long line\nab");
    EXPECT_THROW(backward.GetText({2, 0}, {1, 0}), CCriticalError);
    EXPECT_THROW(backward.GetText({0, 1}, {1, 0}), CCriticalError);
    EXPECT_THROW(backward.GetText({0, 0}, {0, 2}), CCriticalError);
    EXPECT_THROW(backward.GetText({0, 0}, {3, 0}), CCriticalError) << "the last line bounds the column";
    EXPECT_EQ(CCriticalError().GetFormat(), L"Critical error:\r\n%s\r\n");
    EXPECT_EQ(CCriticalError().GetMessage(), L"");
}

} // namespace

} // namespace Kesh::SyntaxParser
