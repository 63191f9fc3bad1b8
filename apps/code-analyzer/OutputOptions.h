#pragma once

#include "Options.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// The options of a command that say how its findings are reported. Lives until the command line is read.
class COutputOptions
{
public:
    /// Adds them to `command`; both outlive it.
    COutputOptions(CLI::App& command, SOptions& options);
    /// Sorts out which report goes where, once all is read. Throws CLI::ValidationError.
    void Resolve();

private:
    CLI::App& m_command;
    SOptions& m_options;
    CLI::Option* m_format;
    CLI::Option* m_file;
    std::vector<std::string> m_formats;
    std::vector<std::string> m_files;
    bool m_noSnippet = false;
};

} // namespace Kesh::CommandLine
