#pragma once

#include <string>

namespace CLI {
class App;
}

namespace Kesh::CommandLine {

/// The completion script of a shell ("bash", "zsh" or "fish"), made from the options as they are. An
/// empty text for another shell.
std::string CompletionScript(const CLI::App& app, const std::string& shell);

} // namespace Kesh::CommandLine
