#pragma once

#include <QObject>
#include <QString>
#include <cstddef>

class QLabel;
class QMenu;
class QProgressBar;
class QStatusBar;
class QToolButton;

namespace Kesh::Workbench {

/// What the status bar tells: the project check's progress, the caret, the file's format, and how many errors
/// there are.
class CStatusLine final : public QObject
{
    Q_OBJECT

public:
    /// The bar is not owned and outlives this.
    explicit CStatusLine(QStatusBar& bar);

    /// An empty text ends the progress.
    void ShowProgress(const QString& text);
    /// Whether what is shown as running can be stopped.
    void OfferStop(bool offer);
    void SetProgress(std::size_t done, std::size_t total);
    /// Counted from 0; a negative line means that there is no caret.
    void ShowCaret(long long line, long long column);
    /// How the file in front is written; empty texts for no file.
    void ShowFormat(const QString& encoding, const QString& lineEnds);
    /// What changes that. Not owned.
    void SetFormatMenus(QMenu& encodings, QMenu& lineEnds);
    /// `checked`: whether no errors means that there are none.
    void ShowCounts(int errors, int warnings, bool checked);
    void ShowMessage(const QString& text);

signals:
    void stopRequested();

private:
    QStatusBar& m_bar;
    QLabel* m_progressText;
    QProgressBar* m_progress;
    QToolButton* m_stop;
    QLabel* m_caret;
    QToolButton* m_encoding;
    QToolButton* m_lineEnds;
    QLabel* m_counts;
};

} // namespace Kesh::Workbench
