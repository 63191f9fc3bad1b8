#pragma once

#include "Kesh/Editor/IDocBuffer.h"
#include "Kesh/SyntaxParser/Position.h"

namespace Kesh::Base {

/// A position in the text of an open document. GUI thread.
class CTextIterator
{
public:
    CTextIterator(const Editor::IDocBuffer* buffer, const SyntaxParser::CIterator& pos)
        : m_buffer(buffer), m_pos(pos)
    {
    }

    const SyntaxParser::CIterator& GetPos() const { return m_pos; }
    /// Which of two positions comes first; raises CCriticalError when they are of different texts.
    bool operator<(const CTextIterator& it) const;

private:
    const Editor::IDocBuffer* m_buffer;
    SyntaxParser::CIterator m_pos;
};

} // namespace Kesh::Base
