#include "FindBar.h"

#include "CodeEditor.h"
#include "ReplaceAll.h"
#include "Texts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace Kesh::Workbench {

namespace {

constexpr int CountDelay = 150; // ms: who types on does not look yet

} // namespace

CFindBar::CFindBar(QWidget* parent)
    : QWidget(parent),
      m_pattern(new QLineEdit),
      m_replacement(new QLineEdit),
      m_matchCase(new QCheckBox(Tr("Match ca&se"))),
      m_wholeWord(new QCheckBox(Tr("&Whole words"))),
      m_regExp(new QCheckBox(Tr("Regular e&xpression"))),
      m_result(new QLabel)
{
    setObjectName(QStringLiteral("findBar"));
    m_pattern->setObjectName(QStringLiteral("findPattern"));
    m_pattern->setPlaceholderText(Tr("Find"));
    m_pattern->setAccessibleName(Tr("Find"));
    m_replacement->setAccessibleName(Tr("Replace with"));
    m_replacement->setObjectName(QStringLiteral("findReplacement"));
    m_replacement->setPlaceholderText(Tr("Replace with"));
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    const auto button = [&](const char* title, int row, int column, auto action) {
        auto* made = new QPushButton(Tr(title));
        connect(made, &QPushButton::clicked, this, action);
        layout->addWidget(made, row, column);
    };
    layout->addWidget(m_pattern, 0, 0);
    button("Find &next", 0, 1, [this] { Find(true); });
    button("Find &previous", 0, 2, [this] { Find(false); });
    button("Close", 0, 3, [this] { Close(); });
    layout->addWidget(m_replacement, 1, 0);
    button("Rep&lace", 1, 1, [this] { Replace(); });
    button("Replace &all", 1, 2, [this] { ReplaceAll(); });
    auto* choices = new QHBoxLayout;
    for (QCheckBox* choice : {m_matchCase, m_wholeWord, m_regExp})
        choices->addWidget(choice);
    choices->addWidget(m_result, 1, Qt::AlignRight);
    layout->addLayout(choices, 2, 0, 1, 4);
    layout->setColumnStretch(0, 1);
    // Who has typed what to find goes on with what is to take its place.
    setTabOrder(m_pattern, m_replacement);
    m_result->setObjectName(QStringLiteral("findResult"));
    m_countTimer.setSingleShot(true);
    m_countTimer.setInterval(CountDelay);
    connect(&m_countTimer, &QTimer::timeout, this, &CFindBar::ShowCount);
    connect(m_pattern, &QLineEdit::textChanged, &m_countTimer, qOverload<>(&QTimer::start));
    for (QCheckBox* choice : {m_matchCase, m_wholeWord, m_regExp})
        connect(choice, &QCheckBox::toggled, &m_countTimer, qOverload<>(&QTimer::start));
    connect(m_pattern, &QLineEdit::returnPressed, this, [this] { Find(true); });
    connect(m_replacement, &QLineEdit::returnPressed, this, [this] { Replace(); });
    hide();
}

void CFindBar::Open(bool replaces)
{
    const QString selected = m_editor ? m_editor->selectedText() : QString();
    const bool isGiven = !selected.isEmpty() && !selected.contains('\n');
    if (isGiven)
        m_pattern->setText(selected);
    show();
    m_pattern->selectAll();
    m_replacement->selectAll();
    (replaces && isGiven ? m_replacement : m_pattern)->setFocus();
    ShowCount();
    // The bar takes its room from the editor, and may cover the place that the user looks at.
    if (m_editor)
        QTimer::singleShot(0, m_editor, [editor = m_editor] { editor->CenterCaret(); });
}

SReplaceOrder CFindBar::GetOrder() const
{
    return {m_pattern->text(), m_replacement->text(), m_matchCase->isChecked(), m_wholeWord->isChecked(),
            m_regExp->isChecked()};
}

void CFindBar::ShowCount()
{
    m_countTimer.stop();
    if (!m_editor || m_pattern->text().isEmpty()) {
        m_result->clear();
        return;
    }
    const SMatchCount counted = CountMatches(*m_editor, GetOrder());
    const QString count =
        counted.isComplete ? QString::number(counted.count) : Tr("more than %1").arg(counted.count - 1);
    m_result->setText(counted.count == 0    ? Tr("Not found")
                      : counted.current > 0 ? Tr("%1 of %2").arg(QString::number(counted.current), count)
                                            : Tr("Found: %1").arg(count));
}

SByteSpan CFindBar::GetSelection() const
{
    return {m_editor->SendScintilla(QsciScintillaBase::SCI_GETSELECTIONSTART),
            m_editor->SendScintilla(QsciScintillaBase::SCI_GETSELECTIONEND)};
}

bool CFindBar::Find(bool forward)
{
    if (!m_editor || m_pattern->text().isEmpty())
        return false;
    const auto match = FindMatch(*m_editor, GetOrder(), GetSelection(), forward);
    if (match)
        m_editor->SelectBytes(match->start, match->end);
    ShowCount();
    return match.has_value();
}

void CFindBar::Replace()
{
    if (!m_editor || m_pattern->text().isEmpty())
        return;
    // Only what has been found may be replaced: the search moves the selection there first.
    const SByteSpan selected = GetSelection();
    std::optional<std::string> text;
    ForEachMatch(*m_editor, GetOrder(), [&](const SByteSpan& match, const TGroupOf& groupOf) {
        if (match == selected)
            text = Replacement(GetOrder(), groupOf);
        return match.start < selected.start;
    });
    if (text)
        m_editor->ReplaceSelection(*text);
    Find(true);
}

void CFindBar::ReplaceAll()
{
    if (!m_editor || m_pattern->text().isEmpty())
        return;
    const int count = Workbench::ReplaceAll(*m_editor, GetOrder());
    m_result->setText(count > 0 ? Tr("Replaced: %1").arg(count) : Tr("Not found"));
}

void CFindBar::Close()
{
    hide();
    if (m_editor)
        m_editor->setFocus();
}

void CFindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        Close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace Kesh::Workbench
