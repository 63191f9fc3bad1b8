#include "Report/Writer.h"

namespace Kesh::CommandLine {

std::string IdentifierOf(const Findings::SFinding& finding)
{
    const CodeAnalyzer::SDiagnosticKind* kind = CodeAnalyzer::FindKind(finding.error.code);
    return kind ? kind->identifier : std::to_string(finding.error.code);
}

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
