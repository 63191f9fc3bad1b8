#include "Prompts.h"

#include "Texts.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

namespace Kesh::Workbench {

IPrompts::ESave CDialogPrompts::AskSave(const QStringList& names)
{
    QMessageBox box(QMessageBox::Question, Tr("Unsaved changes"),
                    Tr("Save the changes in these files?") + QStringLiteral("\n\n") + names.join('\n'),
                    QMessageBox::NoButton, m_window);
    box.setTextFormat(Qt::PlainText);
    QPushButton* save = box.addButton(Tr("&Save"), QMessageBox::AcceptRole);
    QPushButton* discard = box.addButton(Tr("&Discard"), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(Tr("Cancel"), QMessageBox::RejectRole));
    box.setDefaultButton(save);
    box.exec();
    return box.clickedButton() == save      ? ESave::Save
           : box.clickedButton() == discard ? ESave::Discard
                                            : ESave::Cancel;
}

bool CDialogPrompts::Confirm(const QString& question, const QString& action)
{
    QMessageBox box(QMessageBox::Warning, Tr("Please confirm"), question, QMessageBox::NoButton, m_window);
    box.setTextFormat(Qt::PlainText);
    QPushButton* accept = box.addButton(action, QMessageBox::AcceptRole);
    QPushButton* cancel = box.addButton(Tr("Cancel"), QMessageBox::RejectRole);
    box.setEscapeButton(cancel);
    box.setDefaultButton(cancel);
    box.exec();
    return box.clickedButton() == accept;
}

QString CDialogPrompts::AskOpenFile(const QString& start)
{
    return QFileDialog::getOpenFileName(m_window, Tr("Open file"), start);
}

QString CDialogPrompts::AskFolder(const QString& start)
{
    return QFileDialog::getExistingDirectory(m_window, Tr("Open folder"), start);
}

QString CDialogPrompts::AskSaveName(const QString& start)
{
    return QFileDialog::getSaveFileName(m_window, Tr("Save as"), start);
}

int CDialogPrompts::AskLine(int current, int lines)
{
    bool accepted = false;
    const int line =
        QInputDialog::getInt(m_window, Tr("Go to line"), Tr("Line:"), current, 1, lines, 1, &accepted);
    return accepted ? line : 0;
}

} // namespace Kesh::Workbench
