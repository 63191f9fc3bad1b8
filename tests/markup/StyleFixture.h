#pragma once

#include "Base/CommonString.h"
#include "Diagnostics/Messages.h"
#include "markup/MarkupTestText.h"
#include "markup/StyleHandler.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What a check of a style finds; PHP in it is an island.
inline std::vector<SDiagnostic> CheckStyle(const std::wstring& text,
                                           SyntaxParser::EStyleKind kind = SyntaxParser::EStyleKind::Sheet)
{
    CStyleHandler handler(kind);
    PassStyle(text, SyntaxParser::FindIslands(text), handler);
    return std::move(handler.found);
}

/// "2503@0,0-3,0", warnings with a "?" before.
inline std::string PrintFound(const std::vector<SDiagnostic>& found)
{
    std::string text;
    for (const SDiagnostic& one : found)
        text += (text.empty() ? "" : " ") + std::string(one.error.type == SeverityError ? "" : "?") +
                std::to_string(one.error.code) + "@" + SyntaxParser::PrintSpan(one.error.pos);
    return text;
}

} // namespace Kesh::CodeAnalyzer
