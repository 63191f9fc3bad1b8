#include "Checks/CATextChecks.h"
#include "Components/CADocManager.h"
#include "Components/CADocParser.h"
#include "Kesh/Editor/IDocBuffer.h"
#include "SPBase/reader.h"
#include "TestHost.h"
#include "host/TempFolder.h"

#include <QCoreApplication>
#include <QTest>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace Kesh::CodeAnalyzer {

namespace {

/// A text with `count` errors of code 252, on the lines 1, 2, ...
std::string Faulty(int count)
{
    std::string text = "<?php\n";
    for (int i = 0; i < count; ++i)
        text += "else;\n";
    return text;
}

std::wstring WideFaulty(int count)
{
    const std::string text = Faulty(count);
    return {text.begin(), text.end()};
}

class DocumentChecksTest : public ::testing::Test
{
protected:
    static constexpr int Delay = 20; // milliseconds

    DocumentChecksTest() { m_host->application.Timers().SetDelayOverride(Delay); }

    template <class TCondition> void WaitUntil(TCondition condition, const char* what)
    {
        ASSERT_TRUE(QTest::qWaitFor(condition, 20000)) << what;
    }
    void WaitForChecks(int begun)
    {
        WaitUntil([&] { return Gate().GetBegun() >= begun; }, "no check begins");
    }
    void WaitForErrors(const std::wstring& path, std::size_t count)
    {
        WaitUntil([&] { return m_host->ErrorsOf(path).size() == count; }, "the errors do not come");
    }
    /// Longer than any timer and any worker that is about to do something.
    void Settle() { QTest::qWait(6 * Delay); }
    Tests::CGate& Gate() { return m_host->Gate(); }
    std::size_t Count(const std::wstring& path) { return m_host->ErrorsOf(path).size(); }

    std::unique_ptr<Tests::CTestHost> m_host = std::make_unique<Tests::CTestHost>();
};

TEST_F(DocumentChecksTest, AnOpenedDocumentIsCheckedAndMarkedEverywhere)
{
    m_host->Open(L"/a.php", Faulty(2));
    WaitForErrors(L"/a.php", 2);
    EXPECT_EQ(m_host->Bar().topLevelItemCount(), 2);
    EXPECT_TRUE(m_host->Errors().IsErrorOnLine(L"/a.php", 1));
    const SCAError error = m_host->ErrorsOf(L"/a.php")[1];
    EXPECT_EQ(error.pos, (SyntaxParser::SScheme{{0, 2}, {4, 2}}));
    EXPECT_EQ(error.code, 252);
}

TEST_F(DocumentChecksTest, TheCheckOfAClosedDocumentIsGivenUpUnlessTheProjectWantsIt)
{
    const CTempFolder folder;
    for (const bool isMember : {false, true}) {
        const std::wstring path = folder.Write(L"a.php", Faulty(5000));
        if (isMember)
            m_host->application.OpenProject(folder.Path());
        WaitUntil([&] { return !m_host->application.Threads().IsRunning(); }, "the project's check");
        Gate().Close();
        const int begun = Gate().GetBegun();
        const int ended = Gate().GetEnded();
        Host::CDocument& document = m_host->Open(path, Faulty(5000));
        WaitForChecks(begun + 1);
        m_host->Close(document);
        bool removed = false;
        const boost::signals2::scoped_connection connection =
            m_host->Errors().GetRemovedSignal().connect([&](const std::wstring&) { removed = true; });
        Gate().Open();
        WaitUntil([&] { return removed || Gate().GetEnded() > ended; }, "the end of the check");
        Settle();
        EXPECT_EQ(Gate().GetEnded() > ended, isMember);
        EXPECT_EQ(Count(path) > 0, isMember);
    }
}

TEST_F(DocumentChecksTest, ANulDoesNotEndTheText)
{
    Host::CDocument& document = m_host->Open(L"/a.php", std::string("<?php // \0\n/*\0\0*/ else;\n", 24));
    WaitForErrors(L"/a.php", 1);
    ASSERT_EQ(Count(L"/a.php"), 1u);
    EXPECT_EQ(m_host->ErrorsOf(L"/a.php")[0].pos, (SyntaxParser::SScheme{{7, 1}, {11, 1}}));
    Tests::CTestHost::Edit(document, std::wstring(L"<?php // \0\nelse; else;\n", 23));
    WaitForErrors(L"/a.php", 2);
}

TEST_F(DocumentChecksTest, TypingPutsTheCheckOff)
{
    m_host->application.Timers().SetDelayOverride(400);
    Host::CDocument& document = m_host->Open(L"/a.php", Faulty(1));
    for (int i = 2; i < 22; ++i) {
        QTest::qWait(30);
        Tests::CTestHost::Edit(document, WideFaulty(i));
        ASSERT_EQ(Gate().GetBegun(), 0);
    }
    WaitForErrors(L"/a.php", 21);
    QTest::qWait(500);
    EXPECT_EQ(Gate().GetBegun(), 1);
}

TEST_F(DocumentChecksTest, ACleanTextClearsTheFile)
{
    Host::CDocument& document = m_host->Open(L"/a.php", Faulty(1));
    WaitForErrors(L"/a.php", 1);
    Tests::CTestHost::Edit(document, L"<?php\n");
    WaitForErrors(L"/a.php", 0);
    Settle();
    EXPECT_EQ(m_host->Errors().GetAllErrors().count(L"/a.php"), 0u);
    EXPECT_EQ(m_host->Bar().topLevelItemCount(), 0);
}

TEST_F(DocumentChecksTest, AnEditDuringACheckIsCheckedAfterIt)
{
    Gate().Close();
    Host::CDocument& document = m_host->Open(L"/a.php", Faulty(3));
    WaitForChecks(1);
    Tests::CTestHost::Edit(document, WideFaulty(5));
    Settle();
    EXPECT_EQ(Gate().GetBegun(), 1) << "a second check ran beside the first";
    Tests::CTestHost::Edit(document, WideFaulty(4));
    Gate().Open();
    WaitForChecks(2);
    WaitForErrors(L"/a.php", 4);
    Settle();
    EXPECT_EQ(Count(L"/a.php"), 4u) << "the first check's errors are gone, the second's listed once";
    EXPECT_EQ(Gate().GetMostAtOnce(), 1);
}

TEST_F(DocumentChecksTest, ClosingEndsTheErrorsUnlessTheProjectHasTheFile)
{
    CTempFolder folder;
    const std::wstring inside = folder.Write(L"in.php", Faulty(2));
    const std::wstring outside = L"/out.php";
    const std::size_t kept = 2;
    for (const bool during : {false, true}) {
        m_host->application.OpenProject(folder.Path(), {inside});
        WaitUntil([&] { return !m_host->application.Threads().IsRunning(); },
                  "the project check does not end");
        WaitForErrors(inside, 2);
        int added = 0;
        const auto connection = m_host->Errors().GetAddedSignal().connect(
            [&](const std::wstring& file, const auto&) { added += file == outside; });
        if (during)
            Gate().Close();
        const int begun = Gate().GetBegun();
        Host::CDocument& first = m_host->Open(inside, Faulty(2));
        Host::CDocument& second = m_host->Open(outside, Faulty(2));
        WaitForChecks(begun + 2);
        if (!during) {
            WaitForErrors(inside, kept);
            WaitForErrors(outside, 2);
        }
        m_host->Close(first);
        // As by a host that gives no check up.
        m_host->application.Parser().CloseDocument(&second);
        m_host->Close(second);
        Gate().Open();
        WaitUntil([&] { return added == 1 && Count(outside) == 0; }, "posted, then removed");
        WaitForErrors(inside, kept);
        Settle();
        EXPECT_EQ(Count(inside), kept);
        EXPECT_EQ(Count(outside), 0u);
        connection.disconnect();
        m_host->application.Project().Close();
        EXPECT_EQ(Count(inside), 0u);
    }
}

TEST_F(DocumentChecksTest, ADocumentOpenedAgainDuringItsOldCheckWaitsForIt)
{
    Gate().Close();
    m_host->Close(m_host->Open(L"/never checked.php", Faulty(1)));
    Host::CDocument& old = m_host->Open(L"/a.php", Faulty(7));
    WaitForChecks(1);
    m_host->Close(old);
    m_host->Open(L"/a.php", Faulty(2));
    Settle();
    EXPECT_EQ(Gate().GetBegun(), 1);
    Gate().Open();
    WaitForChecks(2);
    WaitForErrors(L"/a.php", 2);
    Settle();
    EXPECT_EQ(Count(L"/a.php"), 2u) << "the old check's removal must not take the new errors";
}

TEST_F(DocumentChecksTest, TenDocumentsAreCheckedSideBySide)
{
    Gate().Close();
    const auto path = [](int i) { return L"/" + std::to_wstring(i) + L".php"; };
    for (int i = 0; i < 10; ++i)
        m_host->Open(path(i), Faulty(i + 1));
    WaitForChecks(10);
    EXPECT_EQ(Gate().GetMostAtOnce(), 10);
    Gate().Open();
    for (int i = 0; i < 10; ++i)
        WaitForErrors(path(i), static_cast<std::size_t>(i + 1));
    Settle();
    EXPECT_EQ(Gate().GetBegun(), 10);
    EXPECT_EQ(m_host->Bar().topLevelItemCount(), 55);
}

// A project that is closed or listed anew has the checks of open documents given up, not waited for.
TEST_F(DocumentChecksTest, AProjectsEndGivesUpTheChecksThatRun)
{
    CTempFolder folder;
    m_host->application.OpenProject(folder.Path(), {});
    const std::wstring path = folder.Path(L"a.php");
    Host::CDocument& document = m_host->Open(path, Faulty(2));
    WaitForErrors(path, 2);
    for (const bool reopens : {true, false}) {
        const int begun = Gate().GetBegun();
        const int ended = Gate().GetEnded();
        Gate().Close();
        Tests::CTestHost::Edit(document, WideFaulty(reopens ? 5 : 7));
        WaitForChecks(begun + 1);
        std::thread opener([this] {
            std::this_thread::sleep_for(std::chrono::milliseconds(30));
            Gate().Open();
        });
        if (reopens)
            m_host->application.ReopenProject({});
        else
            m_host->application.Project().Close();
        opener.join();
        EXPECT_EQ(Gate().GetEnded(), ended);
        EXPECT_EQ(Count(path), reopens ? 2u : 5u) << "the old errors, until there are new ones";
        WaitForErrors(path, reopens ? 5 : 7);
        Settle();
        EXPECT_EQ(Gate().GetBegun(), begun + 2);
        EXPECT_EQ(Gate().GetEnded(), ended + 1);
    }
}

TEST_F(DocumentChecksTest, ShuttingDownWaitsForTheChecks)
{
    Gate().Close();
    for (int i = 0; i < 10; ++i)
        m_host->Open(L"/" + std::to_wstring(i) + L".php", Faulty(3));
    WaitForChecks(10);
    std::atomic<bool> opened{false};
    std::thread later([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        opened = true;
        Gate().Open();
    });
    m_host->component.reset();
    EXPECT_TRUE(opened) << "workers were left behind";
    later.join();
    // Nothing that the workers have left in the queues may touch what is gone.
    Tests::CTestHost::Edit(*m_host->application.Documents().GetDocuments().front(), L"");
    Settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Gate().GetBegun(), 10);
}

// The old checker dies in its worker thread while the text that it followed is being edited.
TEST_F(DocumentChecksTest, TypingGoesOnWhileACheckerEnds)
{
    CTempFolder folder;
    for (int round = 0; round < 20; ++round) {
        Gate().Close();
        const int begun = Gate().GetBegun();
        Host::CDocument& document = m_host->Open(folder.Path(L"old.php"), Faulty(1));
        WaitForChecks(begun + 1);
        m_host->application.Documents().SaveAs(document, folder.Path(L"new.php"));
        Gate().Open();
        for (int i = 0; i < 300; ++i)
            document.GetBuffer()->GetChangeSignal()(nullptr);
        WaitForErrors(folder.Path(L"new.php"), 1);
        WaitForErrors(folder.Path(L"old.php"), 0);
        m_host->Close(document);
        WaitForErrors(folder.Path(L"new.php"), 0);
    }
}

TEST_F(DocumentChecksTest, AFaultEndsOneCheckOnly)
{
    std::wstring failed;
    m_host->Errors().GetFailedSignal().connect(
        [&](const std::wstring& file, const std::wstring& reason) { failed += file + L": " + reason; });
    Host::CDocument& document = m_host->Open(L"/a.php", Faulty(3));
    WaitForErrors(L"/a.php", 3);
    for (const bool user : {false, true}) {
        m_host->application.Timers().SetDelayOverride(user ? 60000 : Delay);
        Gate().FailCheck(1);
        Tests::CTestHost::Edit(document, L"<?php\n");
        if (user)
            m_host->component->DoCheck(0);
        WaitUntil([&] { return !failed.empty(); }, "the fault is not told");
        EXPECT_EQ(std::exchange(failed, {}), L"/a.php: a check that fails");
        EXPECT_EQ(Count(L"/a.php"), 3u) << "what was known before";
    }
    m_host->application.Timers().SetDelayOverride(Delay);
    Tests::CTestHost::Edit(document, WideFaulty(2));
    WaitForErrors(L"/a.php", 2);
}

TEST_F(DocumentChecksTest, AFaultInATextAloneIsTold)
{
    CTextChecks checks(&m_host->application);
    std::vector<SDiagnostic> found;
    const auto reader = boost::make_shared<SyntaxParser::CSimpleReader>(WideFaulty(2));
    Gate().FailCheck(1);
    EXPECT_FALSE(checks.Check(reader, L"/a.php", L"PHPSPDocFactory", found));
    EXPECT_EQ(checks.GetFailure(), L"a check that fails");
    EXPECT_TRUE(found.empty());
    EXPECT_TRUE(checks.Check(reader, L"/a.php", L"PHPSPDocFactory", found));
    EXPECT_EQ(checks.GetFailure(), L"");
    EXPECT_EQ(found.size(), 2u);
}

// A host that asks for nothing gets the checks of names alone, whatever its documents offer.
TEST_F(DocumentChecksTest, MarkupIsCheckedOnlyWhenTheHostAsks)
{
    CTextChecks checks(&m_host->application);
    const auto codes = [&](const std::wstring& factory, const std::wstring& text) {
        std::vector<SDiagnostic> found;
        EXPECT_TRUE(
            checks.Check(boost::make_shared<SyntaxParser::CSimpleReader>(text), L"/a", factory, found));
        std::vector<std::int32_t> result;
        for (const SDiagnostic& diagnostic : found)
            result.push_back(diagnostic.error.code);
        return result;
    };
    const std::wstring html = L"<strng><div id=a id=b><b>a</div></p></strng>";
    const std::wstring css = L"a { colr: red; color: rde";
    using TCodes = std::vector<std::int32_t>;
    EXPECT_EQ(codes(L"HTMLSPDocFactory", html), TCodes({2001}));
    EXPECT_EQ(codes(L"CSSSPDocFactory", css), TCodes({2502}));
    checks.GetMarkupCheck()->SetEnabled(true);
    EXPECT_GT(codes(L"HTMLSPDocFactory", html).size(), 2u);
    EXPECT_GT(codes(L"CSSSPDocFactory", css).size(), 1u);
    // Turned off again, and for some files.
    checks.GetMarkupCheck()->SetChoices([](const std::wstring& path) { return path != L"/a"; });
    EXPECT_EQ(codes(L"HTMLSPDocFactory", html), TCodes({2001}));
    checks.GetMarkupCheck()->SetChoices({});
    EXPECT_GT(codes(L"HTMLSPDocFactory", html).size(), 2u);
    checks.GetMarkupCheck()->SetEnabled(false);
    EXPECT_EQ(codes(L"HTMLSPDocFactory", html), TCodes({2001}));
    EXPECT_EQ(codes(L"CSSSPDocFactory", css), TCodes({2502}));
}

// What is given up between its languages has posted some of what it found.
TEST_F(DocumentChecksTest, ACheckGivenUpHalfWayLeavesTheOldErrors)
{
    CTempFolder folder;
    m_host->application.OpenProject(folder.Path(), {});
    const std::wstring path = folder.Path(L"a.php");
    Host::CDocument& document = m_host->Open(path, Faulty(2));
    WaitForErrors(path, 2);
    for (int round = 0; round < 30; ++round) {
        const int begun = Gate().GetBegun();
        Tests::CTestHost::Edit(document, WideFaulty(3) + L"?>" + std::wstring(20000, L'<'));
        WaitForChecks(begun + 1);
        m_host->application.ReopenProject({}); // at whatever moment of the check
        const std::size_t count = Count(path);
        ASSERT_TRUE(count == 2 || count == 3) << count;
        Tests::CTestHost::Edit(document, WideFaulty(2));
        WaitForErrors(path, 2);
    }
}

TEST_F(DocumentChecksTest, OnlyCheckableDocumentsGetAChecker)
{
    const struct
    {
        const wchar_t* path;
        const wchar_t* factory;
        bool checked;
    } cases[] = {
        {L"/a.php", L"PHPSPDocFactory", true},        {L"/a.html", L"HTMLSPDocFactory", true},
        {L"/a.css", L"CSSSPDocFactory", true},        {L"/a.txt", L"", false},
        {L"/page.tpl", L"PHPSPDocFactory", false},    {L"/page.ctp", L"PHPSPDocFactory", false},
        {L"/page.TPL", L"PHPSPDocFactory", true},     {L"/a.tpl.php", L"PHPSPDocFactory", true},
        {L"/a.tpl/b.tpl", L"PHPSPDocFactory", false}, {L"/a.html.ctp", L"HTMLSPDocFactory", false},
    };
    CCADocManager manager;
    CHtmlCustomItemsKeeper keeper;
    manager.Init(&m_host->application, &m_host->Errors(), &keeper);
    for (const auto& c : cases) {
        Host::CDocument& document = m_host->application.Documents().OpenBytes(c.path, "", c.factory);
        const auto syntax = m_host->application.Parser().GetSPDocument(&document);
        const auto checker = manager.FindChecker(syntax.get());
        EXPECT_EQ(checker != nullptr, c.checked) << QString::fromWCharArray(c.path).toStdString();
        if (!checker)
            continue;
        EXPECT_EQ(checker->GetFilePath(), c.path);
        EXPECT_TRUE(checker->IsDocument(syntax.get()));
        EXPECT_TRUE(checker->IsDocument(static_cast<SDK::IDocument*>(&document)));
        EXPECT_FALSE(checker->IsDocument(static_cast<SDK::IDocument*>(nullptr)));
        m_host->Close(document);
        EXPECT_EQ(manager.FindChecker(syntax.get()), nullptr);
    }
    manager.OnSPDocCreated(nullptr);
    manager.OnSPDocDestroy(nullptr);
}

TEST_F(DocumentChecksTest, ACheckerOutlivesItsDocumentWithoutHarm)
{
    CHtmlCustomItemsKeeper keeper;
    Host::CDocument& document = m_host->Open(L"/a.php", "");
    const auto checker = boost::make_shared<CCADocParser>(
        &m_host->application, m_host->application.Parser().GetSPDocument(&document).get(),
        m_host->parser->GetDefRegions(), &m_host->Errors(), &keeper);
    checker->InitPtr(checker);
    EXPECT_EQ(checker->GetDelay(), 3000);
    m_host->Close(document);
    EXPECT_EQ(checker->GetFilePath(), L"");
    checker->OnTimer();
    checker->CheckNow();
    checker->DestroyPtr();
    EXPECT_EQ(Gate().GetBegun(), 0);

    CCADocParser none(&m_host->application, nullptr, m_host->parser->GetDefRegions(), &m_host->Errors(),
                      &keeper);
    EXPECT_EQ(none.GetFilePath(), L"");
    EXPECT_FALSE(none.IsDocument(static_cast<SyntaxParser::ISPDocument*>(nullptr)));
}

// As hosts do that keep their documents in their own way.
TEST_F(DocumentChecksTest, ACheckerNeedsNoSharedPointers)
{
    Host::CDocument& host = m_host->application.Documents().OpenBytes(L"/a.txt", Faulty(3), L"");
    struct CUnshared : SyntaxParser::ISPDocument
    {
        boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring&) override
        {
            return {};
        }
        std::wstring GetFilePath() override { return L"/a.php"; }
        std::wstring GetFactoryName() override { return L"PHPSPDocFactory"; }
        SyntaxParser::CDefRegions* GetDefRegions() override { return nullptr; }
        SDK::IDocument* GetDocument() override { return document; }
        Editor::IDocBuffer* GetBuffer() override { return document->GetBuffer(); }
        SyntaxParser::ISemanticParser* GetSemanticParser(const std::wstring&) override { return nullptr; }
        void Parse(bool) override {}
        EndOfParseSignal& GetEndOfParseSignal() override { return end; }
        DocDestroySignal& GetDocDestroySignal() override { return destroy; }
        void LockSemanticData() override {}
        void UnlockSemanticData() override {}
        const SyntaxParser::SSemanticTree* GetSemanticTree(const std::wstring&) override { return nullptr; }
        SDK::IDocument* document = nullptr;
        EndOfParseSignal end;
        DocDestroySignal destroy;
    } source, other;
    source.document = &host;
    CHtmlCustomItemsKeeper keeper;
    {
        CCADocParser checker(&m_host->application, &source, m_host->parser->GetDefRegions(),
                             &m_host->Errors(), &keeper);
        EXPECT_EQ(checker.GetFilePath(), L"/a.php");
        EXPECT_TRUE(checker.IsDocument(static_cast<SyntaxParser::ISPDocument*>(&source)));
        EXPECT_FALSE(checker.IsDocument(static_cast<SyntaxParser::ISPDocument*>(&other)));
        EXPECT_TRUE(checker.IsDocument(static_cast<SDK::IDocument*>(&host)));
        checker.OnTimer();
        WaitForErrors(L"/a.php", 3);
        Gate().Close();
        checker.OnTimer();
        WaitForChecks(2);
        source.Valid = 0;
        EXPECT_EQ(checker.GetFilePath(), L"");
        std::thread opener([this] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            Gate().Open();
        });
        opener.detach();
    } // waits for the check, which nothing else keeps alive
    WaitForErrors(L"/a.php", 0);
}

TEST_F(DocumentChecksTest, WithoutACheckingDocumentTheCheckerIsInert)
{
    m_host->parser->RefuseDocuments();
    Host::CDocument& document = m_host->Open(L"/a.php", Faulty(1));
    Tests::CTestHost::Edit(document, WideFaulty(2));
    m_host->component->DoCheck(0);
    Settle();
    EXPECT_EQ(Count(L"/a.php"), 0u);
    m_host->Close(document);
}

TEST_F(DocumentChecksTest, TheUsersCheckIsDoneWhenItReturns)
{
    m_host->component->DoCheck(0); // no document
    m_host->application.Timers().SetDelayOverride(60000);
    Host::CDocument& document = m_host->Open(L"/a.php", Faulty(2));
    for (int round = 0; round < 2; ++round) {
        m_host->component->DoCheck(0);
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(Count(L"/a.php"), 2u) << round;
    }
    Tests::CTestHost::Edit(document, WideFaulty(3));
    m_host->component->DoCheck(0);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(Count(L"/a.php"), 3u);
    m_host->application.Documents().OpenBytes(L"/b.tpl", Faulty(1), L"PHPSPDocFactory");
    m_host->component->DoCheck(0);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(Count(L"/b.tpl"), 0u);
}

TEST_F(DocumentChecksTest, TheUsersCheckFollowsOneThatRuns)
{
    Gate().Close();
    m_host->Open(L"/a.php", Faulty(2));
    WaitForChecks(1);
    m_host->component->DoCheck(0);
    Settle();
    EXPECT_EQ(Gate().GetBegun(), 1);
    Gate().Open();
    WaitForChecks(2);
    WaitForErrors(L"/a.php", 2);
    Settle();
    EXPECT_EQ(Count(L"/a.php"), 2u);
}

TEST_F(DocumentChecksTest, ADocumentFromBeforeThePluginCanBeChecked)
{
    Tests::CTestHost host(Tests::CTestHost::NotStarted);
    Host::CDocument& document = host.Open(L"/a.php", Faulty(2));
    host.Start();
    for (int round = 0; round < 2; ++round) {
        host.component->DoCheck(0);
        QCoreApplication::sendPostedEvents();
        EXPECT_EQ(host.ErrorsOf(L"/a.php").size(), 2u) << round;
    }
    host.Close(document);
}

// Opens, edits, closes and ends at moments that no one chose.
TEST_F(DocumentChecksTest, AnythingAtAnyMoment)
{
    std::mt19937 random(11);
    const auto below = [&random](int limit) { return static_cast<int>(random() % limit); };
    for (int round = 0; round < 12; ++round) {
        Tests::CTestHost host;
        host.application.Timers().SetDelayOverride(1);
        for (int step = 0; step < 60; ++step) {
            const std::vector<Host::CDocument*> documents = host.application.Documents().GetDocuments();
            const int action = below(6);
            if (action == 0 || documents.empty())
                host.Open(L"/" + std::to_wstring(step) + L".php", Faulty(below(300)));
            else if (action == 1)
                host.Close(*documents[static_cast<std::size_t>(below(static_cast<int>(documents.size())))]);
            else if (action == 2)
                host.component->DoCheck(0);
            else
                Tests::CTestHost::Edit(*documents.front(), WideFaulty(below(300)));
            QTest::qWait(below(4));
        }
        if (round % 2) {
            host.component.reset();
            continue;
        }
        const std::vector<Host::CDocument*> documents = host.application.Documents().GetDocuments();
        for (Host::CDocument* document : documents) {
            const std::wstring text = document->GetBuffer()->GetText(L"\n");
            const std::size_t faults = static_cast<std::size_t>(std::count(text.begin(), text.end(), L';'));
            WaitUntil([&] { return host.ErrorsOf(document->GetPath()).size() == faults; },
                      "lost or stale errors");
        }
        WaitUntil([&] { return host.Errors().GetAllErrors().size() <= documents.size(); },
                  "errors of closed documents stay");
    }
}

} // namespace

} // namespace Kesh::CodeAnalyzer
