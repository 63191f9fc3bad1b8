#pragma once

#include "Components/CAErrorsBarFiller.h"
#include "Kesh/CodeAnalyzer/IErrorRow.h"
#include "Kesh/CodeAnalyzer/Plugin.h"
#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/SDK/IApplication.h"

#include <QTreeWidget>
#include <boost/signals2/trackable.hpp>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CCAComponent;
class CCAErrorsBarItem;
class CCAErrorsManager;
struct SBarFile;

/// The list of all errors, one row each. Workers reach it only by posting a CCAErrorsEvent. GUI thread.
class CCAErrorsBar : public QTreeWidget, public IErrorRows, public boost::signals2::trackable
{
    Q_OBJECT
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

    /// Nothing is owned. `component` may be null: nobody is told then that a project check has finished.
    CCAErrorsBar(SDK::IApplication* application, CCAComponent* component, CCAErrorsManager* manager);
    ~CCAErrorsBar() override;

    bool event(QEvent* e) override;

    void AddErrorsMessageHandler(const std::wstring& file, const std::vector<SCAError>& errors,
                                 TDetails details = nullptr);
    void RemoveErrorsMessageHandler(const std::wstring& file);
    /// Shows the bar when it lists any error.
    void FinProjectErrorsHandler();

    /// Adds the rows of a file, and selects the row that was selected before its old ones were removed.
    void OnAddErrors(const std::wstring& file, const std::vector<SCAError>& errors);
    void OnRemoveErrors(const std::wstring& file);

    /// Of many files at once. As one by one, but with the time that it takes for one.
    void RemoveErrorsOf(const std::vector<std::wstring>& files);

    /// Between the two the rows of many files come, which are put into the list at its end. As one file after
    /// the other, but with the time that it takes for one.
    void BeginMany();
    void EndMany();

    /// Shows what the host has found in a file beside its errors, each with its message, in place of what it
    /// has shown there before. The rows go with those of the file.
    void ShowHostErrors(const std::wstring& file, const std::vector<SHostError>& errors);
    /// The text of an error's type.
    static QString SeverityText(std::int32_t type);

    void SortItems();
    /// An ESortOrder.
    int GetSortOrder() const { return m_sortOrder; }

    /// Reads the stored widths; the bar never writes them.
    void LoadColumnsWidth();
    void SetColumnsWidth();

    /// From now on many rows come and go some at a time.
    void SetGradual();
    void SetPick(TPick pick) override;
    void PickAgain() override;
    void PickAgain(const std::wstring& file) override;
    /// Very many rows are about to come gradually, or all have come.
    void ExpectMany(bool many);
    bool IsArranging() const override { return m_filler && m_filler->IsArranging(); }

    /// For a row that is about to die, whoever takes it away.
    void ForgetRow(CCAErrorsBarItem* item);

public slots:
    /// Sorts by a column, or the other way round when it is sorted by it already.
    void OnHeaderItemClicked(int nId);

protected:
    /// Opens the file of the selected row and puts the caret at the error. Raises CCriticalError when the
    /// document has become too short for it.
    void mouseDoubleClickEvent(QMouseEvent* e) override;

private:
    friend class CCAErrorsBarFiller;

    using TRows = std::unordered_set<QTreeWidgetItem*>;
    /// What belongs to one file, whatever the case of its letters.
    struct SFileRows
    {
        TRows rows;
        std::vector<std::shared_ptr<SBarFile>> names; ///< its spellings
    };

    /// Whether somebody else has put rows in or taken some out, so that the order of the rows tells nothing.
    /// A host that has them come and go some at a time leaves them alone.
    bool HasForeignRows() const
    {
        return !m_filler && static_cast<std::size_t>(topLevelItemCount() + m_later.size()) != m_rowCount;
    }
    bool IsDescending() const;
    void RemoveRowsOneByOne(const std::wstring& fileKey);
    /// In the current order.
    bool IsBefore(const QTreeWidgetItem* a, const QTreeWidgetItem* b) const;
    void InsertSorted(QList<QTreeWidgetItem*> items);
    /// Has the rows come that wait for EndMany().
    void PutLaterIn();
    /// Puts new rows of a file, made by `make`, where they belong.
    template <class TMake> void AddRows(const std::wstring& file, std::size_t count, TMake make);
    /// Takes them away by their places, which are ascending.
    void RemoveRows(const std::vector<int>& rows);
    /// Has files compare by a number instead of their names.
    void RankFiles();
    void RememberSelection(const std::wstring& file);
    /// Ends rows that are not in the tree.
    void Bury(const std::vector<QTreeWidgetItem*>& rows);
    /// Ends some of the rows that have been taken away, and so on when there is nothing else to do.
    void BurySlice();
    /// The first row from `first` on that does not satisfy `isEarly`, which all rows do that are before it.
    template <class TPredicate> int FindFirstRow(int first, TPredicate isEarly) const;
    /// The indices of a file's rows, ascending.
    std::vector<int> FindRows(const TRows& items) const;
    std::vector<int> FindRowsOneByOne(const TRows& items) const;
    std::vector<int> FindRowsInOrder(const TRows& items) const;

    CCAErrorsManager* m_errorsManager;
    SDK::IApplication* m_application;
    CCAComponent* m_component;
    std::vector<int> m_columnsWidth;
    std::wstring m_rememberedFile;
    int m_rememberedRow = -1;
    int m_sortOrder = TypeAscending;
    /// By the file with its case folded: most files that are checked have no rows, and need not look at any.
    std::map<std::wstring, SFileRows> m_rowsOfFile;
    std::size_t m_rowCount = 0;                   ///< of m_rowsOfFile
    QList<QTreeWidgetItem*> m_buried;             ///< taken away, but not ended yet
    bool m_many = false;                          ///< rows wait for EndMany()
    QList<QTreeWidgetItem*> m_later;              ///< they
    std::unique_ptr<CCAErrorsBarFiller> m_filler; ///< null: all rows are in the tree, at once
};

} // namespace Kesh::CodeAnalyzer
