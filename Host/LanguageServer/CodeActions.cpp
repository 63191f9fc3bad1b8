#include "LanguageServer/CodeActions.h"

#include "Base/Exception.h"
#include "Configuration/Edit.h"
#include "Files/FilePath.h"
#include "Files/Printable.h"
#include "Findings/PhpPlaces.h"
#include "Findings/QuickFix.h"
#include "LanguageServer/Diagnostic.h"
#include "LanguageServer/Uri.h"

#include <utility>

namespace Kesh::LanguageServer {

namespace {

using Findings::SQuickFix;

/// Nobody picks from a longer list, such as an editor may ask for when all of a file is marked.
constexpr std::size_t MaxFindings = 100;

using TPoint = std::pair<std::int64_t, std::int64_t>;

TPoint PointOf(const json& position)
{
    return {position.at("line"), position.at("character")};
}

bool Touch(const json& a, const json& b)
{
    return PointOf(a.at("start")) <= PointOf(b.at("end")) && PointOf(b.at("start")) <= PointOf(a.at("end"));
}

bool WantsQuickFixes(const json& params)
{
    const json context = params.value("context", json::object());
    const auto only = context.find("only");
    if (only == context.end() || !only->is_array())
        return true;
    for (const json& kind : *only)
        if (kind == "quickfix" || kind == "")
            return true;
    return false;
}

std::string NewText(const std::wstring& text, const SOpenDocument& open)
{
    return Host::PathToBytes(open.crlf ? Editor::JoinLines(text, L"\r\n") : text);
}

json ActionOf(const SQuickFix& fix, const SOpenDocument& open, const json& diagnostic, CRangeMaker& ranges)
{
    json action = {{"title", Host::PathToBytes(fix.Title())},
                   {"kind", "quickfix"},
                   {"diagnostics", json::array({diagnostic})}};
    if (fix.kind == SQuickFix::EKind::Fix)
        action["isPreferred"] = true;
    if (!fix.edits.empty()) {
        json edits = json::array();
        for (const Findings::SEdit& edit : fix.edits)
            edits.push_back({{"range", ranges.Range(edit.span)}, {"newText", NewText(edit.text, open)}});
        // An editor that has gone on meanwhile refuses edits of an older version.
        action["edit"]["documentChanges"] =
            json::array({{{"textDocument", {{"uri", open.uri}, {"version", open.version}}},
                          {"edits", std::move(edits)}}});
    } else if (fix.kind == SQuickFix::EKind::AddOwnName) {
        action["command"] = {{"title", action["title"]},
                             {"command", CCodeActions::AddOwnName},
                             {"arguments", json::array({open.uri, fix.list, Host::PathToBytes(fix.name)})}};
    } else {
        action["command"] = {{"title", action["title"]},
                             {"command", CCodeActions::IgnoreCode},
                             {"arguments", json::array({open.uri, fix.code})}};
    }
    return action;
}

} // namespace

json CCodeActions::Offer(const json& params)
{
    json actions = json::array();
    const std::wstring path = PathOfUri(params.at("textDocument").at("uri").get_ref<const std::string&>());
    const SOpenDocument* open = m_documents.Find(path);
    const SDescribed* known = m_diagnostics.Known(path);
    if (!open || !known || known->order.revision != open->revision || !WantsQuickFixes(params))
        return actions;
    const json& range = params.at("range");
    const std::wstring& text = open->Text().Text();
    CRangeMaker ranges(text, m_documents.Encoding());
    const Findings::SFileText file{text, ranges.Lines(), open->factory, {}};
    std::size_t touched = 0;
    for (std::size_t i = 0; i < known->findings.findings.size() && touched < MaxFindings; ++i) {
        const json& diagnostic = known->diagnostics[i];
        if (!Touch(diagnostic.at("range"), range))
            continue;
        ++touched;
        for (const SQuickFix& fix : Findings::FixesFor(known->findings.findings[i], file))
            actions.push_back(ActionOf(fix, *open, diagnostic, ranges));
    }
    return actions;
}

std::wstring CCodeActions::DocumentOf(const json& params)
{
    const json arguments = params.value("arguments", json::array());
    return arguments.empty() ? std::wstring() : PathOfUri(arguments.at(0).get<std::string>());
}

void CCodeActions::Execute(const json& params, const std::wstring& settings)
{
    const std::string command = params.at("command");
    const json arguments = params.value("arguments", json::array());
    try {
        Configuration::ChangeSettings(settings, [&](const std::string& text) {
            if (command == AddOwnName)
                return Configuration::WithOwnName(text, arguments.at(1),
                                                  Host::PathFromBytes(arguments.at(2).get<std::string>()));
            if (command == IgnoreCode)
                return Configuration::WithCodeOff(text, arguments.at(1));
            throw SResponseError{InvalidParams, "unknown command " + command};
        });
    } catch (const Base::CWorkError& fault) {
        throw SResponseError{InternalError,
                             Host::Printable(Host::FileName(settings) + L": " + fault.GetMessage())};
    }
}

} // namespace Kesh::LanguageServer
