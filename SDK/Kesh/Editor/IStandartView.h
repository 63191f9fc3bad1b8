#pragma once

#include "Kesh/SDK/IDocument.h"
#include "Kesh/SyntaxParser/Position.h"

#include <vector>

namespace Kesh::Editor {

/// A run of document lines as a view shows it.
struct SDocZone
{
    enum EType { Shown = 0, Folded = 1 };
    int type = Shown;
    int docLine = 0; ///< first document line
    int count = 0;   ///< number of document lines
};

/// The caret of a text view; positions are (column, line) of the view.
class ICaret
{
public:
    /// `flag` non-zero ends the selection.
    virtual void SetPos(const SyntaxParser::CIterator& viewPos, int flag) = 0;

protected:
    ~ICaret() = default;
};

/// A text view. GUI thread only.
class IStandartView : public SDK::IView
{
public:
    virtual ICaret* GetCaret() = 0;
    /// Scrolls so that the caret can be seen; `margin` is the number of lines kept free around it.
    virtual void EnsureVisible(int margin) = 0;
    /// Number of document lines, and the zones that cover them in order. A folded zone shows its first line
    /// only.
    virtual int GetLinesCount() = 0;
    virtual std::vector<SDocZone> GetZones() = 0;
};

} // namespace Kesh::Editor
