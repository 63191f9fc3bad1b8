// What other programs do to the files of open documents.
#include "Comparison.h"
#include "Files/FilePath.h"
#include "Limits.h"
#include "MessageStrip.h"
#include "WorkbenchFixture.h"

#include <QDialog>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QTest>
#include <fcntl.h>
#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

using namespace Kesh;
namespace fs = std::filesystem;
using Workbench::CCodeEditor;

namespace {

class Disk : public CWorkbenchTest
{
protected:
    static std::string Bytes(const std::wstring& path) { return Host::PathToBytes(path); }
    /// Does something and gives the file the time that it had.
    static void AtTheSameTime(const std::wstring& path, const std::function<void()>& action)
    {
        struct stat before = {};
        ASSERT_EQ(::stat(Bytes(path).c_str(), &before), 0);
        action();
        const timespec times[] = {before.st_atim, before.st_mtim};
        ASSERT_EQ(::utimensat(AT_FDCWD, Bytes(path).c_str(), times, 0), 0);
    }
};

TEST_F(Disk, WhatHasOtherBytesIsReadAnewAndNothingElse)
{
    struct SCase
    {
        const char* name;
        std::function<void(const std::wstring& file)> change;
        const char* text; ///< afterwards
    };
    const SCase cases[] = {
        {"another file of the same size and time",
         [&](const std::wstring& file) {
             AtTheSameTime(file, [&] { fs::rename(Bytes(m_folder.Write(L"new", "two")), Bytes(file)); });
         },
         "two"},
        {"written in place at the same time",
         [&](const std::wstring& file) { AtTheSameTime(file, [&] { m_folder.Write(L"a.php", "two"); }); },
         "two"},
        {"touched",
         [](const std::wstring& file) { fs::last_write_time(Bytes(file), fs::file_time_type::clock::now()); },
         "one"},
        {"replaced by its like",
         [&](const std::wstring& file) { fs::rename(Bytes(m_folder.Write(L"new", "one")), Bytes(file)); },
         "one"},
        {"gone and back",
         [&](const std::wstring& file) {
             fs::remove(Bytes(file));
             EXPECT_TRUE(WaitFor([&] { return Strip().contains("no longer on disk"); }));
             m_folder.Write(L"a.php", "three");
         },
         "three"},
        {"gone and back as it was",
         [&](const std::wstring& file) {
             fs::remove(Bytes(file));
             EXPECT_TRUE(WaitFor([&] { return Strip().contains("no longer on disk"); }));
             m_folder.Write(L"a.php", "one");
         },
         "one"},
    };
    for (const SCase& c : cases) {
        SCOPED_TRACE(c.name);
        const std::wstring file = m_folder.Write(L"a.php", "one");
        CCodeEditor& editor = Open(file);
        editor.insert("!");
        editor.undo();
        ASSERT_FALSE(editor.isModified());
        c.change(file);
        EXPECT_TRUE(WaitFor([&] { return editor.text() == c.text && Strip().isEmpty(); }))
            << editor.text().toStdString() << Strip().toStdString();
        QTest::qWait(300);
        EXPECT_EQ(editor.text(), c.text);
        EXPECT_EQ(editor.isRedoAvailable(), editor.text() == "one") << "reading anew forgets what was undone";
        // With edits of the user's own, only what differs is asked about.
        editor.append("mine");
        Area().CheckDisk();
        EXPECT_EQ(Strip(), QString());
        Area().DiscardAll();
    }
}

TEST_F(Disk, ATouchedFileCanBeSavedWithoutAQuestion)
{
    const std::wstring file = m_folder.Write(L"a.php", "one");
    Open(file).append("x");
    fs::last_write_time(Bytes(file), fs::file_time_type::clock::now());
    Trigger("&Save");
    EXPECT_TRUE(m_prompts.m_asked.isEmpty());
    EXPECT_EQ(Host::ReadFileBytes(file), "onex");
}

TEST_F(Disk, WhatAnotherProgramHasChangedCanBeCompared)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "<?php\n$a = 1;\n"));
    editor.append("$mine = 1;\n");
    m_folder.Write(L"a.php", "<?php\n$a = 2;\n");
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("changed by another program"); }));
    Shoot(Window(), "changed");
    Answer("Co&mpare");
    auto* dialog = Window().findChild<QDialog*>("comparison");
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->findChild<QPlainTextEdit*>()->toPlainText(),
              " <?php\n-$a = 2;\n+$a = 1;\n+$mine = 1;\n ");
    Shoot(*dialog, "comparison");
    dialog->close();
    EXPECT_TRUE(Strip().contains("changed by another program")) << "the question waits";
    Answer("&Reload");
    EXPECT_EQ(editor.text(), "<?php\n$a = 2;\n");
}

TEST(Comparison, TellsWhatDiffersAndWhatIsAround)
{
    const struct
    {
        const char *before, *after, *shown; ///< a line for each letter
    } cases[] = {
        {"abc", "abc", "... a b c"},
        {"abc", "abd", " a, b,-c,+d"},
        {"abcdefgh", "abcdxfgh", "..., b, c, d,-e,+x, f, g, h"},
        {"abcdefghijklmnop", "xbcdefghijklmnoy", "-a,+x, b, c, d,..., m, n, o,-p,+y"},
        {"a", "ab", " a,+b"},
    };
    const auto lines = [](const char* letters) {
        QStringList all;
        for (const char* letter = letters; *letter; ++letter)
            all.append(QString(QLatin1Char(*letter)));
        return all.join('\n');
    };
    for (const auto& c : cases) {
        const QString shown = Workbench::CompareLines(lines(c.before), lines(c.after)).join(',');
        if (qstrcmp(c.before, c.after) != 0) {
            EXPECT_EQ(shown.toStdString(), c.shown);
        } else {
            EXPECT_FALSE(shown.contains('-') || shown.contains('+')) << shown.toStdString();
        }
    }
    // Very many lines, all of them different.
    QString many, others;
    for (int i = 0; i < 100000; ++i) {
        many += QString::number(i) + "\n";
        others += QString::number(-1 - i) + "\n";
    }
    EXPECT_EQ(Workbench::CompareLines(many, others).filter(QRegularExpression("^[-+]")).size(), 200000);
}

TEST_F(Disk, WhatCannotBeWrittenSaysSoBeforeAndAfter)
{
    const std::wstring file = m_folder.Write(L"a.php", "one");
    ::chmod(Bytes(file).c_str(), 0444);
    const CPlainUser plain;
    Open(file).append("x");
    EXPECT_EQ(Area().GetTabs().tabText(0), "a.php * (read-only)");
    Trigger("&Save");
    EXPECT_THAT(Strip().toStdString(), ::testing::MatchesRegex("Cannot save .*/a.php: Permission denied"));
    m_prompts.m_name = Host::PathToQt(m_folder.Path(L"b.php"));
    Answer("Save elsewhere...");
    EXPECT_EQ(Host::ReadFileBytes(m_folder.Path(L"b.php")), "onex");
    EXPECT_EQ(Area().GetTabs().tabText(0), "b.php");
    EXPECT_EQ(Strip(), QString());
}

} // namespace
