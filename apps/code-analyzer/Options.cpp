#include "Options.h"

#include "Application/Version.h"
#include "Completion.h"
#include "Configuration/Configuration.h"
#include "Files/Printable.h"
#include "OutputOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>
#include <iostream>

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
    "Environment: NO_COLOR turns colours off; CODE_ANALYZER_PLUGIN names another libCodeAnalyzer.so.1.";

constexpr const char* CheckFooter =
    "\nIn folders, files named *.php, *.phtml, *.inc, *.html, *.htm and *.css are checked; hidden folders,\n"
    "\"vendor\" and \"node_modules\" are left out unless named as a PATH. A named file is always checked, as "
    "PHP\n"
    "when its ending is none of these.\n";

/// How PHP is checked.
void AddPhpOptions(CLI::App& command, SOptions& options)
{
    command.add_flag("--no-grammar", options.noGrammar,
                     "Do not check PHP against its whole grammar, only statement by statement");
    command
        .add_option_function<std::string>(
            "--php-version",
            [&options](const std::string& text) {
                const auto version = Configuration::PhpVersionOf(text);
                if (!version)
                    throw CLI::ValidationError(
                        "--php-version", "\"" + text + "\" is no version of PHP from 5.3 on, such as 8.2");
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

/// Whether an argument that was taken for an option looks like a file.
bool NamesDashedPath(int argc, char** argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char* argument) {
        return argument[0] == '-' && argument[1] != '-' && std::strchr(argument, '.');
    });
}

} // namespace

bool ParseOptions(int argc, char** argv, SOptions& options, int& exitCode)
{
    options.arguments = argv;
    CLI::App app(Description, "code-analyzer");
    app.set_version_flag("--version", "code-analyzer " + Host::VersionText());
    app.require_subcommand(1);
    app.footer(Footer);

    CLI::App* check = app.add_subcommand("check", "Check files and folders");
    check->footer(CheckFooter + std::string(Footer));
    check->add_option("PATH", options.paths,
                      "Files and folders; - is standard input (with --changed: the current folder)");
    check
        ->add_option("--include", options.include,
                     "In folders, check the files that match GLOB instead of the usual ones (repeatable)")
        ->option_text("GLOB")
        ->allow_extra_args(false);
    check
        ->add_option("--exclude", options.exclude,
                     "Leave out files and folders that match GLOB (repeatable). A GLOB without a slash is "
                     "compared with names, one with a slash with the path below the folder; * matches / too")
        ->option_text("GLOB")
        ->allow_extra_args(false);
    check
        ->add_option("--stdin-path", options.stdinPath,
                     "Name that standard input goes by; its ending tells the language (stdin.php)")
        ->option_text("NAME");
    check
        ->add_option("-j,--jobs", options.jobs,
                     "Check with N processes (as many as there are cores, for a few files one)")
        ->option_text("N")
        ->check(CLI::Range(1, 256));
    AddPhpOptions(*check, options);
    AddProjectOptions(*check, options);
    COutputOptions checkOutputs(*check, options);

    CLI::App* project = app.add_subcommand(
        "project", "Open a folder as a project, check its files, and keep the errors in its .code-analyzer/");
    project->add_option("FOLDER", options.paths, "The project's folder")->required()->expected(1);
    AddPhpOptions(*project, options);
    COutputOptions projectOutputs(*project, options);

    CLI::App* server = app.add_subcommand("language-server",
                                          "Serve an editor: the Language Server Protocol on standard input "
                                          "and output");
    server->add_flag("--stdio", options.stdio, "Accepted, since editors pass it: there is no other way");
    CLI::App* init = app.add_subcommand("init", "Write a commented code-analyzer.json to begin with");
    init->add_option("FOLDER", options.paths, "Where to (the current folder)")->expected(0, 1);
    CLI::App* explain = app.add_subcommand("explain", "Say what an error means and how to mend it");
    explain->add_option("CODE", options.code, "The error's number, as it stands behind each message")
        ->required();

    CLI::App* regions = app.add_subcommand(
        "regions", "Print the regions that the PHP scanner cuts a file into: kind, span, text");
    regions->add_option("FILE", options.paths, "The file")->required()->expected(1);
    CLI::App* tree = app.add_subcommand("tree", "Print the HTML and CSS trees of a file: kind, name, span");
    tree->add_option("FILE", options.paths, "The file")->required()->expected(1);

    std::string shell;
    CLI::App* completion =
        app.add_subcommand("completion", "Print a script that completes options in a shell");
    completion->add_option("SHELL", shell, "bash, zsh or fish")
        ->required()
        ->check(CLI::IsMember({"bash", "zsh", "fish"}));

    try {
        app.parse(argc, argv);
        if (check->parsed()) {
            options.changed = check->count("--changed") != 0;
            CompletePaths(options);
            checkOutputs.Resolve();
        }
        if (project->parsed())
            projectOutputs.Resolve();
        if (completion->parsed()) {
            std::cout << CompletionScript(app, shell);
            return false;
        }
    } catch (const CLI::ParseError& error) {
        if (argc > 1 && argv[1][0] != '-' && app.get_subcommands().empty()) {
            std::cerr << "code-analyzer: unknown command \"" << Host::PrintableBytes(argv[1])
                      << "\"; the commands are check, project, language-server, init, explain, regions, "
                         "tree and completion (see --help)\n";
            exitCode = ExitFailed;
            return false;
        }
        if (error.get_exit_code() == 0) { // help was asked for
            app.exit(error, std::cout, std::cerr);
            return false;
        }
        exitCode = ExitFailed;
        // What stands on the command line may be the name of a file, filled in by a shell.
        std::cerr << Host::PrintableBytes(error.what()) << "\nRun with --help for more information.\n";
        if (NamesDashedPath(argc, argv))
            std::cerr << "A path that begins with a dash goes behind \"--\", as in: check -- -dash.php\n";
        return false;
    }
    options.command = check->parsed()     ? ECommand::Check
                      : project->parsed() ? ECommand::Project
                      : server->parsed()  ? ECommand::LanguageServer
                      : init->parsed()    ? ECommand::Init
                      : explain->parsed() ? ECommand::Explain
                      : regions->parsed() ? ECommand::Regions
                                          : ECommand::Tree;
    return true;
}

} // namespace Kesh::CommandLine
