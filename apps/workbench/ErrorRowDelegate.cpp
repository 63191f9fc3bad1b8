#include "ErrorRowDelegate.h"

#include "Kesh/CodeAnalyzer/SCAError.h"
#include "PlainTip.h"
#include "Severity.h"
#include "Texts.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

namespace Kesh::Workbench {

void CErrorRowDelegate::SetFolder(const QString& folder)
{
    m_prefix = folder.isEmpty() || folder.endsWith('/') ? folder : folder + '/';
}

QString CErrorRowDelegate::Shorten(const QString& path) const
{
    return !m_prefix.isEmpty() && path.startsWith(m_prefix) ? path.mid(m_prefix.size()) : path;
}

QString CErrorRowDelegate::displayText(const QVariant& value, const QLocale& locale) const
{
    return Shorten(QStyledItemDelegate::displayText(value, locale));
}

bool CErrorRowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                  const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid())
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    // The whole text, which may not fit into its column.
    const QString text = index.column() == 2 && m_messageOf ? m_messageOf(index.row()) : QString();
    QToolTip::showText(event->globalPos(), PlainTip(text.isEmpty() ? index.data().toString() : text), view);
    return true;
}

void CErrorRowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.column() == 1 && m_lineOf)
        if (const std::optional<std::int64_t> line = m_lineOf(index.row()))
            option->text = option->text.left(option->text.lastIndexOf(' ') + 1) + QString::number(*line + 1);
    if (index.column() != 0)
        return;
    static const QIcon error = IconOf(ESeverity::Error);
    static const QIcon warning = IconOf(ESeverity::Warning);
    option->features |= QStyleOptionViewItem::HasDecoration;
    const bool isError = m_typeOf && m_typeOf(index.row()) == CodeAnalyzer::SeverityError;
    option->icon = isError ? error : warning;
    option->text = isError ? Tr("Error") : Tr("Warning");
    option->decorationSize = QSize(16, 16);
}

} // namespace Kesh::Workbench
