#include "Components/CADocParserThread.h"

#include "Components/CADocParser.h"

namespace Kesh::CodeAnalyzer {

void CCADocParserThread::run()
{
    m_checker->ParseInThread();
}

} // namespace Kesh::CodeAnalyzer
