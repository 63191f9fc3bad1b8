#include "MessageStrip.h"

#include "Texts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

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

void CMessageStrip::Show(const QString& text, std::vector<SAnswer> answers)
{
    m_label->setText(text);
    while (QLayoutItem* item = m_buttons->takeAt(0)) {
        item->widget()->deleteLater();
        delete item;
    }
    answers.push_back({Tr("Dismiss"), {}});
    for (const SAnswer& answer : answers) {
        auto* button = new QPushButton(answer.title);
        connect(button, &QPushButton::clicked, this, [this, action = answer.action] {
            hide();
            if (action)
                action();
        });
        m_buttons->addWidget(button);
    }
    show();
}

QString CMessageStrip::GetText() const
{
    return isHidden() ? QString() : m_label->text();
}

} // namespace Kesh::Workbench
