#pragma once

#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Kesh/SyntaxParser/ISPDocument.h"
#include "Markup/MarkupNames.h"
#include "Markup/NameDetails.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/connection.hpp>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

class ICheckOwner;
class IErrorsReceiver;

/// Finds the style properties, and the element names in selectors, that nobody knows. Follows the parses of
/// one document; one thread at a time.
class CCssSyntaxChecker
{
public:
    /// Nothing is owned. `owner` gives the path to report errors under; without one it is the document's.
    /// Raises Base::CCriticalError "Bad sweak pointer" without "IParserComponent".
    CCssSyntaxChecker(ICheckOwner* owner, boost::shared_ptr<SyntaxParser::ISPDocument> document,
                      SDK::IApplication* application, IErrorsReceiver* errorsManager);

    /// Has the properties be passed over of which the function says that they are a browser's own, unless
    /// they look like mistyped ones.
    void SetPassedOver(std::function<bool(const SyntaxParser::SSemanticTreeNode&)> isPassedOver)
    {
        m_isPassedOver = std::move(isPassedOver);
    }
    /// Whether to say more of errors than their records do.
    void SetDetailed(bool detailed);
    /// Checks the trees of the parse that has just ended and posts what is wrong. Worker thread.
    void OnDocumentParsed(SyntaxParser::ISPDocument* document);

private:
    void FillTags();
    void FillAttributes();
    void CheckCss(const SyntaxParser::SSemanticTree& tree, SyntaxParser::TSemanticIndex top);
    void CheckName(const SyntaxParser::SSemanticTreeNode& node);
    bool PassesOver(const SyntaxParser::SSemanticTreeNode& property, std::wstring_view name);

    SDK::IApplication* m_application;
    IErrorsReceiver* m_errorsManager;
    std::vector<SDiagnostic> m_errors; ///< of the last run
    ICheckOwner* m_owner;
    const SyntaxParser::ICssSyntax* m_cssSyntax;
    std::shared_ptr<const CMarkupNames> m_names;
    std::function<bool(const SyntaxParser::SSemanticTreeNode&)> m_isPassedOver; ///< empty: none
    std::optional<CNameDetails> m_details;                                      ///< when asked for
    std::vector<std::wstring_view> m_tags;                                      ///< known beside the host's
    std::vector<std::wstring_view> m_attributes;                                ///< likewise
    boost::signals2::scoped_connection m_connection;
};

} // namespace Kesh::CodeAnalyzer
