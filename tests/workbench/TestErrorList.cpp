#include "ErrorPanel.h"
#include "WorkbenchFixture.h"

#include <QClipboard>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolTip>

using namespace Kesh;
using Workbench::CCodeEditor;

namespace {

/// A project of three files with two errors and two warnings, the first file open.
class ErrorList : public CWorkbenchTest
{
protected:
    ErrorList()
    {
        m_first = m_folder.Write(L"p/a.php", "<?php\nelse; else;\nif ($a);\n");
        m_folder.Write(L"p/sub/b.php", "<?php\n$a = 1\n$b = 2;\n");
        m_folder.Write(L"p/sub/c.php", "<?php\nif ($a);\n");
        OpenProject(m_folder.Path(L"p"));
        Open(m_first);
        EXPECT_TRUE(WaitForRows(5));
    }
    Workbench::CErrorPanel& Panel() { return *Window().findChild<Workbench::CErrorPanel*>(); }
    void Select(int row)
    {
        Bar()->setFocus();
        Bar()->setCurrentItem(Bar()->topLevelItem(row));
    }
    /// The file names and lines of the rows that can be seen.
    QString Shown()
    {
        QStringList shown;
        for (int i = 0; i < Bar()->topLevelItemCount(); ++i)
            shown.append(Bar()->topLevelItem(i)->text(1).section('/', -1).remove(' '));
        return shown.join(' ');
    }
    QString Current()
    {
        return Bar()->currentItem() ? Bar()->currentItem()->text(1).section('/', -1) : QString();
    }
    std::string Place()
    {
        const auto caret = Area().GetCurrentEditor()->GetCaretPosition();
        return Host::PathToBytes(Host::FileName(Area().GetCurrent()->GetPath())) + ':' +
               std::to_string(caret.y) + ':' + std::to_string(caret.x);
    }

    std::wstring m_first;
};

TEST_F(ErrorList, EnterOpensARowAndTypingFindsOne)
{
    EXPECT_EQ(Shown(), "a.php-2 a.php-2 b.php-3 a.php-3 c.php-2");
    const char* const places[] = {"a.php:1:0", "a.php:1:6", "b.php:2:0", "a.php:2:7", "c.php:1:7"};
    for (int row = 0; row < 5; ++row) {
        Select(row);
        QTest::keyClick(Bar(), row % 2 ? Qt::Key_Enter : Qt::Key_Return);
        EXPECT_EQ(Place(), places[row]);
        EXPECT_TRUE(Area().GetCurrentEditor()->hasFocus());
    }
    Select(0);
    QTest::keyClicks(Bar(), "c.p");
    EXPECT_EQ(Current(), "c.php - 2");
    QTest::keyClick(Bar(), Qt::Key_Home);
    EXPECT_EQ(Current(), "a.php - 2");
    QTest::keyClick(Bar(), Qt::Key_End);
    EXPECT_EQ(Current(), "c.php - 2");
    QTest::qWait(1100); // what is typed now is another word
    QTest::keyClicks(Bar(), "missing");
    EXPECT_EQ(Current(), "b.php - 3");
    QTest::qWait(1100);
    QTest::keyClicks(Bar(), "sub/c"); // as the list shows it
    EXPECT_EQ(Current(), "c.php - 2");
}

TEST_F(ErrorList, TheSelectionFollowsTheCaret)
{
    CCodeEditor& editor = *Area().GetCurrentEditor();
    editor.setFocus();
    const struct
    {
        SyntaxParser::CIterator caret;
        int row;
    } cases[] = {{{0, 1}, 0}, {{7, 1}, 1}, {{2, 2}, 3}, {{0, 0}, 3}}; // the last has no error: all stays
    for (const auto& c : cases) {
        editor.SetCaretPosition(c.caret);
        EXPECT_TRUE(WaitFor([&] { return Bar()->currentItem() == Bar()->topLevelItem(c.row); }) || c.row == 1)
            << c.caret.y;
    }
    Trigger("&Next error");
    EXPECT_TRUE(WaitFor([&] { return Current() == "a.php - 2"; }));
    Trigger("&Previous error");
    EXPECT_TRUE(WaitFor([&] { return Current() == "c.php - 2"; }));
    EXPECT_EQ(Place(), "c.php:1:7") << "and the caret does not follow the selection";
}

TEST_F(ErrorList, RowsCanBeCopied)
{
    Select(2);
    QTest::keyClick(Bar(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "sub/b.php:3: Missing ';' [102]");
    QStringList titles;
    QTimer::singleShot(0, [&] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (QAction* action : menu->actions())
            titles.append(action->text());
        menu->actions()[2]->trigger();
        menu->close();
    });
    emit Bar()->customContextMenuRequested(Bar()->visualItemRect(Bar()->currentItem()).center());
    EXPECT_EQ(titles.mid(0, 3), (QStringList{"&Open", "&Copy", "Copy the &path"}));
    EXPECT_EQ(QApplication::clipboard()->text(), Host::PathToQt(m_folder.Path(L"p/sub/b.php")));
    Shoot(Window(), "list");
}

TEST_F(ErrorList, SeveralRowsCanBeCopied)
{
    Bar()->setFocus();
    Bar()->setCurrentItem(Bar()->topLevelItem(4));
    QTest::keyClick(Bar(), Qt::Key_Up, Qt::ShiftModifier);
    QTest::keyClick(Bar(), Qt::Key_Up, Qt::ShiftModifier);
    QTest::keyClick(Bar(), Qt::Key_C, Qt::ControlModifier);
    const QStringList lines = QApplication::clipboard()->text().split('\n');
    ASSERT_EQ(lines.size(), 3) << lines.join('\n').toStdString();
    EXPECT_TRUE(lines[0].startsWith("sub/b.php:3: "));
    EXPECT_TRUE(lines[1].startsWith("a.php:3: "));
    EXPECT_TRUE(lines[2].startsWith("sub/c.php:2: "));
}

TEST_F(ErrorList, TheSelectionStaysNearWhenItsErrorGoes)
{
    const std::wstring file = m_folder.Write(L"p/d.php", "<?php\nelse;\n\nelse;\n\nelse;\n\nelse;\n");
    CCodeEditor& editor = Open(file);
    ASSERT_TRUE(WaitForRows(9)) << Shown().toStdString();
    const auto rowOf = [&](const QString& place) {
        for (int row = 0; row < Bar()->topLevelItemCount(); ++row)
            if (Bar()->topLevelItem(row)->text(1).endsWith(place))
                return row;
        return -1;
    };
    for (const bool inList : {true, false}) {
        SCOPED_TRACE(inList);
        editor.setText("<?php\nelse;\n\nelse;\n\nelse;\n\nelse;\n");
        ASSERT_TRUE(WaitFor([&] { return rowOf("d.php - 6") >= 0 && Panel().IsFilterDone(); }));
        editor.SetCaretPosition({0, 2});
        Select(rowOf("d.php - 6"));
        if (!inList)
            editor.setFocus();
        editor.setText("<?php\nelse;\n\nelse;\n\n$a;\n\nelse;\n");
        ASSERT_TRUE(WaitForRows(8));
        EXPECT_TRUE(WaitFor([&] { return Current() == "d.php - 4" || Current() == "d.php - 8"; }))
            << Current().toStdString();
        QTest::qWait(300);
        EXPECT_TRUE(Current() == "d.php - 4" || Current() == "d.php - 8") << Current().toStdString();
    }
    Area().DiscardAll();
}

TEST_F(ErrorList, AllThatWasFoundIsSaidEverywhereButInTheColumn)
{
    CCodeEditor& editor = Open(m_folder.Write(L"p/page.html", "<strng>x</strng>\n<api>y</api>\n"));
    ASSERT_TRUE(WaitForRows(7));
    const QString whole = "Illegal HTML tag name 'strng', did you mean 'strong'?";
    auto* filter = Window().findChild<QLineEdit*>("errorFilter");
    filter->setText("mean 'strong'");
    ASSERT_TRUE(WaitFor([&] { return Shown() == "page.html-1"; })) << Shown().toStdString();
    EXPECT_EQ(Bar()->topLevelItem(0)->text(2), "Illegal HTML tag name");
    Select(0);
    QTest::keyClick(Bar(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "page.html:1: " + whole + " [2001]");
    const QModelIndex index = Bar()->model()->index(0, 2);
    QHelpEvent help(QEvent::ToolTip, Bar()->visualRect(index).center(), Bar()->mapToGlobal({0, 0}));
    QApplication::sendEvent(Bar()->viewport(), &help);
    EXPECT_TRUE(QToolTip::text().contains("mean")) << QToolTip::text().toStdString();
    QToolTip::hideText();
    filter->setText("'api'");
    ASSERT_TRUE(WaitFor([&] { return Shown() == "page.html-2"; })) << Shown().toStdString();
    Select(0);
    QTest::keyClick(Bar(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "page.html:2: Illegal HTML tag name 'api' [2001]")
        << "nothing is near enough";
    filter->clear();
    editor.setFocus();
    editor.SetCaretPosition({0, 0});
    Trigger("&Next error");
    Trigger("&Previous error");
    EXPECT_TRUE(Window().statusBar()->currentMessage().contains("did you mean"))
        << Window().statusBar()->currentMessage().toStdString();
}

TEST_F(ErrorList, RowsCanBeFiltered)
{
    auto* text = Window().findChild<QLineEdit*>("errorFilter");
    auto* severity = Window().findChild<QComboBox*>("errorFilterSeverity");
    auto* scope = Window().findChild<QComboBox*>("errorFilterScope");
    auto* counts = Window().findChild<QLabel*>("errorPanelCounts");
    const struct
    {
        const char* text;
        int severity, scope;
        const char* shown;
    } cases[] = {
        {"SUB/", 0, 0, "b.php-3 c.php-2"},
        {"odd", 0, 0, "a.php-3 c.php-2"},
        {"nothing", 0, 0, ""},
        {"", 1, 0, "a.php-2 a.php-2 b.php-3"},
        {"", 2, 0, "a.php-3 c.php-2"},
        {"", 0, 1, "a.php-2 a.php-2 a.php-3"},
        {"", 0, 2, "a.php-2 a.php-2 a.php-3"},
        {"", 2, 2, "a.php-3"},
        {"", 0, 3, "a.php-2 a.php-2 b.php-3 a.php-3 c.php-2"},
    };
    for (const auto& c : cases) {
        text->setText(c.text);
        severity->setCurrentIndex(c.severity);
        scope->setCurrentIndex(c.scope);
        ASSERT_TRUE(WaitFor([&] { return Panel().IsFilterDone(); }));
        EXPECT_EQ(Shown(), c.shown) << c.text << c.severity << c.scope;
        EXPECT_TRUE(counts->text().endsWith(
            QStringLiteral("(%1 shown)").arg(Shown().isEmpty() ? 0 : Shown().count(' ') + 1)));
    }
    // From the filter to the rows, and out of it.
    scope->setCurrentIndex(0);
    severity->setCurrentIndex(0);
    text->setText("c.php");
    ASSERT_TRUE(WaitFor([&] { return Panel().IsFilterDone(); }));
    text->setFocus();
    QTest::keyClick(text, Qt::Key_Down);
    EXPECT_TRUE(Bar()->hasFocus());
    EXPECT_EQ(Current(), "c.php - 2");
    text->setFocus();
    QTest::keyClick(text, Qt::Key_Escape);
    EXPECT_EQ(text->text(), QString());
    // What comes later is filtered too, and another file in front is another file.
    scope->setCurrentIndex(1);
    Open(m_folder.Path(L"p/sub/c.php")).append("else;");
    ASSERT_TRUE(WaitFor([&] { return Shown() == "c.php-2 c.php-3"; })) << Shown().toStdString();
    Shoot(Window(), "filter");
    scope->setCurrentIndex(0);
    ASSERT_TRUE(WaitFor([&] { return Panel().IsFilterDone(); }));
    EXPECT_EQ(Shown().count(' '), 5);
}

TEST_F(ErrorList, FilteringCrowdsLeavesTheWindowAlive)
{
    std::string text = "<?php\n";
    for (int i = 0; i < 20000; ++i)
        text += "else;\n";
    Open(m_folder.Write(L"p/many.php", text));
    ASSERT_TRUE(WaitForRows(20005));
    auto* filter = Window().findChild<QLineEdit*>("errorFilter");
    int turns = 0;
    QTimer turn;
    turn.start(0);
    QObject::connect(&turn, &QTimer::timeout, [&] { ++turns; });
    filter->setText("b.php");
    ASSERT_TRUE(WaitFor([&] { return Panel().IsFilterDone(); }));
    EXPECT_EQ(Shown(), "b.php-3");
    EXPECT_GT(turns, 1);
    filter->clear();
    ASSERT_TRUE(WaitFor([&] { return Panel().IsFilterDone(); }));
    EXPECT_EQ(Bar()->topLevelItemCount(), 20005);
    // An edit while the rows are being put in order, and the project looked through once more.
    QMetaObject::invokeMethod(Bar(), "OnHeaderItemClicked", Q_ARG(int, 1));
    Area().GetCurrentEditor()->setText("<?php\nelse;\n");
    Trigger("&Look for new files");
    QMetaObject::invokeMethod(Bar(), "OnHeaderItemClicked", Q_ARG(int, 2));
    ASSERT_TRUE(WaitForRows(6)) << Bar()->topLevelItemCount();
    Area().DiscardAll();
}

} // namespace
