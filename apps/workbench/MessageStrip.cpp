#include "MessageStrip.h"

#include "Texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <utility>

namespace Kesh::Workbench {

CMessageStrip::CMessageStrip(QWidget* parent)
    : QFrame(parent), m_label(new QLabel), m_buttons(new QHBoxLayout)
{
    setObjectName(QStringLiteral("messageStrip"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    m_label->setForegroundRole(QPalette::ToolTipText);
    m_label->setWordWrap(true);
    // A path in a message must not be taken for markup.
    m_label->setTextFormat(Qt::PlainText);
    m_label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->addWidget(m_label, 1);
    layout->addLayout(m_buttons);
    hide();
}

void CMessageStrip::Show(const QString& text, std::vector<SAnswer> answers, const QString& subject)
{
    std::erase_if(m_messages, [&](const SMessage& message) { return message.text == text; });
    answers.push_back({Tr("Dismiss"), {}});
    m_messages.push_back({text, std::move(answers), subject});
    Update();
}

void CMessageStrip::Withdraw(const QString& subject)
{
    if (std::erase_if(m_messages, [&](const SMessage& message) { return message.subject == subject; }))
        Update();
}

void CMessageStrip::Update()
{
    while (QLayoutItem* item = m_buttons->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    setVisible(!m_messages.empty());
    if (m_messages.empty())
        return;
    const SMessage& newest = m_messages.back();
    const std::size_t waiting = m_messages.size() - 1;
    m_label->setText(waiting == 0 ? newest.text
                                  : Tr("%1 (%2 more)").arg(newest.text, QString::number(waiting)));
    for (const SAnswer& answer : newest.answers) {
        auto* button = new QPushButton(answer.title);
        connect(button, &QPushButton::clicked, this, [this, action = answer.action] {
            m_messages.pop_back();
            Update();
            if (action)
                action();
        });
        m_buttons->addWidget(button);
        button->show();
    }
}

QString CMessageStrip::GetText() const
{
    QStringList texts;
    for (const SMessage& message : m_messages)
        texts.prepend(message.text);
    return texts.join(QLatin1Char('\n'));
}

} // namespace Kesh::Workbench
