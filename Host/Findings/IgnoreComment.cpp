#include "Findings/IgnoreComment.h"

#include "Findings/PhpPlaces.h"

namespace Kesh::Findings {

namespace {

using SyntaxParser::CIterator;

/// The codes below are those of PHP.
constexpr std::int32_t FirstOfMarkup = 2000;

EPlace PlaceAtStartOf(std::int64_t line, const SFileText& file)
{
    if (file.factory != L"PHPSPDocFactory")
        return EPlace::Markup;
    if (!file.places)
        file.places = std::make_shared<const CPhpPlaces>(file.text, file.factory, file.lines.Count());
    return file.places->AtStartOf(line);
}

/// Whether the markup in front of a place leaves a tag open.
bool IsInsideTag(std::wstring_view before)
{
    const std::size_t open = before.rfind(L'<');
    return open != std::wstring_view::npos && before.find(L'>', open) == std::wstring_view::npos;
}

bool IsInsideStyle(std::wstring_view before)
{
    const std::size_t open = before.rfind(L"<style");
    return open != std::wstring_view::npos && before.find(L"</style", open) == std::wstring_view::npos;
}

} // namespace

std::optional<SEdit> IgnoreComment(const SFinding& finding, const SFileText& file)
{
    const CIterator at = finding.error.pos.start;
    const CIterator lineStart{0, at.y};
    const std::wstring words = L"code-analyzer-ignore " + std::to_wstring(finding.error.code);
    const std::wstring_view line = file.lines.Line(at.y);
    const std::wstring indent(line.substr(0, std::min(line.find_first_not_of(L" \t"), line.size())));
    const auto above = [&](const std::wstring& comment) {
        return SEdit{{lineStart, lineStart}, indent + comment + L"\n"};
    };
    const EPlace place = PlaceAtStartOf(at.y, file);
    if (place == EPlace::Code)
        return above(L"// " + words);
    if (finding.error.code < FirstOfMarkup) {
        const auto spot = file.places ? file.places->ForComment(at) : std::nullopt;
        if (!spot)
            return {};
        const std::wstring comment = L"/* " + words + L" */";
        return SEdit{{*spot, *spot}, *spot == at ? comment + L' ' : L' ' + comment};
    }
    if (place != EPlace::Markup && place != EPlace::OpeningTag)
        return {};
    const std::wstring_view before = file.text.substr(0, file.lines.Offset(lineStart));
    if (file.factory == L"CSSSPDocFactory" || IsInsideStyle(before))
        return above(L"/* " + words + L" */");
    if (IsInsideTag(before) || place == EPlace::OpeningTag)
        return {};
    return above(L"<!-- " + words + L" -->");
}

} // namespace Kesh::Findings
