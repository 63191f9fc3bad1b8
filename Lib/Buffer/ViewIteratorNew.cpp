#include "Buffer/ViewIteratorNew.h"

#include "Base/Exception.h"

namespace Kesh::Editor {

namespace {

[[noreturn]] void Raise(const char* condition, int line)
{
    throw Base::CCriticalError(condition, line, "Lib/Buffer/ViewIteratorNew");
}

} // namespace

CViewTextIterator CViewTextIterator::FromDoc(IStandartView& view, const Base::CTextIterator& it)
{
    const SyntaxParser::CIterator pt = it.GetPos();
    if (pt.y >= view.GetLinesCount())
        Raise("pt.y < GetLinesCount()", __LINE__);

    std::int64_t viewLine = 0;
    for (const SDocZone& zone : view.GetZones()) {
        const std::int64_t offset = pt.y - zone.docLine;
        const bool inside = offset >= 0 && offset < zone.count;
        switch (zone.type) {
        case SDocZone::Shown:
            if (inside)
                return CViewTextIterator({pt.x, viewLine + offset});
            viewLine += zone.count;
            break;
        case SDocZone::Folded:
            // The column of a line that is not shown means nothing on the line that stands for it.
            if (inside)
                return CViewTextIterator({offset == 0 ? pt.x : 0, viewLine});
            viewLine += zone.count > 0 ? 1 : 0;
            break;
        default: Raise("DocZone Type error!!!", __LINE__);
        }
    }
    Raise("0 <= m_pos.y && m_pos.y < (int)m_buffer.size()", __LINE__);
}

} // namespace Kesh::Editor
