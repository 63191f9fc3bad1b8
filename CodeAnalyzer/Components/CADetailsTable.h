#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What is known of the errors in the store, in their order. A file of whose errors nothing is known has no
/// entry. Not locked.
class CDetailsTable
{
public:
    /// Details of `count` errors follow those of the `before` ones that are there.
    void Append(const std::wstring& file, std::size_t before, std::size_t count, const TDetails& details)
    {
        TDetails known = Find(file);
        if (!details && !known)
            return;
        if (before == 0)
            return Replace(file, details);
        auto all = known ? std::make_shared<std::vector<SDetails>>(*known)
                         : std::make_shared<std::vector<SDetails>>();
        all->resize(before);
        if (details)
            all->insert(all->end(), details->begin(), details->end());
        all->resize(before + count);
        m_files[file] = std::move(all);
    }
    void Replace(const std::wstring& file, TDetails details)
    {
        if (details)
            m_files[file] = std::move(details);
        else
            m_files.erase(file);
    }
    void Remove(const std::wstring& file) { m_files.erase(file); }
    void Clear() { m_files.clear(); }
    /// Null: nothing is known.
    TDetails Find(const std::wstring& file) const
    {
        const auto found = m_files.find(file);
        return found == m_files.end() ? nullptr : found->second;
    }

private:
    std::map<std::wstring, TDetails> m_files;
};

} // namespace Kesh::CodeAnalyzer
