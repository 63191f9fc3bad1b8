// Completions are made from the options; a shell says whether they work.

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;

namespace {

QString Output(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// What bash offers for a line that ends where the user is.
std::vector<std::string> Completions(const QStringList& words)
{
    const QString script = Output(PROGRAM, {"completion", "bash"}) +
                           QString("COMP_WORDS=(%1); COMP_CWORD=%2; _code_analyzer; printf '%s\\n' "
                                   "\"${COMPREPLY[@]}\"\n")
                               .arg("'" + words.join("' '") + "'")
                               .arg(words.size() - 1);
    std::vector<std::string> offered;
    for (const QString& line : Output("bash", {"-c", script}).split('\n', Qt::SkipEmptyParts))
        offered.push_back(line.toStdString());
    return offered;
}

/// The options and the commands that a help text lists.
std::vector<std::string> Listed(const QStringList& command, const char* pattern)
{
    const QString help = Output(PROGRAM, command + QStringList{"--help"});
    std::vector<std::string> names;
    const QRegularExpression name(pattern, QRegularExpression::MultilineOption);
    for (auto found = name.globalMatch(help); found.hasNext();)
        names.push_back(found.next().captured(1).toStdString());
    EXPECT_FALSE(names.empty()) << help.toStdString();
    return names;
}

} // namespace

TEST(Completion, OffersWhatTheHelpTextsList)
{
    const auto commands = Listed({}, "^  ([a-z][a-z-]*)   ");
    EXPECT_THAT(commands, IsSupersetOf({"check", "project", "explain"}));
    EXPECT_THAT(Completions({"code-analyzer", ""}), IsSupersetOf(commands));
    const std::string zsh = Output(PROGRAM, {"completion", "zsh"}).toStdString();
    const std::string fish = Output(PROGRAM, {"completion", "fish"}).toStdString();
    for (const std::string& command : commands) {
        EXPECT_THAT(zsh, HasSubstr("\n        " + command + ") _arguments"));
        EXPECT_THAT(fish, HasSubstr("-f -a " + command + " -d"));
        const QString name = QString::fromStdString(command);
        const auto options = Listed({name}, "^  (?:-[a-zA-Z],)?(--[a-zA-Z-]+)");
        EXPECT_THAT(Completions({"code-analyzer", name, "-"}), IsSupersetOf(options)) << command;
        for (const std::string& option : options) {
            EXPECT_THAT(zsh, AnyOf(HasSubstr("'*" + option + "["), HasSubstr("'*" + option + "=[")));
            EXPECT_THAT(fish, HasSubstr(" -l " + option.substr(2)));
        }
    }
}

TEST(Completion, KnowsValues)
{
    EXPECT_THAT(Completions({"code-analyzer", "check", "--color", ""}),
                ElementsAre("auto", "always", "never"));
    EXPECT_THAT(Completions({"code-analyzer", "check", "--format", "s"}), ElementsAre("sarif"));
    // As bash cuts what stands before the cursor.
    EXPECT_THAT(Completions({"code-analyzer", "check", "--format", "=", "s"}), ElementsAre("sarif"));
    EXPECT_THAT(Completions({"code-analyzer", "check", "--color", "="}),
                ElementsAre("auto", "always", "never"));
    EXPECT_THAT(Completions({"code-analyzer", "explain", "1001"}), ElementsAre("1001"));
    EXPECT_THAT(Completions({"code-analyzer", "explain", "unknown-t"}), ElementsAre("unknown-tag"));
    EXPECT_THAT(Completions({"code-analyzer", "completion", ""}), ElementsAre("bash", "zsh", "fish"));
    EXPECT_THAT(Output(PROGRAM, {"completion", "zsh"}).toStdString(),
                AllOf(HasSubstr("'*--format=["), HasSubstr("'*:VALUE:(bash zsh fish)'")));
    EXPECT_THAT(Output(PROGRAM, {"completion", "fish"}).toStdString(),
                HasSubstr("'__fish_seen_subcommand_from completion' -f -a 'bash zsh fish'"));
    EXPECT_THAT(Completions({"code-analyzer", "ch"}), ElementsAre("check"));
    EXPECT_THAT(Completions({"code-analyzer", "check", "src"}), ElementsAre());
}

TEST(Completion, IsUnderstoodByTheShellsThatAreThere)
{
    for (const char* shell : {"bash", "zsh", "fish"})
        if (!QStandardPaths::findExecutable(shell).isEmpty())
            Output(shell, {"-n", "-c", Output(PROGRAM, {"completion", shell})});
}
