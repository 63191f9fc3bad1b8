#include "Report/Report.h"

#include "Report/Printable.h"

namespace Kesh::CommandLine {

namespace {

STextStyle StyleOf(const SOptions& options, const COutput& output)
{
    STextStyle style;
    style.colored =
        output.Stream() ? WantsColor(options.color, output.Stream()) : options.color == EColor::Always;
    style.snippets = options.snippets && output.IsTerminal();
    // What is written to the baseline is not reported, but it is no "No errors" either.
    style.summary = !options.quiet && !options.generateBaseline;
    return style;
}

std::unique_ptr<IReportWriter> MakeWriter(EFormat format, COutput& output, const SOptions& options)
{
    switch (format) {
    case EFormat::Json: return MakeJsonWriter(output);
    case EFormat::Sarif: return MakeSarifWriter(output);
    case EFormat::Checkstyle: return MakeCheckstyleWriter(output);
    case EFormat::Github: return MakeGithubWriter(output);
    case EFormat::Gitlab: return MakeGitlabWriter(output);
    case EFormat::Junit: return MakeJunitWriter(output);
    case EFormat::Text: break;
    }
    return MakeTextWriter(output, StyleOf(options, output));
}

} // namespace

CReport::CReport(const SOptions& options)
{
    for (const SOutputOption& wanted : options.outputs) {
        COutput& output =
            wanted.file.empty() ? m_outputs.emplace_back(stdout) : m_outputs.emplace_back(wanted.file);
        m_writers.push_back(MakeWriter(wanted.format, output, options));
        m_writers.back()->Begin();
    }
}

void CReport::Add(const Findings::SFileFindings& file)
{
    for (const Findings::SFinding& finding : file.findings)
        ++(finding.IsError() ? m_totals.errors : m_totals.warnings);
    m_totals.filesWithFindings += !file.findings.empty();
    for (const auto& writer : m_writers)
        writer->Add(file);
}

void CReport::Finish(std::size_t checked)
{
    m_totals.checked = checked;
    for (const auto& writer : m_writers)
        writer->End(m_totals);
    for (COutput& output : m_outputs)
        output.Commit();
}

} // namespace Kesh::CommandLine
