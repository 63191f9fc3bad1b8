#include "LanguageServer/Diagnostic.h"

#include "Files/FilePath.h"
#include "Findings/ErrorPage.h"

#include <algorithm>

namespace Kesh::LanguageServer {

using nlohmann::json;

namespace {

enum EDiagnosticSeverity : int { Error = 1, Warning = 2 };

/// Editors go to the line that a link to a file names.
std::string FragmentOf(std::int32_t code)
{
    const int line = Findings::ErrorPageLine(code);
    return line > 0 ? "#L" + std::to_string(line) : std::string();
}

} // namespace

json CRangeMaker::Position(const SyntaxParser::CIterator& position)
{
    const auto last = static_cast<std::int64_t>(m_lines.Count()) - 1;
    const std::int64_t line = std::clamp<std::int64_t>(position.y, 0, last);
    const std::wstring_view text = m_lines.Line(line);
    const std::int64_t column =
        position.y > last ? static_cast<std::int64_t>(text.size())
                          : std::clamp<std::int64_t>(position.x, 0, static_cast<std::int64_t>(text.size()));
    if (m_known.y != line || m_known.x > column) {
        m_known = {0, line};
        m_knownUnits = 0;
    }
    m_knownUnits += UnitsOf(text.substr(static_cast<std::size_t>(m_known.x)), column - m_known.x, m_encoding);
    m_known.x = column;
    return {{"line", line}, {"character", m_knownUnits}};
}

json CRangeMaker::Range(const SyntaxParser::SScheme& span)
{
    json start = Position(span.start);
    return {{"start", std::move(start)}, {"end", Position(std::max(span.start, span.end))}};
}

json CDiagnosticMaker::Make(const Findings::SFinding& finding)
{
    json diagnostic = {{"range", m_ranges.Range(finding.error.pos)},
                       {"severity", finding.IsError() ? Error : Warning},
                       {"code", finding.error.code},
                       {"source", "code-analyzer"},
                       {"message", Host::PathToBytes(finding.message)}};
    if (!m_documentation.empty())
        diagnostic["codeDescription"]["href"] = m_documentation + FragmentOf(finding.error.code);
    for (const Findings::SRelated& place : finding.related)
        diagnostic["relatedInformation"].push_back(
            {{"location", {{"uri", m_uri}, {"range", m_ranges.Range(place.pos)}}},
             {"message", Host::PathToBytes(place.message)}});
    return diagnostic;
}

} // namespace Kesh::LanguageServer
