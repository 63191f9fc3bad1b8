// What keys do, and what they can reach.
#include "CodeEditor.h"
#include "ErrorPanel.h"
#include "FindBar.h"
#include "Languages.h"
#include "Preferences.h"
#include "QuickOpen.h"
#include "SearchPanel.h"
#include "SettingsDialog.h"
#include "TextMatches.h"
#include "WorkbenchFixture.h"

#include <QAbstractButton>
#include <QAction>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>
#include <gmock/gmock.h>

using namespace Kesh;
using Workbench::CCodeEditor;

namespace {

class Keys : public CWorkbenchTest
{
protected:
    QWidget* Focused() { return Window().focusWidget(); }
    QString Result() { return Area().GetFindBar().findChild<QLabel*>("findResult")->text(); }
};

// "|" is where the caret is.
TEST_F(Keys, ANewLineBeginsWhereItBelongsAndGoesInOneStep)
{
    const struct
    {
        const char *before, *keys, *after;
    } cases[] = {
        {"<?php\n    $a = 1;|\n    x\n", "\n", "<?php\n    $a = 1;\n    |\n    x\n"},
        {"    if ($a) {|", "\n", "    if ($a) {\n        |"},
        {"    f(|)", "\n", "    f(\n        |\n    )"},
        {"    x\n    if ($a) {|}", "\n", "    x\n    if ($a) {\n        |\n    }"},
        {"\tx\n\tif ($a) {|", "\n", "\tx\n\tif ($a) {\n\t\t|"},
        {"    |x", "\n", "    \n    |x"},
        {"|    x", "\n", "\n|    x"},
        {"    a|b", "\n", "    a\n    |b"},
        {"    if ($a) {\n        f();\n        |", "}", "    if ($a) {\n        f();\n    }|"},
        {"<?php\n    if ($a) {\n        f('}');\n        |", "}",
         "<?php\n    if ($a) {\n        f('}');\n    }|"},
        {"    x = {|", "}", "    x = {}|"},
        {"        |", "}", "        }|"},
        {"  a { \xC3\xA9 {|", "\n", "  a { \xC3\xA9 {\n    |"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.before);
        QString text = QString::fromUtf8(c.before);
        const int caret = text.indexOf('|');
        text.remove('|');
        CCodeEditor& editor = Open(m_folder.Write(L"a.php", text.toStdString()));
        editor.setFocus();
        const QString above = text.left(caret);
        editor.setCursorPosition(above.count('\n'), caret - above.lastIndexOf('\n') - 1);
        if (*c.keys == '\n')
            QTest::keyClick(&editor, Qt::Key_Return);
        else
            QTest::keyClicks(&editor, c.keys);
        int line = 0, index = 0;
        editor.getCursorPosition(&line, &index);
        QString shown = editor.text();
        shown.insert(editor.text().split('\n').mid(0, line).join('\n').size() + (line > 0) + index, '|');
        EXPECT_EQ(shown.toStdString(), c.after);
        editor.undo();
        EXPECT_EQ(editor.text(), text) << "one step";
        EXPECT_FALSE(editor.isUndoAvailable());
        Area().DiscardAll();
    }
}

TEST_F(Keys, FindingAndReplacingGoHandInHand)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "one two\none one\n"));
    auto* pattern = Window().findChild<QLineEdit*>("findPattern");
    auto* replacement = Window().findChild<QLineEdit*>("findReplacement");
    Trigger("R&eplace...");
    EXPECT_EQ(Focused(), pattern);
    QTest::keyClicks(pattern, "one");
    EXPECT_TRUE(WaitFor([&] { return Result() == "Found: 3"; })) << Result().toStdString();
    QTest::keyClick(pattern, Qt::Key_Return);
    EXPECT_EQ(Result(), "1 of 3");
    QTest::keyClick(pattern, Qt::Key_Return);
    EXPECT_EQ(Result(), "2 of 3");
    QTest::keyClick(pattern, Qt::Key_Tab);
    EXPECT_EQ(Focused(), replacement);
    QTest::keyClicks(replacement, "1");
    QTest::keyClick(replacement, Qt::Key_Return);
    EXPECT_EQ(editor.text(), "one two\n1 one\n");
    EXPECT_EQ(Result(), "2 of 2");
    Shoot(Window(), "find-count");
    // A regular expression knows lines and groups, here as in "Replace all".
    editor.setText("one two\none one\n");
    editor.SetCaretPosition({3, 1});
    for (QAbstractButton* choice : Area().GetFindBar().findChildren<QAbstractButton*>())
        if (choice->text() == "Regular e&xpression")
            choice->setChecked(true);
    pattern->setText("^(o)n");
    Trigger("Find &next");
    EXPECT_EQ(Result(), "1 of 2") << "round the end";
    Trigger("Find &next");
    EXPECT_EQ(Result(), "2 of 2");
    Trigger("Find pre&vious");
    EXPECT_EQ(Result(), "1 of 2");
    replacement->setText("\\1N\\0");
    QTest::keyClick(replacement, Qt::Key_Return);
    EXPECT_EQ(editor.text(), "oNone two\none one\n");
    EXPECT_EQ(editor.selectedText(), "on");
    editor.undo();
    EXPECT_EQ(editor.text(), "one two\none one\n") << "one step";
    pattern->setText("(");
    Trigger("Find &next");
    EXPECT_EQ(Result(), "Not found");
    pattern->setText("nothing");
    EXPECT_TRUE(WaitFor([&] { return Result() == "Not found"; }));
    // With a word selected it is known what to find.
    editor.setSelection(0, 4, 0, 7);
    Trigger("R&eplace...");
    EXPECT_EQ(pattern->text(), "two");
    EXPECT_EQ(Focused(), replacement);
    Area().DiscardAll();
}

TEST_F(Keys, CountingCrowdsStopsNobody)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", std::string(5 << 20, 'e')));
    const Workbench::SMatchCount counted = Workbench::CountMatches(editor, {"e", ""});
    EXPECT_GT(counted.count, 0);
    EXPECT_TRUE(counted.isComplete || counted.count < 5 << 20);
}

TEST(QuickOpen, TheBestNamesComeFirst)
{
    const QStringList names{"src/Cart.php",       "src/CartItem.php",          "cart/index.php",
                            "tests/CartTest.php", "public/shopping-cart.html", "readme.md"};
    const struct
    {
        const char* typed;
        QStringList best;
    } cases[] = {
        {"cart",
         {"src/Cart.php", "src/CartItem.php", "tests/CartTest.php", "public/shopping-cart.html",
          "cart/index.php"}},
        {"CARTT", {"tests/CartTest.php"}},
        {"src cart", {"src/Cart.php", "src/CartItem.php"}},
        {"src/c", {"src/Cart.php", "src/CartItem.php"}},
        {"xyz", {}},
        {"", names},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Workbench::BestNames(names, c.typed, 10), c.best) << c.typed;
    EXPECT_EQ(Workbench::BestNames(names, "", 2).size(), 2);
}

TEST_F(Keys, AFileIsOpenedByAPartOfItsName)
{
    for (int i = 0; i < 2500; ++i)
        m_folder.Write(L"p/d" + std::to_wstring(i % 50) + L"/file" + std::to_wstring(i) + L".txt", "");
    m_folder.Write(L"p/sub/Wanted.php", "<?php\n");
    OpenProject(m_folder.Path(L"p"));
    Trigger("Open &by name...");
    auto* picker = Window().findChild<Workbench::CQuickOpen*>();
    ASSERT_TRUE(picker->isVisible());
    auto* list = picker->findChild<QListWidget*>();
    auto* text = picker->findChild<QLineEdit*>();
    ASSERT_TRUE(WaitFor([&] { return list->count() == 100; }));
    QTest::keyClicks(text, "want");
    ASSERT_EQ(list->count(), 1);
    Shoot(*picker, "quick-open");
    QTest::keyClick(text, Qt::Key_Return);
    EXPECT_FALSE(picker->isVisible());
    ASSERT_NE(Area().GetCurrent(), nullptr);
    EXPECT_EQ(Area().GetCurrent()->GetPath(), m_folder.Path(L"p/sub/Wanted.php"));
    // The keys of the list are those of the line.
    Trigger("Open &by name...");
    QTest::keyClicks(text, "file12");
    QTest::keyClick(text, Qt::Key_Down);
    QTest::keyClick(text, Qt::Key_Down);
    EXPECT_EQ(list->currentRow(), 2);
    QTest::keyClick(text, Qt::Key_Escape);
    EXPECT_FALSE(picker->isVisible());
}

TEST_F(Keys, SeveralFilesAreOpenedAtOnce)
{
    m_folder.Write(L"p/a.php", "<?php\n");
    Window().Begin({m_folder.Path(L"p"), m_folder.Path(L"p/a.php"), m_folder.Write(L"b.php", "<?php\n")});
    EXPECT_TRUE(WaitFor([&] { return Project().IsOpened(); }));
    EXPECT_EQ(Area().GetTabs().count(), 2);
}

TEST_F(Keys, TheMenuOfARowAndOfTheEditorComesByKey)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "<?php\nelse;\n"));
    ASSERT_TRUE(WaitForRows(1));
    Window().activateWindow();
    const auto menuAt = [&](QWidget& widget) {
        widget.setFocus();
        QString titles;
        QTimer::singleShot(100, [&] {
            if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
                for (QAction* action : menu->actions())
                    titles += action->text() + '|';
                menu->close();
            }
        });
        QTest::keyClick(&widget, Qt::Key_F10, Qt::ShiftModifier);
        QTest::qWait(200);
        return titles;
    };
    Bar()->setCurrentItem(Bar()->topLevelItem(0));
    EXPECT_TRUE(menuAt(*Bar()).startsWith("&Open|&Copy|"));
    EXPECT_TRUE(menuAt(editor).startsWith("&Undo|"));
}

QStringList Clashes(const QStringList& titles)
{
    QMap<QChar, QString> known;
    QStringList clashes;
    for (const QString& title : titles) {
        const QKeySequence key = QKeySequence::mnemonic(title);
        if (key.isEmpty())
            continue;
        const QChar letter = key.toString().back();
        if (known.contains(letter))
            clashes.append(known[letter] + " / " + title);
        known[letter] = title;
    }
    return clashes;
}

TEST_F(Keys, NoTwoThingsHaveTheSameLetter)
{
    for (const char* language : {"en", "de"}) {
        SCOPED_TRACE(language);
        Workbench::SChoices choices;
        choices.language = language;
        CloseWindow();
        Workbench::CPreferences(*m_settings).SetChoices(choices);
        OpenWindow();
        const auto expectNone = [](const QString& where, const QStringList& titles) {
            EXPECT_EQ(Clashes(titles).join("\n").toStdString(), "") << where.toStdString();
        };
        const auto titlesOf = [](const QList<QAction*>& actions) {
            QStringList titles;
            for (const QAction* action : actions)
                titles.append(action->text());
            return titles;
        };
        const auto namesIn = [](const QWidget& widget) {
            QStringList titles;
            for (const QAbstractButton* button : widget.findChildren<QAbstractButton*>())
                titles.append(button->text());
            for (const QLabel* label : widget.findChildren<QLabel*>())
                if (label->buddy())
                    titles.append(label->text());
            return titles;
        };
        for (QMenu* menu : Window().menuBar()->findChildren<QMenu*>())
            expectNone(menu->title(), titlesOf(menu->actions()));
        // What can be seen at once: the menu bar, the searches, and an answer to a message.
        QStringList atOnce = titlesOf(Window().menuBar()->actions()) + namesIn(Area().GetFindBar()) +
                             namesIn(*Window().findChild<Workbench::CSearchPanel*>());
        expectNone("window", atOnce);
        for (const QStringList& answers :
             {QStringList{"Co&mpare", "&Reload", "&Keep my edits"}, QStringList{"&Restore", "&Discard"},
              QStringList{"&Go there", "Write as &UTF-8"}, QStringList{"&Open anyway"},
              QStringList{"Save elsewhere..."}}) {
            QStringList all = atOnce;
            for (const QString& answer : answers)
                all.append(
                    QString::fromStdWString(LangSupport::CLangSupport::LoadStr(answer.toUtf8().constData())));
            expectNone(answers.join(' '), all);
        }
        Workbench::CSettingsDialog dialog(choices, Workbench::GetLanguages({}), &Window());
        expectNone("settings", namesIn(dialog));
    }
}

TEST_F(Keys, TheLanguageIsTheSystemsUnlessItIsChosen)
{
    const CTempFolder folder;
    folder.Write(L"fr.json", "{}");
    const struct
    {
        QStringList system;
        const char* language;
    } cases[] = {{{"de-AT", "de"}, "de"}, {{"de_AT"}, "de"}, {{"en-GB", "de"}, "en"},
                 {{"it", "de"}, "de"},    {{"fr-FR"}, "fr"}, {{"it", "en", "fr"}, "en"},
                 {{"C"}, "en"},           {{}, "en"}};
    for (const auto& c : cases)
        EXPECT_EQ(Workbench::ChooseLanguage(c.system, Host::PathToQt(folder.Path())), c.language)
            << c.system.join(' ').toStdString();
    const struct
    {
        const char *chosen, *menu;
    } menus[] = {{"", "&File"}, {"en", "&File"}, {"de", "&Datei"}}; // tests run in no language
    for (const auto& c : menus) {
        CloseWindow();
        Workbench::SChoices choices;
        choices.language = c.chosen;
        Workbench::CPreferences(*m_settings).SetChoices(choices);
        OpenWindow();
        EXPECT_EQ(Window().menuBar()->actions().first()->text(), c.menu) << c.chosen;
    }
}

TEST_F(Keys, ALargeFileIsPlainButLooksLikeTheOthers)
{
    Workbench::SChoices choices = Workbench::CPreferences(*m_settings).GetChoices();
    choices.appearance = Workbench::EAppearance::Dark;
    choices.fontSize = 14;
    Window().ApplyChoices(choices);
    std::string text = "<?php\n";
    while (text.size() <= 8 << 20)
        text += "// " + std::string(1000, 'x') + "\n";
    CCodeEditor& large = Open(m_folder.Write(L"large.php", text));
    CCodeEditor& small = Open(m_folder.Write(L"small.php", "<?php\n"));
    EXPECT_TRUE(large.IsPlain());
    EXPECT_FALSE(small.IsPlain());
    const auto look = [](CCodeEditor& editor, int message) {
        return editor.SendScintilla(static_cast<unsigned>(message), 0UL); // that of text
    };
    for (const int message : {QsciScintillaBase::SCI_STYLEGETSIZE, QsciScintillaBase::SCI_STYLEGETBACK,
                              QsciScintillaBase::SCI_STYLEGETFORE})
        EXPECT_EQ(look(large, message), look(small, message)) << message;
    Area().GetTabs().setCurrentIndex(0);
    EXPECT_TRUE(Window().findChild<QAbstractButton*>("encoding")->text().contains("plain text"));
    Shoot(Window(), "large");
    choices.fontSize = 9;
    choices.appearance = Workbench::EAppearance::System;
    Window().ApplyChoices(choices);
    EXPECT_EQ(look(large, QsciScintillaBase::SCI_STYLEGETSIZE), 9);
    EXPECT_EQ(look(large, QsciScintillaBase::SCI_STYLEGETBACK),
              look(small, QsciScintillaBase::SCI_STYLEGETBACK));
}

} // namespace
