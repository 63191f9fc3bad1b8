#pragma once

#include <QStyledItemDelegate>
#include <cstdint>
#include <functional>
#include <optional>

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
    /// Tells the line of a row, counted from 0, when it is another than that in its text.
    using TLineOf = std::function<std::optional<std::int64_t>(int row)>;
    void SetLineSource(TLineOf lineOf) { m_lineOf = std::move(lineOf); }

    /// Tells all there is to say of a row, for its tip.
    using TMessageOf = std::function<QString(int row)>;
    void SetMessageSource(TMessageOf messageOf) { m_messageOf = std::move(messageOf); }

    QString displayText(const QVariant& value, const QLocale& locale) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    QString m_prefix; ///< the folder and a slash
    TTypeOf m_typeOf;
    TLineOf m_lineOf;
    TMessageOf m_messageOf;
};

} // namespace Kesh::Workbench
