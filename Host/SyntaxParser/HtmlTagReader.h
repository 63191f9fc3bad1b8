#pragma once

#include "SyntaxParser/HtmlCursor.h"

#include <string>
#include <unordered_set>

namespace Kesh::SyntaxParser {

/// Reads tags, by the states of the standard.
class CHtmlTagReader
{
public:
    explicit CHtmlTagReader(CHtmlCursor& cursor) : m_cursor(cursor) {}

    /// The cursor stands at the tag's "<", which a name follows. The token is valid until the next call.
    const SHtmlToken& Read();

private:
    void ReadName();
    bool ReadAttribute();
    void ReadAttributeName(SHtmlAttribute& attribute);
    void ReadValue(SHtmlAttribute& attribute);
    void ReadQuoted(SHtmlAttribute& attribute);
    void ReadBare(SHtmlAttribute& attribute);
    void CheckAfterQuoted();
    void ReadSolidus();
    void CheckName(const SHtmlAttribute& attribute);
    bool IsEqualToEarlier(SMarkupSpan name);
    void CompareFrom(std::size_t attribute);
    void Finish();

    CHtmlCursor& m_cursor;
    SHtmlToken m_token;
    std::size_t m_comparable = 0; ///< the first attribute since the last island between attributes
    std::unordered_set<std::wstring> m_names; ///< since then; only of a tag with many
};

} // namespace Kesh::SyntaxParser
