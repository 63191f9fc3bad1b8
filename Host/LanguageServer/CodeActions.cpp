#include "LanguageServer/CodeActions.h"

#include "Application/Application.h"
#include "Application/PluginLoader.h"
#include "Base/Exception.h"
#include "Configuration/Edit.h"
#include "Files/FilePath.h"
#include "Files/Printable.h"
#include "Findings/MendText.h"
#include "Findings/PhpPlaces.h"
#include "Findings/QuickFix.h"
#include "Kesh/LangSupport/LangSupport.h"
#include "LanguageServer/Protocol.h"
#include "LanguageServer/Uri.h"

#include <algorithm>
#include <utility>

namespace Kesh::LanguageServer {

namespace {

using Findings::SQuickFix;

/// Nobody picks from a longer list, such as an editor may ask for when all of a file is marked.
constexpr std::size_t MaxFindings = 100;

constexpr const char* QuickFix = "quickfix";

/// Whether the client asks for actions of a kind; without a word of kinds, for quick fixes.
bool Wants(const json& params, const std::string& kind)
{
    const json context = params.value("context", json::object());
    const auto only = context.find("only");
    if (only == context.end() || !only->is_array())
        return kind == QuickFix;
    // A kind stands for those below it, and the empty one for all.
    return std::ranges::any_of(*only, [&](const json& wanted) {
        const std::string name = wanted.is_string() ? wanted.get<std::string>() : "-";
        return name.empty() || kind == name || kind.starts_with(name + '.');
    });
}

std::string NewText(const std::wstring& text, const SOpenDocument& open)
{
    return Host::PathToBytes(open.crlf ? Editor::JoinLines(text, L"\r\n") : text);
}

} // namespace

json CCodeActions::Offer(const json& params)
{
    json actions = json::array();
    const std::wstring path = DocumentPath(params);
    const SOpenDocument* open = m_documents.Find(path);
    const SDescribed* known = m_diagnostics.Known(path);
    if (!open || !known || known->order.revision != open->revision)
        return actions;
    if (Wants(params, QuickFix))
        actions = QuickFixes(*open, *known, params.at("range"));
    if (Wants(params, FixAll))
        if (json action = OfferAll(*open, *known); !action.is_null())
            actions.push_back(std::move(action));
    return actions;
}

// Trying all fixes takes its time, which a client that can ask again need not wait for.
json CCodeActions::OfferAll(const SOpenDocument& open, const SDescribed& known)
{
    json action = {
        {"title", Host::PathToBytes(LangSupport::CLangSupport::LoadStr("Fix all that can be fixed"))},
        {"kind", FixAll}};
    if (m_client.resolvesEdits) {
        if (known.findings.findings.empty())
            return json();
        action["data"] = open.uri;
        return action;
    }
    json edit = FixOfAll(open);
    if (edit.is_null())
        return json();
    action["edit"] = std::move(edit);
    return action;
}

json CCodeActions::Resolve(json action)
{
    const json uri = action.value("data", json());
    const SOpenDocument* open =
        uri.is_string() ? m_documents.Find(PathOfUri(uri.get_ref<const std::string&>())) : nullptr;
    if (action.value("kind", "") != FixAll || !open)
        return action;
    if (json edit = FixOfAll(*open); !edit.is_null())
        action["edit"] = std::move(edit);
    return action;
}

Findings::CTextCheck* CCodeActions::Check()
{
    try {
        if (m_check)
            m_check->SetRules(m_settings.Rules());
        else
            m_check.emplace(Host::CPlugin::Windowless, m_settings.Rules(), Findings::SWantedChecks{},
                            m_application.GetLangSource());
        return &*m_check;
    } catch (const Base::CWorkError&) {
        return nullptr;
    }
}

json CCodeActions::EditOf(const std::vector<Findings::SEdit>& edits, const SOpenDocument& open,
                          CRangeMaker& ranges) const
{
    json changes = json::array();
    for (const Findings::SEdit& edit : edits)
        changes.push_back({{"range", ranges.Range(edit.span)}, {"newText", NewText(edit.text, open)}});
    if (!m_client.versionedEdits)
        return {{"changes", {{open.uri, std::move(changes)}}}};
    // An editor that has gone on meanwhile refuses edits of an older version.
    return {
        {"documentChanges", json::array({{{"textDocument", {{"uri", open.uri}, {"version", open.version}}},
                                          {"edits", std::move(changes)}}})}};
}

json CCodeActions::ActionOf(const SQuickFix& fix, const SOpenDocument& open, const json& diagnostic,
                            CRangeMaker& ranges) const
{
    json action = {{"title", Host::PathToBytes(fix.Title())},
                   {"kind", QuickFix},
                   {"diagnostics", json::array({diagnostic})}};
    if (fix.mends)
        action["isPreferred"] = true;
    if (!fix.edits.empty()) {
        action["edit"] = EditOf(fix.edits, open, ranges);
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

json CCodeActions::QuickFixes(const SOpenDocument& open, const SDescribed& known, const json& range)
{
    json actions = json::array();
    const std::wstring& text = open.Text().Text();
    CRangeMaker ranges(text, m_documents.Encoding());
    const Findings::SFileText file{text, ranges.Lines(), open.factory, {}};
    Findings::CLazyProof proof([this] { return Check(); }, file, open.document->GetPath());
    std::size_t touched = 0;
    for (std::size_t i = 0; i < known.findings.findings.size() && touched < MaxFindings; ++i) {
        const json& diagnostic = known.diagnostics[i];
        if (!Touch(diagnostic.at("range"), range))
            continue;
        ++touched;
        for (const SQuickFix& fix : proof.Proved(known.findings.findings[i]))
            actions.push_back(ActionOf(fix, open, diagnostic, ranges));
    }
    return actions;
}

json CCodeActions::FixOfAll(const SOpenDocument& open)
{
    Findings::CTextCheck* check = Check();
    if (!check)
        return json();
    const std::wstring& path = open.document->GetPath();
    const std::wstring& text = open.Text().Text();
    const Findings::SMended mended =
        Findings::MendText(*check, {path, path, {}, true, false}, open.factory, text, *m_settings.For(path),
                           Findings::SProofBudget{});
    if (mended.fixed == 0)
        return json();
    CRangeMaker ranges(text, m_documents.Encoding());
    return EditOf({Findings::EditBetween(text, mended.text, ranges.Lines())}, open, ranges);
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
