#pragma once

#include "ErrorWatch.h"
#include "Kesh/CodeAnalyzer/IErrorRow.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <optional>
#include <set>

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
        SyntaxParser::SScheme foundAt; ///< in the text as it was checked
    };
    /// Null item: the selected row. Empty when the row's error is gone.
    std::optional<SRow> GetRow(const QTreeWidgetItem* item = nullptr) const;
    /// "file:line: message [code]", the path as the list shows it.
    QString Describe(const SRow& row) const;

    /// The project's folder; empty for none.
    void SetFolder(const QString& folder);
    /// Which files are open, by all their spellings.
    void SetOpenFiles(std::set<std::wstring> files);
    /// The file and the place that the user works at; an empty file for none. The selection follows soon.
    void SetCaret(const std::wstring& file, const SyntaxParser::CIterator& pos);

    /// The list does not hold all there is: the check of the project was stopped.
    void SetIncomplete(bool isIncomplete);
    /// A file has been edited: the rows tell where its errors are now.
    void FollowEdits();
    /// Whether the list shows what the filter lets through, and says how much that is.
    bool IsFilterDone() const { return !m_filterStart.isActive() && !m_settled.isActive(); }

signals:
    void openRequested(const std::wstring& file, const SyntaxParser::CIterator& pos);
    /// Whoever knows more to do with a row may add it.
    void menuRequested(QMenu* menu, const std::wstring& file, const CodeAnalyzer::SCAError& error);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum EScope { Everywhere, ThisFile, OpenFiles, InProject };

    void Arrange(QTreeWidget& list);
    bool OnListKey(class QKeyEvent& event);
    void TypeAhead(const QString& text);
    void Copy(bool pathOnly);
    void OpenSelected();
    /// A screen reader is to tell all of a row, whose first column it comes to.
    void NameRow(QTreeWidgetItem* item);
    static bool HasMoved(const SRow& row);
    void ShowMenu(const QPoint& point);

    void OnWatchChanged(const std::set<std::wstring>& files);
    void Filter();
    void OnRowsChanged();
    void OnSettled();
    /// Whether the user has set one.
    bool HasFilter() const;
    bool Passes(const CodeAnalyzer::IErrorRow& row) const;
    /// The selected row may be about to go; what was near it is selected once there is something.
    void NoteLoss(int first, int last);
    void KeepNear();
    void FollowCaret();
    void ShowCounts();

    QPointer<QTreeWidget> m_list;
    CodeAnalyzer::IErrorRows* m_rows; ///< the list; null: it cannot be filtered
    CErrorWatch& m_watch;
    CErrorRowDelegate* m_delegate;
    QLineEdit* m_text;
    QComboBox* m_severity;
    QComboBox* m_scope;
    QLabel* m_counts;
    std::set<std::wstring> m_openFiles;
    QString m_folder;
    std::wstring m_prefix; ///< of the paths in it
    SErrorPlace m_caret;
    QTimer m_caretTimer;
    QTimer m_filterStart; ///< soon after a change
    QTimer m_settled;     ///< rows come and go
    bool m_hides = false; ///< the project does not want some errors
    bool m_isIncomplete = false;
    struct SLost
    {
        std::wstring file;
        CodeAnalyzer::SCAError error;
        QElapsedTimer since;
    };
    std::optional<SLost> m_lost; ///< the row that was selected and has gone
    QString m_typed;
    QTimer m_typedTimer;
};

} // namespace Kesh::Workbench
