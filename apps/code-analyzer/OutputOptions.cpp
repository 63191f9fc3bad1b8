#include "OutputOptions.h"

#include "Report/Formats.h"

#include <array>
#include <optional>
#include <set>
#include <utility>

namespace Kesh::CommandLine {

namespace {

constexpr std::array<std::pair<const char*, EColor>, 3> Colors{
    {{"auto", EColor::Auto}, {"always", EColor::Always}, {"never", EColor::Never}}};

[[noreturn]] void Refuse(const std::string& option, const std::string& name, const std::string& names)
{
    throw CLI::ValidationError(option, '"' + name + "\" is none of " + names);
}

EColor ColorNamed(const std::string& name)
{
    std::string names;
    for (const auto& [known, value] : Colors) {
        if (name == known)
            return value;
        names += (names.empty() ? "" : ", ") + std::string(known);
    }
    Refuse("--color", name, names);
}

const SFormat& FormatNamed(const std::string& name)
{
    const SFormat* format = FindFormat(name);
    if (!format)
        Refuse("--format", name, FormatNames(", "));
    return *format;
}

} // namespace

COutputOptions::COutputOptions(CLI::App& command, SOptions& options) : m_command(command), m_options(options)
{
    m_format =
        command
            .add_option("--format", m_formats,
                        "How findings are written (text); more than one with -o. text: a line for each, "
                        "on a terminal with the source line. json: one array of {file, startLine, "
                        "startColumn, endLine, endColumn, code, identifier, severity, message, text, "
                        "arguments}; lines and "
                        "columns count from 1, ends are exclusive. The others are for the services "
                        "and tools that they are called after")
            ->option_text(FormatNames("|"))
            ->allow_extra_args(false);
    m_file = command
                 .add_option("-o,--output", m_files,
                             "Write the report of the --format beside it to FILE instead of standard output "
                             "(repeatable: --format sarif -o a.sarif --format text); - is standard output")
                 ->option_text("FILE")
                 ->allow_extra_args(false);
    command
        .add_option_function<std::string>(
            "--color", [&options](const std::string& name) { options.color = ColorNamed(name); },
            "Colours in text: auto (on a terminal), always or never")
        ->option_text("auto|always|never");
    command.add_flag("--no-snippet", m_noSnippet, "No source lines in text");
    command.add_flag("-q,--quiet", options.quiet, "No progress bar and no summary line");
}

void COutputOptions::Resolve()
{
    // A format and a file that stand beside each other belong together, whichever comes first.
    struct SWanted
    {
        const SFormat* format = nullptr;
        std::optional<std::string> file; ///< empty: standard output
    };
    std::vector<SWanted> wanted;
    auto format = m_formats.begin();
    auto file = m_files.begin();
    for (const CLI::Option* option : m_command.parse_order()) {
        if (option == m_format) {
            const SFormat& named = FormatNamed(*format++);
            if (wanted.empty() || wanted.back().format)
                wanted.push_back({});
            wanted.back().format = &named;
        } else if (option == m_file) {
            if (file->empty())
                throw CLI::ValidationError("--output", "the name of the file is empty");
            if (wanted.empty() || wanted.back().file)
                wanted.push_back({});
            wanted.back().file = *file == "-" ? std::string() : *file;
            ++file;
        }
    }
    if (!wanted.empty())
        m_options.outputs.clear();
    for (const SWanted& output : wanted)
        m_options.outputs.push_back({output.format, output.file.value_or("")});
    std::set<std::string> files;
    for (const SOutputOption& output : m_options.outputs)
        if (!files.insert(output.file).second)
            throw output.file.empty()
                ? CLI::ValidationError("--format",
                                       "only one report can go to standard output; give the others -o FILE")
                : CLI::ValidationError("--output", '"' + output.file + "\" would be written twice");
    m_options.snippets = !m_noSnippet;
}

} // namespace Kesh::CommandLine
