#include "Markup/HtmlSyntaxChecker.h"

#include "Base/CommonString.h"
#include "Base/HostComponent.h"
#include "Diagnostics/DiagnosticList.h"
#include "Diagnostics/ErrorsReceiver.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Markup/HtmlCustomItemsKeeper.h"

#include <algorithm>
#include <array>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SSemanticTree;
using SyntaxParser::SSemanticTreeNode;
using SyntaxParser::TSemanticIndex;

namespace {

/// The tag by which templates of one content management system include modules.
constexpr std::wstring_view JdocTag = L"jdoc:include";

constexpr std::array<std::wstring_view, 4> JdocAttributes{L"name", L"style", L"title", L"type"};

} // namespace

CHtmlSyntaxChecker::CHtmlSyntaxChecker(ICheckOwner* owner,
                                       boost::shared_ptr<SyntaxParser::ISPDocument> document,
                                       SDK::IApplication* application, IErrorsReceiver* errorsManager,
                                       CHtmlCustomItemsKeeper* customItems)
    : m_errorsManager(errorsManager),
      m_customItems(customItems),
      m_owner(owner),
      m_names(CMarkupNames::Of(
          Base::GetHostComponent<SyntaxParser::IParserComponent>(application, L"IParserComponent")))
{
    m_connection = document->GetEndOfParseSignal().connect(
        [this](SyntaxParser::ISPDocument* parsed) { OnDocumentParsed(parsed); });
}

void CHtmlSyntaxChecker::SetDetailed(bool detailed)
{
    m_details.reset();
    if (detailed)
        m_details.emplace(m_names->Data());
}

void CHtmlSyntaxChecker::OnDocumentParsed(SyntaxParser::ISPDocument* document)
{
    m_errors.clear();
    {
        const CSemanticDataLock lock(*document);
        if (const SSemanticTree* tree = document->GetSemanticTree(L"HTML"); tree && !tree->nodes.empty())
            CheckHtml(*tree, 0);
    }
    if (m_errors.empty())
        return;
    const auto [errors, details] = Apart(std::move(m_errors));
    m_errorsManager->AddErrors(m_owner ? m_owner->GetFilePath() : document->GetFilePath(), errors, details);
}

void CHtmlSyntaxChecker::CheckHtml(const SSemanticTree& tree, TSemanticIndex top)
{
    // The way down to the node being checked is kept here, so that no depth of nesting is too much.
    struct SLevel
    {
        TSemanticIndex parent;
        TSemanticIndex next;
    };
    std::vector<SLevel> levels = {{top, tree.nodes[top].firstChild}};
    while (!levels.empty()) {
        const SLevel level = levels.back();
        if (level.next == SyntaxParser::NoSemanticNode) {
            levels.pop_back();
            continue;
        }
        const SSemanticTreeNode& node = tree.nodes[level.next];
        levels.back().next = node.nextSibling;
        if (node.kind == SyntaxParser::SemanticTag && !CheckTag(node))
            continue; // nothing is known about what an unknown tag may hold
        if (node.kind == SyntaxParser::SemanticAttribute)
            CheckAttribute(tree.nodes[level.parent], node);
        if (node.firstChild != SyntaxParser::NoSemanticNode)
            levels.push_back({level.next, node.firstChild});
    }
}

bool CHtmlSyntaxChecker::CheckTag(const SSemanticTreeNode& tag)
{
    const Base::CLowerCase name(tag.name);
    if (m_names->HasTag(name.View()) || name.View() == JdocTag || m_customItems->HaveTag(tag.name))
        return true;
    UnknownTagError(tag);
    return false;
}

void CHtmlSyntaxChecker::CheckAttribute(const SSemanticTreeNode& tag, const SSemanticTreeNode& attribute)
{
    const Base::CLowerCase name(attribute.name);
    if (m_names->HasAttribute(tag.name, name.View()) ||
        (tag.name == JdocTag && std::ranges::find(JdocAttributes, attribute.name) != JdocAttributes.end()) ||
        m_customItems->HaveAttribute(attribute.name) || name.View().starts_with(L"data-"))
        return;
    UnknownAttributeError(tag, attribute);
}

void CHtmlSyntaxChecker::UnknownTagError(const SSemanticTreeNode& tag)
{
    if (m_isPassedOver && m_isPassedOver(tag))
        return;
    m_errors.push_back({{tag.span, Code::UnknownTag, SeverityError}, {}});
    if (m_details)
        m_errors.back().details = m_details->OfTag(tag);
}

void CHtmlSyntaxChecker::UnknownAttributeError(const SSemanticTreeNode& tag,
                                               const SSemanticTreeNode& attribute)
{
    if (m_isPassedOver && m_isPassedOver(attribute))
        return;
    m_errors.push_back({{attribute.span, Code::UnknownAttribute, SeverityError}, {}});
    if (m_details)
        m_errors.back().details = m_details->OfAttribute(tag, attribute);
}

} // namespace Kesh::CodeAnalyzer
