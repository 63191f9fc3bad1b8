#include "FileSearch.h"
#include "Files/FilePath.h"
#include "SearchPanel.h"
#include "WorkbenchFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTextDocument>
#include <QTimer>
#include <QToolTip>
#include <QTreeView>

using namespace Kesh;

namespace {

class Search : public CWorkbenchTest
{
protected:
    Search()
    {
        m_folder.Write(L"p/a.php", "<?php\n$total = 1;\n$Totals = \xC3\xA9_total();\n");
        m_folder.Write(L"p/sub/b.js", "var total;\n");
        m_folder.Write(L"p/sub/c.css", std::string("a { }\n\0total", 12)); // a binary one
        m_folder.Write(L"p/vendor/d.php", "total\n");
        m_folder.Write(L"p/old/e.php", "total\n");
        OpenProject(m_folder.Path(L"p"));
        Trigger("Find &in files...");
    }
    template <class T> T& Part(const char* name) { return *Window().findChild<T*>(name); }
    bool IsRunning() { return Window().findChild<Workbench::CSearchPanel*>()->IsRunning(); }
    QTreeView& List() { return Part<QTreeView>("searchHits"); }
    QStringList Find(const QString& text, const QString& files = {})
    {
        Part<QLineEdit>("searchText").setText(text);
        Part<QLineEdit>("searchFiles").setText(files);
        QTest::keyClick(&Part<QLineEdit>("searchText"), Qt::Key_Return);
        EXPECT_TRUE(WaitFor([&] { return !IsRunning(); }));
        QStringList found;
        for (int row = 0; row < List().model()->rowCount(); ++row)
            found.append(List().model()->index(row, 0).data().toString());
        return found;
    }
    void Check(const QString& title, bool on)
    {
        for (QCheckBox* box : Window().findChild<Workbench::CSearchPanel*>()->findChildren<QCheckBox*>())
            if (box->text().remove('&') == title)
                box->setChecked(on);
    }
};

TEST_F(Search, FindsWhatIsAskedFor)
{
    struct SCase
    {
        QString text, files, choice;
        QStringList found;
    };
    const SCase cases[] = {
        {"total", "", "", {"a.php:2", "a.php:3", "a.php:3", "old/e.php:1", "sub/b.js:1"}},
        {"total", "", "Match case", {"a.php:2", "a.php:3", "old/e.php:1", "sub/b.js:1"}},
        {"total", "", "Whole words", {"a.php:2", "old/e.php:1", "sub/b.js:1"}},
        {"total", "*.js, *.css", "", {"sub/b.js:1"}},
        {"total", "old", "", {"old/e.php:1"}},
        {"t.tals?;|var", "", "Regular expression", {"sub/b.js:1", "sub/b.js:1"}},
        {"^\\$", "", "Regular expression", {"a.php:2", "a.php:3"}},
        {"$total", "", "", {"a.php:2", "a.php:3"}},
        {"nothing", "", "", {}},
        {"(", "", "Regular expression", {}},
    };
    for (const SCase& c : cases) {
        Check(c.choice, true);
        EXPECT_EQ(Find(c.text, c.files).join(' ').toStdString(), c.found.join(' ').toStdString())
            << c.text.toStdString() << ' ' << c.choice.toStdString();
        Check(c.choice, false);
    }
    Check("Regular expression", true);
    Find("(");
    EXPECT_TRUE(Part<QLabel>("searchState").text().contains("parenthesis"));
    // Every text, saved or not, and what the project's settings leave out is left out here.
    m_folder.Write(L"p/code-analyzer.json", R"({"exclude": ["old"]})");
    Check("Regular expression", false);
    Open(m_folder.Path(L"p/a.php")).selectAll();
    Area().GetCurrentEditor()->replaceSelectedText("<?php\n\n\n\ntotal");
    Trigger("&Look for new files");
    ASSERT_TRUE(WaitFor([&] {
        return Window().GetErrorWatch()->GetRules()->For(m_folder.Path(L"p/"))->settings.exclude.size() == 1;
    }));
    EXPECT_EQ(Find("total"), (QStringList{"a.php:5", "sub/b.js:1"}));
    EXPECT_EQ(Part<QLabel>("searchState").text(), "Found: 2, in 3 files that were searched");
    Area().GetCurrentEditor()->setModified(false);
    Shoot(Window(), "search");
}

TEST_F(Search, LinesThatLookLikeHtmlAreShownAsTheyAre)
{
    const QString evil = "<img src='file:///x'><b>total</b> & <!-- -->";
    m_folder.Write(L"p/<b>a<.php", evil.toStdString() + " = = 1;\n<?php $a = = <b>1;\n");
    const auto shown = [](const QString& tip) {
        if (!Qt::mightBeRichText(tip))
            return tip;
        QTextDocument document;
        document.setHtml(tip);
        return document.toPlainText();
    };
    Trigger("&Look for new files");
    ASSERT_EQ(Find("src", "*.php").size(), 1);
    const QModelIndex hit = List().model()->index(0, 1);
    EXPECT_EQ(shown(hit.data(Qt::ToolTipRole).toString()), hit.data().toString());
    EXPECT_EQ(shown(hit.siblingAtColumn(0).data(Qt::ToolTipRole).toString()),
              Host::PathToQt(m_folder.Path(L"p/<b>a<.php")));
    Open(m_folder.Path(L"p/<b>a<.php"));
    EXPECT_EQ(shown(Area().GetTabs().tabToolTip(0)), Host::PathToQt(m_folder.Path(L"p/<b>a<.php")));
    ASSERT_TRUE(WaitForRows(1));
    const QRect row = Bar()->visualItemRect(Bar()->topLevelItem(0));
    for (int column = 0; column < 3; ++column) {
        const QPoint point(Bar()->header()->sectionViewportPosition(column) + 2, row.center().y());
        QHelpEvent help(QEvent::ToolTip, point, Bar()->viewport()->mapToGlobal(point));
        QApplication::sendEvent(Bar()->viewport(), &help);
        EXPECT_EQ(shown(QToolTip::text()), Bar()->topLevelItem(0)->data(column, Qt::DisplayRole).toString());
    }
    // Labels say how they take their texts.
    for (const QLabel* label : Window().findChildren<QLabel*>()) {
        EXPECT_FALSE(label->textFormat() == Qt::AutoText && Qt::mightBeRichText(label->text()))
            << label->text().toStdString();
    }
}

TEST_F(Search, EnterOpensThePlace)
{
    Find("total", "*.php");
    QTest::keyClick(&Part<QLineEdit>("searchText"), Qt::Key_Down);
    EXPECT_TRUE(List().hasFocus());
    QTest::keyClick(&List(), Qt::Key_Down);
    QTest::keyClick(&List(), Qt::Key_Down);
    QTest::keyClick(&List(), Qt::Key_Return);
    ASSERT_NE(Area().GetCurrent(), nullptr);
    EXPECT_EQ(Area().GetCurrent()->GetPath(), m_folder.Path(L"p/a.php"));
    EXPECT_EQ(Area().GetCurrentEditor()->selectedText(), "total");
    EXPECT_EQ(Area().GetCurrentEditor()->GetCaretPosition(), (SyntaxParser::CIterator{17, 2}));
    EXPECT_TRUE(Area().GetCurrentEditor()->hasFocus());
}

TEST_F(Search, CrowdsLeaveTheWindowAliveAndASearchCanBeStopped)
{
    std::string text;
    for (int i = 0; i < 3000; ++i)
        text += "total\n";
    for (int i = 0; i < 10; ++i)
        m_folder.Write(L"p/many" + std::to_wstring(i) + L".txt", text);
    int turns = 0;
    QTimer turn;
    turn.start(0);
    QObject::connect(&turn, &QTimer::timeout, [&] { ++turns; });
    EXPECT_EQ(Find("total").size(), Workbench::CFileSearch::MaxHits);
    EXPECT_EQ(Part<QLabel>("searchState").text(), "The first 20000");
    EXPECT_GT(turns, 5);

    Part<QPushButton>("searchStart").click();
    ASSERT_TRUE(IsRunning());
    EXPECT_EQ(Part<QPushButton>("searchStart").text(), "Stop");
    Part<QPushButton>("searchStart").click();
    EXPECT_FALSE(IsRunning());
    const int rows = List().model()->rowCount();
    QTest::qWait(100);
    EXPECT_EQ(List().model()->rowCount(), rows) << "what has been stopped tells no more";
    EXPECT_TRUE(Window().CloseProject());
    EXPECT_EQ(List().model()->rowCount(), 0);
}

} // namespace
