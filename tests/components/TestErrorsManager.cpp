#include "Base/Exception.h"
#include "TestHost.h"

#include <QCoreApplication>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {

namespace {

using SyntaxParser::SScheme;

SCAError ErrorAt(SScheme pos, int code = 101)
{
    return {pos, code, 1};
}

/// Everything the two signals say, as one line each.
struct CRecorder
{
    explicit CRecorder(CCAErrorsManager& manager)
    {
        manager.GetAddedSignal().connect([this](const std::wstring& file,
                                                const std::vector<SCAError>& errors) {
            log += "+" + std::to_string(errors.size()) + QString::fromStdWString(file).toStdString() + " ";
        });
        manager.GetRemovedSignal().connect([this](const std::wstring& file) {
            log += "-" + QString::fromStdWString(file).toStdString() + " ";
        });
    }
    std::string Take()
    {
        QCoreApplication::sendPostedEvents();
        return std::exchange(log, {});
    }
    std::string log;
};

TEST(ErrorsManager, StoresAndAnnouncesWhatIsPosted)
{
    Tests::CTestHost host;
    CCAErrorsManager& manager = host.Errors();
    CRecorder recorder(manager);

    manager.AddErrors(L"a", {});
    manager.AddErrors(L"", {ErrorAt({})});
    EXPECT_EQ(recorder.Take(), "") << "nothing to post";
    manager.RemoveErrors(L"a");
    EXPECT_EQ(recorder.Take(), "-a ") << "announced although there is no entry";
    EXPECT_TRUE(manager.GetAllErrors().empty());

    manager.AddErrors(L"a", {ErrorAt({}, 1), ErrorAt({}, 2)});
    manager.AddErrors(L"a", {ErrorAt({}, 3)});
    EXPECT_TRUE(host.ErrorsOf(L"a").empty()) << "only the GUI thread's events change the table";
    EXPECT_EQ(recorder.Take(), "+2a +1a ");
    const std::vector<SCAError> both = host.ErrorsOf(L"a");
    ASSERT_EQ(both.size(), 3u);
    EXPECT_EQ(both[2].code, 3);

    manager.AddErrorsMT(L"a", {ErrorAt({}, 4)});
    EXPECT_EQ(recorder.Take(), "-a +1a ");
    EXPECT_EQ(host.ErrorsOf(L"a").size(), 1u);
    manager.AddErrorsMT(L"b", {});
    EXPECT_EQ(recorder.Take(), "-b +0b ");
    EXPECT_EQ(manager.GetAllErrors().count(L"b"), 1u) << "an empty entry is an entry";

    std::vector<SCAError> out = {ErrorAt({}, 7)};
    manager.GetErrors(L"unknown", out);
    EXPECT_EQ(out.size(), 1u) << "left as it was";

    manager.RemoveErrorsMSG(L"a");
    EXPECT_EQ(recorder.Take(), "-a ");
    EXPECT_EQ(manager.GetAllErrors().count(L"a"), 0u);
    manager.Clear();
    EXPECT_EQ(recorder.Take(), "");
    EXPECT_TRUE(manager.GetAllErrors().empty());
}

TEST(ErrorsManager, WhatIsToldGraduallyLeavesTheWindowAliveAndEndsRight)
{
    Tests::CTestHost host;
    CCAErrorsManager& manager = host.Errors();
    constexpr int Files = 400;
    constexpr std::int64_t Each = 50;
    const auto name = [](int file) { return L"/f" + std::to_wstring(1000 + file); };
    std::vector<SCAError> errors;
    for (std::int64_t line = 0; line < Each; ++line)
        errors.push_back(ErrorAt({{0, line}, {1, line}}));
    for (int file = 0; file < Files; ++file)
        manager.AddErrorsGradually(name(file), errors);
    EXPECT_EQ(host.Bar().topLevelItemCount(), 0);
    EXPECT_EQ(host.ErrorsOf(name(Files - 1)).size(), errors.size()) << "stored at once";

    // What else happens to a file before it is its turn.
    manager.RemoveErrors(name(390));
    manager.AddErrorsFormBar(name(391), {ErrorAt({}, 102)});
    manager.AddErrorsMT(name(392), {ErrorAt({}, 102)});
    manager.AddErrorsGradually(name(393), {ErrorAt({}, 102)});
    int turns = 0;
    int sorted = 0;
    QTimer turn;
    QObject::connect(&turn, &QTimer::timeout, [&] {
        ++turns;
        const int rows = host.Bar().topLevelItemCount();
        if (sorted == 0 && rows > 200) { // the user works while the rows come
            sorted = rows;
            host.Bar().OnHeaderItemClicked(1);
            host.Bar().OnHeaderItemClicked(1);
            manager.RemoveErrors(name(0));
        }
    });
    turn.start(0);
    const int expected = (Files - 4) * Each + (Each + 1) + 1 + 1 - Each;
    ASSERT_TRUE(QTest::qWaitFor([&] { return host.Bar().topLevelItemCount() == expected; }, 20000))
        << host.Bar().topLevelItemCount();
    EXPECT_GT(turns, 3);
    EXPECT_LT(sorted, expected);
    QStringList rows;
    for (int row = 0; row < expected; ++row)
        rows.append(host.Bar().topLevelItem(row)->text(1).section(' ', 0, 0));
    QStringList descending = rows;
    std::sort(descending.begin(), descending.end(), std::greater<>());
    EXPECT_EQ(rows, descending);
    EXPECT_EQ(rows.count("/f1000"), 0);
    EXPECT_EQ(rows.count("/f1390"), 0);
    EXPECT_EQ(rows.count("/f1391"), Each + 1);
    EXPECT_EQ(rows.count("/f1392") + rows.count("/f1393"), 2);
    QTest::qWait(20);
    EXPECT_EQ(host.Bar().topLevelItemCount(), expected) << "nothing is told twice";
}

TEST(ErrorsManager, AnswersTheEditorsMargin)
{
    Tests::CTestHost host;
    host.Errors().AddErrorsMT(L"a", {ErrorAt({{0, 3}, {2, 7}}), ErrorAt({{0, 4294967297}, {1, 4294967297}})});
    EXPECT_TRUE(host.Errors().IsErrorOnLine(L"a", 3));
    for (const int line : {0, 1, 2, 4, 7})
        EXPECT_FALSE(host.Errors().IsErrorOnLine(L"a", line)) << line;
    EXPECT_FALSE(host.Errors().IsErrorOnLine(L"A", 3));
}

TEST(ErrorsManager, FindsTheSpansToDraw)
{
    const SScheme asked = {{5, 10}, {5, 20}};
    const struct
    {
        const char* what;
        SScheme error;
        std::vector<SScheme> drawn;
    } cases[] = {
        {"inside", {{0, 12}, {3, 13}}, {{{0, 12}, {3, 13}}}},
        {"begins at the start, ends behind", {{5, 10}, {0, 30}}, {{{5, 10}, {5, 20}}}},
        {"exactly the span", {{5, 10}, {5, 20}}, {{{5, 10}, {5, 20}}}},
        {"begins before, ends inside", {{0, 2}, {1, 15}}, {{{5, 10}, {1, 15}}}},
        {"begins before, ends at the end", {{4, 10}, {5, 20}}, {{{5, 10}, {5, 20}}}},
        {"touches the start with its end", {{0, 2}, {5, 10}}, {}},
        {"begins at the end", {{5, 20}, {9, 20}}, {}},
        {"encloses", {{4, 10}, {6, 20}}, {}},
        {"elsewhere", {{0, 30}, {1, 30}}, {}},
    };
    Tests::CTestHost host;
    for (const auto& c : cases) {
        host.Errors().AddErrorsMT(L"a", {ErrorAt(c.error)});
        std::vector<SScheme> out = {{{1, 1}, {2, 2}}};
        host.application.Parser().GetFindErrorRegionsSignal()(L"a", asked, out);
        ASSERT_EQ(out.size(), 1 + c.drawn.size()) << c.what;
        out.erase(out.begin());
        EXPECT_EQ(out, c.drawn) << c.what;
    }
}

TEST(ErrorsManager, DescribesErrorsByTheirCode)
{
    Tests::CTestHost host;
    const std::pair<int, const wchar_t*> cases[] = {
        {252, L"ElSE or ELSEIF has no IF statement"},
        {103, L"Left and right operands for operator are identical"},
        {2001, L"Illegal HTML tag name"},
        {2501, L"Illegal HTML tag name"},
        {203, L"Udefined error"},
        {0, L"Udefined error"},
        {-1, L"Udefined error"},
    };
    for (const auto& [code, text] : cases)
        EXPECT_EQ(host.Errors().GetErrorDescription(ErrorAt({}, code)), text);
}

TEST(ErrorsManager, NeedsTheParsingService)
{
    Tests::CTestHost host(Tests::CTestHost::NotStarted);
    host.application.RemoveComponent(L"IParserComponent");
    try {
        host.Errors().Init(&host.application, nullptr, QIcon());
        FAIL() << "no parsing service was needed";
    } catch (const Base::CCriticalError& error) {
        EXPECT_STREQ(error.what(), "Critical error: Bad sweak pointer");
    }
    // Results that come while there is no bar go nowhere.
    host.Errors().AddErrors(L"a", {ErrorAt({})});
    host.Errors().RemoveErrorsMSG(L"a");
}

} // namespace

} // namespace Kesh::CodeAnalyzer
