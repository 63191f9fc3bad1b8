#pragma once

#include <QString>

namespace Kesh::XML {

/// Whether a text is well-formed XML that a query can take in time and stack that are bounded: no deep
/// nesting, no crowds of attributes, no DTD. Reentrant.
bool IsHarmless(const QString& xml);

} // namespace Kesh::XML
