#pragma once

#include <map>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Kesh::CommandLine {

/// What commands take that is neither an option nor a file, by command.
using TArguments = std::map<std::string, std::vector<std::string>>;

/// The completion script of a shell ("bash", "zsh" or "fish"), made from the options as they are. An empty
/// text for another shell.
std::string CompletionScript(const CLI::App& app, const std::string& shell, const TArguments& arguments);

} // namespace Kesh::CommandLine
