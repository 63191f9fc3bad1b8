// What a screen reader is told.
#include "CodeEditor.h"
#include "WorkbenchFixture.h"

#include <QAccessible>
#include <QTabBar>
#include <QTest>
#include <QTreeView>
#include <gmock/gmock.h>

using namespace Kesh;

namespace {

class Access : public CWorkbenchTest
{
protected:
    Access()
    {
        m_folder.Write(L"p/sub/a.php", "<?php\n\nelse;\nif ($a);\n");
        m_folder.Write(L"p/clean.php", "<?php\n");
        OpenProject(m_folder.Path(L"p"));
    }
    static QAccessibleInterface& FaceOf(QWidget& widget)
    {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
};

TEST_F(Access, ARowTellsItsSeverityPlaceAndMessage)
{
    ASSERT_TRUE(WaitForRows(2));
    QAccessibleInterface& list = FaceOf(*Bar());
    EXPECT_EQ(list.role(), QAccessible::Tree);
    EXPECT_EQ(list.text(QAccessible::Name), "Errors");
    ASSERT_NE(list.tableInterface(), nullptr);
    EXPECT_EQ(list.tableInterface()->rowCount(), 2);
    const char* const rows[] = {"Error, sub/a.php:3: ", "Warning, sub/a.php:4: "};
    for (int row = 0; row < 2; ++row) {
        Bar()->setCurrentItem(Bar()->topLevelItem(row));
        QAccessibleInterface* cell = list.tableInterface()->cellAt(row, 0);
        ASSERT_NE(cell, nullptr);
        EXPECT_TRUE(cell->state().selected);
        EXPECT_THAT(cell->text(QAccessible::Name).toStdString(), ::testing::StartsWith(rows[row]));
        EXPECT_GT(cell->text(QAccessible::Name).size(), 30);
        // Who looks at the cells one by one hears what they show.
        EXPECT_TRUE(list.tableInterface()->cellAt(row, 1)->text(QAccessible::Name).contains("a.php - "));
        EXPECT_FALSE(list.tableInterface()->cellAt(row, 2)->text(QAccessible::Name).isEmpty());
    }
}

TEST_F(Access, TheEditorTellsItsTextAndCaret)
{
    QAccessible::setActive(true); // as a screen reader does
    auto& editor = Open(m_folder.Path(L"p/sub/a.php"));
    QAccessibleInterface& face = FaceOf(editor);
    EXPECT_EQ(face.role(), QAccessible::EditableText);
    EXPECT_EQ(face.text(QAccessible::Name), "a.php");
    ASSERT_NE(face.textInterface(), nullptr);
    EXPECT_EQ(face.textInterface()->characterCount(), editor.text().size());
    EXPECT_TRUE(face.textInterface()->text(0, face.textInterface()->characterCount()).contains("else;"));
    editor.SetCaretPosition({0, 2});
    QTest::qWait(50);
    EXPECT_EQ(face.textInterface()->cursorPosition(), editor.text().indexOf("else"));
    QAccessible::setActive(false);
}

TEST_F(Access, WhatColoursTellIsTold)
{
    Open(m_folder.Path(L"p/sub/a.php"));
    const QTabBar* tabs = Area().GetTabs().tabBar();
    EXPECT_TRUE(WaitFor([&] { return tabs->accessibleTabName(0).endsWith("a.php, with errors"); }))
        << tabs->accessibleTabName(0).toStdString();
    auto* tree = Window().findChild<QTreeView*>("fileTree");
    const auto names = [&] {
        QStringList all;
        for (int row = 0; row < tree->model()->rowCount(tree->rootIndex()); ++row)
            all.append(
                tree->model()->index(row, 0, tree->rootIndex()).data(Qt::AccessibleTextRole).toString());
        all.sort();
        return all;
    };
    EXPECT_TRUE(WaitFor([&] {
        return names() == QStringList({"clean.php", "sub, with errors"});
    })) << names().join('\n').toStdString();
    EXPECT_EQ(FaceOf(*tree).role(), QAccessible::Tree);
    EXPECT_EQ(FaceOf(*tree).text(QAccessible::Name), "Project");
}

} // namespace
