#pragma once

#include <QList>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

class QTreeWidgetItem;

namespace Kesh::CodeAnalyzer {

class CCAErrorsBarItem;
struct SBarFile;

/// The rows of an errors bar by their files, whatever the case of the letters, and whether they are in its
/// tree or not: most files that are checked have no rows, and need not look at any. GUI thread.
class CErrorsBarRows
{
public:
    using TRows = std::unordered_set<QTreeWidgetItem*>;
    using TItems = std::vector<QTreeWidgetItem*>;
    struct SFile
    {
        TRows rows;
        std::vector<std::shared_ptr<SBarFile>> names; ///< its spellings
    };

    std::size_t GetCount() const { return m_count; }
    /// By their names with the case folded.
    const std::map<std::wstring, SFile>& GetFiles() const { return m_files; }
    /// Null: the file has none.
    const TRows* Find(const std::wstring& fileKey) const;

    /// What new rows of a file share.
    std::shared_ptr<SBarFile> MakeName(const std::wstring& file);
    /// Of one file.
    void Add(const std::wstring& fileKey, const QList<QTreeWidgetItem*>& rows);
    /// Forgets the rows of a file, and gives them away.
    TItems Take(const std::wstring& file);
    void Forget(CCAErrorsBarItem& row);
    /// Ends all rows.
    void Clear();
    /// Has files compare by a number instead of their names.
    void RankFiles();

private:
    std::map<std::wstring, SFile> m_files;
    std::size_t m_count = 0;
};

} // namespace Kesh::CodeAnalyzer
