#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "FindBar.h"
#include "Limits.h"
#include "MessageStrip.h"
#include "ReplaceAll.h"
#include "WorkbenchFixture.h"

#include <QCloseEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QUrl>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace Kesh;
using Workbench::CCodeEditor;
using Workbench::IPrompts;

namespace {

class Files : public CWorkbenchTest
{
protected:
    std::string Bytes(const std::wstring& path) { return Host::ReadFileBytes(path); }
};

TEST_F(Files, AnEditIsMarkedAndSavedInTheFilesOwnFormat)
{
    const std::string cases[] = {"a\r\nb\r\n",
                                 "\xEF\xBB\xBF"
                                 "a\nb",
                                 "\xF0\x9F\x98\x80\n", ""};
    for (const std::string& before : cases) {
        const std::wstring path = m_folder.Write(L"f.php", before);
        CCodeEditor& editor = Open(path);
        EXPECT_FALSE(Window().isWindowModified());
        editor.append("x");
        EXPECT_TRUE(Window().isWindowModified());
        EXPECT_EQ(Area().GetTabs().tabText(0), "f.php *");
        Trigger("&Save");
        EXPECT_EQ(Area().GetTabs().tabText(0), "f.php");
        EXPECT_EQ(Bytes(path), before + "x");
        ASSERT_TRUE(Area().Close(*Area().GetCurrent()));
    }
}

TEST_F(Files, ClosingAsksForUnsavedEdits)
{
    const std::wstring path = m_folder.Write(L"a.php", "old");
    struct SCase
    {
        IPrompts::ESave answer;
        bool closes;
        std::string bytes;
    };
    for (const SCase& c :
         {SCase{IPrompts::ESave::Cancel, false, "old"}, SCase{IPrompts::ESave::Discard, true, "old"},
          SCase{IPrompts::ESave::Save, true, "oldx"}}) {
        Open(path).append("x");
        m_prompts.m_save = c.answer;
        EXPECT_EQ(Window().close(), c.closes);
        EXPECT_EQ(m_prompts.m_asked, QStringList{Host::PathToQt(path)});
        EXPECT_EQ(Bytes(path), c.bytes);
        Area().DiscardAll();
    }
}

TEST_F(Files, AFileThatCannotBeReadAnyMoreCanBeClosed)
{
    m_prompts.m_save = IPrompts::ESave::Discard;
    Open(m_folder.Write(L"gone/a.php", "x")).append("y");
    Open(m_folder.Write(L"gone/b.php", "x")).append("y");
    std::filesystem::remove_all(Host::PathToBytes(m_folder.Path(L"gone")));
    EXPECT_TRUE(Area().Close(*Area().GetCurrent()));
    EXPECT_TRUE(Area().CloseAll());
    EXPECT_EQ(Area().GetTabs().count(), 0);
}

TEST_F(Files, BytesThatAreNotUtf8NeedConsent)
{
    const std::wstring path = m_folder.Write(L"broken.php", "\xC3\xA9 caf\xE9");
    Open(path).append("!");
    Trigger("&Save");
    EXPECT_THAT(m_prompts.m_asked.join("").toStdString(), ::testing::HasSubstr("not valid UTF-8"));
    EXPECT_EQ(Bytes(path), "\xC3\xA9 caf\xE9");
    m_prompts.m_confirm = true;
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), "\xC3\xA9 caf\xEF\xBF\xBD!");
}

TEST_F(Files, AChangeOnDiskIsTakenOverUnlessThereAreEdits)
{
    const std::wstring path = m_folder.Write(L"a.php", "one\n");
    CCodeEditor& editor = Open(path);
    m_folder.Write(L"a.php", "two, longer\n");
    ASSERT_TRUE(WaitFor([&] { return editor.text() == "two, longer\n"; }));
    EXPECT_FALSE(editor.isModified());

    editor.append("mine");
    m_folder.Write(L"a.php", "three\n");
    ASSERT_TRUE(WaitFor([&] { return !Strip().isEmpty(); }));
    EXPECT_EQ(editor.text(), "two, longer\nmine");
    Answer("&Keep my edits");
    EXPECT_EQ(Strip(), QString());

    m_folder.Write(L"a.php", "four four\n");
    ASSERT_TRUE(WaitFor([&] { return !Strip().isEmpty(); }));
    Answer("&Reload");
    EXPECT_EQ(editor.text(), "four four\n");

    std::filesystem::remove(Host::PathToBytes(path));
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("no longer on disk"); }));
    EXPECT_EQ(editor.text(), "four four\n");
}

TEST_F(Files, NoQuestionHidesAnother)
{
    CCodeEditor& first = Open(m_folder.Write(L"a.php", "one\n"));
    CCodeEditor& second = Open(m_folder.Write(L"b.php", "one\n"));
    first.append("mine");
    second.append("mine");
    m_folder.Write(L"a.php", "theirs a\n");
    m_folder.Write(L"b.php", "theirs b\n");
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("a.php") && Strip().contains("b.php"); }));
    Shoot(Window(), "question");
    Answer("&Reload");
    EXPECT_FALSE(Strip().isEmpty());
    Answer("&Reload");
    EXPECT_EQ(first.text(), "theirs a\n");
    EXPECT_EQ(second.text(), "theirs b\n");
    EXPECT_EQ(Strip(), QString());
}

TEST_F(Files, SavingOverAnotherProgramsChangeNeedsConsent)
{
    const std::wstring path = m_folder.Write(L"a.php", "one");
    Open(path).append("mine");
    m_folder.Write(L"a.php", "theirs");
    Trigger("&Save"); // before the window has noticed
    EXPECT_EQ(Bytes(path), "theirs");
    m_prompts.m_confirm = true;
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), "onemine");
}

TEST_F(Files, AnUnansweredQuestionAllowsNoSaving)
{
    struct SCase
    {
        const char* name;
        std::function<bool()> save; ///< whether it went through
    };
    m_prompts.m_save = IPrompts::ESave::Save;
    const SCase cases[] = {
        {"save", [&] { return Area().Save(*Area().GetCurrent()); }},
        {"close", [&] { return Area().Close(*Area().GetCurrent()); }},
        {"quit", [&] { return Window().close(); }},
    };
    for (const char* answer : {"", "Dismiss", "&Keep my edits"})
        for (const SCase& c : cases) {
            SCOPED_TRACE(std::string(c.name) + ' ' + answer);
            const std::wstring path = m_folder.Write(L"a.php", "one");
            Open(path).append("mine");
            m_folder.Write(L"a.php", "theirs");
            ASSERT_TRUE(WaitFor([&] { return !Strip().isEmpty(); }));
            Area().CheckDisk(); // as when the window becomes active; nothing is asked twice
            if (*answer)
                Answer(answer);
            m_prompts.m_confirm = false;
            const bool kept = answer == QLatin1String("&Keep my edits");
            EXPECT_EQ(c.save(), kept);
            EXPECT_EQ(Bytes(path), kept ? "onemine" : "theirs");
            if (!kept) {
                EXPECT_EQ(Strip().isEmpty(), *answer != '\0') << "the question waits for its answer";
                m_prompts.m_confirm = true;
                EXPECT_TRUE(c.save());
                EXPECT_EQ(Bytes(path), "onemine");
            }
            EXPECT_EQ(Strip(), QString()) << "pointless now";
            Area().DiscardAll();
            Window().show();
        }
}

TEST_F(Files, AQuestionGoesWithWhatItAsksAbout)
{
    const struct
    {
        const char* name;
        std::function<void()> action;
    } cases[] = {{"close", [&] { Area().DiscardAll(); }},
                 {"save elsewhere",
                  [&] {
                      m_prompts.m_name = Host::PathToQt(m_folder.Path(L"b.php"));
                      Trigger("Save &as...");
                  }},
                 {"reload", [&] { Answer("&Reload"); }}};
    for (const auto& c : cases) {
        CCodeEditor& editor = Open(m_folder.Write(L"a.php", "one"));
        editor.append("mine");
        m_folder.Write(L"a.php", "theirs");
        ASSERT_TRUE(WaitFor([&] { return !Strip().isEmpty(); }));
        c.action();
        EXPECT_EQ(Strip(), QString()) << c.name;
        Area().DiscardAll();
    }
}

TEST_F(Files, SaveAsMovesTheDocumentAndKeepsTheOldFile)
{
    const std::wstring first = m_folder.Write(L"a.php", "one");
    Open(first).append("x");
    m_prompts.m_name = Host::PathToQt(m_folder.Path(L"b.html"));
    Trigger("Save &as...");
    EXPECT_EQ(Bytes(first), "one");
    EXPECT_EQ(Bytes(m_folder.Path(L"b.html")), "onex");
    EXPECT_EQ(Area().GetCurrent()->GetPath(), m_folder.Path(L"b.html"));
    EXPECT_EQ(Area().GetTabs().tabText(0), "b.html");
}

TEST_F(Files, AFailureIsToldAboveTheEditor)
{
    EXPECT_FALSE(Area().Open(m_folder.Path(L"none.php")));
    EXPECT_THAT(Strip().toStdString(), ::testing::HasSubstr("none.php: No such file or directory"));
    Open(m_folder.Write(L"gone/a.php", "x")).append("y");
    std::filesystem::remove_all(Host::PathToBytes(m_folder.Path(L"gone")));
    Trigger("&Save");
    EXPECT_THAT(Strip().toStdString(),
                ::testing::MatchesRegex("Cannot save .*/gone/a.php: No such file or directory(\n.*)*"));
    EXPECT_TRUE(Window().isWindowModified());
    Window().OpenProject(m_folder.Path(L"gone"));
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("gone: No such file"); }));
    EXPECT_FALSE(Project().IsOpened());
    Area().DiscardAll();
}

TEST_F(Files, NamesThatAreNotUtf8CanBeOpenedAndSaved)
{
    const std::wstring path = m_folder.Write(Host::PathFromBytes("b\xFF"
                                                                 "d.php"),
                                             "<?php\n");
    Open(path).append("x");
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), "<?php\nx");
    EXPECT_TRUE(std::filesystem::exists(Host::PathToBytes(path)));
}

TEST_F(Files, FindAndReplace)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "one two One\none\n"));
    Trigger("&Find and replace...");
    auto* pattern = Window().findChild<QLineEdit*>("findPattern");
    auto* replacement = Window().findChild<QLineEdit*>("findReplacement");
    pattern->setText("one");
    Trigger("Find &next");
    Trigger("Find &next");
    EXPECT_EQ(editor.GetCaretPosition(), (SyntaxParser::CIterator{11, 0}));
    Trigger("Find pre&vious");
    EXPECT_EQ(editor.GetCaretPosition(), (SyntaxParser::CIterator{3, 0}));
    Shoot(Window(), "find");
    replacement->setText("one1"); // holds what is searched for
    for (QPushButton* button : Area().GetFindBar().findChildren<QPushButton*>())
        if (button->text() == "Replace &all")
            button->click();
    EXPECT_EQ(editor.text(), "one1 two one1\none1\n");
    editor.undo();
    EXPECT_EQ(editor.text(), "one two One\none\n");
    QTest::keyClick(pattern, Qt::Key_Escape);
    EXPECT_FALSE(Area().GetFindBar().isVisible());
}

TEST_F(Files, AllThatIsFoundIsReplacedInOneStep)
{
    using CIterator = SyntaxParser::CIterator;
    struct SCase
    {
        Workbench::SReplaceOrder order; ///< pattern, replacement; case, words, regular expression
        std::string before;
        std::string after;
        int count;
        CIterator caret; ///< before and after
        CIterator moved;
    };
    const SCase cases[] = {
        {{"one", "one1"}, "one two One\n", "one1 two one1\n", 2, {7, 0}, {8, 0}},
        {{"one", "1", true}, "one two One\n", "1 two One\n", 1, {11, 0}, {9, 0}},
        {{"one", "", false, true}, "one ones\none", " ones\n", 2, {0, 1}, {0, 1}},
        {{"\u00E9", "\u00E9\u00E9", true},
         "\xC3\xA9x\xC3\xA9\n",
         "\xC3\xA9\xC3\xA9x\xC3\xA9\xC3\xA9\n",
         2,
         {2, 0},
         {3, 0}},
        {{"a", "b\nb"}, "xax\nxax\n", "xb\nbx\nxb\nbx\n", 2, {1, 1}, {1, 2}},
        {{"(\\w+)=(\\w+)", "\\2=\\1\\t\\\\\\0\\3\\q", false, false, true},
         "a=b, cd=e",
         "b=a\t\\a=b\\q, e=cd\t\\cd=e\\q",
         2,
         {2, 0},
         {10, 0}},
        {{"^", "> ", false, false, true}, "a\n\nb", "> a\n> \n> b", 3, {1, 0}, {3, 0}},
        {{"$", ";", false, false, true}, "a\nb\n", "a;\nb;\n;", 3, {0, 1}, {0, 1}},
        {{"x*", "-", false, false, true}, "xxa", "--a-", 3, {0, 0}, {0, 0}},
        {{"none", "x"}, "one\n", "one\n", 0, {1, 0}, {1, 0}},
        {{"(", "x", false, false, true}, "one(\n", "one(\n", 0, {1, 0}, {1, 0}},
        {{"a", "b"}, std::string("\0a\0", 3), std::string("\0b\0", 3), 1, {2, 0}, {2, 0}},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.order.pattern.toStdString());
        CCodeEditor editor;
        const auto text = [&] { return Host::PathToBytes(editor.GetContent()); };
        editor.SetContent(Host::PathFromBytes(c.before));
        editor.SetCaretPosition(c.caret);
        int changes = 0;
        QObject::connect(&editor, &CCodeEditor::SCN_MODIFIED, [&](int, int type) {
            changes += (type & (CCodeEditor::SC_MOD_INSERTTEXT | CCodeEditor::SC_MOD_DELETETEXT)) != 0;
        });
        EXPECT_EQ(Workbench::ReplaceAll(editor, c.order), c.count);
        EXPECT_EQ(text(), c.after);
        EXPECT_EQ(editor.GetCaretPosition(), c.moved);
        EXPECT_LE(changes, 2) << "out with the old, in with the new";
        EXPECT_EQ(editor.isUndoAvailable(), c.before != c.after);
        if (editor.isUndoAvailable())
            editor.undo();
        EXPECT_EQ(text(), c.before);
        EXPECT_FALSE(editor.isUndoAvailable());
    }
}

TEST_F(Files, ReplacingKeepsFoldsMarksAndView)
{
    std::string php = "<?php\n";
    for (int i = 0; i < 100; ++i)
        php += "function f() {\n    one();\n}\n";
    m_folder.Write(L"p/a.php", php + "$a = = 1;\n");
    // Without a project, whose check would take the marks away for a moment.
    CCodeEditor& editor = Open(m_folder.Path(L"p/a.php"));
    ASSERT_TRUE(WaitForRows(1));
    editor.SetCaretPosition({0, 300});
    editor.setFirstVisibleLine(280);
    editor.SetFolds({1, 4});
    const QList<int> folds = editor.contractedFolds();
    ASSERT_FALSE(folds.isEmpty());
    const int view = editor.firstVisibleLine();
    ASSERT_TRUE(WaitFor([&] { return !MarkedLines(editor).isEmpty(); }));
    const QList<int> marks = MarkedLines(editor);
    EXPECT_EQ(Workbench::ReplaceAll(editor, {"one", "two"}), 100);
    EXPECT_EQ(editor.contractedFolds(), folds);
    EXPECT_EQ(editor.firstVisibleLine(), view);
    EXPECT_EQ(MarkedLines(editor), marks);
    EXPECT_EQ(editor.GetCaretPosition(), (SyntaxParser::CIterator{0, 300}));
    editor.setModified(false);
}

TEST_F(Files, WhatASaveMightCostNeedsConsent)
{
    namespace fs = std::filesystem;
    const auto bytes = [&](const wchar_t* name) { return Host::PathToBytes(m_folder.Path(name)); };
    m_folder.Write(L"outside.php", "old");
    m_folder.Write(L"p/closed/a.php", "old");
    fs::create_symlink("../outside.php", bytes(L"p/link.php"));
    ::chmod(bytes(L"p/closed").c_str(), 0555);
    OpenProject(m_folder.Path(L"p"));
    struct SCase
    {
        const wchar_t* name;
        const char* question; ///< part of it
    };
    for (const SCase& c :
         {SCase{L"p/closed/a.php", "a.php can only be written over in place: its folder takes "
                                   "no other file: Permission denied. "},
          SCase{L"p/link.php", "link.php is a link out of the project, to "}}) {
        const std::wstring path = m_folder.Path(c.name);
        Open(path).append("x");
        for (const bool agreed : {false, true}) {
            m_prompts.m_confirm = agreed;
            const CPlainUser plain;
            EXPECT_EQ(Area().Save(*Area().GetCurrent()), agreed);
            EXPECT_THAT(m_prompts.m_asked.join("").toStdString(), ::testing::StartsWith(c.question));
            EXPECT_EQ(Bytes(path), agreed ? "oldx" : "old");
        }
        // Asked once for a link; a crash may come each time.
        m_prompts.m_asked.clear();
        Area().GetCurrentEditor()->append("y");
        const CPlainUser plain;
        EXPECT_TRUE(Area().Save(*Area().GetCurrent()));
        EXPECT_EQ(m_prompts.m_asked.isEmpty(), c.name == std::wstring_view(L"p/link.php"));
    }
    EXPECT_TRUE(fs::is_symlink(bytes(L"p/link.php")));
    ::chmod(bytes(L"p/closed").c_str(), 0755);
}

TEST_F(Files, LinesBecomeCommentsOfTheirLanguage)
{
    struct SCase
    {
        const wchar_t* name;
        QString before;
        int first, last; ///< lines
        QString after;
    };
    const SCase cases[] = {
        {L"a.php", "<?php\nif ($a)\n    f();\n\ng();\n", 1, 3, "<?php\n// if ($a)\n    // f();\n\ng();\n"},
        {L"b.html", "<p>\n<b>x</b>\n", 1, 1, "<p>\n<!-- <b>x</b> -->\n"},
        {L"c.css", "a { color: red }\n", 0, 0, "/* a { color: red } */\n"}};
    for (const SCase& c : cases) {
        CCodeEditor& editor = Open(m_folder.Write(c.name, c.before.toStdString()));
        editor.SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
        editor.setSelection(c.first, 0, c.last, editor.lineLength(c.last) - 1);
        Trigger("C&omment lines");
        EXPECT_EQ(editor.text(), c.after) << editor.text().toStdString();
        Trigger("C&omment lines");
        EXPECT_EQ(editor.text(), c.before) << editor.text().toStdString();
        editor.setModified(false);
    }
}

TEST_F(Files, CommentingManyLinesIsOneChange)
{
    constexpr int Lines = 2000;
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "<?php\n" + std::string(Lines * 3, 'x')));
    editor.SetContent(L"<?php\n");
    editor.append(QStringLiteral("f();\n").repeated(Lines));
    int changes = 0;
    QObject::connect(&editor, &QsciScintillaBase::SCN_MODIFIED, &editor,
                     [&](int, int kind, const char*, int, int, int, int, int, int, int) {
                         changes += (kind & (QsciScintillaBase::SC_MOD_INSERTTEXT |
                                             QsciScintillaBase::SC_MOD_DELETETEXT)) != 0;
                     });
    editor.setSelection(1, 0, Lines, 4);
    Trigger("C&omment lines");
    EXPECT_EQ(editor.text(Lines), "// f();\n");
    EXPECT_LE(changes, 2) << "one text goes, one comes";
    editor.undo();
    EXPECT_EQ(editor.text(1) + editor.text(Lines), "f();\nf();\n");
    Area().DiscardAll();
}

TEST_F(Files, ALongTextIsColouredPieceByPiece)
{
    std::string text = "<?php\n";
    while (text.size() < 3000000)
        text += "$total = array_sum($items) + strlen('text'); // why\n";
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", text + "$last = 'x';\n"));
    const auto styled = [&] { return editor.SendScintilla(QsciScintillaBase::SCI_GETENDSTYLED); };
    const long last = static_cast<long>(text.size()) + 9; // in the string
    editor.SetCaretPosition({0, editor.lines() - 1});
    editor.ScrollToCaret(0);
    editor.viewport()->repaint();
    EXPECT_LT(styled(), last / 2) << "the window would stand still";
    EXPECT_TRUE(WaitFor([&] { return styled() > last; }));
    EXPECT_NE(editor.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT, last), 0);
}

TEST_F(Files, WhatIsDroppedIsOpened)
{
    const std::wstring file = m_folder.Write(L"p/a.php", "<?php\n");
    const std::wstring other = m_folder.Write(L"b.php", "<?php\n");
    const auto drop = [](QWidget& target, const std::vector<std::wstring>& paths) {
        QMimeData data;
        QList<QUrl> urls;
        for (const std::wstring& path : paths)
            urls.append(QUrl::fromLocalFile(Host::PathToQt(path)));
        data.setUrls(urls);
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&target, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&target, &event);
    };
    drop(Window(), {file, other});
    EXPECT_EQ(Area().GetTabs().count(), 2);
    drop(*Area().GetCurrentEditor()->viewport(), {m_folder.Path(L"p")});
    EXPECT_TRUE(WaitFor([&] { return Project().IsOpened(); }));
    EXPECT_EQ(Area().GetCurrentEditor()->text(), "<?php\n") << "no path is pasted";
}

TEST_F(Files, CaretPositionsAreCountedInCharacters)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "\xF0\x9F\x98\x80\xC3\xA9x\r\ny"));
    struct SCase
    {
        SyntaxParser::CIterator set, expected;
    };
    for (const SCase& c :
         {SCase{{2, 0}, {2, 0}}, SCase{{99, 0}, {3, 0}}, SCase{{0, 99}, {0, 1}}, SCase{{-1, -1}, {0, 0}}}) {
        editor.SetCaretPosition(c.set);
        EXPECT_EQ(editor.GetCaretPosition(), c.expected);
    }
}

} // namespace
