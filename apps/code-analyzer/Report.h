#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Options.h"

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace Kesh::CommandLine {

/// An error record with what a reader needs.
struct SRecord
{
    std::wstring file; ///< as the user knows it
    CodeAnalyzer::SCAError error;
    std::wstring message;
};

/// Prints error records: text as they come, JSON at the end.
class CReport
{
public:
    /// Neither is owned.
    CReport(const SOptions& options, std::FILE* out);

    /// The records of one file, in any order.
    void Add(std::vector<SRecord> records);
    /// Prints what is still due. `checked` is the number of files.
    void Finish(std::size_t checked);

    bool HasErrors() const { return m_errors != 0; }

private:
    void PrintText(const SRecord& record);
    void PrintJson();
    void PrintSummary(std::size_t checked);

    const SOptions& m_options;
    std::FILE* m_out;
    bool m_colored;
    std::vector<SRecord> m_records; ///< those for the JSON array
    std::size_t m_errors = 0;
    std::size_t m_warnings = 0;
    std::size_t m_filesWithRecords = 0;
};

/// UTF-8 for people: control characters become escapes such as \n and \x1B, bytes that are not UTF-8 \xFF.
std::string Printable(std::wstring_view text);
/// Whether colours are wanted on this stream.
bool WantsColor(EColor color, std::FILE* stream);

} // namespace Kesh::CommandLine
