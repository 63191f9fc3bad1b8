#include "TempFolder.h"

#include <QElapsedTimer>
#include <QProcess>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <signal.h>
#include <unistd.h>

using namespace Kesh;
using ::testing::HasSubstr;

namespace {

class Jobs : public ::testing::Test
{
protected:
    Jobs()
    {
        m_process.setWorkingDirectory(Host::PathToQt(m_folder.Path()));
        m_environment.insert("CODE_ANALYZER_PLUGIN", ACTING_CHECKS);
    }
    void Write(int number, const std::string& text)
    {
        m_folder.Write(L"s/" + std::to_wstring(1000 + number) + L".php", text);
    }
    void Start(const QStringList& arguments)
    {
        m_process.setProcessEnvironment(m_environment);
        m_process.start(PROGRAM, QStringList{"check"} + arguments);
        ASSERT_TRUE(m_process.waitForStarted());
    }
    int Finish()
    {
        EXPECT_TRUE(m_process.waitForFinished(60000));
        EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
        m_out = m_process.readAllStandardOutput().toStdString();
        m_err = m_process.readAllStandardError().toStdString();
        return m_process.exitCode();
    }
    int Run(const QStringList& arguments)
    {
        Start(arguments);
        return Finish();
    }

    CTempFolder m_folder;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
    QProcess m_process;
    std::string m_out;
    std::string m_err;
};

TEST_F(Jobs, WriteByteForByteWhatOneWrites)
{
    m_environment.remove("CODE_ANALYZER_PLUGIN");
    for (int i = 0; i < 400; ++i)
        Write(i, i % 7 == 0    ? "<?php\n$\xC3\xA4 = 1\n$b = 2;\n<p clas=\"x\">"
                 : i % 11 == 0 ? "<?php if ($a); ?><strng>"
                               : "<?php\n$a = 1;\n");
    m_folder.Write(L"s/1005.css", "a { colr: red; }\n" + std::string(3000, ' ') + "q { x: y }");
    std::string long_(1 << 21, ' '); // keeps one worker while the others go on
    m_folder.Write(L"s/1001.php", "<?php $a = 1\n" + long_ + "$b;");
    m_folder.Write(L"s/1200.php", "<?php $a = 1;");
    const std::string unreadable = Host::PathToBytes(m_folder.Path(L"s/1003.php"));
    ASSERT_EQ(::unlink(unreadable.c_str()), 0);
    ASSERT_EQ(::symlink("nowhere", unreadable.c_str()), 0);
    for (const char* format : {"text", "json", "sarif", "checkstyle", "github", "gitlab", "junit"}) {
        const QStringList arguments{"s", "s/1003.php", "none.php", "--format", format};
        const int exit = Run(arguments + QStringList{"--jobs", "1"});
        const std::string out = m_out;
        const std::string err = m_err;
        EXPECT_EQ(exit, 2);
        EXPECT_GT(out.size(), 1000u);
        for (const char* jobs : {"2", "5"}) {
            EXPECT_EQ(Run(arguments + QStringList{"-j", jobs}), exit) << format << jobs;
            EXPECT_EQ(m_out, out) << format << jobs;
            EXPECT_EQ(m_err, err) << format << jobs;
        }
    }
}

TEST_F(Jobs, OutliveACrash)
{
    std::string found;
    std::string crashed;
    for (int i = 0; i < 100; ++i) {
        const std::string file = "s/" + std::to_string(1000 + i) + ".php";
        const bool crashes = i % 9 == 0 || i == 50 || i == 51 || i == 99;
        Write(i, crashes ? "crash" : "find");
        (crashes ? crashed : found) +=
            crashes ? "code-analyzer: " + file + ": the check crashed (Segmentation fault)\n"
                    : file + ":1:1: error: found [101]\n";
    }
    for (const char* jobs : {"2", "3"}) {
        EXPECT_EQ(Run({"--jobs", jobs, "--quiet", "s"}), 2);
        EXPECT_EQ(m_out, found);
        EXPECT_EQ(m_err, crashed);
    }
    for (int i = 0; i < 100; ++i)
        Write(i, "crash");
    EXPECT_EQ(Run({"--jobs", "2", "--quiet", "s"}), 2);
    EXPECT_EQ(m_out, "");
}

// What has not been checked is not clean, whatever the report looks like.
TEST_F(Jobs, NameTheFilesWhoseCheckFails)
{
    Write(0, "find fail");
    Write(1, "throw");
    Write(2, "nothing");
    for (const char* format : {"text", "json", "sarif", "checkstyle", "github", "gitlab", "junit"})
        for (const char* jobs : {"1", "2"}) {
            EXPECT_EQ(Run({"--jobs", jobs, "--quiet", "--format", format, "s"}), 2) << format;
            EXPECT_EQ(m_err, "code-analyzer: s/1000.php: the check failed: no more regions\n"
                             "code-analyzer: s/1001.php: the check failed: thrown\n")
                << format;
            EXPECT_THAT(m_out, Not(HasSubstr("found"))) << "of half a check";
        }
}

// A large file that is begun first is reported where it stands, and holds up nobody, however far behind.
TEST_F(Jobs, TakeLargeFilesFirst)
{
    constexpr int Files = 6000;
    std::string found;
    for (int i = 0; i < Files; ++i) {
        const bool isLarge = i == 5 || i > Files - 3;
        const bool finds = isLarge || i % 500 == 0;
        Write(i, (finds ? "find" : "nothing") + std::string(isLarge ? 200000 : 0, ' '));
        if (finds)
            found += "s/" + std::to_string(1000 + i) + ".php:1:1: error: found [101]\n";
    }
    for (const char* jobs : {"1", "2", "4"}) {
        EXPECT_EQ(Run({"--jobs", jobs, "--quiet", "s"}), 1) << jobs;
        EXPECT_EQ(m_out, found) << jobs;
    }
}

TEST_F(Jobs, EndWithWhatWasFoundWhenInterrupted)
{
    for (int i = 0; i < 60; ++i)
        Write(i, i == 30 || i == 33 ? "sleep" : "find");
    const struct
    {
        const char* jobs;
        int signal;
        std::size_t least; ///< findings
    } cases[] = {{"2", SIGINT, 30}, {"3", SIGTERM, 50}};
    for (const auto& c : cases) {
        Start({"--jobs", c.jobs, "--format", "json", "s"});
        ::usleep(1500000);
        QElapsedTimer clock;
        clock.start();
        ::kill(static_cast<pid_t>(m_process.processId()), c.signal);
        EXPECT_EQ(Finish(), 128 + c.signal);
        EXPECT_LT(clock.elapsed(), 30000);
        const auto found = nlohmann::json::parse(m_out);
        EXPECT_GE(found.size(), c.least) << c.jobs;
        EXPECT_LE(found.size(), 58u);
        EXPECT_THAT(m_err, HasSubstr("interrupted: "));
    }
}

} // namespace
