#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace Kesh::CodeAnalyzer {

/// The codes of diagnostics, by name.
namespace Code {

enum ECode : std::int32_t {
#define DIAGNOSTIC(code, name, identifier, severity, fix, title, message) name = code,
#include "Kesh/CodeAnalyzer/Diagnostics.def"
#undef DIAGNOSTIC
};

} // namespace Code

/// What usually fixes a diagnostic.
enum class EFix : std::uint8_t {
    None,
    Insert, ///< something is missing
    Remove, ///< something is too much
    Rename, ///< something much like it may be meant: a guess
    Replace ///< something else belongs in its place
};

/// A kind of diagnostic. Its texts are the keys of their translations.
struct SDiagnosticKind
{
    std::int32_t code;
    const char* identifier; ///< "missing-semicolon"
    std::int32_t severity;  ///< where nobody says otherwise
    EFix fix;
    const char* title;   ///< what can be said without the text
    const char* message; ///< with places for arguments; empty: the title
};

/// All kinds, by code.
inline constexpr SDiagnosticKind Catalog[] = {
#define DIAGNOSTIC(code, name, identifier, severity, fix, title, message)                                    \
    {code, identifier, Severity##severity, EFix::fix, title, message},
#include "Kesh/CodeAnalyzer/Diagnostics.def"
#undef DIAGNOSTIC
};

/// Null for a code that is none.
constexpr const SDiagnosticKind* FindKind(std::int32_t code)
{
    const auto* kind = std::lower_bound(
        std::begin(Catalog), std::end(Catalog), code,
        [](const SDiagnosticKind& known, std::int32_t wanted) { return known.code < wanted; });
    return kind != std::end(Catalog) && kind->code == code ? kind : nullptr;
}

/// Whether the code is that of a name which no list has, and which a project may have for its own.
constexpr bool IsNameError(std::int32_t code)
{
    return code == Code::UnknownTag || code == Code::UnknownAttribute || code == Code::UnknownElement ||
           code == Code::UnknownProperty;
}

} // namespace Kesh::CodeAnalyzer
