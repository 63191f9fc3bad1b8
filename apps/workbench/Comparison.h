#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace Kesh::Host {
class CDocument;
}

namespace Kesh::Workbench {

/// The lines that differ, each with "-" for one of `before` or "+" for one of `after` in front of it, and
/// some of those around, with a blank; "..." stands for the rest. The time it takes is bounded: of very many
/// different lines all are told, the old ones before the new ones.
QStringList CompareLines(const QString& before, const QString& after);

/// Shows how an open document differs from its file on disk, in a window that stops nothing. A file that
/// cannot be read throws Base::CWorkError. GUI thread.
void ShowComparison(Host::CDocument& document, int fontSize, QWidget* parent);

} // namespace Kesh::Workbench
