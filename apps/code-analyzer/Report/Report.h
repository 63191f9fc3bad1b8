#pragma once

#include "Options.h"
#include "Report/Writer.h"

#include <deque>
#include <vector>

namespace Kesh::CommandLine {

/// Writes the findings of a check in all formats that the user asked for, as they come. Every operation
/// throws Base::CWorkError when an output cannot be written.
class CReport
{
public:
    /// Opens the outputs.
    explicit CReport(const SOptions& options);

    /// The findings of the next file, also when it has none. For reports that do not change from run to run
    /// the files come sorted.
    void Add(const Findings::SFileFindings& file);
    /// Prints what is still due. `checked` is the number of files.
    void Finish(std::size_t checked);

    bool HasErrors() const { return m_totals.errors != 0; }

private:
    STotals m_totals;
    std::deque<COutput> m_outputs;
    std::vector<std::unique_ptr<IReportWriter>> m_writers;
};

} // namespace Kesh::CommandLine
