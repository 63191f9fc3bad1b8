#pragma once

#include "Components/CASavedErrorsText.h"
#include "TestHost.h"
#include "host/TempFolder.h"

#include <QCoreApplication>
#include <QTest>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// A project in a folder of its own, checked by the real host and component.
class ProjectHandlerTest : public ::testing::Test
{
protected:
    ProjectHandlerTest() { m_host.application.Timers().SetDelayOverride(20); }

    std::wstring Write(const std::string& name, int errors)
    {
        std::string text = "<?php\n";
        for (int i = 0; i < errors; ++i)
            text += "else;\n";
        return m_folder.Write(std::wstring(name.begin(), name.end()), text);
    }
    void Open(const std::vector<std::wstring>& files)
    {
        m_host.application.OpenProject(m_folder.Path(), files);
    }
    void OpenAndCheck(const std::vector<std::wstring>& files)
    {
        Open(files);
        WaitForCheck();
    }
    void WaitForCheck()
    {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !m_host.application.Threads().IsRunning(); }, 20000));
        QCoreApplication::sendPostedEvents();
    }
    void Save(const std::vector<SSavedFileErrors>& files)
    {
        m_folder.Write(L".code-analyzer/errors",
                       QString::fromStdWString(WriteSavedErrors(files)).toStdString());
    }
    std::string SavedText() { return Host::ReadFileBytes(m_folder.Path(L".code-analyzer/errors")); }
    std::size_t Count(const std::wstring& path) { return m_host.ErrorsOf(path).size(); }

    CTempFolder m_folder;
    Tests::CTestHost m_host;
};

} // namespace Kesh::CodeAnalyzer
