#pragma once

#include "TempFolder.h"

#include <QProcess>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

struct SResult
{
    int exit = -1;
    std::string out;
    std::string err;
};

/// Runs the program in a folder of the test's own.
class CCliTest : public ::testing::Test
{
protected:
    static constexpr int AnyExit = -2;

    SResult Run(const QStringList& arguments, const std::string& input = {})
    {
        return RunIn({}, arguments, input);
    }
    SResult RunIn(const std::wstring& folder, const QStringList& arguments, const std::string& input = {})
    {
        QProcess process;
        process.setWorkingDirectory(Kesh::Host::PathToQt(m_folder.Path(folder)));
        process.setProcessEnvironment(m_environment);
        process.start(PROGRAM, arguments);
        process.write(input.data(), static_cast<qint64>(input.size()));
        process.closeWriteChannel();
        EXPECT_TRUE(process.waitForFinished(120000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << arguments.join(' ').toStdString();
        return {process.exitCode(), process.readAllStandardOutput().toStdString(),
                process.readAllStandardError().toStdString()};
    }
    nlohmann::json RunJson(QStringList arguments, int exit, const std::string& input = {})
    {
        const SResult result = Run(QStringList{"check", "--format", "json"} + arguments, input);
        EXPECT_EQ(result.exit, exit == AnyExit ? result.exit : exit) << result.err;
        return nlohmann::json::parse(result.out);
    }
    /// The findings as "FILE:LINE CODE SEVERITY".
    std::vector<std::string> Brief(const nlohmann::json& records)
    {
        std::vector<std::string> brief;
        for (const auto& record : records)
            brief.push_back(record["file"].get<std::string>() + ':' +
                            std::to_string(record["startLine"].get<int>()) + ' ' +
                            std::to_string(record["code"].get<int>()) + ' ' +
                            record["severity"].get<std::string>());
        return brief;
    }

    /// The path of a file of the test's own, as bytes.
    std::string Path(const std::wstring& name) { return Kesh::Host::PathToBytes(m_folder.Path(name)); }
    /// Runs git in a folder of the test's own; answers how it ended.
    int TryGit(const std::wstring& folder, const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(Kesh::Host::PathToQt(m_folder.Path(folder)));
        process.setProcessEnvironment(m_environment);
        process.start("git", QStringList{"-c", "user.name=a", "-c", "user.email=a@b", "-c",
                                         "init.defaultBranch=main", "-c", "protocol.file.allow=always"} +
                                 arguments);
        EXPECT_TRUE(process.waitForFinished());
        m_gitSaid = process.readAllStandardOutput() + process.readAllStandardError();
        return process.exitCode();
    }
    void Git(const std::wstring& folder, const QStringList& arguments)
    {
        EXPECT_EQ(TryGit(folder, arguments), 0) << m_gitSaid.toStdString();
    }

    CTempFolder m_folder;
    QByteArray m_gitSaid;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};
