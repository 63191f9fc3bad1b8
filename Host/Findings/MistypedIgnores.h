#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

/// A comment whose first word was meant to silence findings, and does not: "code-analyser-ignore",
/// "Code-Analyzer-Ignore", "code-analyzer-ignore-next-line".
struct SMistypedIgnore
{
    std::size_t begin = 0; ///< offsets in the text, end exclusive
    std::size_t end = 0;
    std::wstring_view meant; ///< what silences
};

/// A cheap look whether a text, or the bytes of one, may have any, or a right one.
bool MayMeanToIgnore(std::string_view bytes);
bool MayMeanToIgnore(std::wstring_view text);

/// In order. Any thread.
std::vector<SMistypedIgnore> FindMistypedIgnores(std::wstring_view text);

} // namespace Kesh::Findings
