#pragma once

#include "Kesh/CodeAnalyzer/Catalog.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What stands in a place of a message.
struct SArgument
{
    enum EKind : std::uint8_t {
        Source, ///< a piece of the text, shown in quotes
        Plain,  ///< shown as it is
        Key     ///< shown in the user's language, which is looked up by it
    };

    std::string name; ///< of the place
    std::wstring value;
    EKind kind = Source;

    friend bool operator==(const SArgument&, const SArgument&) = default;
};

/// Another place that has to do with a diagnostic.
struct SRelatedPlace
{
    SyntaxParser::SScheme pos;
    std::string message; ///< what is there; the key of its translation

    friend bool operator==(const SRelatedPlace&, const SRelatedPlace&) = default;
};

/// A place in a file and what is to stand there instead.
struct STextEdit
{
    SyntaxParser::SScheme span;
    std::wstring text;

    friend bool operator==(const STextEdit&, const STextEdit&) = default;
};

/// Edits that belong together and may fix what a diagnostic is about.
struct SFix
{
    EFix kind = EFix::None;
    std::vector<STextEdit> edits;

    friend bool operator==(const SFix&, const SFix&) = default;
};

/// What is known of an error beyond its record, by whoever has found it.
struct SDetails
{
    std::vector<SArgument> arguments;
    std::vector<SRelatedPlace> related;
    std::vector<SFix> fixes; ///< the likeliest first

    bool IsEmpty() const { return arguments.empty() && related.empty() && fixes.empty(); }
    /// The value for a place of the message; null: there is none.
    const std::wstring* Find(std::string_view name) const
    {
        for (const SArgument& argument : arguments)
            if (argument.name == name)
                return &argument.value;
        return nullptr;
    }

    friend bool operator==(const SDetails&, const SDetails&) = default;
};

/// The details of as many records, in their order; null: nothing is known of any. Never changes.
using TDetails = std::shared_ptr<const std::vector<SDetails>>;

/// An error record and what is known of it.
struct SDiagnostic
{
    SCAError error;
    SDetails details;
};

} // namespace Kesh::CodeAnalyzer
