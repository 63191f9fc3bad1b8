// What a host that knows the interfaces and asks for nothing sees of the plug-in, call by call.
#include "Components/CASavedErrorsText.h"
#include "RecordingHost.h"
#include "SyntaxParser/SPDocument.h"
#include "Window/CAComponent.h"
#include "Window/CAErrorsBar.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>
#include <atomic>
#include <gtest/gtest.h>
#include <thread>

namespace Kesh::CodeAnalyzer {

namespace {

class RecordedCallsTest : public ::testing::Test
{
protected:
    void Start()
    {
        m_component->InitComponent(&m_host);
        m_host.Watch(*m_component->GetErrorsBar());
        m_host.Take();
    }
    CCAErrorsManager& Errors() { return *static_cast<CCAErrorsManager*>(m_component->GetErrorsManager()); }
    std::size_t Count(const std::wstring& file)
    {
        std::vector<SCAError> errors;
        Errors().GetErrors(file, errors);
        return errors.size();
    }
    void WaitFor(const std::string& call)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return m_host.log.Has(call); }, 20000)) << call;
    }
    /// What has been posted is delivered.
    std::string Deliver()
    {
        QCoreApplication::sendPostedEvents();
        return m_host.Take();
    }
    /// A project of three files, of which one has an error that is kept and is checked, and the others have
    /// kept ones.
    void OpenProject()
    {
        m_host.isOpened = true;
        m_host.files = {L"/p/a.php", L"/p/b.html", L"/p/gone.php"};
        m_host.texts = {{L"/p/a.php", L"<?php else;"}};
        m_host.data =
            WriteSavedErrors({{L"/p/a.php", {Old}}, {L"/p/b.html", {Old}}, {L"/p/gone.php", {Old}}});
        m_host.ParseProject();
    }

    static constexpr SCAError Old = {{{0, 0}, {1, 0}}, 102, 1};
    Tests::CRecordingHost m_host;
    std::unique_ptr<CCAComponent> m_component = std::make_unique<CCAComponent>();
};

constexpr const char* EndOfChecker = "StopTimer(CCADocParser)\n"
                                     "GetComponent(IPMComponent)\n"
                                     "project.IsOpened\n";

TEST_F(RecordedCallsTest, TheStart)
{
    EXPECT_EQ(m_host.Take(), "");
    m_component->InitComponent(&m_host);
    EXPECT_EQ(m_host.Take(), "GetLangSource\n"
                             "GetImageListService\n"
                             "CreateImageList\n"
                             "Load(:/caicons.bmp, 16, 16, ffc0c0c0)\n"
                             "GetScaleFactor\n"
                             "GetSettings\n"
                             "HasSection(CAEBCTRL)\n"
                             "GetMainFrame\n"
                             "GetFillMenuSignal\n"
                             "GetAddBarsSignal\n"
                             "GetIcon(0)\n"
                             "GetComponent(IParserComponent)\n"
                             "parser.GetFindErrorRegionsSignal\n"
                             "GetComponent(IParserComponent)\n"
                             "parser.GetDefRegions\n"
                             "parser.GetDocCreatedSignal\n"
                             "GetComponent(IPMComponent)\n"
                             "project.GetCloseProjectSignal\n"
                             "GetComponent(IParserComponent)\n"
                             "parser.GetProjectParsedSignal\n");
    EXPECT_EQ(m_component->ShowErrorPage(0), 0);
    EXPECT_EQ(m_host.Take(), "GetMainFrame\nGetBarManager\nShowBar(0, 0)\n");
    m_host.AddBars();
    EXPECT_EQ(m_host.Take(), "GetBarManager\nAddBar(Errors, Kesh::CodeAnalyzer::CCAErrorsBar, 1, 50)\n");
    m_host.FillMenu();
    EXPECT_EQ(m_host.Take(), "menu.GetItem(0 names)\n"
                             "root.AddPopup(CEmptyCmd &Tools, -1)\n"
                             "&Tools.AddPopup(CEmptyCmd Code validator, 0)\n"
                             "Code validator.AddCommand(CCAShowErrorsBarCmd, -1, 0, 0)\n"
                             "GetMainFrame\n"
                             "GetBarManager\n"
                             "ShowBar(77, 1)\n"
                             "end of Code validator\n"
                             "end of &Tools\n"
                             "end of root\n");
}

TEST_F(RecordedCallsTest, AMenuThatIsNoneEndsTheProcess)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    Start();
    for (int nullAt : {0, 1, 2})
        EXPECT_DEATH(m_host.FillMenu(nullAt), "Assertion") << nullAt;
}

TEST_F(RecordedCallsTest, Documents)
{
    Start();
    const struct
    {
        const wchar_t* path;
        const wchar_t* factory;
        const char* calls;
    } unchecked[] = {
        {L"/a.txt", L"TextFactory", "source.GetFactoryName\n"},
        {L"/a.tpl", L"PHPSPDocFactory", "source.GetFactoryName\nsource.GetFilePath\n"},
    };
    for (const auto& c : unchecked) {
        m_host.Take();
        auto open = m_host.Open(c.path, L"", c.factory);
        EXPECT_EQ(m_host.Take(), c.calls);
        m_host.Close(open);
        EXPECT_EQ(m_host.Take(), "");
    }
    m_host.Take();
    auto open = m_host.Open(L"/a.php", L"<?php else;");
    EXPECT_EQ(m_host.Take(), "source.GetFactoryName\n"
                             "source.GetFilePath\n"
                             "source.GetFilePath\n"
                             "source.GetBuffer\n"
                             "buffer.GetText(LF)\n"
                             "GetComponent(IParserComponent)\n"
                             "source.GetFactoryName\n"
                             "source.GetFilePath\n"
                             "parser.CreateDocument(/a.php, PHPSPDocFactory)\n"
                             "check.GetFactoryName\n"
                             "check.GetComponent(IReader)\n"
                             "check.GetComponent(IParser)\n"
                             "GetComponent(IParserComponent)\n"
                             "parser.GetCompletionData\n"
                             "GetComponent(IParserComponent)\n"
                             "parser.GetCssSyntax\n"
                             "parser.GetCompletionData\n"
                             "check.GetSemanticParser(HTML)\n"
                             "source.GetBuffer\n"
                             "buffer.GetChangeSignal\n"
                             "StartTimer(CCADocParser, 3000)\n"
                             "source.GetDocDestroySignal\n");
    open.text->Edit(L"<?php else; else;");
    EXPECT_EQ(m_host.Take(), "StartTimer(CCADocParser, 3000)\n");
    m_host.FireTimer();
    WaitFor("bar.Add(/a.php, 2)");
    EXPECT_EQ(m_host.Take(), "source.GetFilePath\n"
                             "StopTimer(CCADocParser)\n"
                             "source.GetBuffer\n"
                             "buffer.GetText(LF)\n"
                             "check.Parse(true)\n"
                             "bar.Add(/a.php, 2)\n");
    QTest::qWait(50); // the worker lets go
    m_host.Close(open);
    EXPECT_EQ(m_host.Take(), std::string("source.GetDocument\n") + EndOfChecker + "check.end\n");
    EXPECT_EQ(Deliver(), "bar.Remove(/a.php, 0)\n");
}

TEST_F(RecordedCallsTest, ABusyCheckerPutsItsCheckOff)
{
    std::atomic<bool> isOpen{false};
    m_host.atParse = [&] {
        while (!isOpen)
            QThread::msleep(1);
    };
    Start();
    auto open = m_host.Open(L"/a.php", L"<?php else;");
    m_host.FireTimer();
    WaitFor("check.Parse(true)");
    m_host.Take();
    m_host.FireTimer();
    EXPECT_EQ(m_host.Take(), "StartTimer(CCADocParser, 3000)\n");
    m_host.Close(open); // its check comes to its end, then its errors go
    EXPECT_EQ(m_host.Take(), "source.GetDocument\n");
    isOpen = true;
    WaitFor("bar.Remove(/a.php, 0)");
    EXPECT_EQ(m_host.Take(),
              std::string(EndOfChecker) + "check.end\nbar.Add(/a.php, 1)\nbar.Remove(/a.php, 0)\n");
}

TEST_F(RecordedCallsTest, AProject)
{
    Start();
    OpenProject();
    EXPECT_EQ(m_host.Take(), "GetComponent(IPMComponent)\n"
                             "project.GetFilesCache\n"
                             "project.GetData(errors)\n"
                             "CreateThread(CCAProjectHandler, 0)\n"
                             "thread.Start\n");
    m_host.RunThread();
    EXPECT_EQ(m_host.Take(), "GetMainFrame\n"
                             "SetProgressText(Check project...)\n"
                             "GetComponent(IPMComponent)\n"
                             "GetComponent(IParserComponent)\n"
                             "project.GetFilesCache\n"
                             "parser.GetParsedDocument(/p/a.php)\n"
                             "file.GetDefRegions\n"
                             "file.GetComponent(IReader)\n"
                             "file.GetComponent(IParser)\n"
                             "file.Parse(true)\n"
                             "file.end\n"
                             "parser.GetParsedDocument(/p/gone.php)\n");
    EXPECT_EQ(Deliver(), "bar.Remove(/p/a.php, 0)\n"
                         "bar.Add(/p/a.php, 1)\n"
                         "bar.ProjectFinished(, 0)\n"
                         "GetMainFrame\n"
                         "GetBarManager\n"
                         "ShowBar(0, 0)\n");
    EXPECT_EQ(Count(L"/p/b.html"), 1u) << "what is skipped keeps what it has";
    EXPECT_EQ(Count(L"/p/gone.php"), 1u);

    const std::string closing = "project.GetFiles\nproject.SetData(errors)\nproject.IsReopening\n";
    m_host.isReopening = true;
    m_host.CloseProject();
    EXPECT_EQ(m_host.Take(), closing);
    m_host.files = {L"/p/a.php"};
    m_host.ParseProject();
    EXPECT_EQ(Count(L"/p/gone.php"), 1u) << "it has left the project, and keeps what it has";
    m_host.isReopening = false;
    m_host.Take();
    m_host.CloseProject();
    EXPECT_EQ(m_host.Take(), "thread.Stop(project)\n" + closing + "project.GetFiles\n");
    EXPECT_EQ(Count(L"/p/a.php"), 0u);
}

// Whenever a host tells of the end of a thread, each is asked to stop once at most, and never runs beside
// another.
TEST_F(RecordedCallsTest, ThreadsOfAProject)
{
    Start();
    const std::string opening =
        "GetComponent(IPMComponent)\nproject.GetFilesCache\nproject.GetData(errors)\n";
    const std::string starting = "CreateThread(CCAProjectHandler, 0)\nthread.Start\n";
    OpenProject();
    m_host.Take();
    m_host.ParseProject();
    EXPECT_EQ(m_host.Take(), opening) << "one check after the other";
    m_host.RunThread();
    EXPECT_TRUE(m_host.Take().ends_with(starting));
    m_host.endsThreadsLater = true;
    m_host.CloseProject();
    EXPECT_TRUE(m_host.Take().starts_with("thread.Stop(project)\n"));
    m_host.ParseProject();
    EXPECT_EQ(m_host.Take(), opening + starting);
    m_host.TellThreadEnd(); // of the first one
    m_host.CloseProject();
    EXPECT_TRUE(m_host.Take().starts_with("thread.Stop(project)\n"));
    m_component.reset();
    EXPECT_EQ(m_host.Take(), "bar.end\nRelease\n");
}

TEST_F(RecordedCallsTest, TheEnd)
{
    Start();
    const auto outside = m_host.Open(L"/a.php", L"<?php else;");
    const auto inside = m_host.Open(L"/p/a.php", L"<?php else;");
    m_host.Take();
    OpenProject();
    EXPECT_FALSE(m_host.log.Has("StartTimer(CCADocParser, 3000)")) << "documents are left alone";
    m_host.Take();
    m_component.reset();
    EXPECT_EQ(m_host.Take(), std::string("bar.end\nRelease\nthread.Stop(null)\n") + EndOfChecker +
                                 "project.BelongsToProject(/a.php)\ncheck.end\n" + EndOfChecker +
                                 "project.BelongsToProject(/p/a.php)\ncheck.end\n");
}

// A host need not heed the flag that gives a check up: then the check has come to its end.
TEST_F(RecordedCallsTest, ACheckThatEndsWithItsProjectIsSavedOnce)
{
    std::atomic<bool> isOpen{true};
    m_host.atParse = [&] {
        while (!isOpen)
            QThread::msleep(1);
    };
    Start();
    OpenProject();
    m_host.RunThread();
    auto open = m_host.Open(L"/p/a.php", L"<?php else;");
    Deliver();
    isOpen = false;
    open.text->Edit(L"<?php else; else;");
    m_host.FireTimer();
    WaitFor("check.Parse(true)");
    std::thread opener([&] {
        QThread::msleep(50);
        isOpen = true;
    });
    m_host.CloseProject();
    opener.join();
    const auto saved = ReadSavedErrors(m_host.data, {L"/p/a.php"});
    ASSERT_EQ(saved.size(), 1u);
    EXPECT_EQ(saved[0].errors.size(), 2u);
}

TEST_F(RecordedCallsTest, ADocumentOfTheProjectThatIsClosedUnsavedKeepsItsErrors)
{
    Start();
    OpenProject();
    m_host.RunThread();
    auto open = m_host.Open(L"/p/a.php", L"<?php else;");
    open.text->Edit(L"<?php else; else;");
    m_host.FireTimer();
    WaitFor("bar.Add(/p/a.php, 2)");
    QTest::qWait(50);
    m_host.Close(open);
    m_host.Take();
    EXPECT_EQ(Deliver(), "");
    EXPECT_EQ(Count(L"/p/a.php"), 2u);
}

// RunThread() waits for the thread, as a host may that wants the check done.
TEST_F(RecordedCallsTest, ACheckNeverWaitsForTheWindow)
{
    Start();
    OpenProject();
    m_host.files.clear();
    for (int i = 0; i < 200; ++i) {
        m_host.files.push_back(L"/p/f" + std::to_wstring(i) + L".php");
        m_host.texts[m_host.files.back()] = L"<?php else;";
    }
    m_host.RunThread();
    Deliver();
    EXPECT_EQ(Errors().GetAllErrors().size(), 203u);
}

TEST_F(RecordedCallsTest, ADocumentIsKnownByItsPointer)
{
    Start();
    auto open = m_host.Open(L"/a.php", L"");
    auto other = m_host.Open(L"/b.php", L"");
    CHtmlCustomItemsKeeper keeper;
    CCADocParser checker(&m_host, open.syntax.get(), SyntaxParser::GetDefRegions(), &Errors(), &keeper);
    for (const int valid : {10, 0}) {
        open.syntax->Valid = valid;
        EXPECT_TRUE(checker.IsDocument(open.syntax.get())) << valid;
        EXPECT_TRUE(checker.IsDocument(static_cast<SDK::IDocument*>(open.text.get()))) << valid;
        EXPECT_FALSE(checker.IsDocument(other.syntax.get()));
        EXPECT_FALSE(checker.IsDocument(static_cast<SDK::IDocument*>(other.text.get())));
        EXPECT_EQ(checker.GetFilePath(), valid == 10 ? L"/a.php" : L"");
    }
}

// As rows that were built of three texts, also where they come some at a time.
TEST_F(RecordedCallsTest, RowsAreItemsOfThreeTexts)
{
    Start();
    for (const bool gradual : {false, true}) {
        if (gradual)
            m_component->GetProjectCheck()->SetGradual(true);
        Errors().AddErrorsMT(L"/a.php", {Old});
        QTreeWidgetItem* row = m_component->GetErrorsBar()->topLevelItem(0);
        ASSERT_NE(row, nullptr);
        const std::unique_ptr<QTreeWidgetItem> clone(row->clone());
        const QTreeWidgetItem expected({"Error", "/a.php - 1", "Missing ';'"});
        for (const QTreeWidgetItem* item : {row, clone.get()}) {
            EXPECT_EQ(item->columnCount(), 3);
            EXPECT_EQ(item->type(), expected.type());
            for (int column = 0; column < 3; ++column)
                for (const int role : {Qt::DisplayRole, Qt::EditRole, Qt::ToolTipRole})
                    EXPECT_EQ(item->data(column, role), expected.data(column, role)) << column;
        }
    }
}

} // namespace

} // namespace Kesh::CodeAnalyzer
