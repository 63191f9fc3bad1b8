#include "RulesChoice.h"

#include "Base/Exception.h"
#include "Commands.h"
#include "Configuration/Configuration.h"
#include "Configuration/NamePresets.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Report/Printable.h"

#include <filesystem>

namespace Kesh::CommandLine {

// What the command line says goes before the settings, and these before what composer.json says.
TProjectRules RulesFor(const SOptions& options)
{
    Findings::SRulesForAll all;
    if (options.noConfiguration)
        all.settingsFile.emplace();
    else if (!options.configuration.empty())
        all.settingsFile = Host::PathFromBytes(options.configuration);
    if (options.phpVersion != 0) {
        all.phpVersion = options.phpVersion;
        all.phpVersionFrom = L"--php-version";
    }
    all.noGrammar = options.noGrammar;
    all.noMarkup = options.noMarkup;
    all.presets = options.presets;
    all.noShortTags = options.noShortTags;
    if (options.generateBaseline) {
        all.baseline.emplace();
    } else if (!options.baseline.empty()) {
        const std::wstring file = Host::AbsolutePath(Host::PathFromBytes(options.baseline));
        all.baseline = Findings::ReadBaseline(file);
    }
    auto rules = std::make_shared<const Findings::CProjectRules>(std::move(all));
    rules->For(FirstPlace(options)); // what is wrong with them is said before anything is done
    return rules;
}

std::wstring FirstPlace(const SOptions& options)
{
    const std::string& first = options.paths.front();
    const std::wstring path =
        Host::AbsolutePath(Host::PathFromBytes(first == "-" ? options.stdinPath : first));
    std::error_code ignored;
    return std::filesystem::is_directory(Host::PathToBytes(path), ignored) && !path.ends_with(L'/')
               ? path + L'/'
               : path;
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
        const auto presets = Configuration::DetectNamePresets(Host::AbsolutePath(folder));
        Host::WriteFileBytes(file, Configuration::InitialConfiguration(presets));
    } catch (const Base::CWorkError& fault) {
        PrintProblem(file, std::string("cannot be written: ") + fault.what());
        return ExitFailed;
    }
    std::printf("%s written; its comments say what can be set.\n", Printable(file).c_str());
    return ExitClean;
}

} // namespace Kesh::CommandLine
