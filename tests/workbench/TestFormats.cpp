#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "FormatChoice.h"
#include "MessageStrip.h"
#include "WorkbenchFixture.h"

#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <gmock/gmock.h>

using namespace Kesh;
using Workbench::CCodeEditor;

namespace {

class Formats : public CWorkbenchTest
{
protected:
    std::string Bytes(const std::wstring& path) { return Host::ReadFileBytes(path); }
    std::string Strip() { return Area().GetMessageStrip().GetText().toStdString(); }
    void Answer(const QString& title)
    {
        for (QPushButton* button : Area().GetMessageStrip().findChildren<QPushButton*>())
            if (button->text() == title && !button->isHidden())
                return button->click();
        ADD_FAILURE() << "no button " << title.toStdString();
    }
    /// What the status line says: encoding and line ends.
    QString Shown()
    {
        return Window().findChild<QToolButton*>("encoding")->text() + '|' +
               Window().findChild<QToolButton*>("lineEnds")->text();
    }
    /// Chooses from the menus of the status line: "Save with/UTF-8".
    void Choose(const char* button, const QString& path)
    {
        QMenu* menu = Window().findChild<QToolButton*>(button)->menu();
        for (const QString& title : path.split('/')) {
            emit menu->aboutToShow();
            QAction* found = nullptr;
            for (QAction* action : menu->actions())
                if (action->text().remove('&') == title)
                    found = action;
            ASSERT_NE(found, nullptr) << title.toStdString();
            if (!found->menu())
                return found->trigger();
            menu = found->menu();
        }
    }
};

const std::string Utf16Little("\xFF\xFE\xE9\0\n\0", 6);

TEST_F(Formats, WhatAFileIsWrittenInIsShownAndKept)
{
    struct SCase
    {
        std::string bytes;
        QString shown;
        std::string appended;
    };
    const SCase cases[] = {
        {"a\n", "UTF-8|LF", "x"},
        {"\xC3\xA9\r\n", "UTF-8|CR LF", "x"},
        {"\xEF\xBB\xBF\xC3\xA9\r", "UTF-8 BOM|CR", "x"},
        {Utf16Little, "UTF-16 LE|LF", std::string("x\0", 2)},
        {std::string("\xFE\xFF\0\xE9\0\r\0\n", 8), "UTF-16 BE|CR LF", std::string("\0x", 2)},
        {"caf\xE9\r\n", "Latin-1|CR LF", "x"},
        {"\x80 caf\xE9\n", "Windows-1252|LF", "x"},
    };
    for (const SCase& c : cases) {
        const std::wstring path = m_folder.Write(L"a.php", c.bytes);
        CCodeEditor& editor = Open(path);
        EXPECT_EQ(Shown(), c.shown);
        EXPECT_EQ(Strip(), "");
        editor.append("x");
        Trigger("&Save");
        EXPECT_EQ(Bytes(path), c.bytes + c.appended) << c.shown.toStdString();
        ASSERT_TRUE(Area().Close(*Area().GetCurrent()));
        EXPECT_EQ(Shown(), "|");
    }
}

TEST_F(Formats, TheStatusLineChangesThem)
{
    const std::wstring path = m_folder.Write(L"a.php", "\xC3\xA9\n");
    struct SCase
    {
        const char* button;
        QString choice;
        QString shown;
        std::string bytes;
    };
    const SCase cases[] = {
        {"lineEnds", "CR LF", "UTF-8|CR LF", "\xC3\xA9\r\n"},
        {"encoding", "Save with/Latin-1", "Latin-1|CR LF", "\xE9\r\n"},
        {"encoding", "Save with/UTF-16 BE", "UTF-16 BE|CR LF", std::string("\xFE\xFF\0\xE9\0\r\0\n", 8)},
        {"lineEnds", "LF", "UTF-16 BE|LF", std::string("\xFE\xFF\0\xE9\0\n", 6)},
        {"encoding", "Save with/UTF-8 BOM", "UTF-8 BOM|LF", "\xEF\xBB\xBF\xC3\xA9\n"},
    };
    CCodeEditor& editor = Open(path);
    for (const SCase& c : cases) {
        const std::string before = Bytes(path);
        Choose(c.button, c.choice);
        EXPECT_EQ(Shown(), c.shown);
        EXPECT_EQ(Bytes(path), before) << "until it is saved";
        EXPECT_EQ(Area().GetTabs().tabText(0), "a.php *");
        Trigger("&Save");
        EXPECT_EQ(Area().GetTabs().tabText(0), "a.php");
        EXPECT_EQ(Bytes(path), c.bytes) << c.choice.toStdString();
        EXPECT_EQ(editor.text(), QStringLiteral("\u00E9\n"));
    }
}

TEST_F(Formats, AFileCanBeReadInAnotherEncoding)
{
    const std::wstring path = m_folder.Write(L"a.php", "\xC3\xA9\n");
    CCodeEditor& editor = Open(path);
    Choose("encoding", "Reopen with/Windows-1252");
    EXPECT_EQ(editor.text(), QStringLiteral("\u00C3\u00A9\n"));
    EXPECT_EQ(Shown(), "Windows-1252|LF");
    editor.append("x");
    Choose("encoding", "Reopen with/UTF-8");
    EXPECT_THAT(m_prompts.m_asked.join("").toStdString(), ::testing::HasSubstr("discards"));
    EXPECT_EQ(editor.text(), QStringLiteral("\u00C3\u00A9\nx")) << "not without consent";
    m_prompts.m_confirm = true;
    Choose("encoding", "Reopen with/UTF-8");
    EXPECT_EQ(editor.text(), QStringLiteral("\u00E9\n"));
    m_folder.Write(L"a.php", "\xE9!!\n");
    ASSERT_TRUE(WaitFor([&] { return editor.text() == QStringLiteral("\uFFFD!!\n"); }))
        << "the choice holds when the file changes";
    EXPECT_EQ(Shown(), "UTF-8 (not valid)|LF");
}

TEST_F(Formats, WhatTheEncodingLacksIsToldAndNothingIsWritten)
{
    const std::wstring path = m_folder.Write(L"a.php", "caf\xE9\n");
    CCodeEditor& editor = Open(path);
    editor.append(QStringLiteral("x \u20AC"));
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), "caf\xE9\n");
    EXPECT_EQ(Strip(), "a.php cannot be written as Latin-1: line 2 has the character '\xE2\x82\xAC', which "
                       "does not exist there.");
    EXPECT_TRUE(Window().isWindowModified());
    m_prompts.m_name = Host::PathToQt(m_folder.Path(L"b.php"));
    Trigger("Save &as...");
    EXPECT_LT(Host::StampOf(m_folder.Path(L"b.php")).size, 0);
    Choose("encoding", "Save with/Windows-1252");
    EXPECT_EQ(Strip(), "");
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), "caf\xE9\nx \x80");

    Choose("encoding", "Save with/Latin-1");
    EXPECT_THAT(Strip(), ::testing::HasSubstr("Latin-1")) << "told at once";
    Answer("&Go there");
    EXPECT_EQ(editor.GetCaretPosition(), (SyntaxParser::CIterator{2, 1}));
    Trigger("&Save");
    Answer("Write as &UTF-8");
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), "caf\xC3\xA9\nx \xE2\x82\xAC");
    EXPECT_EQ(Strip(), "");
}

TEST_F(Formats, MixedLineEndsAreSaidBeforeTheyAreMadeAlike)
{
    const std::wstring path = m_folder.Write(L"a.php", "a\r\nb\nc\r\n");
    CCodeEditor& editor = Open(path);
    EXPECT_EQ(Shown(), "UTF-8|CR LF (mixed)");
    EXPECT_EQ(Strip(), "a.php has line ends of several kinds. Saving makes all of them CR LF.");
    editor.append("x");
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), "a\r\nb\r\nc\r\nx");
    EXPECT_EQ(Shown(), "UTF-8|CR LF");
}

TEST_F(Formats, ABinaryFileIsNotOpenedUnlessTheUserInsists)
{
    const std::string bytes("\x7F"
                            "ELF\0\1\n",
                            7);
    const std::wstring path = m_folder.Write(L"a.php", bytes);
    EXPECT_FALSE(Area().Open(path));
    EXPECT_EQ(Area().GetTabs().count(), 0);
    EXPECT_EQ(Strip(), Host::PathToBytes(path) + ": a binary file");
    Answer("&Open anyway");
    ASSERT_EQ(Area().GetTabs().count(), 1);
    EXPECT_EQ(Strip(), "");
    EXPECT_TRUE(Area().Open(path)) << "it is open";
    Area().GetCurrentEditor()->append("x");
    Trigger("&Save");
    EXPECT_EQ(Bytes(path), bytes + "x");
    EXPECT_FALSE(Area().Open(m_folder.Path()));
    EXPECT_THAT(Strip(), ::testing::EndsWith(": is a folder"));
}

} // namespace
