#pragma once

#include "Findings/TextLines.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

using SEdit = CodeAnalyzer::STextEdit;

/// A text with edits made in it, and where its places have gone. The edits may come in any order.
class CEditedText
{
public:
    /// No edits, or such as overlap or begin at one place: IsSound() is false, and the text is the old one.
    CEditedText(std::wstring_view text, const CTextLines& lines, const std::vector<SEdit>& edits);

    bool IsSound() const { return m_sound; }
    const std::wstring& Text() const { return m_text; }
    /// Where a place of the old text is in the new one. What is inserted just there comes before it; of what
    /// is replaced every place is where the new text begins.
    std::size_t NewOffset(std::size_t old) const;
    /// Whether a place of the new text lies in a line that an edit has touched.
    bool IsTouched(std::size_t place) const;

private:
    struct SChange
    {
        std::size_t from, to; ///< of the old text
        std::size_t at, size; ///< of the new one
    };

    bool m_sound = false;
    std::wstring m_text;
    std::vector<SChange> m_changes; ///< by place
};

/// The one edit that makes `after` of `before`, as short as can be.
SEdit EditBetween(std::wstring_view before, std::wstring_view after, const CTextLines& linesBefore);

} // namespace Kesh::Findings
