#pragma once

#include "Findings/TextLines.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

/// Where the comment begins whose first word stands at `at`; npos when no comment does.
std::size_t CommentStart(std::wstring_view text, std::size_t at);

/// The comments of a text that silence findings: "code-analyzer-ignore CODE..." for its own line, or for the
/// next one when it stands alone, and "-start" and "-end" for a stretch. Without a code they silence all.
class CIgnores
{
public:
    /// A cheap look whether there may be any.
    static bool MayHave(std::wstring_view text);

    CIgnores(std::wstring_view text, const CTextLines& lines);

    /// Takes away the records that comments silence; those comments then count as needed. Once.
    void Silence(std::vector<CodeAnalyzer::SDiagnostic>& diagnostics);

    /// A comment that silences nothing, or codes of it that do not.
    struct SUnused
    {
        SyntaxParser::SScheme span;
        std::vector<std::int32_t> codes; ///< empty: it names none
        bool whole;                      ///< whether nothing of the comment is needed
    };
    /// After Silence().
    std::vector<SUnused> Unused() const;

private:
    struct SIgnore
    {
        SyntaxParser::SScheme span;
        std::int64_t first = 0; ///< lines
        std::int64_t last = 0;
        std::vector<std::int32_t> codes;
        std::vector<bool> needed; ///< one for each code; a single one when there is none
    };
    void Read(std::wstring_view text, const CTextLines& lines, std::size_t at);
    bool IsAlone(std::wstring_view text, std::size_t start, std::size_t lineStart);

    std::vector<SIgnore> m_ignores;
    std::vector<std::size_t> m_open; ///< stretches without an end so far
    std::int64_t m_lastLine;
    std::int64_t m_streakEnd = 0; ///< the line behind the last comments that stood above one line together
    std::size_t m_lineStart = std::wstring_view::npos; ///< of the line of which `m_indentEnd` is known
    std::size_t m_indentEnd = 0;
};

} // namespace Kesh::Findings
