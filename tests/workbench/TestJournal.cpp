// What is not saved outlives the window, however that ends.
#include "Files/FilePath.h"
#include "JournalFolder.h"
#include "Limits.h"
#include "MessageStrip.h"
#include "Preferences.h"
#include "WorkbenchFixture.h"

#include <QTest>
#include <filesystem>
#include <gmock/gmock.h>

using namespace Kesh;
namespace fs = std::filesystem;
using Workbench::CCodeEditor;
using Workbench::IPrompts;

namespace {

class Journal : public CWorkbenchTest
{
protected:
    fs::path Place() const { return Host::PathToBytes(m_folder.Path(L"settings/workbench.journal")); }
    int CountTexts() const
    {
        int count = 0;
        std::error_code ignored;
        for (fs::recursive_directory_iterator entry(Place(), ignored), end; entry != end;
             entry.increment(ignored))
            count += entry->path().extension() == ".text";
        return count;
    }
    bool IsPlaceEmpty() const { return !fs::exists(Place()) || fs::is_empty(Place()); }
    /// Leaves on disk what a kill would leave there now.
    void KillWindow()
    {
        const fs::path copy = Host::PathToBytes(m_folder.Path(L"copy"));
        fs::remove_all(copy);
        fs::copy(Place(), copy, fs::copy_options::recursive);
        CloseWindow();
        fs::remove_all(Place());
        fs::rename(copy, Place());
    }
    void Restart()
    {
        OpenWindow();
        Window().Begin();
    }
    void UseHotExit()
    {
        Workbench::SChoices choices = Workbench::CPreferences(*m_settings).GetChoices();
        choices.hotExit = true;
        Window().ApplyChoices(choices);
    }
};

TEST_F(Journal, WhatAKillLeavesIsOfferedAtTheNextStart)
{
    struct SCase
    {
        const char* name;
        std::function<void(const std::wstring& file)> meanwhile; ///< what becomes of the file
        const char* said;                                        ///< after the text has come back
        const char* undone;                                      ///< what the first undo brings
    };
    const SCase cases[] = {
        {"unchanged", [](const std::wstring&) {}, "", "one\ntwo\n"},
        {"changed", [&](const std::wstring&) { m_folder.Write(L"a.php", "another\n"); },
         "changed by another program", "another\n"},
        {"gone", [](const std::wstring& file) { fs::remove(Host::PathToBytes(file)); }, "no longer on disk",
         ""},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.name);
        const std::wstring file = m_folder.Write(L"a.php", "one\ntwo\n");
        Open(m_folder.Write(L"b.php", "other"));
        CCodeEditor& editor = Open(file);
        editor.setFocus();
        editor.SetCaretPosition({3, 1});
        QTest::keyClicks(&editor, "XY");
        ASSERT_TRUE(QTest::qWaitFor([&] { return CountTexts() == 1; }, 2000));
        KillWindow();
        c.meanwhile(file);
        Restart();
        EXPECT_THAT(Strip().toStdString(), ::testing::HasSubstr("ended before these changes were saved: "));
        EXPECT_THAT(Strip().toStdString(), ::testing::HasSubstr("a.php"));
        Answer("&Restore");
        ASSERT_EQ(Area().GetTabs().count(), 2);
        CCodeEditor& restored = *Area().FindEditor(file);
        EXPECT_EQ(restored.text(), "one\ntwoXY\n");
        EXPECT_TRUE(restored.isModified());
        EXPECT_EQ(restored.GetCaretPosition(), (SyntaxParser::CIterator{5, 1}));
        EXPECT_THAT(Strip().toStdString(), ::testing::HasSubstr(c.said));
        EXPECT_EQ(Strip().isEmpty(), *c.said == '\0');
        // Noted anew before the old note goes.
        EXPECT_TRUE(WaitFor([&] { return CountTexts() == 1; }));
        restored.undo();
        EXPECT_EQ(restored.text(), c.undone);
        Area().DiscardAll();
        EXPECT_TRUE(WaitFor([&] { return CountTexts() == 0; }));
        OpenWindow();
        EXPECT_TRUE(IsPlaceEmpty());
    }
}

TEST_F(Journal, FormatsAndNamesComeBack)
{
    const struct
    {
        std::wstring name;
        std::string before, after; ///< bytes of the file
    } cases[] = {{L"crlf.php", "a\r\n", "a\r\n\xC3\xA9"},
                 {L"utf16.php",
                  std::string("\xFF\xFE"
                              "a\0",
                              4),
                  std::string("\xFF\xFE"
                              "a\0\xE9\0",
                              6)},
                 {Host::PathFromBytes("b\xFF"
                                      "d.php"),
                  "", "\xC3\xA9"},
                 {L"mark.php",
                  "\xEF\xBB\xBF"
                  "a",
                  "\xEF\xBB\xBF"
                  "a\xC3\xA9"}};
    for (const auto& c : cases)
        Open(m_folder.Write(c.name, c.before)).append(QString(QChar(0xE9)));
    ASSERT_TRUE(QTest::qWaitFor([&] { return CountTexts() == 4; }, 2000));
    KillWindow();
    for (const auto& c : cases)
        fs::remove(Host::PathToBytes(m_folder.Path(c.name))); // what was known of them is in the journal
    Restart();
    Answer("&Restore");
    EXPECT_TRUE(Area().SaveAll());
    for (const auto& c : cases)
        EXPECT_EQ(Host::ReadFileBytes(m_folder.Path(c.name)), c.after);
}

TEST_F(Journal, TabsAndCaretsComeBackAfterAKill)
{
    const std::wstring a = m_folder.Write(L"p/a.php", "<?php\n$a = 1;\n");
    const std::wstring b = m_folder.Write(L"p/b.php", "<?php\n$b = 1;\n");
    OpenProject(m_folder.Path(L"p"));
    Open(a);
    Open(b);
    Area().GetTabs().setCurrentIndex(0);
    Area().GetCurrentEditor()->SetCaretPosition({2, 1});
    QTest::qWait(2000);
    KillWindow();
    Restart();
    EXPECT_EQ(Strip(), QString()) << "nothing was unsaved";
    ASSERT_EQ(Area().GetTabs().count(), 2);
    EXPECT_EQ(Area().GetCurrent()->GetPath(), a);
    EXPECT_EQ(Area().GetCurrentEditor()->GetCaretPosition(), (SyntaxParser::CIterator{2, 1}));
    EXPECT_TRUE(WaitFor([&] { return Project().IsOpened(); }));
}

TEST_F(Journal, WhatIsOfferedWaitsForItsAnswer)
{
    const std::wstring file = m_folder.Write(L"a.php", "one");
    Open(file).append("x");
    ASSERT_TRUE(QTest::qWaitFor([&] { return CountTexts() == 1; }, 2000));
    KillWindow();
    for (int start = 0; start < 2; ++start) {
        Restart();
        ASSERT_THAT(Strip().toStdString(), ::testing::HasSubstr("a.php")) << start;
        {
            // Another window that starts meanwhile is not offered the same.
            Workbench::CMainWindow other(*m_settings, *m_translations);
            other.Begin();
            EXPECT_EQ(other.GetArea().GetMessageStrip().GetText(), QString());
        }
        Answer(start == 0 ? "Dismiss" : "&Discard");
        CloseWindow();
    }
    EXPECT_TRUE(IsPlaceEmpty());
    EXPECT_EQ(Host::ReadFileBytes(file), "one");
}

TEST_F(Journal, WhatIsSavedOrUndoneLeavesIt)
{
    const std::wstring file = m_folder.Write(L"a.php", "one");
    const std::function<void()> ends[] = {
        [&] { Trigger("&Save"); },
        [&] { Area().GetCurrentEditor()->undo(); },
        [&] { Area().DiscardAll(); },
        [&] {
            m_prompts.m_name = Host::PathToQt(m_folder.Path(L"b.php"));
            Trigger("Save &as...");
        },
    };
    int number = 0;
    for (const auto& end : ends) {
        SCOPED_TRACE(number++);
        Open(file).insert("x");
        ASSERT_TRUE(QTest::qWaitFor([&] { return CountTexts() == 1; }, 2000));
        end();
        EXPECT_TRUE(WaitFor([&] { return CountTexts() == 0; }));
        Area().DiscardAll();
    }
}

TEST_F(Journal, AClosedTabOrAGoneFileIsNotForgotten)
{
    const std::wstring file = m_folder.Write(L"a.php", "only here");
    Open(file);
    fs::remove(Host::PathToBytes(file));
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("no longer on disk"); }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return CountTexts() == 1; }, 2000));
    m_prompts.m_save = IPrompts::ESave::Cancel;
    EXPECT_FALSE(Area().Close(*Area().GetCurrent()));
    EXPECT_EQ(m_prompts.m_asked, QStringList{Host::PathToQt(file)});
    m_prompts.m_save = IPrompts::ESave::Save;
    EXPECT_TRUE(Area().Close(*Area().GetCurrent()));
    EXPECT_EQ(Host::ReadFileBytes(file), "only here");
}

TEST_F(Journal, QuittingCanKeepWhatIsUnsaved)
{
    const std::wstring file = m_folder.Write(L"a.php", "one\n");
    UseHotExit();
    CCodeEditor& editor = Open(file);
    editor.append("two");
    editor.SetCaretPosition({2, 1});
    EXPECT_TRUE(CloseByUser());
    EXPECT_TRUE(m_prompts.m_asked.isEmpty());
    EXPECT_EQ(Host::ReadFileBytes(file), "one\n");
    for (int start = 0; start < 2; ++start) {
        Restart();
        EXPECT_EQ(Strip(), QString());
        ASSERT_NE(Area().GetCurrentEditor(), nullptr);
        EXPECT_EQ(Area().GetCurrentEditor()->text(), "one\ntwo");
        EXPECT_EQ(Area().GetCurrentEditor()->GetCaretPosition(), (SyntaxParser::CIterator{2, 1}));
        EXPECT_TRUE(Window().isWindowModified());
        EXPECT_TRUE(CloseByUser());
    }
    // Also when something else is asked for.
    OpenWindow();
    Window().Begin({m_folder.Write(L"b.php", "other")});
    EXPECT_EQ(Area().GetTabs().count(), 2);
    Area().DiscardAll();
    EXPECT_TRUE(CloseByUser());
    CloseWindow();
    EXPECT_TRUE(IsPlaceEmpty());
}

TEST_F(Journal, AFullDiskIsToldAndNothingIsGivenUp)
{
    UseHotExit();
    const std::wstring file = m_folder.Write(L"a.php", "one");
    {
        const CFullDisk full;
        Open(file).append("x");
        ASSERT_TRUE(WaitFor([&] { return Strip().contains("cannot be noted on disk"); }));
        m_prompts.m_save = IPrompts::ESave::Cancel;
        EXPECT_FALSE(Window().close()) << "the question is the last way out";
        EXPECT_EQ(m_prompts.m_asked.size(), 1);
    }
    EXPECT_TRUE(CloseByUser());
    Restart();
    ASSERT_NE(Area().GetCurrentEditor(), nullptr);
    EXPECT_EQ(Area().GetCurrentEditor()->text(), "onex");
}

TEST_F(Journal, ADamagedOneIsKeptAndHarmsNothing)
{
    Open(m_folder.Write(L"a.php", "one")).append("x");
    ASSERT_TRUE(QTest::qWaitFor([&] { return CountTexts() == 1; }, 2000));
    KillWindow();
    fs::path folder = fs::directory_iterator(Place())->path();
    std::ofstream(folder / "9.text") << "{\"path\": ";
    Restart();
    Answer("&Restore");
    EXPECT_EQ(Area().GetCurrentEditor()->text(), "onex");
    Area().DiscardAll();
    CloseWindow();
    EXPECT_TRUE(fs::exists(folder / "9.text")) << "somebody may still read it";
}

} // namespace
