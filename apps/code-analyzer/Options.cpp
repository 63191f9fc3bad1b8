#include "Options.h"

#include "Application/Version.h"
#include "Completion.h"
#include "Configuration/Configuration.h"
#include "Configuration/NamePresets.h"
#include "Files/Printable.h"
#include "Findings/ErrorPage.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "OutputOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <iostream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::CommandLine {

namespace {

constexpr const char* Description =
    "Finds syntax errors in PHP, and unknown names in HTML and CSS.\n"
    "\n"
    "  code-analyzer check src/                 check all files of a folder\n"
    "  code-analyzer check --format json a.php  the same for other programs\n"
    "  code-analyzer check - < a.php            check standard input\n"
    "  code-analyzer project .                  check a project and keep its errors\n";

constexpr const char* Footer =
    "\nExit status: 0 no errors (there may be warnings), 1 at least one error, 2 bad usage or a path that\n"
    "could not be read or whose check crashed, 130 or 143 ended by Ctrl-C or a request before the end.\n"
    "Environment: NO_COLOR turns colours off; CODE_ANALYZER_PLUGIN names "
    "another\nlibCodeAnalyzerChecks.so.1.";

constexpr const char* CheckFooter =
    "\nIn folders, files named *.php, *.phtml, *.inc, *.html, *.htm and *.css are checked; hidden folders,\n"
    "\"vendor\" and \"node_modules\" are left out unless named as a PATH. A named file is always checked, as "
    "PHP\n"
    "when its ending is none of these.\n";

const std::vector<std::string> Shells{"bash", "zsh", "fish"};

/// What `explain` takes.
std::vector<std::string> ErrorNames()
{
    std::vector<std::string> names;
    for (const CodeAnalyzer::SDiagnosticKind& kind : CodeAnalyzer::Catalog)
        if (!Findings::ErrorPage(kind.code).isEmpty())
            names.insert(names.end(), {std::to_string(kind.code), kind.identifier});
    return names;
}

std::string PresetChoices()
{
    std::string choices;
    for (const Configuration::SNamePreset& preset : Configuration::NamePresets())
        choices += (choices.empty() ? "" : "|") + std::string(preset.name);
    return choices;
}

/// What is checked, and how.
void AddPhpOptions(CLI::App& command, SOptions& options)
{
    command.add_flag("--no-grammar", options.noGrammar,
                     "Do not check PHP against its whole grammar, only statement by statement");
    command.add_flag("--no-markup", options.noMarkup, "Do not check HTML and CSS beyond their names");
    command.add_flag("--no-short-tags", options.noShortTags,
                     "Take \"<?\" for PHP only in \"<?php\" and \"<?=\", as PHP does without short_open_tag");
    command
        .add_option_function<std::vector<std::string>>(
            "--preset",
            [&options](const std::vector<std::string>& names) {
                for (const std::string& name : names)
                    if (!Configuration::FindNamePreset(name))
                        throw CLI::ValidationError("--preset", Configuration::NoNamePreset(name));
                options.presets = names;
            },
            "Take the tags and attributes of a framework or template language for known (repeatable)")
        ->option_text(PresetChoices())
        ->allow_extra_args(false);
    command
        .add_option_function<std::string>(
            "--php-version",
            [&options](const std::string& text) {
                const auto version = Configuration::PhpVersionOf(text);
                if (!version)
                    throw CLI::ValidationError("--php-version", Configuration::NoPhpVersion(text));
                options.phpVersion = *version;
            },
            "What PHP has to take the files: 8.2 for example. Without it, the version in code-analyzer.json "
            "or in "
            "composer.json; else whatever any version takes passes")
        ->option_text("VERSION");
}

void AddProjectOptions(CLI::App& check, SOptions& options)
{
    check
        .add_option(
            "--config", options.configuration,
            "The settings of all files; without it, each goes by the nearest code-analyzer.json upwards")
        ->option_text("FILE");
    check.add_flag("--no-config", options.noConfiguration, "No settings file at all")->excludes("--config");
    check
        .add_option("--baseline", options.baseline,
                    "Be silent about the findings that FILE lists, and name those that are gone")
        ->option_text("FILE");
    check.add_flag("--generate-baseline", options.generateBaseline,
                   "Write all findings to the baseline file (that of --baseline, of the settings, or "
                   "code-analyzer-baseline.json) and report none");
    CLI::Option* fix = check.add_flag(
        "--fix", options.fix,
        "Write what mends an error and brings up no other, as tried on a copy, into the files, and report "
        "what is left");
    fix->excludes("--generate-baseline");
    check.add_flag("--diff", options.diff, "Print what --fix would change, and write nothing")->needs(fix);
    check
        .add_option_function<std::string>(
            "--changed", [&options](const std::string& ref) { options.changedRef = ref; },
            "Check only what git says has changed: since REF was left, or what is staged. After the PATHs")
        ->option_text("[REF]")
        ->expected(0, 1)
        ->trigger_on_parse();
}

/// What the paths are when none are given.
void CompletePaths(SOptions& options)
{
    if (!options.paths.empty())
        return;
    if (!options.changed)
        throw CLI::RequiredError("PATH");
    options.paths = {"."};
}

/// Only a file can be written.
void RefuseFixing(const SOptions& options)
{
    if (!options.fix)
        return;
    if (options.changed && options.changedRef.empty())
        throw CLI::ValidationError("--fix", "what is staged cannot be fixed, only files on the disk");
    if (std::ranges::find(options.paths, "-") != options.paths.end())
        throw CLI::ValidationError("--fix", "standard input cannot be fixed");
}

/// Whether an argument that was taken for an option looks like a file.
bool NamesDashedPath(int argc, char** argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char* argument) {
        return argument[0] == '-' && argument[1] != '-' && std::strchr(argument, '.');
    });
}

/// The commands and what belongs to each.
class CCommands
{
public:
    explicit CCommands(SOptions& options) : m_options(options), m_app(Description, "code-analyzer")
    {
        m_app.set_version_flag("--version", "code-analyzer " + Host::VersionText());
        m_app.require_subcommand(1);
        m_app.footer(Footer);
        AddCheck();
        AddProject();
        AddServer();
        AddSmallOnes();
        AddInspection();
    }

    CLI::App& App() { return m_app; }
    /// Throws CLI::ParseError.
    void Parse(int argc, char** argv)
    {
        m_app.parse(argc, argv);
        if (m_check->parsed()) {
            m_options.changed = m_check->count("--changed") != 0;
            CompletePaths(m_options);
            RefuseFixing(m_options);
            m_checkOutputs->Resolve();
        }
        if (m_project->parsed())
            m_projectOutputs->Resolve();
        for (const auto& [app, command] : m_commands)
            if (app->parsed())
                m_options.command = command;
    }
    /// The shell whose script is asked for; empty: none.
    const std::string& Shell() const { return m_shell; }

private:
    CLI::App* Add(ECommand command, const char* name, const char* description)
    {
        CLI::App* app = m_app.add_subcommand(name, description);
        m_commands.emplace_back(app, command);
        return app;
    }
    void AddGlobs(const char* option, std::vector<std::string>& globs, const char* description)
    {
        m_check->add_option(option, globs, description)->option_text("GLOB")->allow_extra_args(false);
    }
    void AddCheck()
    {
        m_check = Add(ECommand::Check, "check", "Check files and folders");
        m_check->footer(CheckFooter + std::string(Footer));
        m_check->add_option("PATH", m_options.paths,
                            "Files and folders; - is standard input (with --changed: the current folder)");
        AddGlobs("--include", m_options.include,
                 "In folders, check the files that match GLOB instead of the usual ones (repeatable)");
        AddGlobs("--exclude", m_options.exclude,
                 "Leave out files and folders that match GLOB (repeatable). A GLOB without a slash is "
                 "compared with names, one with a slash with the path below the folder; * matches / too");
        m_check
            ->add_option("--stdin-path", m_options.stdinPath,
                         "Name that standard input goes by; its ending tells the language (stdin.php)")
            ->option_text("NAME");
        m_check
            ->add_option("-j,--jobs", m_options.jobs,
                         "Check with N processes (as many as there are cores, for a few files one)")
            ->option_text("N")
            ->check(CLI::Range(1, 256));
        AddPhpOptions(*m_check, m_options);
        AddProjectOptions(*m_check, m_options);
        m_checkOutputs.emplace(*m_check, m_options);
    }
    void AddProject()
    {
        m_project = Add(ECommand::Project, "project",
                        "Open a folder as a project, check its files, and keep the errors in its "
                        ".code-analyzer/");
        m_project->add_option("FOLDER", m_options.paths, "The project's folder")->required()->expected(1);
        AddPhpOptions(*m_project, m_options);
        m_projectOutputs.emplace(*m_project, m_options);
    }
    void AddServer()
    {
        CLI::App* server =
            Add(ECommand::LanguageServer, "language-server", "Serve an editor: the Language Server Protocol");
        server->add_flag("--stdio", m_options.stdio, "Use standard input and output, as without an option");
        CLI::Option* pipe =
            server
                ->add_option("--pipe", m_options.pipe, "Use the socket at PATH, on which the client listens")
                ->option_text("PATH");
        server
            ->add_option("--socket", m_options.port, "Use PORT of this machine, on which the client listens")
            ->option_text("PORT")
            ->check(CLI::Range(1, 65535))
            ->excludes(pipe);
        server
            ->add_option("--clientProcessId", m_options.clientProcess,
                         "End when the process PID is gone, until the client names another")
            ->option_text("PID");
    }
    void AddSmallOnes()
    {
        Add(ECommand::Init, "init", "Write a commented code-analyzer.json to begin with")
            ->add_option("FOLDER", m_options.paths, "Where to (the current folder)")
            ->expected(0, 1);
        Add(ECommand::Explain, "explain", "Say what an error means and how to fix it")
            ->add_option("CODE", m_options.code,
                         "The error's number, as it stands behind each message, or its identifier; without "
                         "one all are listed");
    }
    void AddInspection()
    {
        const auto add = [this](ECommand command, const char* name, const char* description) {
            Add(command, name, description)
                ->add_option("FILE", m_options.paths, "The file")
                ->required()
                ->expected(1);
        };
        add(ECommand::Regions, "regions",
            "Print the regions that the PHP scanner cuts a file into: kind, span, text");
        add(ECommand::Tree, "tree", "Print the HTML and CSS trees of a file: kind, name, span");
        m_app.add_subcommand("completion", "Print a script that completes options in a shell")
            ->add_option("SHELL", m_shell, "bash, zsh or fish")
            ->required()
            ->check(CLI::IsMember(Shells));
    }

    SOptions& m_options;
    CLI::App m_app;
    std::vector<std::pair<CLI::App*, ECommand>> m_commands;
    CLI::App* m_check = nullptr;
    CLI::App* m_project = nullptr;
    std::optional<COutputOptions> m_checkOutputs;
    std::optional<COutputOptions> m_projectOutputs;
    std::string m_shell;
};

/// Says what is wrong with a command line, or what was asked for instead; the exit code.
int Explain(const CLI::ParseError& error, CLI::App& app, int argc, char** argv)
{
    if (argc > 1 && argv[1][0] != '-' && app.get_subcommands().empty()) {
        std::cerr << "code-analyzer: unknown command \"" << Host::PrintableBytes(argv[1])
                  << "\"; the commands are check, project, language-server, init, explain, regions, "
                     "tree and completion (see --help)\n";
        return ExitFailed;
    }
    if (error.get_exit_code() == 0) { // help was asked for
        app.exit(error, std::cout, std::cerr);
        return ExitClean;
    }
    // What stands on the command line may be the name of a file, filled in by a shell.
    std::cerr << Host::PrintableBytes(error.what()) << "\nRun with --help for more information.\n";
    if (NamesDashedPath(argc, argv))
        std::cerr << "A path that begins with a dash goes behind \"--\", as in: check -- -dash.php\n";
    return ExitFailed;
}

} // namespace

bool ParseOptions(int argc, char** argv, SOptions& options, int& exitCode)
{
    CCommands commands(options);
    try {
        commands.Parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        exitCode = Explain(error, commands.App(), argc, argv);
        return false;
    }
    if (!commands.Shell().empty())
        std::cout << CompletionScript(commands.App(), commands.Shell(),
                                      {{"explain", ErrorNames()}, {"completion", Shells}});
    return commands.Shell().empty();
}

} // namespace Kesh::CommandLine
