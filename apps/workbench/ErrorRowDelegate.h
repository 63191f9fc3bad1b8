#pragma once

#include <QStyledItemDelegate>
#include <cstdint>
#include <functional>

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
    /// Tells the severity of a row for the user, which may be another than the validator's.
    using TTypeOf = std::function<std::int32_t(int row)>;
    void SetTypeSource(TTypeOf typeOf) { m_typeOf = std::move(typeOf); }

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    QString m_prefix; ///< the folder and a slash
    TTypeOf m_typeOf;
};

} // namespace Kesh::Workbench
