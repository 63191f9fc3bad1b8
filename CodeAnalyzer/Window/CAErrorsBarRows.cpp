#include "Window/CAErrorsBarRows.h"

#include "Window/CAErrorsBarItem.h"

#include <QtAlgorithms>
#include <algorithm>
#include <utility>

namespace Kesh::CodeAnalyzer {

const CErrorsBarRows::TRows* CErrorsBarRows::Find(const std::wstring& fileKey) const
{
    const auto found = m_files.find(fileKey);
    return found == m_files.end() ? nullptr : &found->second.rows;
}

std::shared_ptr<SBarFile> CErrorsBarRows::MakeName(const std::wstring& file)
{
    auto& names = m_files[CCAErrorsBarItem::MakeFileKey(file)].names;
    const auto name =
        std::find_if(names.begin(), names.end(),
                     [&](const std::shared_ptr<SBarFile>& spelling) { return spelling->name == file; });
    return name != names.end() ? *name : names.emplace_back(std::make_shared<SBarFile>(file));
}

void CErrorsBarRows::Add(const std::wstring& fileKey, const QList<QTreeWidgetItem*>& rows)
{
    TRows& known = m_files[fileKey].rows;
    known.reserve(known.size() + static_cast<std::size_t>(rows.size()));
    known.insert(rows.begin(), rows.end());
    m_count += static_cast<std::size_t>(rows.size());
}

CErrorsBarRows::TItems CErrorsBarRows::Take(const std::wstring& file)
{
    const auto found = m_files.find(CCAErrorsBarItem::MakeFileKey(file));
    if (found == m_files.end())
        return {};
    const TItems rows(found->second.rows.begin(), found->second.rows.end());
    m_files.erase(found);
    m_count -= rows.size();
    return rows;
}

void CErrorsBarRows::Forget(CCAErrorsBarItem& row)
{
    const auto found = m_files.find(row.GetFileKey());
    if (found == m_files.end())
        return;
    m_count -= found->second.rows.erase(&row);
    if (found->second.rows.empty())
        m_files.erase(found);
}

void CErrorsBarRows::Clear()
{
    m_count = 0;
    for (auto& [key, file] : std::exchange(m_files, {})) // the rows ask to be forgotten
        qDeleteAll(file.rows);
}

void CErrorsBarRows::RankFiles()
{
    int rank = 0;
    for (const auto& [key, file] : m_files) {
        ++rank;
        for (const std::shared_ptr<SBarFile>& name : file.names)
            name->rank = rank;
    }
}

} // namespace Kesh::CodeAnalyzer
