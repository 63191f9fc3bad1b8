#pragma once

#include "Findings/Finding.h"

#include <string>
#include <unordered_map>

namespace Kesh::CommandLine {

/// Names the findings of one file so that they are known again after lines were added above them.
class CFingerprints
{
public:
    /// `file` as the report names it.
    explicit CFingerprints(std::string file) : m_file(std::move(file)) {}

    /// 32 hexadecimal digits, different for each finding of the file.
    std::string Next(const Findings::SFinding& finding);

private:
    std::string m_file;
    std::unordered_map<std::string, int> m_alike; ///< how many findings of a kind there were
};

} // namespace Kesh::CommandLine
