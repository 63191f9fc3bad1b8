#include "Grammar/PhpRules.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

void CPhpRules::Begin(std::int32_t version)
{
    m_version = version;
    m_trusted = true;
    m_reports.clear();
    m_functions.clear();
    m_functions.emplace_back();
    m_functions.back().inBody = true;
    m_classes.clear();
    m_matchDefaults.clear();
    m_pending.clear();
    m_modifiers = {};
    m_typeNames.Clear();
    m_namespaces = ENamespaces::None;
    m_inNamespaceBraces = m_anyStatement = m_anyCode = false;
    m_useItems.clear();
    m_imports.clear();
    m_declared.clear();
    m_strictTypes = false;
}

void CPhpRules::Finish()
{
    while (!m_functions.empty()) {
        if (m_trusted)
            ResolveJumps(m_functions.back());
        m_functions.pop_back();
    }
    for (const auto& [token, code] : m_pending)
        Report(code, token);
    m_pending.clear();
    m_functions.emplace_back();
}

void CPhpRules::Report(std::int32_t code, std::uint32_t token, std::uint32_t related)
{
    if (m_trusted)
        m_reports.push_back({code, token, related});
}

bool CPhpRules::IsWord(std::uint32_t token, std::wstring_view lower) const
{
    const std::wstring_view text = Text(token);
    return text.size() == lower.size() &&
           std::equal(text.begin(), text.end(), lower.begin(), [](wchar_t a, wchar_t b) {
               return a == b || ((a | 0x20) == b && a >= L'A' && a <= L'Z');
           });
}

bool CPhpRules::IsSuperglobal(std::uint32_t token) const
{
    static constexpr std::array<std::wstring_view, 9> names{L"$GLOBALS",  L"$_SERVER",  L"$_GET",
                                                            L"$_POST",    L"$_FILES",   L"$_COOKIE",
                                                            L"$_SESSION", L"$_REQUEST", L"$_ENV"};
    const std::wstring_view text = Text(token);
    return text.size() > 1 && (text[1] == L'_' || text[1] == L'G') &&
           std::find(names.begin(), names.end(), text) != names.end();
}

// A value that has to be known before the program runs.
void CPhpRules::CheckConstant(const SGrammarValue& value, bool allowNew)
{
    if ((value.flags & NotConstant) || (!allowNew && (value.flags & HasNew)))
        Report(Code::NotConstantValue, value.bad);
}

} // namespace Kesh::CodeAnalyzer
