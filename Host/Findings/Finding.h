#pragma once

#include "Kesh/CodeAnalyzer/IErrorDetails.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Kesh::Findings {

/// The line on which a finding starts. Of a long line (minified code) only the part around the finding.
struct SLineExcerpt
{
    std::wstring text;
    std::int64_t from = 0; ///< the column of its first character
    bool cut = false;      ///< whether the line goes on behind it
};

/// An error record with all that a report says about it: it needs neither the plug-in nor the text any more.
struct SFinding
{
    CodeAnalyzer::SCAError error;
    std::wstring message; ///< the fixed text of its code
    /// What follows the message for a human reader (" 'strng', did you mean 'strong'?"); may be empty.
    std::wstring detail;
    SLineExcerpt line;
    std::wstring text;    ///< what the span holds, at most MaxTextLength characters of it
    std::wstring nearest; ///< the listed name that may be meant; empty: none
    /// What the plug-in knows beyond the record, if it does.
    std::optional<CodeAnalyzer::SErrorDetails> details;

    bool IsError() const { return error.type == CodeAnalyzer::SeverityError; }
};

constexpr std::size_t MaxTextLength = 4096;

/// The findings of one file, by position.
struct SFileFindings
{
    std::wstring file; ///< as the user knows it
    std::wstring path; ///< absolute
    std::vector<SFinding> findings;
};

} // namespace Kesh::Findings
