#pragma once

#include "Checks/CancelFlag.h"
#include "Checks/WantedChecks.h"
#include "Kesh/CodeAnalyzer/Check.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/ISPDocument.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>
#include <memory>
#include <string>

namespace Kesh::SyntaxParser {
class CSimpleReader;
}

namespace Kesh::CodeAnalyzer {

class CCssSyntaxChecker;
class CHtmlCustomItemsKeeper;
class CHtmlSyntaxChecker;
class CMarkupChecker;
class CPhpSyntaxParser;
class ICheckOwner;
class IErrorsReceiver;

/// Everything that a check of one document needs: a private syntax document over a snapshot of the text, and
/// the checkers that follow its parse. One thread at a time; built on the GUI thread.
class CCADocumentCheck
{
public:
    /// Null when the host makes no document for the source's factory. `owner` may be null. Nothing is owned.
    /// Raises Base::CCriticalError "Bad sweak pointer" without "IParserComponent".
    static std::unique_ptr<CCADocumentCheck>
    Create(SDK::IApplication* application, SyntaxParser::ISPDocument& source, SyntaxParser::CDefRegions* defs,
           IErrorsReceiver* receiver, CHtmlCustomItemsKeeper* customItems, ICheckOwner* owner);
    /// A check of a document that the host has made over a file; its errors are reported under the document's
    /// path. Any thread.
    static std::unique_ptr<CCADocumentCheck> CreateOver(SDK::IApplication* application,
                                                        boost::shared_ptr<SyntaxParser::ISPDocument> document,
                                                        IErrorsReceiver* receiver,
                                                        CHtmlCustomItemsKeeper* customItems);
    ~CCADocumentCheck();

    /// Has these take part in checks that begin when the host wants them.
    void Follow(const SWantedChecks& wanted) { m_wanted = wanted; }
    /// The path of the next text, for a document that is given one after another.
    void SetPath(const std::wstring& path);
    /// Whether to say more of errors than their records do. Before a check.
    void SetDetailed(bool detailed);
    /// Takes the source's text as it is now; errors will be reported under `path`. GUI thread.
    void TakeSnapshot(SyntaxParser::ISPDocument& source, const std::wstring& path);
    /// Checks the last snapshot; the results are posted to the receiver. Never throws.
    ECheckEnd Run();
    /// Of the last Run().
    ECheckEnd GetEnd() const { return m_end; }
    /// Why it has failed.
    const std::wstring& GetFailure() const { return m_failure; }
    /// Set, it has Run() return soon; cleared by each snapshot.
    const TCancelFlag& GetCancelFlag() const { return m_cancelled; }
    void SetCancelFlag(TCancelFlag cancelled);
    /// Ends the markup checkers, which ask their owner for its path.
    void ReleaseMarkupCheckers();

private:
    CCADocumentCheck();
    void AddCheckers(SDK::IApplication* application, SyntaxParser::CDefRegions* defs,
                     IErrorsReceiver* receiver, CHtmlCustomItemsKeeper* customItems, ICheckOwner* owner);
    void FollowWanted();
    ECheckEnd Parse();

    TCancelFlag m_cancelled; ///< outlives the document, which looks at it
    boost::shared_ptr<SyntaxParser::ISPDocument> m_document;
    boost::shared_ptr<SyntaxParser::CSimpleReader> m_reader; ///< null over a file
    boost::shared_ptr<CPhpSyntaxParser> m_phpParser;         ///< null unless the document is PHP
    std::unique_ptr<CHtmlSyntaxChecker> m_htmlChecker;
    std::unique_ptr<CCssSyntaxChecker> m_cssChecker;
    std::unique_ptr<CMarkupChecker> m_markupChecker; ///< null until the host has asked for it
    IErrorsReceiver* m_receiver = nullptr;
    ICheckOwner* m_owner = nullptr;
    std::wstring m_path; ///< of the next text
    SWantedChecks m_wanted;
    bool m_followsGrammar = false;
    bool m_passEnded = false; ///< whatever the flag says: a host may leave it aside
    boost::signals2::scoped_connection m_endOfParse;
    ECheckEnd m_end = ECheckEnd::Complete;
    std::wstring m_failure;
};

} // namespace Kesh::CodeAnalyzer
