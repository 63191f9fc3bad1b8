#pragma once

#include "Findings/Finding.h"
#include "Findings/NearestName.h"
#include "Findings/TextLines.h"
#include "Kesh/CodeAnalyzer/Plugin.h"

#include <functional>

namespace Kesh::Findings {

/// A checked file as Describe() needs it.
struct SCheckedFile
{
    std::wstring shown; ///< the path as the user knows it
    /// Its text as it was checked; asked for only when there is something to describe.
    std::function<std::wstring()> text;
};

/// The name in question without the "<" that a tag's span begins with.
std::wstring NameOf(const SFinding& finding);
/// The name of the tag that the attribute at `position` stands on; empty when there is none.
std::wstring TagAround(const CTextLines& lines, std::wstring_view text,
                       const SyntaxParser::CIterator& position);

/// Adds to error records what a report says about them. One thread.
class CDescriber
{
public:
    /// Neither is owned.
    CDescriber(CodeAnalyzer::IErrorsSource& errors, const SyntaxParser::ICompletionData& names)
        : m_errors(errors), m_nearest(names)
    {
    }

    /// Sorted by position, then code.
    SFileFindings Describe(const SCheckedFile& file, std::vector<CodeAnalyzer::SCAError> errors);

private:
    CodeAnalyzer::IErrorsSource& m_errors;
    CNearestName m_nearest;
};

} // namespace Kesh::Findings
