#pragma once

#include "Configuration/Configuration.h"
#include "Findings/FixProof.h"
#include "Findings/QuickFix.h"
#include "LanguageServer/ClientCapabilities.h"
#include "LanguageServer/Connection.h"
#include "LanguageServer/Diagnostic.h"
#include "LanguageServer/Diagnostics.h"
#include "LanguageServer/ProjectSettings.h"

#include <optional>
#include <string>

namespace Kesh::Host {
class CApplication;
}

namespace Kesh::LanguageServer {

/// Offers quick fixes, and carries out those that change the project's settings. GUI thread only.
class CCodeActions
{
public:
    CCodeActions(Host::CApplication& application, CDocuments& documents, CDiagnostics& diagnostics,
                 const CProjectSettings& settings)
        : m_application(application), m_documents(documents), m_diagnostics(diagnostics), m_settings(settings)
    {
    }

    /// The kind of the action that does all that may be done without a look.
    static constexpr const char* FixAll = "source.fixAll.code-analyzer";
    static constexpr const char* AddOwnName = "code-analyzer.addOwnName";
    static constexpr const char* IgnoreCode = "code-analyzer.ignoreCode";

    void SetClient(const SClientCapabilities& client) { m_client = client; }

    /// The answer to textDocument/codeAction.
    json Offer(const json& params);
    /// The answer to codeAction/resolve: the action with its edit, if it has one.
    json Resolve(json action);
    /// The document that a command is about; empty when it does not say.
    static std::wstring DocumentOf(const json& params);
    /// Carries out workspace/executeCommand: changes `settings`, a file that need not exist. Throws
    /// SResponseError.
    static void Execute(const json& params, const std::wstring& settings);

private:
    json QuickFixes(const SOpenDocument& open, const SDescribed& known, const json& range);
    json OfferAll(const SOpenDocument& open, const SDescribed& known);
    /// Null when nothing can be fixed.
    json FixOfAll(const SOpenDocument& open);
    json EditOf(const std::vector<Findings::SEdit>& edits, const SOpenDocument& open,
                CRangeMaker& ranges) const;
    json ActionOf(const Findings::SQuickFix& fix, const SOpenDocument& open, const json& diagnostic,
                  CRangeMaker& ranges) const;
    /// Null when there is none.
    Findings::CTextCheck* Check();

    Host::CApplication& m_application;
    CDocuments& m_documents;
    CDiagnostics& m_diagnostics;
    const CProjectSettings& m_settings;
    SClientCapabilities m_client;
    std::optional<Findings::CTextCheck> m_check; ///< made when it is first needed
};

} // namespace Kesh::LanguageServer
