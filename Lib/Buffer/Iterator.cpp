#include "Buffer/Iterator.h"

#include "Base/Exception.h"

namespace Kesh::Base {

bool CTextIterator::operator<(const CTextIterator& it) const
{
    if (m_buffer != it.m_buffer)
        throw CCriticalError("&m_buffer == &(it.m_buffer)", __LINE__, "Lib/Buffer/Iterator");
    return m_pos < it.m_pos;
}

} // namespace Kesh::Base
