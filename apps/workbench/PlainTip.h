#pragma once

#include <QString>
#include <QTextDocument>

namespace Kesh::Workbench {

/// A text as a tool tip shows it letter for letter, also one that looks like HTML.
inline QString PlainTip(const QString& text)
{
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace Kesh::Workbench
