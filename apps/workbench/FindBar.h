#pragma once

#include "TextMatches.h"

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace Kesh::Workbench {

class CCodeEditor;

/// Find and replace, below the editor.
class CFindBar final : public QWidget
{
    Q_OBJECT

public:
    explicit CFindBar(QWidget* parent = nullptr);

    /// The editor to search in; null for none. Not owned; must be called before the editor goes.
    void SetEditor(CCodeEditor* editor) { m_editor = editor; }
    /// Shows the bar with the selected word to find, or, when there is one and it is to be replaced, ready
    /// for what is to take its place.
    void Open(bool replaces = false);
    void FindNext() { Find(true); }
    void FindPrevious() { Find(false); }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool Find(bool forward);
    void Replace();
    void ReplaceAll();
    void Close();
    SReplaceOrder GetOrder() const;
    SByteSpan GetSelection() const;
    void ShowCount();

    CCodeEditor* m_editor = nullptr;
    QLineEdit* m_pattern;
    QLineEdit* m_replacement;
    QCheckBox* m_matchCase;
    QCheckBox* m_wholeWord;
    QCheckBox* m_regExp;
    QLabel* m_result;
    QTimer m_countTimer;
};

} // namespace Kesh::Workbench
