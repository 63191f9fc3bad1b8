#include "Application/ThreadService.h"
#include "Components/CAErrorsEvent.h"
#include "Components/CAProjectHandler.h"
#include "Components/CASavedErrorsText.h"
#include "ProjectFixture.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <random>
#include <set>
#include <thread>

namespace Kesh::CodeAnalyzer {

namespace {

const SCAError OldError = {{{0, 0}, {1, 0}}, 102, 1};

TEST_F(ProjectHandlerTest, RestoredErrorsAreReplacedByFreshOnes)
{
    const std::wstring faulty = Write("faulty.php", 2);
    const std::wstring clean = Write("clean.php", 0);
    const std::wstring page = Write("page.html", 0);
    const std::wstring gone = m_folder.Path(L"gone.php");
    Save({{faulty, {OldError, OldError, OldError}},
          {clean, {OldError}},
          {page, {OldError, OldError}},
          {gone, {OldError}},
          {L"/elsewhere.php", {OldError}}});
    m_host.Gate().Close();
    Open({clean, faulty, gone, page});
    EXPECT_EQ(Count(faulty), 3u) << "restored at once";
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Gate().GetBegun() == 1; }, 20000));
    EXPECT_EQ(m_host.frame.GetProgressText(), L"Check project...");
    m_host.Gate().Open();
    WaitForCheck();
    EXPECT_EQ(m_host.frame.GetProgressText(), L"");
    EXPECT_EQ(Count(faulty), 2u);
    EXPECT_EQ(Count(clean), 0u);
    EXPECT_EQ(Count(page), 2u) << "not checked, so it keeps what it has";
    EXPECT_EQ(Count(gone), 0u) << "has left the disk";
    EXPECT_EQ(Count(L"/elsewhere.php"), 0u);
    EXPECT_TRUE(m_host.frame.GetBars()[0].shown);
}

TEST_F(ProjectHandlerTest, RestoredErrorsOfFilesThatCannotBeCheckedGo)
{
    struct SCase
    {
        const char* name;
        bool exists;
        std::size_t size;
        bool open;
        std::size_t left;
    };
    const SCase cases[] = {
        {"gone.php", false, 0, false, 0},       {"gone.html", false, 0, false, 0},
        {"large.php", true, 1000001, false, 0}, {"large.html", true, 1000001, false, 1},
        {"open.php", false, 0, true, 1},
    };
    m_host.application.Timers().SetDelayOverride(60000);
    std::vector<std::wstring> files;
    std::vector<SSavedFileErrors> saved;
    for (const SCase& c : cases) {
        files.push_back(m_folder.Path(QString(c.name).toStdWString()));
        saved.push_back({files.back(), {OldError}});
        if (c.exists)
            m_folder.Write(QString(c.name).toStdWString(), std::string(c.size, ' '));
        if (c.open)
            m_host.Open(files.back(), "");
    }
    Save(saved);
    OpenAndCheck(files);
    for (std::size_t i = 0; i < files.size(); ++i)
        EXPECT_EQ(Count(files[i]), cases[i].left) << cases[i].name;
}

// As a host may that has no threads of its own to give, or wants the check done when the call returns.
TEST_F(ProjectHandlerTest, RunChecksByItself)
{
    std::vector<std::wstring> files;
    for (int i = 0; i < 200; ++i)
        files.push_back(Write("f" + std::to_string(i) + ".php", i % 2));
    OpenAndCheck(files);
    Write("f0.php", 3);
    struct CCounter : QObject
    {
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == CCAErrorsEvent::EventType)
                ++counts[static_cast<CCAErrorsEvent*>(event)->GetType()];
            return false;
        }
        std::map<int, int> counts;
    } counter;
    m_host.Bar().installEventFilter(&counter);
    CCAProjectHandler handler;
    handler.Init(&m_host.application, m_host.component.get(), &m_host.Errors());
    handler.Run(); // without waiting for anybody to deliver
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(counter.counts, (std::map<int, int>{{CCAErrorsEvent::Add, 101},
                                                  {CCAErrorsEvent::ProjectFinished, 1},
                                                  {CCAErrorsEvent::Remove, 100}}))
        << "removals are for files that had errors";
    EXPECT_EQ(Count(files[0]), 3u);
    EXPECT_EQ(Count(files[1]), 1u);
    CCAProjectHandler lonely;
    lonely.Init(&m_host.application, nullptr, &m_host.Errors());
    lonely.Run();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(counter.counts[CCAErrorsEvent::ProjectFinished], 1) << "nobody to tell";
    EXPECT_EQ(Count(files[1]), 1u);
}

TEST_F(ProjectHandlerTest, AStopDuringTheLastFileLeavesTheCheckComplete)
{
    m_host.Gate().Close();
    Open({Write("a.php", 1)});
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Gate().GetBegun() == 1; }, 20000));
    EXPECT_FALSE(m_host.frame.GetBars()[0].shown);
    std::thread opener([this] {
        QThread::msleep(50);
        m_host.Gate().Open();
    });
    m_host.application.Project().Close(true);
    opener.join();
    EXPECT_TRUE(m_host.frame.GetBars()[0].shown) << "the end of the check was announced";
}

/// Gives no thread, or the host's.
class CMeanThreads : public SDK::IThreadService, SDK::IThreadObject
{
public:
    SDK::IThreadObject* CreateThread(SDK::IThread* body, int flag) override
    {
        m_body = body;
        ++m_asked;
        return refuses ? this : m_real.CreateThread(body, flag);
    }
    void Start() override { m_body->Finished(); }
    void Stop(ProjectManager::IProjectManager*) override {}
    int IsStopRequested() override { return 0; }

    bool refuses = true;
    int m_asked = 0;
    Host::CThreadService m_real;

private:
    SDK::IThread* m_body = nullptr;
};

/// The host with such threads.
class CMeanApplication : public SDK::IApplication
{
public:
    explicit CMeanApplication(Host::CApplication& host) : m_host(host) {}
    boost::weak_ptr<SDK::IComponent1<IApplication>> GetComponent(const std::wstring& name) override
    {
        return m_host.GetComponent(name);
    }
    SDK::IMainFrame* GetMainFrame() override { return m_host.GetMainFrame(); }
    SDK::IImageListService* GetImageListService() override { return m_host.GetImageListService(); }
    SDK::ISettings* GetSettings() override { return m_host.GetSettings(); }
    SDK::ITimerService* GetTimerService() override { return m_host.GetTimerService(); }
    SDK::IThreadService* GetThreadService() override { return &threads; }
    SDK::IDocumentService* GetDocumentService() override { return m_host.GetDocumentService(); }
    double GetScaleFactor() override { return m_host.GetScaleFactor(); }
    LangSupport::ILangSource* GetLangSource() override { return m_host.GetLangSource(); }

    CMeanThreads threads;

private:
    Host::CApplication& m_host;
};

TEST_F(ProjectHandlerTest, ProjectsAreCheckedOnceThereAreThreadsAgain)
{
    m_host.component.reset();
    CMeanApplication application(m_host.application);
    CCAComponent component;
    component.InitComponent(&application);
    const std::wstring a = Write("a.php", 1);
    Open({a});
    component.DoCheck(1);
    EXPECT_EQ(application.threads.m_asked, 2) << "once each, and not again and again";
    application.threads.refuses = false;
    component.DoCheck(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !application.threads.m_real.IsRunning(); }, 20000));
    QCoreApplication::sendPostedEvents();
    std::vector<SCAError> errors;
    static_cast<CCAErrorsManager*>(component.GetErrorsManager())->GetErrors(a, errors);
    EXPECT_EQ(errors.size(), 1u);
    m_host.application.Project().Close();
}

TEST_F(ProjectHandlerTest, AFaultInRestoringLeavesTheCheck)
{
    const std::wstring a = Write("a.php", 1);
    Save({{a, {OldError, OldError}}});
    int added = 0;
    const boost::signals2::scoped_connection failing =
        m_host.Errors().GetAddedSignal().connect([&](const std::wstring&, const auto&) {
            if (++added == 1)
                throw std::runtime_error("no room for a row");
        });
    OpenAndCheck({a});
    EXPECT_EQ(added, 2);
    EXPECT_EQ(Count(a), 1u);
}

TEST_F(ProjectHandlerTest, ACleanProjectDoesNotShowTheBar)
{
    OpenAndCheck({Write("a.php", 0)});
    EXPECT_FALSE(m_host.frame.GetBars()[0].shown);
    m_host.application.Project().Close();
    EXPECT_EQ(SavedText(), "<errors version=\"5.3\">\n</errors>\n");
}

TEST_F(ProjectHandlerTest, SkipsByNameAndSize)
{
    const auto sized = [this](const wchar_t* name, std::size_t size) {
        return m_folder.Write(name, std::string(size, ' '));
    };
    std::set<std::wstring> checked = {
        Write("index.php", 0), Write("sub/b.phtml", 0),      Write("a.CSS.php", 0),
        Write("html.php", 0),  sized(L"limit.php", 1000000),
    };
    const std::set<std::wstring> skipped = {
        Write("layout.tpl.php", 0), Write("a.inc", 0),           Write("a.include.php", 0),
        Write("a.sql.php", 0),      Write("a.htm.php", 0),       Write("my.css.files/a.php", 0),
        Write("b.ctp.php", 0),      sized(L"over.php", 1000001),
    };
    std::vector<std::wstring> files(checked.begin(), checked.end());
    files.insert(files.end(), skipped.begin(), skipped.end());

    std::set<std::wstring> asked;
    m_host.application.Parser().SetFileHook([&](const std::wstring& file) { asked.insert(file); });
    OpenAndCheck(files);
    EXPECT_EQ(asked, checked);
}

TEST_F(ProjectHandlerTest, ClosingSavesAndClears)
{
    const std::wstring a = Write("a.php", 1);
    const std::wstring b = Write("b.php", 0);
    OpenAndCheck({a, b});
    m_host.Errors().AddErrorsMT(L"/elsewhere.php", {OldError});
    m_host.application.Project().Close();
    EXPECT_EQ(QString::fromStdString(SavedText()),
              QString::fromStdWString(WriteSavedErrors({{a, {{{{0, 1}, {4, 1}}, 252, 1}}}})));
    EXPECT_EQ(Count(a), 0u);
    EXPECT_EQ(Count(L"/elsewhere.php"), 1u) << "not the project's";
}

TEST_F(ProjectHandlerTest, ReopeningKeepsTheErrors)
{
    const std::wstring a = Write("a.php", 1);
    OpenAndCheck({a});
    std::vector<std::size_t> counts;
    const boost::signals2::scoped_connection closing =
        m_host.Project().GetCloseProjectSignal().connect([&](auto*) { counts.push_back(Count(a)); });
    m_host.application.ReopenProject({a});
    EXPECT_EQ(counts, std::vector<std::size_t>{1});
    WaitForCheck();
    EXPECT_EQ(Count(a), 1u);
}

TEST_F(ProjectHandlerTest, WhatIsRestoredGraduallyIsNeitherLostNorDoubled)
{
    m_host.component->GetProjectCheck()->SetGradual(true);
    std::vector<std::wstring> files;
    std::vector<SSavedFileErrors> saved;
    for (int i = 0; i < 50; ++i) {
        files.push_back(Write("f" + std::to_string(100 + i) + ".php", 2));
        saved.push_back({files.back(), {OldError, OldError, OldError}});
    }
    const std::wstring clean = Write("clean.php", 0);
    files.push_back(clean);
    saved.push_back({clean, {OldError}});
    Save(saved);
    const std::string before = SavedText();
    Open(files);
    m_host.application.Project().Close(); // before anything has been restored, or checked
    EXPECT_EQ(SavedText(), before);
    EXPECT_TRUE(m_host.Errors().GetAllErrors().empty());
    EXPECT_EQ(m_host.Bar().topLevelItemCount(), 0);

    Open(files);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Bar().topLevelItemCount() == 100; }, 20000))
        << m_host.Bar().topLevelItemCount();
    WaitForCheck();
    EXPECT_EQ(Count(clean), 0u) << "found to be clean";
    EXPECT_EQ(m_host.Bar().topLevelItemCount(), 100);
    m_host.application.ReopenProject(files);
    EXPECT_EQ(m_host.Bar().topLevelItemCount(), 100) << "the rows stay where they are";
    WaitForCheck();
    EXPECT_EQ(m_host.Bar().topLevelItemCount(), 100);
}

TEST_F(ProjectHandlerTest, FilesThatLeaveOnReopeningTakeTheirErrorsAlong)
{
    const std::wstring stays = Write("a.php", 1);
    const std::wstring leaves = Write("b.php", 2);
    const std::wstring open = Write("c.php", 3);
    OpenAndCheck({stays, leaves, open});
    Host::CDocument& document = m_host.application.Documents().OpenFile(open);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Gate().GetBegun() == 4 && Count(open) == 3; }, 20000));
    m_host.Errors().AddErrorsMT(L"/elsewhere.php", {OldError});
    m_host.application.ReopenProject({stays});
    EXPECT_EQ(Count(leaves), 0u);
    WaitForCheck();
    EXPECT_EQ(Count(stays), 1u);
    // The check of the open document may be under way still.
    EXPECT_TRUE(QTest::qWaitFor([&] { return Count(open) == 3; }, 20000)) << "still open, so still checked";
    EXPECT_EQ(Count(L"/elsewhere.php"), 1u) << "never was the project's";
    EXPECT_EQ(m_host.Bar().topLevelItemCount(), 5);
    m_host.Close(document);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Count(open) == 0; }, 20000));
}

// A check ends when the project handler is done with the project, which the host has not forgotten yet.
TEST_F(ProjectHandlerTest, ACheckThatEndsWhileTheProjectClosesLeavesNothingBehind)
{
    const std::wstring closed = Write("a.php", 1);
    const std::wstring open = Write("b.php", 1);
    OpenAndCheck({closed, open});
    m_host.Gate().Close();
    const int begun = m_host.Gate().GetBegun();
    Host::CDocument& document = m_host.Open(closed, "<?php else; else; else;");
    m_host.Open(open, "<?php else; else;");
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Gate().GetBegun() == begun + 2; }, 20000));
    m_host.Close(document);
    const boost::signals2::scoped_connection later =
        m_host.Project().GetCloseProjectSignal().connect([this](auto*) {
            m_host.Gate().Open();
            QThread::msleep(200);
        });
    std::thread opener([this] {
        QThread::msleep(100);
        m_host.Gate().Open();
    });
    m_host.application.Project().Close();
    opener.join();
    QTest::qWait(100);
    EXPECT_EQ(Count(closed), 0u);
    EXPECT_EQ(m_host.Bar().topLevelItemCount(), static_cast<int>(Count(open)));
    std::set<std::wstring> lower;
    for (const std::wstring& file : {closed, open})
        lower.insert(QString::fromStdWString(file).toLower().toStdWString());
    const auto kept = ReadSavedErrors(QString::fromStdString(SavedText()).toStdWString(), lower);
    ASSERT_EQ(kept.size(), 2u);
    EXPECT_EQ(kept[0].errors.size(), 1u) << "its check was given up, so what was known is kept";
    EXPECT_EQ(kept[1].errors.size(), 1u);

    Tests::CTestHost::Edit(*m_host.application.Documents().Find(open), L"<?php else; else; else; else;");
    ASSERT_TRUE(QTest::qWaitFor([&] { return Count(open) == 4; }, 20000)) << "an open document is checked on";
}

TEST_F(ProjectHandlerTest, ClosingAtAnyMomentLosesAndDoublesNothing)
{
    std::vector<std::wstring> files;
    for (int i = 0; i < 60; ++i)
        files.push_back(Write("f" + std::to_string(100 + i) + ".php", 2));
    std::set<std::wstring> lower;
    for (const std::wstring& file : files)
        lower.insert(QString::fromStdWString(file).toLower().toStdWString());
    std::mt19937 random(5);
    int partial = 0;
    // A machine with much else to do may check all files before this thread goes on.
    for (int round = 0; round < 40 || (partial == 0 && round < 1000); ++round) {
        m_folder.Write(L".code-analyzer/errors", "");
        const int start = m_host.Gate().GetBegun();
        const int target = start + static_cast<int>(random() % files.size());
        Open(files);
        while (m_host.Gate().GetBegun() < target)
            if (round % 2)
                QCoreApplication::processEvents();
        m_host.application.Project().Close();
        EXPECT_FALSE(m_host.application.Threads().IsRunning());
        EXPECT_TRUE(m_host.Errors().GetAllErrors().empty());
        QCoreApplication::sendPostedEvents();
        EXPECT_TRUE(m_host.Errors().GetAllErrors().empty()) << "errors come after the clear";

        const std::string saved = SavedText();
        const auto kept = ReadSavedErrors(QString::fromStdString(saved).toStdWString(), lower);
        for (const auto& file : kept)
            EXPECT_EQ(file.errors.size(), 2u);
        partial += !kept.empty() && kept.size() < files.size();
    }
    EXPECT_GT(partial, 0) << "no round ended in the midst of a check";
}

// Else the GUI thread would have nothing but events to deliver until the whole project is checked.
TEST_F(ProjectHandlerTest, TheCheckWaitsForTheWindow)
{
    std::vector<std::wstring> files;
    for (int i = 0; i < 300; ++i)
        files.push_back(Write("f" + std::to_string(i) + ".php", 1));
    Open(files);
    const auto settle = [this](int least) {
        while (m_host.Gate().GetBegun() < least)
            QThread::msleep(1);
        QThread::msleep(200);
        return m_host.Gate().GetBegun();
    };
    const int first = settle(64);
    EXPECT_LE(first, 66);
    QCoreApplication::sendPostedEvents(&m_host.Bar(), CCAErrorsEvent::EventType);
    const int second = settle(2 * first);
    EXPECT_LE(second, 2 * first + 2);
    m_host.application.Project().Close(); // ends it, though nobody delivers
    EXPECT_EQ(m_host.Gate().GetBegun(), second);

    Open(files);
    WaitForCheck();
    EXPECT_EQ(m_host.Bar().topLevelItemCount(), 300);
}

TEST_F(ProjectHandlerTest, AFaultInOneFileLeavesTheOthers)
{
    std::vector<std::wstring> files = {Write("a.php", 1), Write("b.php", 1), Write("c.php", 1)};
    Save({{files[1], {OldError, OldError, OldError}}});
    std::wstring failed;
    const boost::signals2::scoped_connection failing =
        m_host.Errors().GetFailedSignal().connect([&](const std::wstring& file, const std::wstring& reason) {
            failed += file + L": " + reason + L'\n';
            EXPECT_EQ(Count(file), 3u) << "what was known before";
        });
    for (const bool complete : {false, true}) {
        m_host.component->GetProjectCheck()->SetComplete(complete);
        m_host.Gate().FailCheck(2);
        if (complete)
            m_host.component->DoCheck(1);
        else
            Open(files);
        WaitForCheck();
        EXPECT_EQ(Count(files[0]), 1u);
        EXPECT_EQ(Count(files[1]), 3u);
        EXPECT_EQ(Count(files[2]), 1u);
        EXPECT_EQ(std::exchange(failed, {}), files[1] + L": a check that fails\n");
    }
}

TEST_F(ProjectHandlerTest, TheUserCanCheckTheProjectAgain)
{
    m_host.component->DoCheck(1); // no project is open
    EXPECT_FALSE(m_host.application.Threads().IsRunning());
    const std::wstring a = Write("a.php", 1);
    Save({{a, {OldError, OldError}}});
    OpenAndCheck({a});
    Write("a.php", 3);
    m_host.Gate().Close();
    m_host.component->DoCheck(1);
    m_host.component->DoCheck(1); // one runs
    m_host.Gate().Open();
    WaitForCheck();
    EXPECT_EQ(m_host.Gate().GetBegun(), 2);
    EXPECT_EQ(Count(a), 3u);
}

TEST_F(ProjectHandlerTest, AProjectParsedAnewIsCheckedAnew)
{
    const std::wstring a = Write("a.php", 1);
    const std::wstring b = Write("b.php", 1);
    Open({a, b});
    m_host.application.Parser().GetProjectParsedSignal()();
    WaitForCheck();
    EXPECT_EQ(m_host.Gate().GetMostAtOnce(), 1);
    EXPECT_EQ(Count(a), 1u);
    EXPECT_EQ(Count(b), 1u);
}

TEST_F(ProjectHandlerTest, OpenDocumentsAreNotLeftWithRestoredErrors)
{
    const std::wstring a = Write("a.php", 1);
    Save({{a, {OldError, OldError}}});
    m_host.application.Documents().OpenFile(a);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Count(a) == 1; }, 20000));
    Open({a});
    EXPECT_EQ(Count(a), 2u);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Count(a) == 1; }, 20000));
    EXPECT_EQ(m_host.ErrorsOf(a)[0].code, 252);
}

TEST_F(ProjectHandlerTest, AFileClosedDuringItsCheckIsNotCheckedTwice)
{
    const std::wstring a = Write("a.php", 1);
    const std::wstring b = Write("b.php", 1);
    OpenAndCheck({a, b});
    m_host.Gate().Close();
    Host::CDocument& document = m_host.Open(a, "<?php else; else; else;");
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Gate().GetBegun() == 3; }, 20000));
    m_host.Close(document);
    m_host.component->DoCheck(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Gate().GetBegun() == 4; }, 20000)) << "of the other file";
    m_host.Gate().Open();
    WaitForCheck();
    ASSERT_TRUE(QTest::qWaitFor([&] { return Count(a) == 3 && Count(b) == 1; }, 20000));
    EXPECT_EQ(m_host.Gate().GetBegun(), 4);
}

TEST_F(ProjectHandlerTest, ShuttingDownEndsTheCheck)
{
    std::vector<std::wstring> files;
    for (int i = 0; i < 30; ++i)
        files.push_back(Write("f" + std::to_string(i) + ".php", 5));
    for (int round = 0; round < 10; ++round) {
        Tests::CTestHost host;
        host.application.OpenProject(m_folder.Path(), files);
        QTest::qWait(round);
        host.component.reset();
        EXPECT_FALSE(host.application.Threads().IsRunning());
        QCoreApplication::processEvents();
    }
}

} // namespace

} // namespace Kesh::CodeAnalyzer
