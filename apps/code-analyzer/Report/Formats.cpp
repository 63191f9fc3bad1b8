#include "Report/Formats.h"

namespace Kesh::CommandLine {

namespace {

/// For those that people do not read.
template <std::unique_ptr<IReportWriter> (*Make)(COutput&)>
std::unique_ptr<IReportWriter> Plain(COutput& output, const STextStyle& /*style*/)
{
    return Make(output);
}

constexpr SFormat Known[] = {{"text", &MakeTextWriter},
                             {"json", &Plain<&MakeJsonWriter>},
                             {"sarif", &Plain<&MakeSarifWriter>},
                             {"checkstyle", &Plain<&MakeCheckstyleWriter>},
                             {"github", &Plain<&MakeGithubWriter>},
                             {"gitlab", &Plain<&MakeGitlabWriter>},
                             {"junit", &Plain<&MakeJunitWriter>}};

} // namespace

std::span<const SFormat> Formats()
{
    return Known;
}

const SFormat* FindFormat(const std::string& name)
{
    for (const SFormat& format : Known)
        if (name == format.name)
            return &format;
    return nullptr;
}

std::string FormatNames(const char* separator)
{
    std::string names;
    for (const SFormat& format : Known)
        names += (names.empty() ? "" : separator) + std::string(format.name);
    return names;
}

} // namespace Kesh::CommandLine
