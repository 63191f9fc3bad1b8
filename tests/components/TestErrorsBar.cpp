#include "Base/Exception.h"
#include "Buffer/Iterator.h"
#include "Components/CAErrorsEvent.h"
#include "Kesh/Editor/IStandartView.h"
#include "TestHost.h"
#include "Window/CAErrorsBarItem.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QTest>
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace Kesh::CodeAnalyzer {

namespace {

SCAError ErrorAt(std::int64_t x, std::int64_t y, int code = 101, int type = 1)
{
    return {{{x, y}, {x + 1, y}}, code, type};
}

class ErrorsBarTest : public ::testing::Test
{
protected:
    CCAErrorsBar& Bar() { return m_host.Bar(); }
    CCAErrorsManager& Errors() { return m_host.Errors(); }

    void ClickHeader(int column)
    {
        QHeaderView* header = Bar().header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    int SelectedRow()
    {
        const auto selected = Bar().selectedItems();
        return selected.isEmpty() ? -1 : Bar().indexOfTopLevelItem(selected.first());
    }
    std::string Row(int row, int column = 1) { return Bar().topLevelItem(row)->text(column).toStdString(); }
    std::vector<std::string> Rows(int column = 1)
    {
        std::vector<std::string> rows;
        for (int row = 0; row < Bar().topLevelItemCount(); ++row)
            rows.push_back(Row(row, column));
        return rows;
    }
    void Show()
    {
        Bar().resize(700, 200);
        Bar().show();
        QCoreApplication::processEvents();
    }

    Tests::CTestHost m_host;
};

using Texts = std::vector<std::string>;

TEST_F(ErrorsBarTest, ShowsErrorsInThreeColumns)
{
    EXPECT_STREQ(Bar().metaObject()->className(), "Kesh::CodeAnalyzer::CCAErrorsBar");
    EXPECT_EQ(Bar().headerItem()->text(0), "Type     ");
    EXPECT_EQ(Bar().headerItem()->text(1), "File     ");
    EXPECT_EQ(Bar().headerItem()->text(2), "Description      ");
    Errors().AddErrorsMT(L"/\x1F600.php", {ErrorAt(0, 0, 102), ErrorAt(0, 41, 901, 2), ErrorAt(0, 50, 0, 7)});
    EXPECT_EQ(Rows(0), (Texts{"Error", "Warning", "Warning"}));
    EXPECT_EQ(Rows(1), (Texts{"/\xF0\x9F\x98\x80.php - 1", "/\xF0\x9F\x98\x80.php - 42",
                              "/\xF0\x9F\x98\x80.php - 51"}));
    EXPECT_EQ(Rows(2), (Texts{"Missing ';'", "Odd semicolon", "Udefined error"}));
}

TEST_F(ErrorsBarTest, HeaderClicksChangeTheOrder)
{
    Show();
    const struct
    {
        int column, order;
        Qt::SortOrder indicator;
    } clicks[] = {
        {0, 1, Qt::DescendingOrder}, {0, 0, Qt::AscendingOrder},  {0, 1, Qt::DescendingOrder},
        {1, 2, Qt::AscendingOrder},  {1, 3, Qt::DescendingOrder}, {1, 2, Qt::AscendingOrder},
        {0, 0, Qt::AscendingOrder},  {2, 4, Qt::AscendingOrder},  {2, 5, Qt::DescendingOrder},
        {0, 0, Qt::AscendingOrder},
    };
    for (const auto& click : clicks) {
        ClickHeader(click.column);
        EXPECT_EQ(Bar().GetSortOrder(), click.order);
        EXPECT_EQ(Bar().header()->sortIndicatorSection(), click.column);
        EXPECT_EQ(Bar().header()->sortIndicatorOrder(), click.indicator);
    }
}

TEST_F(ErrorsBarTest, SortsByTypeFileOrKind)
{
    Errors().AddErrorsMT(L"/B.php", {ErrorAt(5, 1, 2002), ErrorAt(2, 1, 101), ErrorAt(0, 0, 901, 2)});
    Errors().AddErrorsMT(L"/a.php", {ErrorAt(0, 9, 252), ErrorAt(0, 3, 302, 2)});
    const Texts expected[] = {
        {"/a.php - 10", "/B.php - 2", "/B.php - 2", "/a.php - 4", "/B.php - 1"},
        {"/B.php - 1", "/a.php - 4", "/B.php - 2", "/B.php - 2", "/a.php - 10"},
        {"/a.php - 4", "/a.php - 10", "/B.php - 1", "/B.php - 2", "/B.php - 2"},
        {"/B.php - 2", "/B.php - 2", "/B.php - 1", "/a.php - 10", "/a.php - 4"},
        {"/B.php - 2", "/a.php - 10", "/a.php - 4", "/B.php - 1", "/B.php - 2"},
        {"/B.php - 2", "/B.php - 1", "/a.php - 4", "/a.php - 10", "/B.php - 2"},
    };
    Show();
    for (const int column : {0, 0, 1, 1, 2, 2}) {
        ClickHeader(column);
        EXPECT_EQ(Rows(), expected[Bar().GetSortOrder()]) << Bar().GetSortOrder();
        // Two errors on one line are ordered by column.
        if (Bar().GetSortOrder() == CCAErrorsBar::FileAscending) {
            EXPECT_EQ(Row(3, 2), "Expression error");
        }
    }
}

// The rows that one stable sort of everything after every addition would give, whatever came before.
TEST_F(ErrorsBarTest, AddedRowsLandWhereASortWouldPutThem)
{
    struct SRow
    {
        std::wstring file;
        SCAError error;
    };
    std::mt19937 random(7);
    const auto below = [&random](int limit) { return static_cast<int>(random() % limit); };
    const auto less = [this](const SRow& a, const SRow& b) {
        const auto key = [&](const SRow& row) {
            const int order = Bar().GetSortOrder();
            std::wstring file = row.file;
            std::transform(file.begin(), file.end(), file.begin(),
                           [](wchar_t c) { return std::towlower(c); });
            if (order >= 4)
                return std::tuple(row.error.code, std::wstring(), std::int64_t(0), std::int64_t(0));
            return std::tuple(order < 2 ? row.error.type : 0, file, row.error.pos.start.y,
                              row.error.pos.start.x);
        };
        return Bar().GetSortOrder() % 2 == 0 ? key(a) < key(b) : key(b) < key(a);
    };
    std::vector<SRow> model;
    Show();
    for (int step = 0; step < 400; ++step) {
        const std::wstring file = std::wstring(below(2) ? L"/F" : L"/f") + std::to_wstring(below(6));
        switch (below(8)) {
        case 0: ClickHeader(below(3)); break;
        case 1:
            Errors().RemoveErrors(file);
            std::erase_if(model, [&](const SRow& row) { return row.file[2] == file[2]; });
            break;
        default: {
            std::vector<SCAError> errors;
            for (int i = below(7); i > 0; --i)
                errors.push_back(ErrorAt(below(3), below(4), 101 + below(3), 1 + below(2)));
            Errors().AddErrorsFormBar(file, errors);
            for (const SCAError& error : errors)
                model.push_back({file, error});
        }
        }
        std::stable_sort(model.begin(), model.end(), less);
        ASSERT_EQ(Bar().topLevelItemCount(), static_cast<int>(model.size()));
        for (int row = 0; row < Bar().topLevelItemCount(); ++row) {
            const auto* item = static_cast<CCAErrorsBarItem*>(Bar().topLevelItem(row));
            const SRow& expected = model[static_cast<std::size_t>(row)];
            ASSERT_EQ(item->GetFile(), expected.file) << "step " << step << " row " << row;
            ASSERT_EQ(item->GetPos(), expected.error.pos) << "step " << step << " row " << row;
        }
    }
}

TEST_F(ErrorsBarTest, RemovesAFilesRowsWhateverItsCase)
{
    Errors().AddErrorsMT(L"/A.php", {ErrorAt(0, 0)});
    Errors().AddErrorsMT(L"/a.PHP", {ErrorAt(0, 1, 101, 2)});
    Errors().AddErrorsMT(L"/b.php", {ErrorAt(0, 2)});
    Errors().AddErrorsMT(L"/\xC4.php", {ErrorAt(0, 3)});
    Errors().RemoveErrors(L"/a.php");
    EXPECT_EQ(Rows(), (Texts{"/b.php - 3", "/\xC3\x84.php - 4"}));
    Errors().RemoveErrors(L"/\xE4.php");
    EXPECT_EQ(Rows(), (Texts{"/b.php - 3"}));
}

// A check of a large project removes every file's errors, most of which have none.
TEST_F(ErrorsBarTest, RemovesTheRowsOfAFileWhateverTheOrder)
{
    constexpr int Files = 1000;
    const auto name = [](const wchar_t* prefix, int file) { return prefix + std::to_wstring(file); };
    Bar().clear();
    for (int column : {0, 1, 2}) {
        QMetaObject::invokeMethod(&Bar(), "OnHeaderItemClicked", Q_ARG(int, column));
        for (int file = 0; file < Files; ++file)
            Errors().AddErrorsMT(name(L"/full", file), {ErrorAt(0, 0), ErrorAt(0, 1, 901, 2)});
        ASSERT_EQ(Bar().topLevelItemCount(), 2 * Files);
        for (int file = 0; file < Files; ++file)
            Errors().RemoveErrors(name(L"/empty", file));
        EXPECT_EQ(Bar().topLevelItemCount(), 2 * Files);
        for (int file = 0; file < Files; ++file)
            Errors().RemoveErrors(name(L"/FULL", file));
        EXPECT_EQ(Bar().topLevelItemCount(), 0);
    }
}

TEST_F(ErrorsBarTest, FoldsCaseAsQtCompares)
{
    for (wchar_t c = 1; c < 0x1E944; ++c) {
        const wchar_t folded = CCAErrorsBarItem::MakeFileKey(std::wstring(1, c))[0];
        if (folded == c)
            continue;
        const QString one = QString::fromWCharArray(&c, 1);
        const QString other = QString::fromWCharArray(&folded, 1);
        ASSERT_EQ(one.compare(other, Qt::CaseInsensitive), 0) << std::hex << int(c);
    }
}

TEST_F(ErrorsBarTest, KeepsTheSelectionOnItsRow)
{
    const auto fill = [this] {
        for (const wchar_t* file : {L"/a", L"/b", L"/c"})
            Errors().AddErrorsMT(file, {ErrorAt(0, 0), ErrorAt(0, 1), ErrorAt(0, 2)});
    };
    const struct
    {
        const char* what;
        int selected;
        const wchar_t* removed;
        const wchar_t* added;
        std::size_t count;
        int row;
    } cases[] = {
        {"a row of the file", 4, L"/b", L"/b", 3, 4},     {"the last row", 8, L"/c", L"/c", 3, 8},
        {"a row of another file", 7, L"/b", L"/b", 3, 7}, {"another file grows", 7, L"/b", L"/b", 5, 7},
        {"the row is gone", 8, L"/c", L"/c", 1, 5},       {"other letters", 4, L"/B", L"/b", 3, 6},
        {"another file comes", 4, L"/b", L"/d", 3, 3},    {"nothing comes", 4, L"/b", L"/b", 0, 3},
        {"nothing selected", -1, L"/b", L"/b", 3, -1},
    };
    Show();
    for (const auto& c : cases) {
        Bar().clear();
        Errors().Clear();
        fill();
        Bar().setCurrentItem(Bar().topLevelItem(c.selected));
        Errors().RemoveErrors(c.removed);
        Errors().AddErrorsFormBar(c.added, std::vector<SCAError>(c.count, ErrorAt(0, 1)));
        EXPECT_EQ(SelectedRow(), c.row) << c.what;
        EXPECT_EQ(Bar().selectedItems().size(), c.row < 0 ? 0 : 1) << c.what;
        // Once used or passed over, the row is forgotten.
        Bar().setCurrentItem(nullptr);
        Errors().AddErrorsFormBar(c.removed, {ErrorAt(0, 1)});
        EXPECT_EQ(SelectedRow(), -1) << c.what;
    }
}

TEST_F(ErrorsBarTest, SelectionSurvivesTheRowsAround)
{
    Show();
    for (const wchar_t* file : {L"/a", L"/b", L"/c", L"/d"})
        Errors().AddErrorsMT(file, {ErrorAt(0, 0), ErrorAt(0, 1), ErrorAt(0, 2, 901, 2)});
    const QString text = Bar().topLevelItem(5)->text(1);
    Bar().setCurrentItem(Bar().topLevelItem(5));
    // Runs of rows before it and behind it.
    Errors().RemoveErrors(L"/a");
    Errors().RemoveErrors(L"/d");
    ASSERT_EQ(Bar().selectedItems().size(), 1);
    EXPECT_EQ(Bar().selectedItems().first()->text(1), text);
    EXPECT_EQ(Bar().currentItem(), Bar().selectedItems().first());
}

TEST_F(ErrorsBarTest, ComesForwardAfterAProjectCheckWithErrors)
{
    const auto finish = [this](int type) {
        QCoreApplication::postEvent(&Bar(), new CCAErrorsEvent(type, L"", {}));
        QCoreApplication::sendPostedEvents();
        return m_host.frame.GetBars()[0].shown;
    };
    EXPECT_FALSE(finish(CCAErrorsEvent::ProjectFinished)) << "nothing to show";
    Errors().AddErrorsMT(L"/a", {ErrorAt(0, 0)});
    EXPECT_FALSE(finish(17)) << "unknown kinds are swallowed";
    EXPECT_TRUE(finish(CCAErrorsEvent::ProjectFinished));
}

TEST_F(ErrorsBarTest, TakesItsColumnWidthsFromTheSettings)
{
    const int minimum = static_cast<int>(m_host.application.GetScaleFactor() * 75.0);
    EXPECT_EQ(Bar().header()->minimumSectionSize(), minimum);
    EXPECT_EQ(Bar().header()->sectionSize(0), minimum);
    EXPECT_EQ(Bar().header()->sectionSize(1), (Bar().width() - minimum) / 2);

    m_host.settings.SetString(L"CAEBCTRL", L"column0", L"333");
    m_host.settings.SetString(L"CAEBCTRL", L"column2", L"444");
    CCAErrorsBar gap(&m_host.application, nullptr, &Errors());
    EXPECT_EQ(gap.header()->sectionSize(0), 333);
    EXPECT_NE(gap.header()->sectionSize(2), 444) << "reading stops at the first missing width";
    m_host.settings.SetString(L"CAEBCTRL", L"column1", L"wide");
    for (int i = 3; i < 12; ++i)
        m_host.settings.SetString(L"CAEBCTRL", L"column" + std::to_wstring(i), L"99");
    CCAErrorsBar all(&m_host.application, nullptr, &Errors());
    EXPECT_EQ(all.header()->sectionSize(1), minimum) << "a word is the width 0, below the minimum";
}

/// A text in a view whose lines 2 to 4 are folded.
class CViewedText final : public Editor::ITextHolder, private Editor::IStandartView, private Editor::ICaret
{
public:
    Editor::IDocBuffer* GetBuffer() override { return m_text.GetBuffer(); }
    SDK::IView* GetView() override { return this; }
    void SetText(const std::wstring& text) override { m_text.SetText(text); }
    bool IsModified() override { return false; }
    void SetUnmodified() override {}

    std::string calls;
    std::vector<Editor::SDocZone> zones = {{0, 0, 2}, {1, 2, 3}, {0, 5, 95}};

private:
    void Activate() override { calls += "activate "; }
    Editor::ICaret* GetCaret() override { return this; }
    void EnsureVisible(int margin) override { calls += "visible " + std::to_string(margin); }
    int GetLinesCount() override { return m_text.GetBuffer()->GetLinesCount(); }
    std::vector<Editor::SDocZone> GetZones() override { return zones; }
    void SetPos(const SyntaxParser::CIterator& pos, int flag) override
    {
        calls +=
            "caret " + std::to_string(pos.x) + "," + std::to_string(pos.y) + " " + std::to_string(flag) + " ";
    }

    Editor::CMemoryText m_text;
};

class ErrorsBarClickTest : public ErrorsBarTest
{
protected:
    ErrorsBarClickTest()
    {
        m_host.application.Documents().SetHolderFactory([this](Host::CDocument&) {
            auto text = std::make_unique<CViewedText>();
            m_text = text.get();
            return text;
        });
        m_host.Open(L"/a.txt", std::string(9, '\n'));
        Show();
    }
    std::string DoubleClick(std::int64_t x, std::int64_t y, Qt::MouseButton button = Qt::LeftButton)
    {
        Errors().AddErrorsMT(L"/a.txt", {ErrorAt(x, y)});
        const QPoint pos = Bar().visualItemRect(Bar().topLevelItem(0)).center();
        QTest::mouseClick(Bar().viewport(), Qt::LeftButton, {}, pos);
        m_text->calls.clear();
        QTest::mouseDClick(Bar().viewport(), button, {}, pos);
        return m_text->calls;
    }

    CViewedText* m_text = nullptr;
};

TEST_F(ErrorsBarClickTest, DoubleClickPutsTheCaretAtTheError)
{
    EXPECT_EQ(DoubleClick(4, 1), "activate activate caret 4,1 1 visible 0");
    EXPECT_EQ(DoubleClick(4, 2), "activate activate caret 4,2 1 visible 0") << "first line of the fold";
    EXPECT_EQ(DoubleClick(4, 4), "activate activate caret 0,2 1 visible 0") << "hidden by the fold";
    EXPECT_EQ(DoubleClick(4, 6), "activate activate caret 4,4 1 visible 0") << "behind the fold";
    EXPECT_EQ(DoubleClick(4, 1, Qt::RightButton), "");
}

TEST_F(ErrorsBarClickTest, DoubleClickWithoutATextViewDoesNothing)
{
    Errors().AddErrorsMT(L"/not there.php", {ErrorAt(0, 0)});
    Bar().setCurrentItem(Bar().topLevelItem(0));
    QTest::mouseDClick(Bar().viewport(), Qt::LeftButton, {},
                       Bar().visualItemRect(Bar().topLevelItem(0)).center());
    m_host.application.Documents().SetHolderFactory(
        [](Host::CDocument&) { return std::make_unique<Editor::CMemoryText>(); });
    m_host.Open(L"/not there.php", "");
    QTest::mouseDClick(Bar().viewport(), Qt::LeftButton, {},
                       Bar().visualItemRect(Bar().topLevelItem(0)).center());
    QTest::mouseDClick(Bar().viewport(), Qt::LeftButton, {}, {5, Bar().viewport()->height() - 5});
}

TEST_F(ErrorsBarClickTest, PositionsThatDoNotExistAreRaised)
{
    struct COpenedBar : CCAErrorsBar
    {
        using CCAErrorsBar::CCAErrorsBar;
        using CCAErrorsBar::mouseDoubleClickEvent;
    };
    const struct
    {
        std::int64_t line;
        std::vector<Editor::SDocZone> zones;
        const char* what;
    } cases[] = {
        {10, {{0, 0, 10}}, "Critical error: pt.y < GetLinesCount()"},
        {3, {{7, 0, 10}}, "Critical error: DocZone Type error!!!"},
        {3, {{0, 0, 2}}, "Critical error: 0 <= m_pos.y && m_pos.y < (int)m_buffer.size()"},
        {-1, {{0, 0, 10}}, "Critical error: 0 <= m_pos.y && m_pos.y < (int)m_buffer.size()"},
    };
    // Called without Qt in between, which exceptions do not cross in good order.
    COpenedBar bar(&m_host.application, nullptr, &Errors());
    for (const auto& c : cases) {
        Errors().AddErrorsMT(L"/a.txt", {ErrorAt(0, c.line)});
        bar.setCurrentItem(bar.topLevelItem(0));
        m_text->zones = c.zones;
        QMouseEvent click(QEvent::MouseButtonDblClick, {5, 5}, Qt::LeftButton, Qt::LeftButton, {});
        try {
            bar.mouseDoubleClickEvent(&click);
            FAIL() << c.what;
        } catch (const Base::CCriticalError& error) {
            EXPECT_STREQ(error.what(), c.what);
            EXPECT_EQ(error.GetFile(), "Lib/Buffer/ViewIteratorNew");
        }
    }
    Editor::CMemoryText one, two;
    const Base::CTextIterator inOne(one.GetBuffer(), {3, 1});
    EXPECT_TRUE(inOne < Base::CTextIterator(one.GetBuffer(), {0, 2}));
    EXPECT_THROW(inOne < Base::CTextIterator(two.GetBuffer(), {0, 2}), Base::CCriticalError);
}

TEST_F(ErrorsBarTest, RowsOfOthersAreRemovedWithTheirFile)
{
    delete new CCAErrorsBarItem(L"/a.php", {}, 1, 101, L"without a bar", nullptr);
    delete new CCAErrorsBarItem(L"/a.php", {}, 1, 101, L"in no list", &Bar());
    const auto add = [&](const wchar_t* file) {
        Bar().addTopLevelItem(new CCAErrorsBarItem(file, ErrorAt(0, 7).pos, 1, 101, L"of another", &Bar()));
    };
    Errors().AddErrorsFormBar(L"/b.php", {ErrorAt(0, 0), ErrorAt(0, 2)});
    add(L"/A.php");
    add(L"/b.PHP");
    Errors().AddErrorsFormBar(L"/a.php", {ErrorAt(0, 1)});
    EXPECT_EQ(Rows(), (Texts{"/a.php - 2", "/A.php - 8", "/b.php - 1", "/b.php - 3", "/b.PHP - 8"}));
    Bar().OnHeaderItemClicked(1);
    delete Bar().takeTopLevelItem(3); // the second one of /b.php
    Errors().RemoveErrors(L"/b.php");
    EXPECT_EQ(Rows(), (Texts{"/a.php - 2", "/A.php - 8"}));
    Errors().RemoveErrors(L"/a.php");
    EXPECT_EQ(Rows(), Texts());
    Errors().AddErrorsFormBar(L"/a.php", {ErrorAt(0, 5), ErrorAt(0, 1)});
    EXPECT_EQ(Rows(), (Texts{"/a.php - 2", "/a.php - 6"}));
    Errors().RemoveErrors(L"/A.PHP");
    EXPECT_EQ(Rows(), Texts());
}

TEST_F(ErrorsBarTest, TheHostsOwnFindingsStandBesideTheErrors)
{
    const auto rows = [&] {
        QStringList texts;
        for (int row = 0; row < Bar().topLevelItemCount(); ++row)
            texts.append(Bar().topLevelItem(row)->text(1) + ": " + Bar().topLevelItem(row)->text(2));
        return texts.join('|').toStdString();
    };
    const auto own = [](std::int64_t line, const wchar_t* message) {
        return SHostError{{{{0, line}, {1, line}}, 9001, 2}, message};
    };
    Errors().AddErrorsMT(L"/a.php", {ErrorAt(0, 7)});
    Errors().ShowHostErrors(L"/a.php", {own(3, L"idle"), own(9, L"idle too")});
    EXPECT_EQ(rows(), "/a.php - 8: Expression error|/a.php - 4: idle|/a.php - 10: idle too");
    EXPECT_EQ(m_host.ErrorsOf(L"/a.php").size(), 1u) << "they are not stored";
    Errors().ShowHostErrors(L"/a.php", {own(5, L"another")});
    EXPECT_EQ(rows(), "/a.php - 8: Expression error|/a.php - 6: another");
    const auto* row = dynamic_cast<IErrorRow*>(Bar().topLevelItem(1));
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->GetFile(), L"/a.php");
    EXPECT_EQ(row->GetError().code, 9001);
    Errors().RemoveErrors(L"/a.php");
    EXPECT_EQ(rows(), "") << "they go with the others";
    Errors().ShowHostErrors(L"/b.php", {own(5, L"alone")});
    EXPECT_EQ(rows(), "/b.php - 6: alone");
    Errors().ShowHostErrors(L"/b.php", {});
    EXPECT_EQ(rows(), "");
}

TEST_F(ErrorsBarTest, ManyFilesAreRemovedAtOnceAsOneByOne)
{
    const auto name = [](int file) { return L"/f" + std::to_wstring(100 + file); };
    for (const bool most : {true, false})
        for (const int column : {0, 1, 2}) {
            std::vector<std::wstring> going;
            for (int file = 0; file < 60; ++file) {
                Errors().AddErrorsMT(name(file), {ErrorAt(0, 1), ErrorAt(0, 2, 901, 2), ErrorAt(3, 2, 102)});
                if ((file % 10 == 3) != most)
                    going.push_back(name(file));
            }
            Bar().OnHeaderItemClicked(column);
            Bar().setCurrentItem(Bar().topLevelItem(100));
            const auto* current = dynamic_cast<IErrorRow*>(Bar().currentItem());
            const bool stays = std::find(going.begin(), going.end(), current->GetFile()) == going.end();
            const SCAError selected = current->GetError();
            QStringList left;
            for (int row = 0; row < Bar().topLevelItemCount(); ++row)
                if (std::find(going.begin(), going.end(),
                              dynamic_cast<IErrorRow*>(Bar().topLevelItem(row))->GetFile()) == going.end())
                    left.append(Bar().topLevelItem(row)->text(1));
            Errors().RemoveErrorsOf(going);
            QStringList rows;
            for (int row = 0; row < Bar().topLevelItemCount(); ++row)
                rows.append(Bar().topLevelItem(row)->text(1));
            EXPECT_EQ(rows, left) << column;
            EXPECT_EQ(Errors().GetAllErrors().size(), 60 - going.size());
            if (stays && most) {
                ASSERT_NE(Bar().currentItem(), nullptr);
                EXPECT_EQ(dynamic_cast<IErrorRow*>(Bar().currentItem())->GetError().pos, selected.pos);
            }
            // The rows that are left are known as before.
            Errors().RemoveErrors(name(most ? 3 : 4));
            EXPECT_EQ(Bar().topLevelItemCount(), left.size() - 3);
            std::vector<std::wstring> all;
            for (int file = 0; file < 60; ++file)
                all.push_back(name(file));
            Errors().RemoveErrorsOf(all);
            EXPECT_EQ(Bar().topLevelItemCount(), 0);
        }
}

} // namespace

} // namespace Kesh::CodeAnalyzer
