#pragma once

#include "Buffer/Iterator.h"
#include "Kesh/Editor/IStandartView.h"

namespace Kesh::Editor {

/// A position in a text view, whose lines differ from the document's where lines are folded away. GUI thread.
class CViewTextIterator
{
public:
    /// Where the view shows a position of its document; a folded line is shown by the first line of its fold.
    /// Raises Base::CCriticalError for a line that the document or the view does not have, and for a zone of
    /// an unknown type.
    static CViewTextIterator FromDoc(IStandartView& view, const Base::CTextIterator& it);

    const SyntaxParser::CIterator& GetPos() const { return m_pos; }

private:
    explicit CViewTextIterator(const SyntaxParser::CIterator& pos) : m_pos(pos) {}

    SyntaxParser::CIterator m_pos;
};

} // namespace Kesh::Editor
