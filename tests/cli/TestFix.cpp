// What "check --fix" leaves of files, and of what it must not touch.

#include "CliFixture.h"

#include <filesystem>
#include <sys/stat.h>

using namespace Kesh;
using ::testing::HasSubstr;

namespace fs = std::filesystem;

namespace {

class Fix : public CCliTest
{
protected:
    std::string Bytes(const wchar_t* name) { return Host::ReadFileBytes(m_folder.Path(name)); }
};

std::string Wide(const std::string& ascii)
{
    std::string bytes = "\xFF\xFE";
    for (const char c : ascii)
        bytes += {c, '\0'};
    return bytes;
}

TEST_F(Fix, LeavesAllButTheMistakesAsItWas)
{
    const struct
    {
        const char* title;
        std::string before;
        std::string after;
    } cases[] = {
        {"several, in one run", "<?php\nf(1;\n$a = [1, 2;\n$b = 3\n$c = 4;\n",
         "<?php\nf(1);\n$a = [1, 2];\n$b = 3;\n$c = 4;\n"},
        {"a brace", "<?php\nif ($a)\n  f();\n  g();\n}\n", "<?php\nif ($a) {\n  f();\n  g();\n}\n"},
        {"one in the way of the next", "<?php\nfunction f() {\n  g(;\n  }\n}\nh(1;\n",
         "<?php\nfunction f() {\n  g(;\n  }\n}\nh(1;\n"},
        {"CR LF, no line end at the end", "<?php\r\nf(1;\r\n$a = 2;", "<?php\r\nf(1);\r\n$a = 2;"},
        {"CR", "<?php\rf(1;\r$a = 2;\r", "<?php\rf(1);\r$a = 2;\r"},
        {"a byte order mark", "\xEF\xBB\xBF<?php\nf('\xC3\xA9';\n", "\xEF\xBB\xBF<?php\nf('\xC3\xA9');\n"},
        {"Latin-1", "<?php\nf('\xE9\xE8';\n", "<?php\nf('\xE9\xE8');\n"},
        {"UTF-16", Wide("<?php\nf(1;\n"), Wide("<?php\nf(1);\n")},
        {"names", "<?php ?>\n<strng title='a' title='b'></strng>\n", "<?php ?>\n<strng title='a'></strng>\n"},
        {"no name, and no guess", "<style>a { width: calc(1px+2px); color: rad }</style>\n<!-->\n",
         "<style>a { width: calc(1px + 2px); color: rad }</style>\n<!---->\n"},
        {"a comment that was meant to ignore", "<?php\n// code-analyser-ignore-next-line 901\nif ($a);\n",
         "<?php\n// code-analyzer-ignore 901\nif ($a);\n"},
        {"what a comment ignores", "<?php\n// code-analyzer-ignore\nf(1;\n",
         "<?php\n// code-analyzer-ignore\nf(1;\n"},
        {"nothing", "<?php\nf(1);\n", "<?php\nf(1);\n"},
        {"a binary file", std::string("f(\0\0", 4), std::string("f(\0\0", 4)},
    };
    for (const auto& [title, before, after] : cases) {
        SCOPED_TRACE(title);
        m_folder.Write(L"a.php", before);
        ::chmod(Path(L"a.php").c_str(), 0640);
        fs::remove(Path(L"b.php"));
        fs::create_hard_link(Path(L"a.php"), Path(L"b.php"));
        Run({"check", "--fix", "--no-config", "a.php"});
        EXPECT_EQ(Bytes(L"a.php"), after);
        EXPECT_EQ(Bytes(L"b.php"), after) << "hard links stay";
        struct stat state;
        EXPECT_EQ(::stat(Path(L"a.php").c_str(), &state), 0);
        EXPECT_EQ(state.st_mode & 0777, 0640u);
        const SResult again = Run({"check", "--fix", "--no-config", "a.php"});
        EXPECT_EQ(Bytes(L"a.php"), after);
        EXPECT_THAT(again.err, HasSubstr("0 findings in 0 files fixed"));
    }
}

TEST_F(Fix, ReportsWhatIsLeft)
{
    m_folder.Write(L"p/a.php", "<?php\nf(1;\n$a = 2;\n$b = 1 + ;\n");
    m_folder.Write(L"p/b.php", "<?php\nf(1;\n");
    for (const char* jobs : {"1", "2"}) {
        const SResult diff = Run({"check", "--fix", "--diff", "--jobs", jobs, "p"});
        EXPECT_EQ(diff.exit, 1) << "the files are as they were";
        EXPECT_EQ(diff.out,
                  "--- p/a.php\n+++ p/a.php\n@@ -1,4 +1,4 @@\n <?php\n-f(1;\n+f(1);\n $a = 2;\n $b = 1 + ;\n"
                  "--- p/b.php\n+++ p/b.php\n@@ -1,2 +1,2 @@\n <?php\n-f(1;\n+f(1);\n");
        EXPECT_EQ(diff.err, "code-analyzer: 2 findings in 2 files would be fixed\n");
        EXPECT_EQ(Bytes(L"p/b.php"), "<?php\nf(1;\n");
    }
    const SResult fixed = Run({"check", "--fix", "--jobs", "2", "p"});
    EXPECT_EQ(fixed.exit, 1);
    EXPECT_THAT(fixed.out, HasSubstr("p/a.php:4:10: error: Expected an expression"));
    EXPECT_THAT(fixed.out, ::testing::Not(HasSubstr("p/b.php")));
    EXPECT_EQ(Run({"check", "p/b.php"}).exit, 0);
}

TEST_F(Fix, TouchesNothingThatItCannotWriteAsItWas)
{
    const std::string mixed = "<?php\r\nf(1;\n$a = 2;\n";
    const std::string invalid = "<?php\n// \xC3\xA9\xC3\xA9\xC3\xA9\xFF\nf(1;\n";
    m_folder.Write(L"mixed.php", mixed);
    m_folder.Write(L"invalid.php", invalid);
    for (const auto& [name, bytes] : {std::pair{L"mixed.php", mixed}, {L"invalid.php", invalid}}) {
        const SResult result = Run({"check", "--fix", Host::PathToQt(name)});
        EXPECT_EQ(result.exit, 2);
        EXPECT_THAT(result.err, HasSubstr(": not fixed: "));
        EXPECT_THAT(result.out, HasSubstr(":3:")) << "reported all the same";
        EXPECT_EQ(Bytes(name), bytes);
    }
    // A link of a folder is not written through, be it in the project or not.
    m_folder.Write(L"outside.php", "<?php\nf(1;\n");
    m_folder.Write(L"p/data.txt", "<?php\nf(1;\n");
    fs::create_symlink("../outside.php", Path(L"p/a.php"));
    fs::create_symlink("data.txt", Path(L"p/b.php"));
    Run({"check", "--fix", "p"});
    EXPECT_EQ(Bytes(L"outside.php"), "<?php\nf(1;\n");
    EXPECT_EQ(Bytes(L"p/data.txt"), "<?php\nf(1;\n");
    EXPECT_TRUE(fs::is_symlink(Path(L"p/b.php")));
}

TEST_F(Fix, IsRefusedWhereThereIsNoFile)
{
    for (const QStringList& arguments : {QStringList{"check", "--fix", "-"},
                                         {"check", "--fix", "--changed"},
                                         {"check", "--diff", "."},
                                         {"check", "--fix", "--generate-baseline", "."}})
        EXPECT_EQ(Run(arguments, "<?php\n").exit, 2) << arguments.join(' ').toStdString();
}

} // namespace
