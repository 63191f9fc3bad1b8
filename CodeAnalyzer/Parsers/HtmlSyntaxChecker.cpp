#include "Parsers/HtmlSyntaxChecker.h"

#include "Base/CommonString.h"
#include "Base/HostComponent.h"
#include "Components/CADocParser.h"
#include "Components/CAErrorsManager.h"
#include "Kesh/SyntaxParser/IParserComponent.h"
#include "Parsers/HtmlCustomItemsKeeper.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::SSemanticTree;
using SyntaxParser::SSemanticTreeNode;
using SyntaxParser::TSemanticIndex;

namespace {

constexpr std::int32_t UnknownTag = 2001;
constexpr std::int32_t UnknownAttribute = 2002;

/// The tag by which templates of one content management system include modules.
constexpr std::wstring_view JdocTag = L"jdoc:include";

bool IsKnown(const SyntaxParser::TCompletionList& items, const std::wstring& name)
{
    const auto place = std::lower_bound(
        items.begin(), items.end(), name,
        [](const SyntaxParser::ICompletionItem* item, const std::wstring& n) { return item->GetName() < n; });
    if (place != items.end() && (*place)->GetName() == name)
        return true;
    // A host may give its list in another order. Unknown names are rare, so that the long way is too.
    return std::any_of(items.begin(), items.end(), [&name](const SyntaxParser::ICompletionItem* item) {
        return item->GetName() == name;
    });
}

} // namespace

CHtmlSyntaxChecker::CHtmlSyntaxChecker(CCADocParser* owner,
                                       boost::shared_ptr<SyntaxParser::ISPDocument> document,
                                       SDK::IApplication* application, CCAErrorsManager* errorsManager,
                                       CHtmlCustomItemsKeeper* customItems)
    : m_application(application),
      m_errorsManager(errorsManager),
      m_customItems(customItems),
      m_owner(owner),
      m_jdocAttributes({L"name", L"style", L"title", L"type"})
{
    const auto parser =
        Base::GetHostComponent<SyntaxParser::IParserComponent>(m_application, L"IParserComponent");
    const SyntaxParser::ICompletionData* data = parser->GetCompletionData();
    m_attributeSource = data->GetAttributeSource();
    m_tags = MakeNameSet(data->GetTags());
    m_tags.insert(JdocTag);
    m_connection = document->GetEndOfParseSignal().connect(
        [this](SyntaxParser::ISPDocument* parsed) { OnDocumentParsed(parsed); });
}

void CHtmlSyntaxChecker::OnDocumentParsed(SyntaxParser::ISPDocument* document)
{
    m_errors.clear();
    {
        const CSemanticDataLock lock(*document);
        if (const SSemanticTree* tree = document->GetSemanticTree(L"HTML"); tree && !tree->nodes.empty())
            CheckHtml(*tree, 0);
    }
    if (!m_errors.empty())
        m_errorsManager->AddErrors(m_owner ? m_owner->GetFilePath() : document->GetFilePath(), m_errors);
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
    const std::wstring name = CCommonString::LowerCaseFast(tag.name);
    if (m_tags.contains(name) || m_customItems->HaveTag(name))
        return true;
    UnknownTagError(tag);
    return false;
}

void CHtmlSyntaxChecker::CheckAttribute(const SSemanticTreeNode& tag, const SSemanticTreeNode& attribute)
{
    const std::wstring name = CCommonString::LowerCaseFast(attribute.name);
    if (IsKnown(m_attributeSource->GetAttributes(tag.name), name) ||
        (tag.name == JdocTag && m_jdocAttributes.contains(attribute.name)) ||
        m_customItems->HaveAttribute(name) || name.starts_with(L"data-"))
        return;
    UnknownAttributeError(attribute);
}

void CHtmlSyntaxChecker::UnknownTagError(const SSemanticTreeNode& tag)
{
    m_errors.push_back({tag.span, UnknownTag, SeverityError});
}

void CHtmlSyntaxChecker::UnknownAttributeError(const SSemanticTreeNode& attribute)
{
    m_errors.push_back({attribute.span, UnknownAttribute, SeverityError});
}

} // namespace Kesh::CodeAnalyzer
