#pragma once

#include "Findings/Finding.h"
#include "Findings/TextLines.h"
#include "LanguageServer/PositionEncoding.h"

#include <nlohmann/json.hpp>
#include <string>

namespace Kesh::LanguageServer {

/// Writes positions of a text as a client counts them.
class CRangeMaker
{
public:
    /// The text outlives it.
    CRangeMaker(std::wstring_view text, EPositionEncoding encoding) : m_lines(text), m_encoding(encoding) {}

    nlohmann::json Position(const SyntaxParser::CIterator& position);
    nlohmann::json Range(const SyntaxParser::SScheme& span);
    const Findings::CTextLines& Lines() const { return m_lines; }

private:
    Findings::CTextLines m_lines;
    EPositionEncoding m_encoding;
    /// The last position of which the units are known: findings come in order, often many on one long line.
    SyntaxParser::CIterator m_known;
    std::int64_t m_knownUnits = 0;
};

/// Writes findings of one file as diagnostics.
class CDiagnosticMaker
{
public:
    CDiagnosticMaker(std::wstring_view text, std::string uri, EPositionEncoding encoding,
                     std::string documentation)
        : m_ranges(text, encoding), m_uri(std::move(uri)), m_documentation(std::move(documentation))
    {
    }
    nlohmann::json Make(const Findings::SFinding& finding);

private:
    CRangeMaker m_ranges;
    std::string m_uri;
    std::string m_documentation;
};

} // namespace Kesh::LanguageServer
