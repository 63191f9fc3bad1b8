#include "UnifiedDiff.h"

#include <dtl/dtl.hpp>
#include <sstream>
#include <vector>

namespace Kesh::CommandLine {

namespace {

std::vector<std::string> LinesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(std::move(line));
    if (!text.empty() && text.back() != '\n')
        lines.back() += "\n\\ No newline at end of file";
    return lines;
}

} // namespace

std::string UnifiedDiff(const std::string& file, const std::string& before, const std::string& after)
{
    dtl::Diff<std::string> diff(LinesOf(before), LinesOf(after));
    diff.onHuge();
    diff.compose();
    diff.composeUnifiedHunks();
    std::ostringstream out;
    out << "--- " << file << "\n+++ " << file << '\n';
    diff.printUnifiedFormat(out);
    return out.str();
}

} // namespace Kesh::CommandLine
