#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"

#include <optional>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What can be said of an error beyond its record.
struct SErrorDetails
{
    SCAError error;
    /// What was found or is missing, in the words of the source ("')'"); appended to the message by hosts
    /// that want to. Empty: nothing.
    std::wstring subject;
    /// A second place, such as where an unclosed bracket was opened, and the message key that explains it.
    std::optional<SyntaxParser::SScheme> related;
    std::string relatedKey;
    /// Text whose insertion at `insertAt` may mend the error; empty: none is known.
    std::wstring insertion;
    SyntaxParser::CIterator insertAt;
    /// Whether removing what the span holds may mend it.
    bool removable = false;
};

/// Finds the details of errors again, from the text in which they were found. Nothing is kept with the
/// records, so the details of restored errors are as good as those of fresh ones.
class IErrorDetails
{
public:
    /// The details of those of `errors`, all of one file, about which there is more to say, in the order of
    /// `errors`. `text` is the file's text as it was checked, lines joined by "\n"; `factoryName` as
    /// ISPDocument::GetFactoryName() gives it. Costs a pass over the text. Any thread.
    virtual std::vector<SErrorDetails> GetDetails(const std::wstring& path, const std::wstring& factoryName,
                                                  const std::wstring& text,
                                                  const std::vector<SCAError>& errors) = 0;

protected:
    ~IErrorDetails() = default;
};

} // namespace Kesh::CodeAnalyzer
