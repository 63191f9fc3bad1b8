#pragma once

#include <QThread>

namespace Kesh::CodeAnalyzer {

class CCADocParser;

/// The worker thread of one check of one document.
class CCADocParserThread : public QThread
{
public:
    /// The checker keeps itself alive until its check has ended.
    explicit CCADocParserThread(CCADocParser* checker) : m_checker(checker) {}

protected:
    void run() override;

private:
    CCADocParser* m_checker;
};

} // namespace Kesh::CodeAnalyzer
