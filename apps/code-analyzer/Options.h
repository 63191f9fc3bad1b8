#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

struct SFormat;

enum class ECommand { Check, Project, LanguageServer, Init, Explain, Regions, Tree };
enum class EColor { Auto, Always, Never };

/// A report that the user wants.
struct SOutputOption
{
    const SFormat* format = nullptr; ///< null: the usual one
    std::string file;                ///< empty: standard output
};

/// What the user asks for. Paths are bytes, as the system gave them.
struct SOptions
{
    ECommand command = ECommand::Check;
    std::vector<SOutputOption> outputs{{}};
    EColor color = EColor::Auto;
    bool snippets = true; ///< source lines in text, on a terminal
    bool quiet = false;
    std::size_t jobs = 0; ///< processes that check; 0: as many as pay
    std::vector<std::string> paths;
    std::vector<std::string> include;
    std::vector<std::string> exclude;
    std::string stdinPath = "stdin.php";
    std::string code; ///< to be explained

    std::string configuration; ///< a file; for all; empty: the one nearest to each
    bool noConfiguration = false;
    bool noGrammar = false;
    bool noMarkup = false;
    bool noShortTags = false;
    std::vector<std::string> presets; ///< of names that HTML does not know
    std::int32_t phpVersion = 0;      ///< major * 100 + minor; 0: the project's
    std::string baseline;             ///< empty: the one that the configuration names
    bool generateBaseline = false;
    bool stdio = true;      ///< what a language server uses unless the next two say more
    std::string pipe;       ///< the path of a socket
    int port = 0;           ///< likewise; 0: none
    long clientProcess = 0; ///< the process of the client; 0: not known
    bool changed = false;   ///< only what git says has changed
    std::string changedRef; ///< against this; empty: what is staged
    bool fix = false;       ///< mend what can be mended
    bool diff = false;      ///< of what would be mended, and nothing is written
};

/// Exit statuses.
enum EExit : int {
    ExitClean = 0,         ///< no record of severity error
    ExitErrors = 1,        ///< at least one
    ExitFailed = 2,        ///< bad usage, or something could not be read
    ExitInterrupted = 128, ///< plus the number of the signal that ended the check before its end
};

/// Reads the command line. Answers true when there is something to do; otherwise everything has been said and
/// `exitCode` is the program's status.
bool ParseOptions(int argc, char** argv, SOptions& options, int& exitCode);

} // namespace Kesh::CommandLine
