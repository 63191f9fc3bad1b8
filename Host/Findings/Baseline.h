#pragma once

#include "Findings/Finding.h"

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::Findings {

/// Findings that were there before and are to be silent: known by file, code and the text of their line, so
/// that they stay known when lines above them come and go.
class CBaseline
{
public:
    /// Paths in it are below `folder`, that of its file.
    explicit CBaseline(std::wstring folder) : m_folder(std::move(folder)) {}

    /// Reads a baseline file. Throws Base::CWorkError with a text for the user that does not name the path.
    static CBaseline Read(const std::wstring& file);
    /// Takes the findings of a file into the baseline.
    void Take(const SFileFindings& file);
    /// Takes what an earlier baseline of the same folder says of files that are still there and of which
    /// nothing was taken. The number of findings.
    std::size_t TakeOthers(const CBaseline& before);
    /// Replaces the file as a whole. Throws like Host::WriteFileBytes().
    void Write(const std::wstring& file) const;

    /// Leaves only the new findings of a file, and notes what was known and is not there any more. Any
    /// thread.
    void Filter(SFileFindings& file) const;
    std::size_t Size() const;

private:
    using TKey = std::pair<std::int32_t, std::string>; ///< code and line
    using TCounts = std::map<TKey, std::size_t>;

    std::string NameOf(const SFileFindings& file) const;
    static TKey KeyOf(const SFinding& finding);

    std::wstring m_folder;
    std::map<std::string, TCounts> m_files;
    std::set<std::string> m_taken; ///< files, also those without findings
};

} // namespace Kesh::Findings
