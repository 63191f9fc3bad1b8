#pragma once

#include "Kesh/CodeAnalyzer/IErrorRow.h"
#include "Kesh/SyntaxParser/Position.h"

#include <QString>
#include <QTreeWidgetItem>
#include <cstdint>
#include <memory>
#include <string>

namespace Kesh::CodeAnalyzer {

class CCAErrorsBarItem;

/// What a row asks of the list that it belongs to.
class IErrorsBarList
{
public:
    /// Column and direction of sorting.
    enum ESortOrder {
        TypeAscending,
        TypeDescending,
        FileAscending,
        FileDescending,
        DescriptionAscending,
        DescriptionDescending
    };

    /// An ESortOrder.
    virtual int GetSortOrder() const = 0;
    /// For a row that is about to die, whoever takes it away.
    virtual void ForgetRow(CCAErrorsBarItem* item) = 0;

protected:
    ~IErrorsBarList() = default;
};

/// The file of many rows.
struct SBarFile
{
    explicit SBarFile(const std::wstring& path);

    std::wstring name;
    std::wstring key; ///< with its case folded
    QString shown;
    int rank = 0; ///< its place among the keys of all files; 0: not known
};

/// One error as a row of the errors bar. GUI thread.
class CCAErrorsBarItem : public QTreeWidgetItem, public IErrorRow
{
public:
    /// `bar` is asked for the sort order whenever rows are compared; a row without one has no order.
    CCAErrorsBarItem(const std::wstring& file, const SyntaxParser::SScheme& pos, std::int32_t type,
                     std::int32_t code, const std::wstring& description, IErrorsBarList* bar);
    /// The same for one of many rows, which share their texts.
    CCAErrorsBarItem(std::shared_ptr<const SBarFile> file, const SCAError& error, const QString& severity,
                     const QString& description, IErrorsBarList* bar);
    /// Has the bar forget the row.
    ~CCAErrorsBarItem() override;

    /// The ascending order of the column by which the bar sorts now.
    bool operator<(const QTreeWidgetItem& other) const override;
    /// The same, but no two rows are equal: by GetPart(), then by file, then IsBeforeInFile().
    bool IsBefore(const CCAErrorsBarItem& other) const;
    bool IsBeforeInFile(const CCAErrorsBarItem& other) const;
    /// What comes before the file in the bar's order.
    std::int32_t GetPart() const;

    const std::wstring& GetFile() const override { return m_file->name; }
    SCAError GetError() const override { return {m_pos, m_code, m_type}; }
    QString GetMessage() const override { return text(2); }
    const SyntaxParser::SScheme& GetPos() const { return m_pos; }
    /// The file with its case folded: two files are the same without regard to case when their keys are
    /// equal.
    const std::wstring& GetFileKey() const { return m_file->key; }
    static std::wstring MakeFileKey(const std::wstring& file);
    /// The text of an error's type.
    static QString SeverityText(std::int32_t type);

    /// Whether it is the host's own, not one of the records.
    bool IsOfHost() const { return m_ofHost; }
    void SetOfHost() { m_ofHost = true; }

    /// What the bar's filler notes of the row.
    struct SListing
    {
        bool isPicked = true;       ///< wanted in the list
        bool isListed = false;      ///< there, or about to be
        std::uint64_t question = 0; ///< the last one that was answered
    } listing;

private:
    /// Negative: this file comes first.
    int CompareFile(const CCAErrorsBarItem& other) const;

    std::int32_t m_type;
    std::int32_t m_code;
    bool m_ofHost = false;
    std::shared_ptr<const SBarFile> m_file;
    SyntaxParser::SScheme m_pos;
    IErrorsBarList* m_bar;
};

} // namespace Kesh::CodeAnalyzer
