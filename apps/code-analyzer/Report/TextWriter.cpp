#include "Report/Printable.h"
#include "Report/Writer.h"

#include <algorithm>
#include <clocale>
#include <cwchar>

namespace Kesh::CommandLine {

namespace {

using Findings::SFinding;

constexpr const char* Bold = "\x1B[1m";
constexpr const char* Plain = "\x1B[0m";

/// How many columns a terminal gives a character; negative: nobody can tell. The user's locale may know ASCII
/// only, and what is written is UTF-8 all the same.
int ColumnsOf(wchar_t c)
{
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t before = unicode ? ::uselocale(unicode) : nullptr;
    const int columns = ::wcwidth(c);
    if (before)
        ::uselocale(before);
    return columns;
}

/// How a character of a source line is shown, and how many columns it takes.
std::string Shown(wchar_t c, std::size_t& columns)
{
    if (c == L'\t') {
        columns += 4;
        return "    ";
    }
    const std::string shown = Printable({&c, 1});
    const int width = ColumnsOf(c);
    // An escape takes a column for each of its characters.
    columns += shown[0] == '\\' && c != L'\\' ? shown.size()
               : width < 0                    ? 1
                                              : static_cast<std::size_t>(width);
    return shown;
}

class CTextWriter final : public IReportWriter
{
public:
    CTextWriter(COutput& output, const STextStyle& style) : m_output(output), m_style(style) {}

    void Add(const Findings::SFileFindings& file) override
    {
        if (file.findings.empty())
            return;
        const std::string name = Printable(file.file);
        for (const SFinding& finding : file.findings) {
            AddRecord(name, finding);
            if (m_style.snippets) {
                AddSnippet(finding);
                AddRelated(name, finding);
            }
        }
        // People see the findings of a file as soon as they are there.
        if (m_output.Stream())
            std::fflush(m_output.Stream());
    }

    void End(const STotals& totals) override
    {
        if (!m_style.summary)
            return;
        const std::string files = Counted(totals.checked, "file");
        if (totals.checked == 0)
            m_output.Write("No files were checked.\n");
        else if (totals.errors + totals.warnings == 0)
            m_output.Write("No errors in " + files + ".\n");
        else
            m_output.Write(Counted(totals.errors, "error") + " and " + Counted(totals.warnings, "warning") +
                           " in " + std::to_string(totals.filesWithFindings) + " of " + files + ".\n");
    }

private:
    const char* Tint(const SFinding& finding) const
    {
        return !m_style.colored ? "" : finding.IsError() ? "\x1B[1;31m" : "\x1B[1;35m";
    }
    const char* Style(const char* code) const { return m_style.colored ? code : ""; }

    void AddRecord(const std::string& file, const SFinding& finding)
    {
        const auto& start = finding.error.pos.start;
        m_output.Write(Style(Bold) + file + ':' + std::to_string(start.y + 1) + ':' +
                       std::to_string(start.x + 1) + ": " + Style(Plain) + Tint(finding) +
                       SeverityName(finding) + ':' + Style(Plain) + ' ' + Printable(finding.message) + " [" +
                       std::to_string(finding.error.code) + "]\n");
    }

    void AddSnippet(const SFinding& finding)
    {
        const auto& [start, end] = finding.error.pos;
        const std::string number = std::to_string(start.y + 1);
        std::string line = finding.line.from ? "..." : "";
        std::string carets(line.size(), ' ');
        std::int64_t column = finding.line.from;
        std::size_t marks = 0;
        for (const wchar_t c : finding.line.text) {
            std::size_t width = 0;
            line += Shown(c, width);
            const bool marked = column >= start.x && (start.y < end.y || column < end.x);
            if (marked)
                marks += width;
            else if (marks == 0)
                carets.append(width, ' ');
            ++column;
        }
        if (finding.line.cut)
            line += "...";
        const std::string margin(number.size() + 1, ' ');
        m_output.Write(' ' + number + " | " + line + "\n" + margin + " | " + carets + Tint(finding) +
                       std::string(std::max<std::size_t>(1, marks), '^') + Style(Plain) + "\n");
    }

    /// A second place that explains the first.
    void AddRelated(const std::string& file, const SFinding& finding)
    {
        for (const Findings::SRelated& place : finding.related)
            m_output.Write(Style(Bold) + file + ':' + std::to_string(place.pos.start.y + 1) + ':' +
                           std::to_string(place.pos.start.x + 1) + ": " + Style(Plain) +
                           "note: " + Printable(place.message) + '\n');
    }

    COutput& m_output;
    STextStyle m_style;
};

} // namespace

std::unique_ptr<IReportWriter> MakeTextWriter(COutput& output, const STextStyle& style)
{
    return std::make_unique<CTextWriter>(output, style);
}

} // namespace Kesh::CommandLine
