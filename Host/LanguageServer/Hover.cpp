#include "LanguageServer/Hover.h"

#include "Findings/ErrorPage.h"
#include "LanguageServer/Protocol.h"

#include <set>

namespace Kesh::LanguageServer {

namespace {

constexpr std::size_t MostPages = 3;

} // namespace

json HoverAt(const SDescribed& known, const json& position)
{
    std::string text;
    json range;
    std::set<std::int32_t> told;
    const json place = {{"start", position}, {"end", position}};
    for (std::size_t i = 0; i < known.findings.findings.size() && told.size() < MostPages; ++i) {
        const json& at = known.diagnostics[i].at("range");
        const std::int32_t code = known.findings.findings[i].error.code;
        if (!Touch(at, place) || !told.insert(code).second)
            continue;
        const QString page = Findings::ErrorPage(code);
        if (page.isEmpty())
            continue;
        text += (text.empty() ? "" : "\n\n---\n\n") + page.toStdString();
        if (range.is_null())
            range = at;
    }
    if (text.empty())
        return json();
    return {{"contents", {{"kind", "markdown"}, {"value", std::move(text)}}}, {"range", std::move(range)}};
}

} // namespace Kesh::LanguageServer
