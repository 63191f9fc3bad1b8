#include "Markup/TemplateHalves.h"

#include "Kesh/CodeAnalyzer/Catalog.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t MostCandidates = 1000;

std::wstring Tag(const STemplateHalf& half)
{
    return (half.opens ? L"<" : L"</") + half.name + L">";
}

/// What two paths have in common: files near each other are read together.
std::size_t CommonFolders(const std::wstring& a, const std::wstring& b)
{
    std::size_t folders = 0;
    for (std::size_t i = 0; i < a.size() && i < b.size() && a[i] == b[i]; ++i)
        folders += a[i] == L'/' ? 1 : 0;
    return folders;
}

} // namespace

void CTemplateHalves::Add(const std::wstring& file, SFileHalves halves)
{
    std::set<std::pair<std::wstring, bool>> names;
    for (const STemplateHalf& half : halves.halves)
        names.insert({half.name, half.opens});
    for (const std::wstring& name : halves.mayOpen)
        names.insert({name, true});
    for (const std::wstring& name : halves.mayClose)
        names.insert({name, false});
    for (const auto& [name, opens] : names)
        ++(opens ? m_names[name].opens : m_names[name].closes);
    m_files[file] = std::move(halves);
}

bool CTemplateHalves::HasPartner(const SFileHalves& own, const STemplateHalf& half) const
{
    const SCount& count = m_names.at(half.name);
    // The file's own half of the other kind comes in the wrong order: it has its partner elsewhere.
    const bool inOwn = (half.opens ? own.mayClose : own.mayOpen).contains(half.name) ||
                       std::ranges::any_of(own.halves, [&](const STemplateHalf& other) {
                           return other.opens != half.opens && other.name == half.name;
                       });
    return (half.opens ? count.closes : count.opens) > (inOwn ? 1u : 0u);
}

std::map<std::wstring, std::vector<SDiagnostic>> CTemplateHalves::FindLonely() const
{
    if (m_missed)
        return {};
    std::vector<SLonely> all;
    for (const auto& [file, own] : m_files) {
        std::set<std::pair<std::wstring_view, bool>> told;
        for (const STemplateHalf& half : own.halves)
            if (!HasPartner(own, half) && told.insert({half.name, half.opens}).second)
                all.push_back({&file, &half});
    }
    std::map<std::wstring, std::vector<SDiagnostic>> found;
    for (const SLonely& lonely : all) {
        const std::int32_t code = lonely.half->opens ? Code::NeverClosedElement : Code::NeverOpenedElement;
        SDiagnostic diagnostic;
        diagnostic.error = {lonely.half->span, code, FindKind(code)->severity};
        diagnostic.details.arguments.push_back({"name", Tag(*lonely.half)});
        // What nothing fits either, in the file that is nearest.
        const SLonely* best = nullptr;
        std::size_t bestFolders = 0;
        for (const SLonely& other : std::span(all).first(std::min(all.size(), MostCandidates))) {
            const std::size_t folders = CommonFolders(*lonely.file, *other.file);
            if (other.file == lonely.file || other.half->opens == lonely.half->opens ||
                (best && folders <= bestFolders))
                continue;
            best = &other;
            bestFolders = folders;
        }
        if (best) {
            diagnostic.details.arguments.push_back({"nearest", Tag(*best->half)});
            diagnostic.details.arguments.push_back(
                {"file", best->file->substr(best->file->find_last_of(L"/\\") + 1)});
        }
        found[*lonely.file].push_back(std::move(diagnostic));
    }
    return found;
}

} // namespace Kesh::CodeAnalyzer
