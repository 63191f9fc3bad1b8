#pragma once

#include "Configuration/Configuration.h"
#include "Findings/Finding.h"
#include "Findings/NearestName.h"
#include "Findings/TextLines.h"
#include "Kesh/CodeAnalyzer/IErrorDetails.h"

#include <functional>
#include <utility>

namespace Kesh::Findings {

/// A comment that ignores nothing: a warning of the host's own.
constexpr std::int32_t UnusedIgnore = 9001;

/// A checked file as Describe() needs it.
struct SCheckedFile
{
    std::wstring shown; ///< the path as the user knows it
    std::wstring path;  ///< absolute
    std::wstring factory;
    /// Its text as it was checked; asked for only when there is something to describe.
    std::function<std::wstring()> text;
    /// False when its bytes are known to hold no comment that ignores anything.
    bool mayIgnore = true;
};

/// The name in question without the "<" that a tag's span begins with.
std::wstring NameOf(const SFinding& finding);
/// The name of the tag that the attribute at `position` stands on; empty when there is none.
std::wstring TagAround(const CTextLines& lines, std::wstring_view text,
                       const SyntaxParser::CIterator& position);

/// Makes findings of error records: adds what a report says about them, and leaves out what the project or a
/// comment does not want to hear. One thread, which may be any.
class CDescriber
{
public:
    /// What it asks; nothing is owned.
    struct SSources
    {
        /// The fixed text of a record's code.
        std::function<std::wstring(const CodeAnalyzer::SCAError&)> messageOf;
        const SyntaxParser::ICompletionData& names;
        CodeAnalyzer::IErrorDetails* details = nullptr; ///< null: the plug-in has none to give
        const Configuration::SConfiguration* configuration = nullptr;
        /// Only which records are left: what a report says about them is not looked for.
        bool brief = false;
    };
    explicit CDescriber(SSources sources) : m_sources(std::move(sources)), m_nearest(m_sources.names) {}

    /// Sorted by position, then code.
    SFileFindings Describe(const SCheckedFile& file, std::vector<CodeAnalyzer::SCAError> errors);

private:
    void Silence(std::vector<CodeAnalyzer::SCAError>& errors, const SCheckedFile& file,
                 std::wstring_view text, const CTextLines& lines, SFileFindings& described) const;
    bool ApplyLevel(CodeAnalyzer::SCAError& error, const SCheckedFile& file) const;
    void AddNames(SFinding& finding, std::wstring_view text, const CTextLines& lines);
    void AddDetails(SFileFindings& described, const SCheckedFile& file, const std::wstring& text) const;

    SSources m_sources;
    CNearestName m_nearest;
};

} // namespace Kesh::Findings
