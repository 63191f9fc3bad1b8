#pragma once

#include "ErrorWatch.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QTreeWidget;
class QTreeWidgetItem;

namespace Kesh::Workbench {

class CErrorRowDelegate;

/// The validator's list of errors with what the window adds: a filter and counts above it, keys, a menu, and
/// a selection that follows the caret. The list stays the validator's. GUI thread only.
class CErrorPanel final : public QWidget
{
    Q_OBJECT

public:
    /// Takes the list in; whoever owns it may end it at any time. The watch outlives the panel.
    CErrorPanel(QTreeWidget& list, CErrorWatch& watch);
    /// Gives the list back.
    ~CErrorPanel() override;

    /// An error as a row of the list shows it.
    struct SRow
    {
        std::wstring file;
        CodeAnalyzer::SCAError error;
        QString message;
    };
    /// Null item: the selected row. Empty when the row's error is gone.
    std::optional<SRow> GetRow(const QTreeWidgetItem* item = nullptr) const;
    /// "file:line: message [code]", the path as the list shows it.
    QString Describe(const SRow& row) const;

    /// The project's folder; empty for none.
    void SetFolder(const QString& folder);
    /// Which files are open, asked whenever the filter needs to know.
    void SetOpenFiles(std::function<bool(const std::wstring&)> isOpen) { m_isOpen = std::move(isOpen); }
    /// The file and the place that the user works at; an empty file for none. The selection follows soon.
    void SetCaret(const std::wstring& file, const SyntaxParser::CIterator& pos);

    /// Whether every row has been looked at since the filter last changed.
    bool IsFilterDone() const { return m_nextRow < 0 && !m_filterStart.isActive(); }

signals:
    void openRequested(const std::wstring& file, const SyntaxParser::CIterator& pos);
    /// Whoever knows more to do with a row may add it.
    void menuRequested(QMenu* menu, const std::wstring& file, const CodeAnalyzer::SCAError& error);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum EScope { Everywhere, ThisFile, OpenFiles, InProject };

    bool OnListKey(class QKeyEvent& event);
    void TypeAhead(const QString& text);
    void Copy(bool pathOnly);
    void OpenSelected();
    void ShowMenu(const QPoint& point);

    void OnWatchChanged();
    void OnRowsInserted(int first, int last);
    /// Once what runs has come to its end.
    void FilterSoon();
    void StartFilter();
    void RestartFilter();
    void FilterSlice();
    /// Whether the user has set one.
    bool HasFilter() const;
    /// Whether some row may be hidden, for whatever reason.
    bool IsFiltering() const;
    bool Passes(const QTreeWidgetItem& item) const;
    void FollowCaret();
    void ShowCounts();

    QPointer<QTreeWidget> m_list;
    CErrorWatch& m_watch;
    CErrorRowDelegate* m_delegate;
    QLineEdit* m_text;
    QComboBox* m_severity;
    QComboBox* m_scope;
    QLabel* m_counts;
    std::function<bool(const std::wstring&)> m_isOpen;
    QString m_folder;
    SErrorPlace m_caret;
    QTimer m_caretTimer;
    QTimer m_filterStart; ///< soon after a change
    QTimer m_filterStep;
    bool m_hides = false; ///< the project does not want some errors
    int m_passed = 0;     ///< of the rows looked at
    int m_shown = 0;      ///< of all rows, when they last had been looked at
    int m_nextRow = -1;   ///< the next row to be looked at; -1: none
    QString m_typed;
    QTimer m_typedTimer;
};

} // namespace Kesh::Workbench
