#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <map>
#include <string>
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
        if (!details && m_files.count(file) == 0)
            return;
        std::vector<SDetails>& stored = m_files[file];
        stored.resize(before);
        if (details)
            stored.insert(stored.end(), details->begin(), details->end());
        stored.resize(before + count);
    }
    void Replace(const std::wstring& file, const TDetails& details)
    {
        if (details)
            m_files[file] = *details;
        else
            m_files.erase(file);
    }
    void Remove(const std::wstring& file) { m_files.erase(file); }
    void Clear() { m_files.clear(); }
    /// Null: nothing is known.
    const std::vector<SDetails>* Find(const std::wstring& file) const
    {
        const auto found = m_files.find(file);
        return found == m_files.end() ? nullptr : &found->second;
    }

private:
    std::map<std::wstring, std::vector<SDetails>> m_files;
};

} // namespace Kesh::CodeAnalyzer
