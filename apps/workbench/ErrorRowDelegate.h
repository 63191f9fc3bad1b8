#pragma once

#include <QStyledItemDelegate>

namespace Kesh::Workbench {

/// Shows the rows of the errors bar: an icon for the severity, and paths below the project's folder without
/// it. The rows themselves stay what the validator makes them.
class CErrorRowDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// Empty for no folder.
    void SetFolder(const QString& folder);
    QString Shorten(const QString& path) const;

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    QString m_prefix; ///< the folder and a slash
};

} // namespace Kesh::Workbench
