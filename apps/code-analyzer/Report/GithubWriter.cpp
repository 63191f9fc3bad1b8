#include "Report/Printable.h"
#include "Report/Writer.h"

namespace Kesh::CommandLine {

namespace {

/// What would end a workflow command, or a property of it, is written as the runner reads it.
std::string Escaped(const std::wstring& text, bool property)
{
    std::string escaped;
    for (const char c : Printable(text)) {
        switch (c) {
        case '%': escaped += "%25"; break;
        case '\r': escaped += "%0D"; break;
        case '\n': escaped += "%0A"; break;
        case ':': escaped += property ? "%3A" : ":"; break;
        case ',': escaped += property ? "%2C" : ","; break;
        default: escaped += c;
        }
    }
    return escaped;
}

class CGithubWriter final : public IReportWriter
{
public:
    explicit CGithubWriter(COutput& output) : m_output(output) {}

    void Add(const Findings::SFileFindings& file) override
    {
        const std::string name = Escaped(PlainPath(file.file), true);
        for (const Findings::SFinding& finding : file.findings) {
            const auto& [start, end] = finding.error.pos;
            std::string line = std::string("::") + SeverityName(finding) + " file=" + name +
                               ",line=" + std::to_string(start.y + 1);
            // Columns of a span over several lines are not understood.
            if (start.y == end.y)
                line += ",col=" + std::to_string(start.x + 1) + ",endColumn=" + std::to_string(end.x + 1);
            else
                line += ",endLine=" + std::to_string(end.y + 1);
            m_output.Write(line + ",title=code-analyzer " + std::to_string(finding.error.code) +
                           "::" + Escaped(finding.message, false) + '\n');
        }
    }

private:
    COutput& m_output;
};

} // namespace

std::unique_ptr<IReportWriter> MakeGithubWriter(COutput& output)
{
    return std::make_unique<CGithubWriter>(output);
}

} // namespace Kesh::CommandLine
