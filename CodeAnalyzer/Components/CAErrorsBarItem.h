#pragma once

#include "Kesh/SyntaxParser/Position.h"

#include <QTreeWidgetItem>
#include <cstdint>
#include <string>

namespace Kesh::CodeAnalyzer {

class CCAErrorsBar;

/// One error as a row of the errors bar. GUI thread.
class CCAErrorsBarItem : public QTreeWidgetItem
{
public:
    /// `bar` is asked for the sort order whenever rows are compared; a row without one has no order.
    CCAErrorsBarItem(const std::wstring& file, const SyntaxParser::SScheme& pos, std::int32_t type,
                     std::int32_t code, const std::wstring& description, CCAErrorsBar* bar);
    /// Has the bar forget the row.
    ~CCAErrorsBarItem() override;

    /// The ascending order of the column by which the bar sorts now.
    bool operator<(const QTreeWidgetItem& other) const override;

    const std::wstring& GetFile() const { return m_file; }
    const SyntaxParser::SScheme& GetPos() const { return m_pos; }
    /// The file with its case folded: two files are the same without regard to case when their keys are
    /// equal.
    const std::wstring& GetFileKey() const { return m_fileKey; }
    static std::wstring MakeFileKey(const std::wstring& file);

private:
    std::int32_t m_type;
    std::int32_t m_code;
    std::wstring m_file;
    std::wstring m_fileKey;
    SyntaxParser::SScheme m_pos;
    CCAErrorsBar* m_bar;
};

} // namespace Kesh::CodeAnalyzer
