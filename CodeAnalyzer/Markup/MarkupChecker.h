#pragma once

#include "Diagnostics/MarkupReport.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"
#include "Kesh/SyntaxParser/ISPDocument.h"
#include "Kesh/SyntaxParser/SemanticTree.h"
#include "Markup/MarkupPart.h"
#include "Styles/StyleChecker.h"

#include <boost/signals2/connection.hpp>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CHtmlNesting;
class CTemplateHalves;
class ICheckOwner;
class IErrorsReceiver;

/// Checks the HTML and CSS of a document beyond their names, in each pass for which the host wants it. One
/// thread at a time.
class CMarkupChecker final : public SyntaxParser::IMarkupHandler
{
public:
    /// Nothing is owned. `owner` gives the path to report errors under; without one it is the document's.
    CMarkupChecker(const IMarkupCheck* wanted, ICheckOwner* owner, IErrorsReceiver* receiver);

    /// Follows the document from now on; nothing happens when its host hands on no markup. Once; the object
    /// must live as long as the document is parsed.
    void Follow(SyntaxParser::ISPDocument& document);
    /// The path of the next text, for a document that is given one after another.
    void SetPath(const std::wstring& path) { m_path = path; }

    void ForgetOwner() { m_owner = nullptr; }

    /// Where to leave the tags whose partners may be in other files; not owned.
    void KeepHalves(CTemplateHalves* halves);

    /// Whether the name of a tag or attribute of the last pass says nothing: it stands in a broken tag or in
    /// XML, or is one of a browser, a namespace or a template engine.
    bool PassesOver(const SyntaxParser::SSemanticTreeNode& node) const;
    /// The same of a property of a style.
    bool PassesOverProperty(const SyntaxParser::SSemanticTreeNode& property) const;

    bool BeginMarkup(const SyntaxParser::IMarkupPlaces& places) override;
    void AddHtml(const SyntaxParser::SHtmlToken& token) override;
    void AddProblem(SyntaxParser::EHtmlProblem problem, SyntaxParser::SMarkupSpan span) override;
    void BeginStyle(SyntaxParser::EStyleKind kind, SyntaxParser::SMarkupSpan whole) override;
    void AddStyle(const SyntaxParser::SStyleToken& token) override;
    void EndStyle() override;
    void EndMarkup() override;

private:
    void OnDocumentParsed();

    const IMarkupCheck* m_wanted;
    ICheckOwner* m_owner;
    IErrorsReceiver* m_receiver;
    std::wstring m_path;
    CMarkupReport m_report;
    std::vector<std::unique_ptr<IMarkupPart>> m_parts;
    CStyleChecker m_styles;
    CHtmlNesting* m_nesting; ///< one of the parts
    CTemplateHalves* m_halves = nullptr;
    bool m_isChecked = false; ///< the last pass
    bool m_isXml = false;
    std::vector<SDiagnostic> m_found; ///< of the last pass
    boost::signals2::scoped_connection m_connection;
};

} // namespace Kesh::CodeAnalyzer
