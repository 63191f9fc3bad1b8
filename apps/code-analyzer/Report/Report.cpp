#include "Report/Report.h"

#include "Report/Formats.h"

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

} // namespace

CReport::CReport(const SOptions& options)
{
    for (const SOutputOption& wanted : options.outputs) {
        COutput& output =
            wanted.file.empty() ? m_outputs.emplace_back(stdout) : m_outputs.emplace_back(wanted.file);
        const SFormat& format = wanted.format ? *wanted.format : Formats().front();
        m_writers.push_back(format.make(output, StyleOf(options, output)));
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
