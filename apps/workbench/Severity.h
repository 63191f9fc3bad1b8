#pragma once

#include <QColor>
#include <QIcon>

namespace Kesh::Workbench {

/// How grave something is, the gravest last.
enum class ESeverity { None, Warning, Error };

/// The colour by which a severity is known, as text that is legible on `background`.
QColor ColorOf(ESeverity severity, const QColor& background);
/// The name of a file, with what its errors are, for those who see no colours.
QString WithSeverity(const QString& name, ESeverity gravest);
/// A triangle for warnings, a disc for errors, drawn for any size.
QIcon IconOf(ESeverity severity);

} // namespace Kesh::Workbench
