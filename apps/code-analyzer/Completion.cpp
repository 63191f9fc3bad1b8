#include "Completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

namespace Kesh::CommandLine {

namespace {

struct SOption
{
    std::vector<std::string> names; ///< with their dashes
    std::string help;               ///< its first sentence
    std::string value;              ///< what it takes; empty: nothing
    std::vector<std::string> choices;
};

std::string FirstSentence(const std::string& text)
{
    const std::string first = text.substr(0, std::min(text.find(". "), text.find('\n')));
    return first.substr(0, first.find(" (")); // what is in brackets is for the help text
}

std::vector<std::string> Choices(const std::string& value)
{
    std::vector<std::string> choices;
    if (value.find('|') == std::string::npos)
        return choices;
    for (std::size_t begin = 0, end; begin <= value.size(); begin = end + 1) {
        end = std::min(value.find('|', begin), value.size());
        choices.push_back(value.substr(begin, end - begin));
    }
    return choices;
}

std::vector<SOption> OptionsOf(const CLI::App& app)
{
    std::vector<SOption> options;
    for (const CLI::Option* option : app.get_options()) {
        if (option->get_positional() && option->get_lnames().empty())
            continue;
        SOption found;
        for (const std::string& name : option->get_snames())
            found.names.push_back('-' + name);
        for (const std::string& name : option->get_lnames())
            found.names.push_back("--" + name);
        found.help = FirstSentence(option->get_description());
        if (option->get_items_expected_max() > 0 && option->get_type_size_max() > 0) {
            found.value = option->get_option_text().empty() ? "VALUE" : option->get_option_text();
            found.choices = Choices(found.value);
        }
        options.push_back(std::move(found));
    }
    return options;
}

std::vector<const CLI::App*> CommandsOf(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App* command) { return !command->get_group().empty(); });
}

std::string Joined(const std::vector<std::string>& words, const char* separator = " ")
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : separator) + word;
    return text;
}

/// For use between single quotes.
std::string Quoted(std::string text, const std::string& special = {})
{
    std::string quoted;
    for (const char c : text) {
        if (c == '\'')
            quoted += "'\\'";
        else if (special.find(c) != std::string::npos)
            quoted += '\\';
        quoted += c;
    }
    return quoted;
}

/// What a command takes that is no option; empty: files.
std::string ArgumentsOf(const CLI::App& command, const TArguments& arguments)
{
    const auto found = arguments.find(command.get_name());
    return found == arguments.end() ? "" : Joined(found->second);
}

std::string Bash(const CLI::App& app, const TArguments& arguments)
{
    std::string commands;
    std::string cases;
    std::string values;
    const auto words = [&](const CLI::App& command) {
        std::string all;
        for (const SOption& option : OptionsOf(command)) {
            all += (all.empty() ? "" : " ") + Joined(option.names);
            if (option.choices.empty())
                continue;
            std::string line = "        " + Joined(option.names, "|") + ") COMPREPLY=($(compgen -W '" +
                               Joined(option.choices) + "' -- \"$current\")); return ;;\n";
            if (values.find(line) == std::string::npos)
                values += line;
        }
        return all;
    };
    const std::string own = words(app);
    for (const CLI::App* command : CommandsOf(app)) {
        commands += ' ' + command->get_name();
        cases += "        " + command->get_name() + ") words='" + words(*command) + "' arguments='" +
                 ArgumentsOf(*command, arguments) + "' ;;\n";
    }
    return "# bash completion for code-analyzer\n"
           "_code_analyzer() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} words "
           "arguments\n"
           "    if [[ $current == '=' ]]; then\n" // --option=VALUE comes as three words
           "        current=\n"
           "    elif [[ $previous == '=' ]]; then\n"
           "        previous=${COMP_WORDS[COMP_CWORD-2]}\n"
           "    fi\n"
           "    case $previous in\n" +
           values +
           "    esac\n"
           "    case ${COMP_WORDS[1]} in\n" +
           cases + "        *) words='" + own + commands +
           "' ;;\n"
           "    esac\n"
           "    if ((COMP_CWORD == 1)) || [[ $current == -* ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$words\" -- \"$current\"))\n"
           "    elif [[ -n $arguments ]]; then\n"
           "        COMPREPLY=($(compgen -W \"$arguments\" -- \"$current\"))\n"
           "    fi\n"
           "}\n"
           "complete -o default -F _code_analyzer code-analyzer\n";
}

std::string ZshArguments(const CLI::App& app)
{
    std::string arguments;
    for (const SOption& option : OptionsOf(app)) {
        const std::string value = option.value.empty() ? ""
                                  : option.choices.empty()
                                      ? ':' + option.value + (option.value == "FILE" ? ":_files" : ": ")
                                      : ":VALUE:(" + Joined(option.choices) + ')';
        for (const std::string& name : option.names) {
            const char* equals = name.starts_with("--") && !value.empty() ? "=" : ""; // --name=VALUE, too
            arguments +=
                " \\\n            '*" + name + equals + '[' + Quoted(option.help, "[]:") + ']' + value + '\'';
        }
    }
    return arguments;
}

std::string Zsh(const CLI::App& app, const TArguments& given)
{
    std::string commands;
    std::string cases;
    for (const CLI::App* command : CommandsOf(app)) {
        commands += "        '" + command->get_name() + ':' +
                    Quoted(FirstSentence(command->get_description()), ":") + "'\n";
        const std::string arguments = ArgumentsOf(*command, given);
        cases += "        " + command->get_name() + ") _arguments" + ZshArguments(*command) +
                 " \\\n            '*:" + (arguments.empty() ? "PATH:_files" : "VALUE:(" + arguments + ')') +
                 "' ;;\n";
    }
    return "#compdef code-analyzer\n"
           "_code_analyzer() {\n"
           "    local -a commands=(\n" +
           commands +
           "    )\n"
           "    if ((CURRENT == 2)); then\n"
           "        _describe command commands\n"
           "        _arguments" +
           ZshArguments(app) +
           "\n        return\n"
           "    fi\n"
           "    local command=$words[2]\n"
           "    shift words\n"
           "    ((CURRENT--))\n"
           "    case $command in\n" +
           cases +
           "    esac\n"
           "}\n"
           "_code_analyzer \"$@\"\n";
}

std::string FishOptions(const CLI::App& app, const std::string& condition)
{
    std::string lines;
    for (const SOption& option : OptionsOf(app)) {
        lines += "complete -c code-analyzer -n '" + condition + '\'';
        for (const std::string& name : option.names)
            lines += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        if (!option.choices.empty())
            lines += " -x -a '" + Joined(option.choices) + '\'';
        else if (!option.value.empty())
            lines += " -r";
        lines += " -d '" + Quoted(option.help) + "'\n";
    }
    return lines;
}

std::string Fish(const CLI::App& app, const TArguments& given)
{
    std::string lines = "# fish completion for code-analyzer\n" + FishOptions(app, "__fish_use_subcommand");
    for (const CLI::App* command : CommandsOf(app)) {
        lines += "complete -c code-analyzer -n __fish_use_subcommand -f -a " + command->get_name() + " -d '" +
                 Quoted(FirstSentence(command->get_description())) + "'\n";
        const std::string condition = "__fish_seen_subcommand_from " + command->get_name();
        lines += FishOptions(*command, condition);
        if (const std::string arguments = ArgumentsOf(*command, given); !arguments.empty())
            lines += "complete -c code-analyzer -n '" + condition + "' -f -a '" + arguments + "'\n";
    }
    return lines;
}

} // namespace

std::string CompletionScript(const CLI::App& app, const std::string& shell, const TArguments& arguments)
{
    return shell == "bash"   ? Bash(app, arguments)
           : shell == "zsh"  ? Zsh(app, arguments)
           : shell == "fish" ? Fish(app, arguments)
                             : "";
}

} // namespace Kesh::CommandLine
