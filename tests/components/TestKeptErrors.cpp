// Saved errors that are read and written beside the GUI thread, as a host with very many of them wants it.
#include "ProjectFixture.h"
#include "Window/CAErrorsBar.h"
#include "host/Limits.h"

#include <QThread>
#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr int Files = 100;

class KeptErrorsTest : public ProjectHandlerTest
{
protected:
    KeptErrorsTest() { m_host.component->GetProjectCheck()->SetGradual(true); }

    /// As the project lists them. Its check leaves them alone, so that all they have is what the tests store.
    std::vector<std::wstring> WriteFiles(const std::wstring& folder)
    {
        std::vector<std::wstring> files;
        for (int i = 0; i < Files; ++i)
            files.push_back(m_folder.Write(folder + L"/f" + std::to_wstring(1000 + i) + L".html", ""));
        return files;
    }
    void Store(const std::vector<std::wstring>& files, std::int32_t code)
    {
        for (const std::wstring& file : files)
            m_host.Errors().AddErrorsMT(file, std::vector<SCAError>(50, {{{0, 1}, {4, 1}}, code, 1}));
    }
    static std::string Text(const std::vector<std::wstring>& files, std::int32_t code)
    {
        std::vector<SSavedFileErrors> saved;
        for (const std::wstring& file : files)
            saved.push_back({file, std::vector<SCAError>(50, {{{0, 1}, {4, 1}}, code, 1})});
        return QString::fromStdWString(WriteSavedErrors(saved)).toStdString();
    }
    std::string Kept(const std::wstring& folder)
    {
        return Host::ReadFileBytes(m_folder.Path(folder + L"/.code-analyzer/errors"));
    }
    bool WaitForData()
    {
        return QTest::qWaitFor([this] { return !m_host.application.Project().IsDataHeld(); }, 20000);
    }
};

TEST_F(KeptErrorsTest, WhatIsWrittenIsReadByTheNextOpening)
{
    const std::vector<std::wstring> files = WriteFiles(L"p");
    for (std::int32_t code = 101; code < 107; ++code) {
        m_host.application.OpenProject(m_folder.Path(L"p"), files);
        ASSERT_TRUE(WaitForData());
        // The old ones come back first, whenever that is.
        const auto isRestored = [&] {
            std::vector<SCAError> last;
            m_host.Errors().GetErrors(files.back(), last);
            return code == 101 || (last.size() == 50 && last[0].code == code - 1);
        };
        ASSERT_TRUE(QTest::qWaitFor([&] { return isRestored() && !m_host.application.Threads().IsRunning(); },
                                    20000));
        Store(files, code);
        m_host.application.Project().Close();
        EXPECT_TRUE(m_host.Errors().GetAllErrors().empty());
    }
    ASSERT_TRUE(WaitForData());
    EXPECT_EQ(Kept(L"p"), Text(files, 106));
}

TEST_F(KeptErrorsTest, TwoProjectsKeepTheirOwn)
{
    const std::vector<std::wstring> first = WriteFiles(L"p"), second = WriteFiles(L"q");
    m_host.application.OpenProject(m_folder.Path(L"p"), first);
    Store(first, 101);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !m_host.application.Project().IsDataHeld(); }, 20000));
    m_host.application.OpenProject(m_folder.Path(L"q"), second); // closes the first
    Store(second, 102);
    ASSERT_TRUE(WaitForData());
    m_host.application.Project().Close();
    ASSERT_TRUE(WaitForData());
    EXPECT_EQ(Kept(L"p"), Text(first, 101));
    EXPECT_EQ(Kept(L"q"), Text(second, 102));
}

TEST_F(KeptErrorsTest, ClosingOrReopeningBeforeAllIsReadLosesNothing)
{
    const std::vector<std::wstring> files = WriteFiles(L"p");
    m_folder.Write(L"p/.code-analyzer/errors", Text(files, 103));
    for (int round = 0; round < 20; ++round) {
        m_host.application.OpenProject(m_folder.Path(L"p"), files);
        for (int turn = round % 7; turn > 0; --turn)
            QTest::qWait(1);
        if (round % 2)
            m_host.application.ReopenProject(files);
        m_host.application.Project().Close();
        EXPECT_TRUE(m_host.Errors().GetAllErrors().empty());
        EXPECT_EQ(m_host.Bar().topLevelItemCount(), 0);
    }
    ASSERT_TRUE(WaitForData());
    EXPECT_EQ(Kept(L"p"), Text(files, 103));
    m_host.application.OpenProject(m_folder.Path(L"p"), files);
    m_host.application.ReopenProject(files);
    EXPECT_TRUE(QTest::qWaitFor([&] { return m_host.Bar().topLevelItemCount() == Files * 50; }, 20000))
        << m_host.Bar().topLevelItemCount();
}

TEST_F(KeptErrorsTest, TheComponentsEndWaitsForWhatIsWritten)
{
    const std::vector<std::wstring> files = WriteFiles(L"p");
    m_host.application.OpenProject(m_folder.Path(L"p"), files);
    ASSERT_TRUE(WaitForData());
    Store(files, 104);
    m_host.application.Project().Close();
    m_host.component.reset();
    EXPECT_EQ(Kept(L"p"), Text(files, 104));
}

TEST_F(KeptErrorsTest, AFullDiskIsToldOnTheGuiThreadAndLeavesTheOldText)
{
    const std::vector<std::wstring> files = WriteFiles(L"p");
    m_folder.Write(L"p/.code-analyzer/errors", "old");
    m_host.application.OpenProject(m_folder.Path(L"p"), files);
    ASSERT_TRUE(WaitForData());
    Store(files, 104);
    std::wstring told;
    bool wasHeld = false;
    m_host.application.Project().GetDataErrorSignal().connect([&](const std::wstring& reason) {
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        told = reason;
        wasHeld = m_host.application.Project().IsDataHeld();
    });
    {
        const CFullDisk full;
        m_host.application.Project().Close();
        EXPECT_TRUE(m_host.application.Project().IsDataHeld());
        ASSERT_TRUE(WaitForData());
    }
    EXPECT_EQ(told, L"File too large");
    EXPECT_TRUE(wasHeld) << "who waits for the end hears of it before";
    EXPECT_EQ(Kept(L"p"), "old");
}

} // namespace

} // namespace Kesh::CodeAnalyzer
