#pragma once

#include <QFrame>
#include <functional>
#include <vector>

class QHBoxLayout;
class QLabel;

namespace Kesh::Workbench {

/// Messages above the editor, each of which stays until it is answered or dismissed, without stopping the
/// work. The newest is in view; the others wait behind it.
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

    /// Puts a message in front; the same text is not kept twice. A message goes away before the action of its
    /// answer is called. `subject` is what it is about.
    void Show(const QString& text, std::vector<SAnswer> answers = {}, const QString& subject = {});
    /// Takes away the messages about a subject, which have become pointless.
    void Withdraw(const QString& subject);
    /// The messages, newest first, a line each.
    QString GetText() const;

private:
    struct SMessage
    {
        QString text;
        std::vector<SAnswer> answers;
        QString subject;
    };

    void Update();

    std::vector<SMessage> m_messages; ///< the newest is the last
    QLabel* m_label;
    QHBoxLayout* m_buttons;
};

} // namespace Kesh::Workbench
