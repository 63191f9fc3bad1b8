#pragma once

#include <QFrame>
#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace Kesh::Workbench {

/// A message above the editor that stays until it is answered or dismissed, without stopping the work.
class CMessageStrip final : public QFrame
{
    Q_OBJECT

public:
    struct SAnswer
    {
        QString title;
        std::function<void()> action;
    };

    explicit CMessageStrip(QWidget* parent = nullptr);

    /// Replaces what is shown. The strip goes away before an answer's action is called.
    void Show(const QString& text, std::vector<SAnswer> answers = {});
    QString GetText() const;

private:
    QLabel* m_label;
    QHBoxLayout* m_buttons;
};

} // namespace Kesh::Workbench
