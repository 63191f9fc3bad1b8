#pragma once

#include "Findings/Finding.h"
#include "Report/Output.h"

#include <cstddef>
#include <memory>

namespace Kesh::CommandLine {

/// What a report says at its end.
struct STotals
{
    std::size_t checked = 0; ///< files
    std::size_t errors = 0;
    std::size_t warnings = 0;
    std::size_t filesWithFindings = 0;
};

/// One format. Files come one by one, in their order; nothing of a file is kept once it is written.
class IReportWriter
{
public:
    virtual ~IReportWriter() = default;
    virtual void Begin() {}
    /// Also called for files without findings.
    virtual void Add(const Findings::SFileFindings& file) = 0;
    virtual void End(const STotals& /*totals*/) {}
};

struct STextStyle
{
    bool colored = false;
    bool snippets = false;
    bool summary = true;
};

/// Each writes to `output`, which outlives it.
std::unique_ptr<IReportWriter> MakeTextWriter(COutput& output, const STextStyle& style);
std::unique_ptr<IReportWriter> MakeJsonWriter(COutput& output);
std::unique_ptr<IReportWriter> MakeSarifWriter(COutput& output);
std::unique_ptr<IReportWriter> MakeCheckstyleWriter(COutput& output);
std::unique_ptr<IReportWriter> MakeGithubWriter(COutput& output);
std::unique_ptr<IReportWriter> MakeGitlabWriter(COutput& output);
std::unique_ptr<IReportWriter> MakeJunitWriter(COutput& output);

/// "missing-semicolon"; the code of a kind that nobody knows.
std::string IdentifierOf(const Findings::SFinding& finding);
/// "error" or "warning".
const char* SeverityName(const Findings::SFinding& finding);
/// A path below the current folder without "./", which some readers do not match with their files.
std::wstring PlainPath(const std::wstring& path);

} // namespace Kesh::CommandLine
