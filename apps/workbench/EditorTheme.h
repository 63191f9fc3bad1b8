#pragma once

#include "Preferences.h"

#include <QColor>
#include <QFont>
#include <QPalette>

class QsciLexer;

namespace Kesh::Workbench {

class CCodeEditor;

/// The palette of an appearance; `system` is the one that the program started with.
QPalette MakePalette(EAppearance appearance, const QPalette& system);

/// That of editors, in points.
QFont EditorFont(int size);

/// `color` moved away from `background` until text in it is legible there.
QColor MakeLegible(const QColor& color, const QColor& background);

/// Gives an editor the colours of its palette and a font of this size (points).
void ApplyTheme(CCodeEditor& editor, int fontSize);

} // namespace Kesh::Workbench
