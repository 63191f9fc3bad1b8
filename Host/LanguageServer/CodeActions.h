#pragma once

#include "Configuration/Configuration.h"
#include "LanguageServer/Connection.h"
#include "LanguageServer/Diagnostics.h"

namespace Kesh::LanguageServer {

/// Offers quick fixes, and carries out those that change the project's settings. GUI thread only.
class CCodeActions
{
public:
    CCodeActions(CDocuments& documents, CDiagnostics& diagnostics)
        : m_documents(documents), m_diagnostics(diagnostics)
    {
    }

    static constexpr const char* AddOwnName = "code-analyzer.addOwnName";
    static constexpr const char* IgnoreCode = "code-analyzer.ignoreCode";

    /// The answer to textDocument/codeAction.
    json Offer(const json& params);
    /// The document that a command is about; empty when it does not say.
    static std::wstring DocumentOf(const json& params);
    /// Carries out workspace/executeCommand: changes `settings`, a file that need not exist. Throws
    /// SResponseError.
    static void Execute(const json& params, const std::wstring& settings);

private:
    CDocuments& m_documents;
    CDiagnostics& m_diagnostics;
};

} // namespace Kesh::LanguageServer
