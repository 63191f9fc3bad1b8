// Between an edit and the next check errors are where the edit has moved them.
#include "EditLog.h"
#include "ErrorHelp.h"
#include "ErrorPanel.h"
#include "WorkbenchFixture.h"

#include <QAction>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <random>

using namespace Kesh;
using SyntaxParser::CIterator;
using SyntaxParser::SScheme;
using Workbench::CCodeEditor;

namespace {

std::string Text(const SScheme& span)
{
    return std::to_string(span.start.y) + ':' + std::to_string(span.start.x) + '-' +
           std::to_string(span.end.y) + ':' + std::to_string(span.end.x);
}

class Moves : public CWorkbenchTest
{
protected:
    /// Nothing is checked from now on unless it is asked for.
    void HoldChecks() { Window().GetApplication().Timers().SetDelayOverride(1000000); }
    QString Caret()
    {
        const auto caret = Area().GetCurrentEditor()->GetCaretPosition();
        return QStringLiteral("%1:%2").arg(caret.y).arg(caret.x);
    }
};

// As an independent reference: words that edits leave alone are where they are found in the text.
TEST_F(Moves, PlacesOfATextAreWhereItsWordsAre)
{
    std::mt19937 random(7);
    const auto below = [&](int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); };
    const QStringList pieces{"x", "\n", "\xC3\xA4", "ab\ncd", "\n\n", "\xF0\x9F\x98\x80", "wxyz"};
    for (int round = 0; round < 300; ++round) {
        CCodeEditor editor;
        QString text;
        constexpr int Words = 6;
        for (int word = 0; word < Words; ++word)
            text += pieces[below(pieces.size())] + QStringLiteral("<%1>").arg(word) + " ..." +
                    pieces[below(pieces.size())];
        editor.SetContent(text.toStdWString());
        const auto spanOf = [&](int word) {
            const QString now = editor.text();
            const QString wanted = QStringLiteral("<%1>").arg(word);
            const int at = now.indexOf(wanted);
            const QString before = now.left(at);
            const int line = before.count('\n');
            const auto column =
                static_cast<std::int64_t>(before.mid(before.lastIndexOf('\n') + 1).toUcs4().size());
            return at < 0 ? SScheme{{-1, -1}, {-1, -1}} : SScheme{{column, line}, {column + 3, line}};
        };
        std::vector<SScheme> old;
        for (int word = 0; word < Words; ++word)
            old.push_back(spanOf(word));
        Workbench::CEditLog& edits = editor.GetEdits();
        ASSERT_TRUE(edits.IsEmpty());
        for (int edit = 0; edit < 12; ++edit) {
            // Between two words, or at their edges.
            const int word = below(Words);
            const SScheme span = spanOf(word);
            switch (below(5)) {
            case 0: editor.ReplaceSpan({span.start, span.start}, pieces[below(7)].toStdWString()); break;
            case 1: editor.ReplaceSpan({span.end, span.end}, pieces[below(7)].toStdWString()); break;
            case 2: editor.ReplaceSpan({span.end, {span.end.x + below(4), span.end.y}}, L""); break;
            case 3:
                editor.ReplaceSpan({span.end, {span.end.x + below(4), span.end.y}},
                                   pieces[below(7)].toStdWString());
                break;
            default: editor.undo(); break;
            }
        }
        for (int word = 0; word < Words; ++word) {
            if (spanOf(word).start.y >= 0) {
                EXPECT_EQ(Text(edits.Moved(old[static_cast<std::size_t>(word)])), Text(spanOf(word)))
                    << round << ' ' << word << ' ' << text.toStdString() << '\n'
                    << editor.text().toStdString();
            }
        }
    }
}

TEST(EditLog, ACheckTakesTheTextOfItsBeginning)
{
    const SScheme place{{2, 5}, {4, 5}};
    const struct
    {
        bool isComplete;
        std::int64_t line; ///< afterwards
    } cases[] = {{true, 6}, {false, 7}};
    for (const auto& c : cases) {
        Workbench::CEditLog log;
        log.NoteInsertion({0, 0}, "before\n");
        log.BeginCheck();
        log.NoteInsertion({0, 0}, "meanwhile\n");
        EXPECT_EQ(log.Moved(place).start.y, 7);
        log.EndCheck(c.isComplete);
        EXPECT_EQ(log.Moved(place).start.y, c.line);
    }
}

TEST(EditLog, ATextEndsWhereItsLinesDo)
{
    const struct
    {
        const char* text;
        const char* end; ///< of what began at 2:5
    } cases[] = {{"", "2:5"},       {"ab", "2:7"},     {"\xC3\xA4x", "2:7"}, {"a\n", "3:0"},
                 {"a\r\nb", "3:1"}, {"a\rb\n", "4:0"}, {"\r\r\n\rb", "5:1"}, {"a\n\xC3\xA4", "3:1"},
                 {"\n\n\n", "5:0"}, {"a\r", "3:0"}};
    for (const auto& c : cases) {
        Workbench::CEditLog log;
        log.NoteInsertion({5, 2}, c.text);
        EXPECT_EQ(Text(log.Moved({{5, 2}, {5, 2}})), c.end + std::string("-") + c.end) << c.text;
    }
}

TEST(EditLog, WhatIsTypedOverKeepsItsPlaceAsFarAsThereIsOne)
{
    Workbench::CEditLog log;
    for (int i = 0; i < 1000; ++i) // far more than are told one by one
        log.NoteInsertion({0, i * 3}, "x\n");
    EXPECT_EQ(Text(log.Moved({{1, 9000}, {2, 9000}})), "10000:1-10000:2") << "behind all of them";
    Workbench::CEditLog all;
    all.NoteDeletion({0, 0}, "a\nb\nc\n");
    all.NoteInsertion({0, 0}, "d\ne\nf\n");
    EXPECT_EQ(Text(all.Moved({{0, 1}, {1, 1}})), "1:0-1:1") << "replaced by its like";
    all.NoteDeletion({0, 0}, "d\ne\nf\n");
    EXPECT_EQ(Text(all.Moved({{0, 1}, {1, 1}})), "0:0-0:0");
}

TEST_F(Moves, ListKeysAndMarksAgreeBeforeTheNextCheck)
{
    const std::wstring file = m_folder.Write(L"p/page.html", "<html>\n<body>\n<pp>x</pp>\n<strng>y</strng>\n"
                                                             "<p>z</p>\n");
    OpenProject(m_folder.Path(L"p"));
    CCodeEditor& editor = Open(file);
    ASSERT_TRUE(WaitFor([&] { return Underlines(editor).size() == 2; }));
    QTest::qWait(300); // for the check of what has been opened
    ASSERT_TRUE(WaitFor([&] { return Underlines(editor).size() == 2; }));
    HoldChecks();
    editor.setFocus();
    editor.SetCaretPosition({0, 1});
    QTest::keyClick(&editor, Qt::Key_Return);
    QTest::keyClicks(&editor, "<br>");
    QTest::keyClick(&editor, Qt::Key_Return);
    editor.SetCaretPosition({0, 5});
    QTest::keyClicks(&editor, "  ");
    const QStringList marks = Underlines(editor);
    EXPECT_EQ(marks, (QStringList{"4:0-4:3", "5:2-5:8"})) << "as the widget moves them";
    // F8 goes there, and the marks stay.
    editor.SetCaretPosition({0, 0});
    Trigger("&Next error");
    EXPECT_EQ(Caret(), "4:0");
    Trigger("&Next error");
    EXPECT_EQ(Caret(), "5:2");
    emit editor.visibleLinesChanged();
    EXPECT_EQ(Underlines(editor), marks);
    EXPECT_EQ(MarkedLines(editor), (QList<int>{4, 5}));
    // What mends it is offered there, and mends it.
    auto* help = Window().findChild<Workbench::CErrorHelp*>();
    QStringList titles;
    for (const auto& fix : help->GetFixes())
        titles.append(Workbench::CErrorHelp::TitleOf(fix));
    ASSERT_TRUE(titles.contains("Replace by 'strong'")) << titles.join('\n').toStdString();
    help->Apply(help->GetFixes()[static_cast<std::size_t>(titles.indexOf("Replace by 'strong'"))]);
    EXPECT_TRUE(editor.text().contains("  <strong>y</strong>")) << editor.text().toStdString();
    editor.undo();
    // The list leads there, shows and copies it, though its texts are those of the check.
    auto& panel = *Window().findChild<Workbench::CErrorPanel*>();
    for (int row = 0; row < 2; ++row) {
        editor.SetCaretPosition({0, 0});
        DoubleClickRow(row);
        EXPECT_EQ(Caret(), row == 0 ? "4:0" : "5:2");
        const auto shown = panel.GetRow(Bar()->topLevelItem(row));
        ASSERT_TRUE(shown);
        EXPECT_TRUE(panel.Describe(*shown).startsWith(QStringLiteral("page.html:%1: ").arg(5 + row)));
        EXPECT_TRUE(Bar()->topLevelItem(row)->text(1).endsWith(QStringLiteral(" - %1").arg(3 + row)));
    }
    EXPECT_NE(TipAt(editor, PointOf(editor, 5, 4) + QPoint(1, 3)), nullptr);
    Shoot(Window(), "moved");
    Window().GetApplication().Timers().SetDelayOverride(60);
    QTest::keyClicks(&editor, " ");
    EXPECT_TRUE(
        WaitFor([&] { return Bar()->topLevelItem(0) && Bar()->topLevelItem(0)->text(1).endsWith("5"); }));
    Area().DiscardAll();
}

} // namespace
