#include "Report/Writer.h"

namespace Kesh::CommandLine {

const char* SeverityName(const Findings::SFinding& finding)
{
    return finding.IsError() ? "error" : "warning";
}

std::wstring PlainPath(const std::wstring& path)
{
    std::size_t begin = 0;
    while (path.compare(begin, 2, L"./") == 0)
        begin = path.find_first_not_of(L'/', begin + 1);
    return begin == std::wstring::npos ? L"." : path.substr(begin);
}

} // namespace Kesh::CommandLine
