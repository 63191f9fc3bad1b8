#include "ConfigurationChoice.h"

#include "Base/Exception.h"
#include "Commands.h"
#include "Configuration/Composer.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Report/Printable.h"

#include <filesystem>

namespace Kesh::CommandLine {

namespace {

Configuration::SConfiguration FileFor(const SOptions& options)
{
    if (options.noConfiguration)
        return {};
    if (!options.configuration.empty())
        return Configuration::ReadConfiguration(Host::PathFromBytes(options.configuration));
    const std::string& first = options.paths.front();
    const std::wstring file =
        Configuration::FindConfiguration(Host::PathFromBytes(first == "-" ? options.stdinPath : first));
    return file.empty() ? Configuration::SConfiguration() : Configuration::ReadConfiguration(file);
}

} // namespace

// What the command line says goes before the settings, and these before what composer.json says.
Configuration::SConfiguration ConfigurationFor(const SOptions& options)
{
    Configuration::SConfiguration configuration = FileFor(options);
    if (options.noGrammar)
        configuration.grammar = false;
    if (options.phpVersion != 0)
        configuration.phpVersion = options.phpVersion;
    const std::string& first = options.paths.front();
    if (!configuration.phpVersion && first != "-")
        configuration.phpVersion = Configuration::ComposerPhpVersion(Host::PathFromBytes(first));
    return configuration;
}

int RunInit(const SOptions& options)
{
    const std::wstring folder = Host::PathFromBytes(options.paths.empty() ? "." : options.paths.front());
    const std::wstring file = (options.paths.empty() ? L"" : folder + L'/') + Configuration::FileName;
    std::error_code error;
    if (!std::filesystem::is_directory(Host::PathToBytes(folder), error)) {
        PrintProblem(folder, error ? error.message() : "not a folder");
        return ExitFailed;
    }
    // A link is there, too, whether or not it leads to anything.
    if (std::filesystem::exists(std::filesystem::symlink_status(Host::PathToBytes(file), error))) {
        PrintProblem(file, "is there already; it has been left alone");
        return ExitFailed;
    }
    try {
        Host::WriteFileBytes(file, Configuration::InitialConfiguration());
    } catch (const Base::CWorkError& fault) {
        PrintProblem(file, std::string("cannot be written: ") + fault.what());
        return ExitFailed;
    }
    std::printf("%s written; its comments say what can be set.\n", Printable(file).c_str());
    return ExitClean;
}

} // namespace Kesh::CommandLine
