#pragma once

#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <cstdint>
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

/// Another place that a finding speaks of, and what is there.
struct SRelated
{
    SyntaxParser::SScheme pos;
    std::wstring message;
};

/// Whether findings of the code come of the host's own look at comments, and not of the plug-in.
constexpr bool IsHostsOwn(std::int32_t code)
{
    return code == CodeAnalyzer::Code::UnusedIgnore || code == CodeAnalyzer::Code::MistypedIgnore;
}

/// An error record with all that a report says about it: it needs neither the plug-in nor the text any more.
struct SFinding
{
    CodeAnalyzer::SCAError error;
    std::wstring title;   ///< what can be said of its code alone
    std::wstring message; ///< all there is to say, in a sentence
    CodeAnalyzer::SDetails details;
    std::vector<SRelated> related;
    SLineExcerpt line;
    std::wstring text; ///< what the span holds, at most MaxTextLength characters of it

    bool IsError() const { return error.type == CodeAnalyzer::SeverityError; }
};

constexpr std::size_t MaxTextLength = 4096;

/// Findings that a file's baseline knows and that are not there any more.
struct SGone
{
    std::string file; ///< as the baseline names it
    std::int32_t code = 0;
    std::string line;
    std::size_t count = 0;
};

/// The findings of one file, by position.
struct SFileFindings
{
    std::wstring file; ///< as the user knows it
    std::wstring path; ///< absolute
    std::vector<SFinding> findings;
    std::vector<SGone> gone;
};

} // namespace Kesh::Findings
