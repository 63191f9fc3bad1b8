// The errors bar of a host that wants very many rows to come some at a time.
#include "TestHost.h"
#include "Window/CAErrorsBarItem.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr int Files = 20;

std::wstring Name(int file)
{
    return L"/f" + std::to_wstring(100 + file) + L".php";
}

class ErrorsBarFillerTest : public ::testing::Test
{
protected:
    ErrorsBarFillerTest() { Bar().SetGradual(); }

    CCAErrorsBar& Bar() { return m_host.Bar(); }
    CCAErrorsManager& Errors() { return m_host.Errors(); }
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }

    std::vector<SCAError> Some(int count)
    {
        std::vector<SCAError> errors;
        for (int i = 0; i < count; ++i)
            errors.push_back({{{Below(50), Below(5000)}, {60, 5000}}, 101 + Below(5), 1 + Below(2)});
        return errors;
    }
    void Fill(int rowsEach)
    {
        for (int file = 0; file < Files; ++file)
            Errors().AddErrorsMT(Name(file), Some(rowsEach));
    }
    void Settle()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !Bar().IsArranging(); }, 20000));
    }
    static std::string Text(const std::wstring& file, const SCAError& error)
    {
        return std::string(file.begin(), file.end()) + ':' + std::to_string(error.pos.start.y) + ':' +
               std::to_string(error.pos.start.x) + ' ' + std::to_string(error.code) + ' ' +
               std::to_string(error.type);
    }
    static std::string Text(const QTreeWidgetItem* item)
    {
        const auto* row = dynamic_cast<const IErrorRow*>(item);
        return row ? Text(row->GetFile(), row->GetError()) : "nothing";
    }
    std::vector<std::string> Shown()
    {
        std::vector<std::string> rows;
        for (int row = 0; row < Bar().topLevelItemCount(); ++row)
            rows.push_back(Text(Bar().topLevelItem(row)));
        return rows;
    }
    /// What is to be shown, from what is stored.
    std::vector<std::string> Expected()
    {
        struct SRow
        {
            std::wstring file;
            SCAError error;
        };
        std::vector<SRow> rows;
        for (const auto& [file, errors] : Errors().GetAllErrors())
            for (const SCAError& error : errors)
                if (!m_pick || m_pick(error))
                    rows.push_back({file, error});
        const int order = Bar().GetSortOrder();
        const auto key = [&](const SRow& row) {
            const SCAError& error = row.error;
            const int part = order < 2 ? error.type : order < 4 ? 0 : error.code;
            return std::tuple(part, row.file, error.pos.start.y, error.pos.start.x, error.code, error.type);
        };
        std::stable_sort(rows.begin(), rows.end(), [&](const SRow& a, const SRow& b) {
            return order % 2 ? key(b) < key(a) : key(a) < key(b);
        });
        std::vector<std::string> texts;
        for (const SRow& row : rows)
            texts.push_back(Text(row.file, row.error));
        return texts;
    }
    void Pick(std::function<bool(const SCAError&)> pick)
    {
        m_pick = std::move(pick);
        Bar().SetPick([this](const IErrorRow& row) { return !m_pick || m_pick(row.GetError()); });
    }

    std::mt19937 m_random{11};
    Tests::CTestHost m_host;
    std::function<bool(const SCAError&)> m_pick;
};

// Whatever happens at whatever moment, in the end what is stored and wanted is there, in order.
TEST_F(ErrorsBarFillerTest, EndsRightAfterAnything)
{
    Bar().resize(700, 200);
    Bar().show();
    Fill(150);
    for (int step = 0; step < 600; ++step) {
        const std::wstring file = Name(Below(Files));
        switch (Below(11)) {
        case 0:
        case 1: Bar().OnHeaderItemClicked(Below(3)); break;
        case 2: Errors().RemoveErrors(file); break;
        case 3: Errors().AddErrorsFormBar(file, Some(Below(30))); break;
        case 4: Errors().AddErrorsMT(file, Some(Below(300))); break;
        case 5: Errors().AddErrorsMT(file, Some(1500)); break;
        case 6: {
            const int line = Below(5000);
            Pick(Below(3) == 0 ? std::function<bool(const SCAError&)>()
                               : [line](const SCAError& error) { return error.pos.start.y > line; });
            break;
        }
        case 7: Bar().PickAgain(file); break;
        case 8:
            if (Below(6) == 0)
                Errors().RemoveErrorsOf({Name(1), Name(2), Name(3), file, Name(5), Name(6)});
            break;
        case 9: // come and gone again, a row at a time
            Errors().ShowHostErrors(file, {{{{{0, 9000}, {1, 9000}}, 9001, 2}, L"own"}});
            for (int turn = Below(3); turn > 0; --turn)
                QCoreApplication::processEvents();
            Errors().ShowHostErrors(file, {});
            break;
        default: Bar().setCurrentItem(Bar().topLevelItem(Below(100)));
        }
        for (int turn = Below(4); turn > 0; --turn)
            QCoreApplication::processEvents();
        if (step % 20 == 19) {
            Settle();
            ASSERT_EQ(Shown(), Expected()) << "step " << step;
        }
    }
}

TEST_F(ErrorsBarFillerTest, CrowdsAreSortedAndPickedWhileTheLoopTurns)
{
    Fill(1000);
    Settle();
    ASSERT_EQ(Bar().topLevelItemCount(), Files * 1000);
    int turns = 0;
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, [&] { ++turns; });
    turn.start(0);
    const auto settledIn = [&] {
        turns = 0;
        Settle();
        EXPECT_EQ(Shown(), Expected());
        return turns;
    };
    Bar().setCurrentItem(Bar().topLevelItem(7000));
    const std::string current = Text(Bar().currentItem());
    Bar().OnHeaderItemClicked(2);
    EXPECT_GE(settledIn(), 2);
    EXPECT_EQ(Text(Bar().currentItem()), current) << "it stays with its row";
    // A row that is not wanted is no longer selected, and is again when it comes back.
    Pick([](const SCAError& error) { return error.pos.start.y == 5; });
    EXPECT_GE(settledIn(), 2);
    EXPECT_TRUE(Bar().selectedItems().isEmpty());
    Pick({});
    EXPECT_GE(settledIn(), 2);
    EXPECT_EQ(Text(Bar().currentItem()), current);
    // An edit meanwhile: the rows of a file go and others come.
    const std::wstring file = dynamic_cast<const IErrorRow*>(Bar().currentItem())->GetFile();
    Bar().OnHeaderItemClicked(1);
    Errors().RemoveErrors(file);
    Errors().AddErrorsFormBar(file, Some(40));
    settledIn();
}

TEST_F(ErrorsBarFillerTest, ASelectedRowThatIsNotWantedLeavesNoOtherSelected)
{
    Errors().AddErrorsMT(Name(1), Some(20));
    Bar().setCurrentItem(Bar().topLevelItem(7));
    const std::string current = Text(Bar().currentItem());
    Pick([&](const SCAError& error) { return Text(Name(1), error) != current; });
    Settle();
    EXPECT_EQ(Bar().topLevelItemCount(), 19);
    EXPECT_TRUE(Bar().selectedItems().isEmpty());
    Pick({});
    Settle();
    EXPECT_EQ(Text(Bar().currentItem()), current);
}

TEST_F(ErrorsBarFillerTest, ManyErrorsOfOneFileKeepTheSelectedRow)
{
    Errors().AddErrorsMT(Name(1), Some(4000));
    Settle();
    Bar().setCurrentItem(Bar().topLevelItem(2500));
    Errors().AddErrorsMT(Name(1), Some(4000)); // checked again
    Settle();
    EXPECT_EQ(Bar().indexOfTopLevelItem(Bar().currentItem()), 2500);
}

// The bar's end at any moment ends all rows, wherever they are.
TEST_F(ErrorsBarFillerTest, ItCanEndAtAnyMoment)
{
    for (int turns = 0; turns < 12; ++turns) {
        Tests::CTestHost host;
        host.Bar().SetPick([](const IErrorRow& row) { return row.GetError().type == 1; });
        for (int file = 0; file < Files; ++file)
            host.Errors().AddErrorsMT(Name(file), Some(400));
        host.Bar().OnHeaderItemClicked(turns % 3);
        if (turns % 2)
            host.Errors().RemoveErrorsOf({Name(1), Name(2), Name(3), Name(4)});
        for (int turn = 0; turn < turns; ++turn)
            QCoreApplication::processEvents();
        host.component.reset();
    }
}

} // namespace

} // namespace Kesh::CodeAnalyzer
