#pragma once

#include "Components/ErrorsView.h"
#include "Kesh/CodeAnalyzer/IErrorRow.h"
#include "Kesh/CodeAnalyzer/Plugin.h"
#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/SDK/IApplication.h"
#include "Window/CAErrorsBarFiller.h"
#include "Window/CAErrorsBarItem.h"
#include "Window/CAErrorsBarRows.h"

#include <QTreeWidget>
#include <boost/signals2/trackable.hpp>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CCAComponent;
class CCAErrorsManager;

/// The list of all errors, one row each. Workers reach it only by posting a CCAErrorsEvent. GUI thread.
class CCAErrorsBar : public QTreeWidget,
                     public IErrorsView,
                     public IErrorRows,
                     public IErrorsBarList,
                     public boost::signals2::trackable
{
    Q_OBJECT
public:
    /// Nothing is owned. `component` may be null: nobody is told then that a project check has finished.
    CCAErrorsBar(SDK::IApplication* application, CCAComponent* component, CCAErrorsManager* manager);
    ~CCAErrorsBar() override;

    bool event(QEvent* e) override;
    QObject* Receiver() override { return this; }

    void AddErrorsMessageHandler(const std::wstring& file, const std::vector<SCAError>& errors,
                                 TDetails details = nullptr);
    void RemoveErrorsMessageHandler(const std::wstring& file);
    /// Shows the bar when it lists any error.
    void FinProjectErrorsHandler();

    /// Adds the rows of a file, and selects the row that was selected before its old ones were removed.
    void OnAddErrors(const std::wstring& file, const std::vector<SCAError>& errors);
    void OnRemoveErrors(const std::wstring& file);

    /// Of many files at once. As one by one, but with the time that it takes for one.
    void RemoveErrorsOf(const std::vector<std::wstring>& files) override;

    /// Between the two the rows of many files come, which are put into the list at its end. As one file after
    /// the other, but with the time that it takes for one.
    void BeginMany() override;
    void EndMany() override;

    /// Shows what the host has found in a file beside its errors, each with its message, in place of what it
    /// has shown there before. The rows go with those of the file.
    void ShowHostErrors(const std::wstring& file, const std::vector<SHostError>& errors) override;
    void SortItems();
    int GetSortOrder() const override { return m_sortOrder; }

    /// Reads the stored widths; the bar never writes them.
    void LoadColumnsWidth();
    void SetColumnsWidth();

    /// From now on many rows come and go some at a time.
    void SetGradual() override;
    void SetPick(TPick pick) override;
    void PickAgain() override;
    void PickAgain(const std::wstring& file) override;
    /// Very many rows are about to come gradually, or all have come.
    void ExpectMany(bool many) override;
    bool IsArranging() const override { return m_filler->IsArranging(); }

    void ForgetRow(CCAErrorsBarItem* item) override;

public slots:
    /// Sorts by a column, or the other way round when it is sorted by it already.
    void OnHeaderItemClicked(int nId);

protected:
    /// Opens the file of the selected row and puts the caret at the error. Raises CCriticalError when the
    /// document has become too short for it.
    void mouseDoubleClickEvent(QMouseEvent* e) override;

private:
    void RemoveRowsOneByOne(const std::wstring& fileKey);
    /// Puts new rows of a file, made by `make`, where they belong.
    template <class TMake> void AddRows(const std::wstring& file, std::size_t count, TMake make);
    void RememberSelection(const std::wstring& file);

    CCAErrorsManager* m_errorsManager;
    SDK::IApplication* m_application;
    CCAComponent* m_component;
    std::vector<int> m_columnsWidth;
    std::wstring m_rememberedFile;
    int m_rememberedRow = -1;
    int m_sortOrder = TypeAscending;
    CErrorsBarRows m_rows;
    std::unique_ptr<CCAErrorsBarFiller> m_filler; ///< null while the bar ends
};

} // namespace Kesh::CodeAnalyzer
