#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/ISPDocument.h"
#include "Markup/MarkupNames.h"
#include "Markup/NameDetails.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

class ICheckOwner;
class IErrorsReceiver;
class CHtmlCustomItemsKeeper;

/// Finds the tags and attributes of a document that neither HTML nor the user knows. Follows the parses of
/// one document; one thread at a time.
class CHtmlSyntaxChecker
{
public:
    /// Nothing is owned. `owner` gives the path to report errors under; without one it is the document's.
    /// Raises Base::CCriticalError "Bad sweak pointer" without "IParserComponent".
    CHtmlSyntaxChecker(ICheckOwner* owner, boost::shared_ptr<SyntaxParser::ISPDocument> document,
                       SDK::IApplication* application, IErrorsReceiver* errorsManager,
                       CHtmlCustomItemsKeeper* customItems);

    /// Has the tags and attributes be passed over of which the function says so.
    void SetPassedOver(std::function<bool(const SyntaxParser::SSemanticTreeNode&)> isPassedOver)
    {
        m_isPassedOver = std::move(isPassedOver);
    }
    /// Whether to say more of errors than their records do.
    void SetDetailed(bool detailed);
    /// Checks the trees of the parse that has just ended and posts what is wrong. Worker thread.
    void OnDocumentParsed(SyntaxParser::ISPDocument* document);

private:
    void CheckHtml(const SyntaxParser::SSemanticTree& tree, SyntaxParser::TSemanticIndex top);
    bool CheckTag(const SyntaxParser::SSemanticTreeNode& tag);
    void CheckAttribute(const SyntaxParser::SSemanticTreeNode& tag,
                        const SyntaxParser::SSemanticTreeNode& attribute);
    void UnknownTagError(const SyntaxParser::SSemanticTreeNode& tag);
    void UnknownAttributeError(const SyntaxParser::SSemanticTreeNode& tag,
                               const SyntaxParser::SSemanticTreeNode& attribute);

    IErrorsReceiver* m_errorsManager;
    CHtmlCustomItemsKeeper* m_customItems;
    std::vector<SDiagnostic> m_errors; ///< of the last run
    ICheckOwner* m_owner;
    std::shared_ptr<const CMarkupNames> m_names;
    std::function<bool(const SyntaxParser::SSemanticTreeNode&)> m_isPassedOver; ///< empty: none
    std::optional<CNameDetails> m_details;                                      ///< when asked for
    boost::signals2::scoped_connection m_connection;
};

} // namespace Kesh::CodeAnalyzer
