#pragma once

#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/ISPDocument.h"

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>

namespace Kesh::SyntaxParser {
class CSimpleReader;
}

namespace Kesh::CodeAnalyzer {

class CCADocParser;
class CCAErrorsManager;
class CCssSyntaxChecker;
class CHtmlCustomItemsKeeper;
class CHtmlSyntaxChecker;
class CPhpSyntaxParser;

/// Everything that a check of one document needs: a private syntax document over a snapshot of the text, and
/// the checkers that follow its parse. One thread at a time; built on the GUI thread.
class CCADocumentCheck
{
public:
    /// Null when the host makes no document for the source's factory. `owner` may be null. Nothing is owned.
    /// Raises Base::CCriticalError "Bad sweak pointer" without "IParserComponent".
    static std::unique_ptr<CCADocumentCheck>
    Create(SDK::IApplication* application, SyntaxParser::ISPDocument& source, SyntaxParser::CDefRegions* defs,
           CCAErrorsManager* errorsManager, CHtmlCustomItemsKeeper* customItems, CCADocParser* owner);
    ~CCADocumentCheck();

    /// Takes the source's text as it is now; errors will be reported under `path`. GUI thread.
    void TakeSnapshot(SyntaxParser::ISPDocument& source, const std::wstring& path);
    /// Checks the last snapshot; the results are posted to the errors manager. Never throws.
    void Run();
    /// Ends the markup checkers, which ask their owner for its path.
    void ReleaseMarkupCheckers();

private:
    CCADocumentCheck();

    boost::shared_ptr<SyntaxParser::ISPDocument> m_document;
    boost::shared_ptr<SyntaxParser::CSimpleReader> m_reader;
    boost::shared_ptr<CPhpSyntaxParser> m_phpParser; ///< null unless the document is PHP
    std::unique_ptr<CHtmlSyntaxChecker> m_htmlChecker;
    std::unique_ptr<CCssSyntaxChecker> m_cssChecker;
};

} // namespace Kesh::CodeAnalyzer
