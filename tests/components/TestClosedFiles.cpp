#include "Components/CAErrorsEvent.h"
#include "ProjectFixture.h"

#include <QThread>
#include <filesystem>
#include <thread>

namespace Kesh::CodeAnalyzer {

namespace {

/// Documents that are closed before their check begins.
class ClosedFilesTest : public ProjectHandlerTest
{
protected:
    ClosedFilesTest() { m_host.application.Timers().SetDelayOverride(60000); }

    Host::CDocument& OpenDocument(const std::wstring& file)
    {
        return m_host.application.Documents().OpenFile(file);
    }
    void WaitForCount(const std::wstring& file, std::size_t count)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return Count(file) == count; }, 20000)) << Count(file);
    }
    /// Opens a project of two files with an error each, and closes one of them before a change of it is
    /// checked.
    void CloseUnchecked()
    {
        a = Write("a.php", 1);
        b = Write("b.php", 1);
        OpenAndCheck({a, b});
        Host::CDocument& document = OpenDocument(a);
        Write("a.php", 3);
        m_host.Gate().Close();
        m_host.Close(document);
    }
    /// Waits until a check of the project handler stands at the gate.
    void WaitAtGate(int begun)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.Gate().GetBegun() == begun; }, 20000));
    }

    std::wstring a, b;
};

TEST_F(ClosedFilesTest, AreCheckedFromDisk)
{
    CloseUnchecked();
    WaitAtGate(3);
    EXPECT_EQ(m_host.frame.GetProgressText(), L"") << "no project check";
    int finished = 0;
    struct CCounter : QObject
    {
        bool eventFilter(QObject*, QEvent* event) override
        {
            count += event->type() == CCAErrorsEvent::EventType &&
                     static_cast<CCAErrorsEvent*>(event)->GetType() == CCAErrorsEvent::ProjectFinished;
            return false;
        }
        int& count;
        explicit CCounter(int& counted) : count(counted) {}
    } counter(finished);
    m_host.Bar().installEventFilter(&counter);
    m_host.Gate().Open();
    WaitForCheck();
    EXPECT_EQ(Count(a), 3u);
    EXPECT_EQ(Count(b), 1u);
    EXPECT_EQ(m_host.Gate().GetBegun(), 3) << "the other file too";
    EXPECT_EQ(finished, 0);
}

TEST_F(ClosedFilesTest, AreFoundThoughTheyWereOpenDuringTheProjectsCheck)
{
    a = Write("a.php", 2);
    Host::CDocument& document = OpenDocument(a);
    OpenAndCheck({a});
    EXPECT_EQ(Count(a), 0u);
    m_host.Close(document);
    WaitForCount(a, 2);
}

TEST_F(ClosedFilesTest, AreOnlyCheckedWhenACheckWasDue)
{
    const std::wstring checked = Write("a.php", 1);
    const std::wstring outside = Write("outside.php", 1);
    OpenAndCheck({checked});
    std::vector<std::wstring> asked;
    m_host.application.Parser().SetFileHook([&](const std::wstring& file) { asked.push_back(file); });
    m_host.Close(m_host.Open(outside, "<?php else;"));
    Host::CDocument& document = OpenDocument(checked);
    m_host.component->DoCheck(0);
    m_host.Close(document);
    QTest::qWait(100);
    WaitForCheck();
    EXPECT_EQ(asked, std::vector<std::wstring>());
    m_host.Close(OpenDocument(checked));
    QTest::qWait(100);
    WaitForCheck();
    EXPECT_EQ(asked, std::vector<std::wstring>{checked});
}

// Discarded edits take their errors along, and what they hid comes back.
TEST_F(ClosedFilesTest, AreCheckedFromDiskWhenTheyWereEdited)
{
    const struct
    {
        const wchar_t* name;
        const char* onDisk;
        const wchar_t* edited;
        std::size_t whileOpen, afterwards;
    } cases[] = {
        {L"a.php", "<?php else;", L"<?php else; else; else;", 3, 1},
        {L"b.php", "<?php else; ?><nix>", L"<?php\n", 0, 2},
        {L"c.html", "<p>", L"<nix>", 1, 0},
        {L"d.css", "a { colr: red }", L"", 0, 1},
        {L"e.inc", "<?php", L"<?php else;", 1, 0},
        {L"gone.php", nullptr, L"<?php else;", 1, 0},
    };
    std::vector<std::wstring> files;
    for (const auto& c : cases)
        files.push_back(m_folder.Write(c.name, c.onDisk ? c.onDisk : ""));
    OpenAndCheck(files);
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(QString::fromStdWString(files[i]).toStdString());
        Host::CDocument& document = OpenDocument(files[i]);
        Tests::CTestHost::Edit(document, cases[i].edited);
        m_host.component->DoCheck(0);
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(Count(files[i]), cases[i].whileOpen);
        if (!cases[i].onDisk)
            std::filesystem::remove(Host::PathToBytes(files[i]));
        m_host.Close(document);
        WaitForCount(files[i], cases[i].afterwards);
        WaitForCheck();
        EXPECT_EQ(Count(files[i]), cases[i].afterwards);
    }
}

TEST_F(ClosedFilesTest, ComeLastInAProjectsCheckThatRuns)
{
    a = Write("a.php", 1);
    b = Write("b.php", 1);
    Host::CDocument& document = OpenDocument(a);
    m_host.Gate().Close();
    Open({a, b});
    WaitAtGate(1);
    Write("a.php", 4);
    m_host.Close(document);
    QTest::qWait(50);
    m_host.Gate().Open();
    WaitForCheck();
    EXPECT_EQ(m_host.Gate().GetBegun(), 2);
    EXPECT_EQ(Count(a), 4u);
    EXPECT_EQ(Count(b), 1u);
}

TEST_F(ClosedFilesTest, WaitForTheDocumentsOwnCheckToEnd)
{
    a = Write("a.php", 1);
    OpenAndCheck({a});
    m_host.application.Timers().SetDelayOverride(20);
    m_host.Gate().Close();
    Host::CDocument& document = OpenDocument(a);
    WaitAtGate(2);
    Tests::CTestHost::Edit(document, L"<?php\n");
    Write("a.php", 5);
    m_host.Close(document);
    QTest::qWait(50);
    EXPECT_EQ(m_host.Gate().GetBegun(), 2) << "two checks of one file at once";
    m_host.Gate().Open();
    WaitForCount(a, 5);
    WaitForCheck();
    EXPECT_EQ(Count(a), 5u);
    EXPECT_EQ(m_host.Gate().GetBegun(), 3);
}

TEST_F(ClosedFilesTest, DoNotKeepTheUserFromCheckingTheProject)
{
    CloseUnchecked();
    WaitAtGate(3);
    m_host.component->DoCheck(1);
    m_host.Gate().Open();
    WaitForCheck();
    EXPECT_EQ(m_host.Gate().GetBegun(), 5);
    EXPECT_EQ(Count(a), 3u);
    EXPECT_EQ(Count(b), 1u);
}

TEST_F(ClosedFilesTest, AreForgottenWithTheirProject)
{
    for (const bool begun : {false, true}) {
        m_host.Gate().Open();
        const int before = m_host.Gate().GetBegun();
        CloseUnchecked();
        if (begun) {
            WaitAtGate(before + 3);
            Host::CDocument& other = OpenDocument(b);
            m_host.Close(other);
            QTest::qWait(20); // into the queue
        }
        std::thread opener([this] {
            QThread::msleep(50);
            m_host.Gate().Open();
        });
        m_host.application.Project().Close();
        opener.join();
        QTest::qWait(50);
        EXPECT_FALSE(m_host.application.Threads().IsRunning());
        EXPECT_EQ(m_host.Gate().GetBegun(), before + (begun ? 3 : 2));
        EXPECT_TRUE(m_host.Errors().GetAllErrors().empty());
    }
}

TEST_F(ClosedFilesTest, AreForgottenWhenTheValidatorEnds)
{
    CloseUnchecked();
    m_host.Gate().Open();
    m_host.component.reset();
    QTest::qWait(50);
    EXPECT_EQ(m_host.Gate().GetBegun(), 2);
}

} // namespace

} // namespace Kesh::CodeAnalyzer
