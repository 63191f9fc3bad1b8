#pragma once

#include <QFrame>
#include <QRect>
#include <QString>
#include <QTimer>
#include <vector>

class QLabel;

namespace Kesh::Workbench {

/// What is said of the errors under the pointer. Unlike a tool tip it has links, and stays while the pointer
/// is over it or over what it is about. GUI thread only.
class CErrorTip final : public QFrame
{
    Q_OBJECT

public:
    struct SLine
    {
        QString text;
        int code = 0;
        bool isExplained = false; ///< there is a page about the code
    };

    explicit CErrorTip(QWidget* parent);

    /// Near a point of the screen, about what lies in `subject`, a rectangle of the screen. No lines: hides.
    void ShowLines(const std::vector<SLine>& lines, const QPoint& point, const QRect& subject);
    /// "message [code]", a line each.
    QString GetText() const;

signals:
    void explainRequested(int code);
    void fixRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void OnTick();

    QLabel* m_label;
    std::vector<SLine> m_lines;
    QRect m_subject;
    QTimer m_tick;
    int m_ticksAway = 0; ///< since the pointer has left
};

} // namespace Kesh::Workbench
