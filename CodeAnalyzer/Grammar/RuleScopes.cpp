#include "Grammar/RuleScopes.h"

namespace Kesh::CodeAnalyzer {

void CRuleScopes::Begin(std::int32_t phpVersion)
{
    version = phpVersion;
    m_trusted = true;
    m_reports.clear();
    functions.clear();
    functions.emplace_back();
    functions.back().inBody = true;
    classes.clear();
    declaredClasses.clear();
    imports.Begin();
    pending.Clear();
    modifiers = {};
}

void CRuleScopes::ReportPending()
{
    for (const auto& [token, use] : pending.m_uses) {
        if (use.feature)
            ReportFeature(*use.feature, token);
        else
            Report(use.code, token);
    }
    pending.Clear();
}

void CRuleScopes::Forget(std::uint32_t from)
{
    std::erase_if(m_reports,
                  [from](const SRuleReport& report) { return !report.feature && report.token >= from; });
}

void CRuleScopes::ReportFeature(EFeature feature, std::uint32_t token)
{
    if (!m_trusted)
        return;
    const bool isNew = version < FeatureOf(feature).since;
    m_reports.push_back({isNew ? Code::TooNew : Code::TooOld, token, {}, EFix::None, feature, {}, {}});
}

} // namespace Kesh::CodeAnalyzer
