#pragma once

#include "Findings/Finding.h"
#include "Findings/TextEdits.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::Findings {

class CPhpPlaces;

/// Something that a user can do about a finding at the press of a button.
struct SQuickFix
{
    enum class EKind {
        Fix,        ///< changes the file: `edits`
        IgnoreHere, ///< the same, by a comment
        AddOwnName, ///< adds `name` to the project's own names: to `list` of them
        IgnoreCode, ///< turns the finding's code off in the project
    };

    EKind kind = EKind::Fix;
    /// What it does, as a sentence with a place for {what}; the key of its translation.
    const char* sentence = "";
    std::wstring what;
    std::vector<SEdit> edits;
    std::wstring name;
    std::string list; ///< "tags", "attributes" or "properties"
    std::int32_t code = 0;
    bool isGuess = false; ///< of what was meant, which no check can prove
    bool mends = false;   ///< the best one that was proved: the error goes, and no other comes up

    /// The sentence in the user's language.
    std::wstring Title() const;
};

/// The text of the file that a finding is in, as it was checked.
struct SFileText
{
    std::wstring_view text;
    const CTextLines& lines;
    std::wstring factory; ///< tells the language
    /// Found when first needed, then used for every finding of the file.
    mutable std::shared_ptr<const CPhpPlaces> places = {};
};

/// The edits that may fix a finding, the likeliest first: those of kind Fix. Any thread.
std::vector<SQuickFix> EditsFor(const SFinding& finding, const SFileText& file);
/// What can be done about a finding, the likeliest first. Any thread, one at a time for a text.
std::vector<SQuickFix> FixesFor(const SFinding& finding, const SFileText& file);

} // namespace Kesh::Findings
