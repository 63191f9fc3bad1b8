#pragma once

#include "Kesh/SyntaxParser/Position.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Kesh::Workbench {

/// The edits of a text since a check has taken it, so that the places that the check finds can be told in the
/// text as it is now: they move as the marks in an editor do. What is typed in one go is one edit. GUI
/// thread.
class CEditLog
{
public:
    /// UTF-8 was put in at a place.
    void NoteInsertion(const SyntaxParser::CIterator& at, std::string_view text);
    /// UTF-8 was taken out there.
    void NoteDeletion(const SyntaxParser::CIterator& at, std::string_view text);
    /// The text is another one.
    void Clear();

    /// A check takes the text as it is now.
    void BeginCheck();
    /// What is known of errors now is what that check has found, or, when it is not complete, what was known
    /// before.
    void EndCheck(bool isComplete);

    bool IsEmpty() const { return m_edits.empty(); }
    /// Where a place of the checked text is now.
    SyntaxParser::SScheme Moved(const SyntaxParser::SScheme& span) const;

private:
    /// What stood from `start` to `oldEnd` is now what stands from `start` to `newEnd`.
    struct SEdit
    {
        SyntaxParser::CIterator start;
        SyntaxParser::CIterator oldEnd;
        SyntaxParser::CIterator newEnd;
    };
    void Add(const SEdit& edit);
    static SEdit Joined(const SEdit& first, const SEdit& second);
    static SyntaxParser::CIterator MovedBy(const SEdit& edit, const SyntaxParser::CIterator& place,
                                           bool staysAtInsertion);

    std::vector<SEdit> m_edits;
    std::size_t m_ofCheck = 0; ///< those before it were made before the check that runs began
};

} // namespace Kesh::Workbench
