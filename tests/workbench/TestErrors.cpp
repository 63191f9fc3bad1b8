#include "ErrorHelp.h"
#include "MessageStrip.h"
#include "Preferences.h"
#include "WorkbenchFixture.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QTabBar>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QToolButton>
#include <gmock/gmock.h>

using namespace Kesh;
using Workbench::CCodeEditor;

namespace {

class Errors : public CWorkbenchTest
{
};

const std::string Clean = "<html>\n<body>\n<p>text</p>\n</body>\n</html>\n";
const std::string Wrong = "<html>\n<body>\n<pp>text</pp>\n<p clas=\"a\">x</p>\n</body>\n</html>\n";

TEST_F(Errors, ATypedMistakeShowsUpAndGoesWhenMended)
{
    CCodeEditor& editor = Open(m_folder.Write(L"page.html", Clean));
    editor.setFocus();
    editor.SetCaretPosition({2, 2}); // behind "<p"
    QTest::keyClicks(&editor, "q");
    EXPECT_EQ(Area().GetTabs().tabText(0), "page.html *");
    ASSERT_TRUE(WaitForRows(1));
    EXPECT_THAT(Rows()[0].toStdString(), ::testing::StartsWith("Error|page.html - 3|"));
    ASSERT_TRUE(WaitFor([&] { return !Underlines(editor).isEmpty(); }));
    EXPECT_EQ(Underlines(editor), QStringList{"2:0-2:3"});
    EXPECT_EQ(MarkedLines(editor), QList<int>{2});
    Shoot(Window(), "typed-mistake");

    QTest::keyClick(&editor, Qt::Key_Backspace);
    ASSERT_TRUE(WaitForRows(0));
    ASSERT_TRUE(WaitFor([&] { return Underlines(editor).isEmpty(); }));
    EXPECT_TRUE(MarkedLines(editor).isEmpty());
}

TEST_F(Errors, APhpMistakeIsFoundInTheProjectAndInTheEditor)
{
    const std::wstring file = m_folder.Write(L"project/a.php", "<?php\n$a = 1\n$b = 2;\n");
    m_folder.Write(L"project/b.php", "<?php\necho 1;\n");
    OpenProject(m_folder.Path(L"project"));
    ASSERT_TRUE(WaitForRows(1));
    EXPECT_THAT(Rows()[0].toStdString(), ::testing::StartsWith("Error|a.php - 3|"));
    CCodeEditor& editor = Open(file);
    ASSERT_TRUE(WaitFor([&] { return !Underlines(editor).isEmpty(); }));
    EXPECT_EQ(MarkedLines(editor), QList<int>{2});
    EXPECT_EQ(Underlines(editor), QStringList{"2:0-2:2"});
}

TEST_F(Errors, PhpIsCheckedAgainstItsGrammarAsUserAndProjectWant)
{
    m_folder.Write(L"project/a.php", "<?php\nclass A {\n  function f();\n}\n$a?->b();\n");
    OpenProject(m_folder.Path(L"project"));
    EXPECT_EQ(Rows().size(), 0);
    Workbench::SChoices choices = Workbench::CPreferences(*m_settings).GetChoices();
    choices.grammar = true;
    Window().ApplyChoices(choices);
    ASSERT_TRUE(WaitForRows(1));
    EXPECT_EQ(Rows()[0].toStdString(), "Error|a.php - 3|Method without a body");
    m_folder.Write(L"project/composer.json", R"({"require": {"php": "^7.4"}})");
    ASSERT_TRUE(Window().CloseProject());
    OpenProject(m_folder.Path(L"project"));
    ASSERT_TRUE(WaitForRows(2));
    m_folder.Write(L"project/code-analyzer.json", R"({"grammar": false})");
    ASSERT_TRUE(Window().CloseProject());
    OpenProject(m_folder.Path(L"project"));
    EXPECT_TRUE(WaitForRows(0));
}

TEST_F(Errors, AProjectsHtmlAndCssAreCheckedUnlessTheUserObjects)
{
    m_folder.Write(L"project/a.php", "<?php\nelse;\n?><nix>\n");
    m_folder.Write(L"project/b.html", "<nix>\n");
    m_folder.Write(L"project/c.css", "a { colr: red }\n");
    m_folder.Write(L"project/d.inc", "<?php\nelse;\n");
    m_folder.Write(L"project/e.tpl", "<nix>\n");
    OpenProject(m_folder.Path(L"project"));
    EXPECT_EQ(Bar()->topLevelItemCount(), 5) << Rows().join('\n').toStdString();
    Workbench::SChoices choices = Workbench::CPreferences(*m_settings).GetChoices();
    choices.checksMarkup = false;
    Window().ApplyChoices(choices);
    m_folder.Write(L"project/a.php", "<?php\nelse; else;\n?><nix>\n");
    Trigger("Check project");
    EXPECT_TRUE(WaitFor([&] { return Rows().filter("ElSE").size() == 3; }));
    EXPECT_EQ(Rows().filter("a.php").size(), 2) << Rows().join('\n').toStdString();
}

TEST_F(Errors, PartsOfDocumentsAreNotComparedWhileOneIsOpen)
{
    m_folder.Write(L"project/head.php", "<section><?php f();");
    const std::wstring foot = m_folder.Write(L"project/foot.php", "<?php f() ?></section>");
    OpenProject(m_folder.Path(L"project"));
    EXPECT_TRUE(Rows().isEmpty()) << Rows().join('\n').toStdString();
    Open(foot);
    Trigger("Check project");
    ASSERT_TRUE(WaitFor([&] { return !Window().GetApplication().Threads().IsRunning(); }));
    EXPECT_TRUE(Rows().isEmpty()) << Rows().join('\n').toStdString();
    ASSERT_TRUE(Area().Close(*Area().GetCurrent()));
    m_folder.Write(L"project/foot.php", "<p>x</p>");
    Trigger("Check project");
    EXPECT_TRUE(WaitForRows(1));
}

TEST_F(Errors, ARunningCheckIsShownAndCanBeStopped)
{
    std::string text = "<?php\n";
    for (int i = 0; i < 5000; ++i)
        text += "$a = f($b);\n";
    for (int i = 0; i < 100; ++i)
        m_folder.Write(L"project/f" + std::to_wstring(i) + L".php", text + "else;\n");
    Window().OpenProject(m_folder.Path(L"project"));
    auto* stop = Window().findChild<QToolButton*>("stopCheck");
    ASSERT_TRUE(WaitFor([&] { return stop->isVisible(); }));
    stop->click();
    EXPECT_FALSE(Window().GetApplication().Threads().IsRunning());
    EXPECT_TRUE(WaitFor([&] { return !stop->isVisible(); }));
    EXPECT_LT(Bar()->topLevelItemCount(), 100);
    const auto* counts = Window().findChild<QLabel*>("errorPanelCounts");
    EXPECT_TRUE(counts->text().endsWith("incomplete: the check was stopped")) << counts->text().toStdString();
    Trigger("Check project");
    EXPECT_TRUE(WaitForRows(100));
    EXPECT_TRUE(WaitFor([&] { return counts->text() == "Errors: 100, warnings: 0"; }))
        << counts->text().toStdString();
}

TEST_F(Errors, ADoubleClickOpensTheFileAtTheError)
{
    const std::wstring file = m_folder.Write(L"project/page.html", Wrong);
    OpenProject(m_folder.Path(L"project"));
    Open(file);
    ASSERT_TRUE(WaitForRows(2));
    ASSERT_TRUE(Area().Close(*Area().GetCurrent()));
    EXPECT_EQ(Bar()->topLevelItemCount(), 2) << "errors of the project's files outlive their tabs";

    DoubleClickRow(1);
    ASSERT_NE(Area().GetCurrent(), nullptr);
    EXPECT_EQ(Area().GetCurrent()->GetPath(), file);
    EXPECT_EQ(Area().GetCurrentEditor()->GetCaretPosition(), (SyntaxParser::CIterator{3, 3}));
}

TEST_F(Errors, ARowWhoseLineIsGoneHarmsNothing)
{
    const std::wstring file = m_folder.Write(L"project/page.html", Wrong);
    OpenProject(m_folder.Path(L"project"));
    Open(file);
    ASSERT_TRUE(WaitForRows(2));
    ASSERT_TRUE(Area().Close(*Area().GetCurrent()));
    m_folder.Write(L"project/page.html", "<p>");
    DoubleClickRow(0);
    EXPECT_EQ(Area().GetCurrent()->GetPath(), file);
    EXPECT_TRUE(WaitForRows(0)) << "the check of the opened file mends the list";
}

TEST_F(Errors, AProjectsErrorsAreThereAgainAfterARestart)
{
    const std::wstring file = m_folder.Write(L"project/page.html", Wrong);
    OpenProject(m_folder.Path(L"project"));
    Open(file);
    ASSERT_TRUE(WaitForRows(2));
    const QStringList rows = Rows();
    Shoot(Window(), "project");
    ASSERT_TRUE(CloseByUser());
    OpenWindow();
    EXPECT_EQ(Bar()->topLevelItemCount(), 0);
    OpenProject(m_folder.Path(L"project"));
    EXPECT_EQ(Rows(), rows);
    ASSERT_TRUE(Window().CloseProject());
    EXPECT_EQ(Bar()->topLevelItemCount(), 0);
    const auto* counts = Window().findChild<QLabel*>("errorCounts");
    EXPECT_TRUE(WaitFor([&] { return counts->text().isEmpty(); })) << "nothing is open that has no errors";
}

TEST_F(Errors, ClosingAFileOutsideAProjectTakesItsErrorsAway)
{
    Open(m_folder.Write(L"page.html", Wrong));
    ASSERT_TRUE(WaitForRows(2));
    ASSERT_TRUE(Area().Close(*Area().GetCurrent()));
    EXPECT_TRUE(WaitForRows(0));
}

TEST_F(Errors, WhatIsDiscardedLeavesNoErrorsBehind)
{
    const std::wstring file = m_folder.Write(L"project/a.php", "<?php\n$a = 1\n$b = 2;\n");
    OpenProject(m_folder.Path(L"project"));
    ASSERT_TRUE(WaitForRows(1));
    const QStringList rows = Rows();
    m_prompts.m_save = Workbench::IPrompts::ESave::Discard;
    const std::function<void()> closings[] = {
        [&] { EXPECT_TRUE(Area().Close(*Area().GetCurrent())); },
        [&] { EXPECT_TRUE(Area().CloseAll()); },
        [&] { Area().DiscardAll(); },
    };
    for (const auto& close : closings) {
        Open(file).append("else; else; else;");
        ASSERT_TRUE(WaitForRows(4));
        close();
        EXPECT_EQ(Area().GetCurrent(), nullptr);
        ASSERT_TRUE(WaitFor([&] { return Rows() == rows; })) << Rows().join('\n').toStdString();
    }
}

TEST_F(Errors, AMistakeMendedAndSavedJustBeforeClosingIsGone)
{
    const std::wstring file = m_folder.Write(L"project/a.php", "<?php\n$a = 1\n$b = 2;\n");
    OpenProject(m_folder.Path(L"project"));
    ASSERT_TRUE(WaitForRows(1));
    Open(file).setText("<?php\n$a = 1;\n$b = 2;\n");
    Trigger("&Save");
    ASSERT_TRUE(Area().Close(*Area().GetCurrent()));
    EXPECT_TRUE(WaitForRows(0));
}

TEST_F(Errors, NextAndPreviousErrorGoRoundAllFiles)
{
    const std::wstring first = m_folder.Write(L"project/a.html", Wrong);
    const std::wstring second = m_folder.Write(L"project/b.html", "<qq>\n");
    OpenProject(m_folder.Path(L"project"));
    Open(first);
    Open(second);
    QTest::qWait(300); // for the check of what has been opened
    ASSERT_TRUE(WaitForRows(3));
    Area().GetTabs().setCurrentIndex(0);
    Area().GetCurrentEditor()->SetCaretPosition({0, 0});
    const auto place = [&] {
        const auto caret = Area().GetCurrentEditor()->GetCaretPosition();
        return QStringLiteral("%1:%2:%3")
            .arg(Host::PathToQt(Host::FileName(Area().GetCurrent()->GetPath())))
            .arg(caret.y)
            .arg(caret.x)
            .toStdString();
    };
    ASSERT_TRUE(WaitFor([&] { return Window().findChild<QAction*>("&Next error")->isEnabled(); }));
    std::vector<std::string> forward, backward;
    for (int i = 0; i < 4; ++i) {
        Trigger("&Next error");
        forward.push_back(place());
    }
    for (int i = 0; i < 3; ++i) {
        Trigger("&Previous error");
        backward.push_back(place());
    }
    EXPECT_THAT(forward, ::testing::ElementsAre("a.html:2:0", "a.html:3:3", "b.html:0:0", "a.html:2:0"));
    EXPECT_THAT(backward, ::testing::ElementsAre("b.html:0:0", "a.html:3:3", "a.html:2:0"));
}

TEST_F(Errors, TheMessageIsATipInTextAndMarginWithLinks)
{
    CCodeEditor& editor = Open(m_folder.Write(L"page.html", Wrong));
    ASSERT_TRUE(WaitFor([&] { return Underlines(editor).size() == 2; }));
    const auto tipAt = [&](const QPoint& point) {
        const auto* tip = TipAt(editor, point);
        return tip ? tip->GetText() : QString();
    };
    const QString tag = Rows()[0].section('|', 2) + " 'pp', did you mean 'p'? [2001]";
    const QString attribute = Rows()[1].section('|', 2) + " 'clas', did you mean 'class'? [2002]";
    const int numbers = 2, icons = editor.marginWidth(0) + 2;
    EXPECT_EQ(tipAt(PointOf(editor, 2, 1) + QPoint(1, 3)), tag);
    EXPECT_EQ(tipAt(PointOf(editor, 3, 4) + QPoint(1, 3)), attribute);
    for (const int x : {numbers, icons}) {
        EXPECT_EQ(tipAt(QPoint(x, PointOf(editor, 2, 0).y() + 3)), tag);
        EXPECT_EQ(tipAt(QPoint(x, PointOf(editor, 3, 0).y() + 3)), attribute);
        EXPECT_EQ(tipAt(QPoint(x, PointOf(editor, 0, 0).y() + 3)), QString());
        EXPECT_EQ(tipAt(QPoint(x, editor.viewport()->height() - 3)), QString()) << "below the text";
    }
    auto* tip = TipAt(editor, PointOf(editor, 2, 1) + QPoint(1, 3));
    ASSERT_NE(tip, nullptr);
    auto* label = tip->findChild<QLabel*>();
    Shoot(*tip, "tip");
    emit label->linkActivated("explain:2001");
    auto* page = Window().findChild<QDialog*>("explanation");
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->findChild<QTextBrowser*>()->toPlainText().contains("2001"));
    EXPECT_FALSE(label->isVisible());
    page->close();
    tipAt(PointOf(editor, 3, 4) + QPoint(1, 3));
    QTimer::singleShot(50, [] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        menu->close();
        menu->actions().first()->trigger();
    });
    emit label->linkActivated("fix:");
    EXPECT_TRUE(editor.text().contains("<p class=\"a\">"));
}

TEST_F(Errors, WarningsLookLikeWarnings)
{
    const std::wstring file =
        m_folder.Write(L"project/sub/a.php", "<?php\nif ($a);\n\n\n$b = 1\n$c = 2; if ($d);\n");
    const std::wstring mild = m_folder.Write(L"project/mild/b.php", "<?php\nif ($a);\n");
    OpenProject(m_folder.Path(L"project"));
    Open(mild);
    CCodeEditor& editor = Open(file);
    ASSERT_TRUE(WaitFor([&] { return Rows().size() == 4 && !Underlines(editor).isEmpty(); }));
    EXPECT_EQ(Underlines(editor), QStringList{"5:0-5:2"});
    EXPECT_EQ(Underlines(editor, true), (QStringList{"1:7-1:8", "5:15-5:16"}));
    EXPECT_EQ(MarkedLines(editor), QList<int>{5}) << "the graver one";
    EXPECT_EQ(MarkedLines(editor, true), QList<int>{1});
    const QTabBar* tabs = Area().GetTabs().tabBar();
    EXPECT_TRUE(WaitFor([&] { return tabs->tabTextColor(0) != tabs->tabTextColor(1); }));
    auto* tree = Window().findChild<QTreeView*>("fileTree");
    const auto colorOf = [&](const char* path) {
        const QAbstractItemModel* model = tree->model();
        QModelIndex index = tree->rootIndex();
        for (const QString& part : QString(path).split('/'))
            for (int row = 0; row < model->rowCount(index); ++row)
                if (model->index(row, 0, index).data().toString() == part) {
                    index = model->index(row, 0, index);
                    break;
                }
        return index.data(Qt::ForegroundRole).value<QColor>();
    };
    const QColor base = tree->palette().color(QPalette::Base);
    const auto worst = [&](Workbench::ESeverity severity) { return Workbench::ColorOf(severity, base); };
    EXPECT_TRUE(WaitFor([&] { return colorOf("sub") == worst(Workbench::ESeverity::Error); }));
    EXPECT_TRUE(WaitFor([&] { return colorOf("mild") == worst(Workbench::ESeverity::Warning); }));
    Shoot(Window(), "warnings");
}

TEST_F(Errors, WhatMendsAnErrorIsOfferedAtTheCaret)
{
    m_folder.Write(L"project/page.html", "<strng>text</strng>\n");
    OpenProject(m_folder.Path(L"project"));
    CCodeEditor& editor = Open(m_folder.Path(L"project/page.html"));
    ASSERT_TRUE(WaitFor([&] { return Rows().size() == 1 && !Underlines(editor).isEmpty(); }));
    QTest::qWait(300); // for the check of what has been opened
    ASSERT_TRUE(WaitForRows(1));
    editor.SetCaretPosition({2, 0});
    const auto choose = [&](const QString& part) {
        QTimer::singleShot(50, [part] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            QStringList titles;
            QAction* chosen = nullptr;
            for (QAction* action : menu->actions()) {
                titles.append(action->text());
                if (!chosen && action->text().contains(part))
                    chosen = action;
            }
            menu->close();
            ASSERT_NE(chosen, nullptr) << titles.join(", ").toStdString();
            chosen->trigger();
        });
        Trigger("Fi&x...");
    };
    choose("strong");
    EXPECT_EQ(editor.text(), "<strong>text</strong>\n");
    editor.undo();
    EXPECT_EQ(editor.text(), "<strng>text</strng>\n") << "one step";
    // All at once, whether or not they have been shown yet; which name is meant is for the user to say.
    editor.setText("<strng>x</strng><p id='a' id='b'>\n");
    Trigger("Fix a&ll");
    EXPECT_EQ(editor.text(), "<strng>x</strng><p id='a'>\n");
    editor.undo();
    EXPECT_EQ(editor.text(), "<strng>x</strng><p id='a' id='b'>\n") << "one step";
    editor.setText("<strng>text</strng>\n");
    ASSERT_TRUE(WaitFor([&] { return Rows().size() == 1; }));
    QTest::qWait(200);
    editor.setText("<strng>text</strng><strng></strng><yy></yy>\n");
    ASSERT_TRUE(WaitFor([&] { return Rows().size() == 3; }));
    QTest::qWait(200);
    auto* help = Window().findChild<Workbench::CErrorHelp*>();
    const auto titlesAt = [&](std::int64_t column) {
        editor.SetCaretPosition({column, 0});
        QStringList titles;
        for (const auto& fix : help->GetFixes())
            titles.append(Workbench::CErrorHelp::TitleOf(fix));
        return titles;
    };
    EXPECT_EQ(titlesAt(36).filter("strng").size(), 0) << "only what is at the caret";
    EXPECT_EQ(titlesAt(36).filter("yy").size(), 1);
    EXPECT_EQ(titlesAt(15).filter("own").size(), 2) << "that of the line, each title once";
    editor.SetCaretPosition({2, 0});
    choose("own"); // the project's own name from now on
    EXPECT_THAT(Host::ReadFileBytes(m_folder.Path(L"project/code-analyzer.json")),
                ::testing::HasSubstr("strng"));
    EXPECT_TRUE(WaitForRows(1)) << Rows().join('\n').toStdString();
    Area().DiscardAll();
}

TEST_F(Errors, AnErrorIsExplained)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "<?php\nelse;\n"));
    ASSERT_TRUE(WaitFor([&] { return !Underlines(editor).isEmpty(); }));
    editor.SetCaretPosition({1, 1});
    Trigger("&Explain the error");
    auto* page = Window().findChild<QDialog*>("explanation");
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->findChild<QTextBrowser*>()->toPlainText().contains("252"));
    Shoot(*page, "explanation");
    page->close();
}

TEST_F(Errors, AnExplanationLeadsToThePageOfPhpVersions)
{
    Open(m_folder.Write(L"a.php", "<?php\n"));
    Window().findChild<Workbench::CErrorHelp*>()->Explain(1091, &Window());
    auto* browser = Window().findChild<QDialog*>("explanation")->findChild<QTextBrowser*>();
    browser->setSource(QUrl("php-versions.md"));
    EXPECT_TRUE(browser->toPlainText().contains("PHP 5.4"));
}

TEST_F(Errors, AJumpPutsThePlaceInTheMiddle)
{
    std::string text(4000, '\n');
    for (const int line : {3990, 2000, 30, 2})
        text.insert(static_cast<std::size_t>(line), "<zz></zz>");
    CCodeEditor& editor = Open(m_folder.Write(L"long.html", text));
    ASSERT_TRUE(WaitForRows(4));
    ASSERT_TRUE(WaitFor([&] { return Window().findChild<QAction*>("&Next error")->isEnabled(); }));
    for (int i = 0; i < 4; ++i) {
        Trigger("&Next error");
        const int line = static_cast<int>(editor.GetCaretPosition().y);
        const int height = editor.GetEndVisibleLine() - editor.GetFirstVisibleLine();
        const int place = line - editor.GetFirstVisibleLine();
        EXPECT_GE(place, line < height / 2 ? 0 : height / 3 - 1) << line;
        EXPECT_LE(place, line > 3900 ? height : height - height / 3 + 1) << line;
    }
    // In a long line the place is not at the right edge.
    CCodeEditor& wide = Open(m_folder.Write(L"wide.html", std::string(3000, ' ') + "<zz></zz>"));
    Area().OpenAt(m_folder.Path(L"wide.html"), {3001, 0});
    EXPECT_GT(PointOf(wide, 0, 3001).x(), wide.viewport()->width() / 3);
    EXPECT_LT(PointOf(wide, 0, 3001).x(), wide.viewport()->width() * 2 / 3);
}

TEST_F(Errors, NothingIsSaidOfWhatHasNotBeenChecked)
{
    auto* counts = Window().findChild<QLabel*>("errorCounts");
    auto* next = Window().findChild<QAction*>("&Next error");
    EXPECT_EQ(counts->text(), QString());
    EXPECT_FALSE(next->isEnabled());
    m_folder.Write(L"project/a.php", "<?php\n");
    OpenProject(m_folder.Path(L"project"));
    EXPECT_TRUE(WaitFor([&] { return counts->text() == "No errors"; }));
    EXPECT_FALSE(next->isEnabled());
    Open(m_folder.Write(L"project/b.php", "<?php\nelse;\n"));
    EXPECT_TRUE(WaitFor([&] { return counts->text() == "Errors: 1, warnings: 0"; }));
    EXPECT_TRUE(next->isEnabled());
}

TEST_F(Errors, UnderlinesAreDrawnForTheLinesThatComeIntoView)
{
    std::string text;
    for (int i = 0; i < 2000; ++i)
        text += i % 100 == 50 ? "<zz></zz>\n" : "<br>\n";
    CCodeEditor& editor = Open(m_folder.Write(L"long.html", text));
    ASSERT_TRUE(WaitForRows(20));
    editor.SetCaretPosition({0, 1950});
    editor.ScrollToCaret(2);
    ASSERT_TRUE(WaitFor([&] { return MarkedLines(editor).contains(1950); }));
    EXPECT_FALSE(MarkedLines(editor).contains(1050)) << "nobody has looked there yet";
}

TEST_F(Errors, EndingEverythingAtAnyMomentOfACheckIsSafe)
{
    std::string text;
    for (int i = 0; i < 3000; ++i)
        text += "<p><qq a" + std::to_string(i) + "=\"1\">\n";
    for (int i = 0; i < 20; ++i)
        m_folder.Write(L"project/p" + std::to_wstring(i) + L".php",
                       "<?php\n" + std::string(20000, ';') + "?>" + text);
    for (int round = 0; round < 12; ++round) {
        Window().OpenProject(m_folder.Path(L"project"));
        ASSERT_TRUE(WaitFor([&] { return Project().IsOpened(); }));
        Open(m_folder.Path(L"project/p1.php"));
        Open(m_folder.Path(L"project/p2.php"));
        QTest::qWait(round * 13 % 90);
        switch (round % 3) {
        case 0: ASSERT_TRUE(Window().CloseProject()); break;
        case 1: Area().DiscardAll(); break;
        default: OpenWindow(); break;
        }
    }
}

} // namespace
