#include "Grammar/PhpRules.h"

namespace Kesh::CodeAnalyzer {

void CPhpRules::Begin(std::int32_t version)
{
    m_scopes.Begin(version);
    types.Begin();
    flow.Begin();
    files.Begin();
    attributes.Begin();
    lists.Begin();
}

void CPhpRules::Finish()
{
    while (!m_scopes.functions.empty()) {
        if (m_scopes.IsTrusted())
            flow.ResolveJumps(m_scopes.functions.back());
        m_scopes.functions.pop_back();
    }
    m_scopes.ReportPending();
    inheritance.Check();
    m_scopes.functions.emplace_back();
}

} // namespace Kesh::CodeAnalyzer
