#pragma once

#include "FileSearch.h"

#include <QWidget>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeView;

namespace Kesh::Workbench {

/// Find in files: what to look for, and a list of what was found, a row each. GUI thread only.
class CSearchPanel final : public QWidget
{
    Q_OBJECT

public:
    /// The folder, the settings and the unsaved texts of an order, asked for at the start of each search.
    using TPlace = std::function<void(SSearchOrder&)>;
    explicit CSearchPanel(TPlace place);

    /// Ready to type; an empty text keeps what was looked for before.
    void Open(const QString& text);
    bool IsRunning() const { return m_search.IsRunning(); }
    /// Forgets what was found: the project has gone.
    void Clear();

signals:
    void openRequested(const std::wstring& file, const SyntaxParser::SScheme& span);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    class CModel;

    void Arrange();
    void Start();
    void Stop();
    void ShowState(const QString& text);
    void OpenRow(const class QModelIndex& index);
    void GoToHits();

    TPlace m_place;
    CFileSearch m_search;
    CModel* m_model;
    QTreeView* m_list;
    QLineEdit* m_text;
    QLineEdit* m_files;
    QCheckBox* m_matchCase;
    QCheckBox* m_wholeWords;
    QCheckBox* m_regExp;
    QPushButton* m_start;
    QLabel* m_state;
};

} // namespace Kesh::Workbench
