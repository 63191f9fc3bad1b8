#include "Report/Printable.h"

#include <cstdlib>
#include <unistd.h>

namespace Kesh::CommandLine {

bool WantsColor(EColor color, std::FILE* stream)
{
    if (color != EColor::Auto)
        return color == EColor::Always;
    const char* noColor = std::getenv("NO_COLOR");
    const char* terminal = std::getenv("TERM");
    return ::isatty(::fileno(stream)) && !(noColor && *noColor) && terminal &&
           std::string_view(terminal) != "dumb";
}

std::string Counted(std::size_t count, const char* noun)
{
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

} // namespace Kesh::CommandLine
