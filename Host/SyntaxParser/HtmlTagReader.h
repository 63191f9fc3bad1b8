#pragma once

#include "SyntaxParser/HtmlCursor.h"

#include <string>
#include <unordered_set>

namespace Kesh::SyntaxParser {

/// Reads tags, by the states of the standard. Where a quote or a ">" is lost, these take what follows for
/// attributes; a reader that recovers ends the value, or the tag, there.
class CHtmlTagReader
{
public:
    CHtmlTagReader(CHtmlCursor& cursor, bool recovers) : m_cursor(cursor), m_recovers(recovers) {}

    /// The cursor stands at the tag's "<", which a name follows. The token is valid until the next call.
    const SHtmlToken& Read();

private:
    void ReadName();
    bool ReadAttribute();
    void ReadAttributeName(SHtmlAttribute& attribute);
    void ReadValue(SHtmlAttribute& attribute);
    void ReadQuoted(SHtmlAttribute& attribute);
    void SkipInValue();
    void ReadBare(SHtmlAttribute& attribute);
    void CheckAfterQuoted();
    bool IsNextTag() const;
    bool RecoverValue(SHtmlAttribute& attribute, std::size_t firstProblem);
    void RecoverTag();
    bool MayIslandClose() const;
    void ReadSolidus();
    void CheckName(const SHtmlAttribute& attribute);
    bool IsEqualToEarlier(SMarkupSpan name);
    void CompareFrom(std::size_t attribute);
    void ReportEnd();
    void Finish();

    CHtmlCursor& m_cursor;
    bool m_recovers;
    std::size_t m_firstProblem = 0;                    ///< of the tag
    std::size_t m_lostQuote = std::wstring_view::npos; ///< where the last attribute begins that lacks one
    SHtmlToken m_token;
    std::size_t m_comparable = 0; ///< the first attribute since the last island between attributes
    std::unordered_set<std::wstring> m_names; ///< since then; only of a tag with many
};

} // namespace Kesh::SyntaxParser
