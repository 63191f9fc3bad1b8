#include "Parsers/CssSyntaxChecker.h"

#include "Base/CommonString.h"
#include "Base/HostComponent.h"
#include "Components/CAErrorsReceiver.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SSemanticTree;
using SyntaxParser::SSemanticTreeNode;
using SyntaxParser::TSemanticIndex;

namespace {

constexpr std::int32_t UnknownElement = 2501;
constexpr std::int32_t UnknownProperty = 2502;

bool Contains(const std::vector<std::wstring_view>& names, std::wstring_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

CCssSyntaxChecker::CCssSyntaxChecker(ICheckOwner* owner,
                                     boost::shared_ptr<SyntaxParser::ISPDocument> document,
                                     SDK::IApplication* application, IErrorsReceiver* errorsManager)
    : m_application(application), m_errorsManager(errorsManager), m_owner(owner)
{
    const auto parser =
        Base::GetHostComponent<SyntaxParser::IParserComponent>(m_application, L"IParserComponent");
    m_cssSyntax = parser->GetCssSyntax();
    m_names = CMarkupNames::Of(parser);
    FillTags();
    FillAttributes();
    m_connection = document->GetEndOfParseSignal().connect(
        [this](SyntaxParser::ISPDocument* parsed) { OnDocumentParsed(parsed); });
}

void CCssSyntaxChecker::FillTags()
{
    m_tags = {L"from", L"to"}; // keyframes stand where elements do
}

void CCssSyntaxChecker::FillAttributes()
{
    m_attributes = {L"size"}; // of page rules only
}

void CCssSyntaxChecker::OnDocumentParsed(SyntaxParser::ISPDocument* document)
{
    m_errors.clear();
    {
        const CSemanticDataLock lock(*document);
        if (const SSemanticTree* tree = document->GetSemanticTree(L"CSS"); tree && !tree->nodes.empty())
            CheckCss(*tree, 0);
    }
    if (!m_errors.empty())
        m_errorsManager->AddErrors(m_owner ? m_owner->GetFilePath() : document->GetFilePath(), m_errors);
}

void CCssSyntaxChecker::CheckCss(const SSemanticTree& tree, TSemanticIndex top)
{
    // The nodes whose children are being checked, outermost first: a node's turn comes after its children.
    std::vector<TSemanticIndex> open;
    TSemanticIndex next = tree.nodes[top].firstChild;
    for (;;) {
        while (next != SyntaxParser::NoSemanticNode) {
            open.push_back(next);
            next = tree.nodes[next].firstChild;
        }
        if (open.empty())
            return;
        CheckName(tree.nodes[open.back()]);
        next = tree.nodes[open.back()].nextSibling;
        open.pop_back();
    }
}

void CCssSyntaxChecker::CheckName(const SSemanticTreeNode& node)
{
    if (node.regionKind == m_cssSyntax->GetPropertyNameKind()) {
        const Base::CLowerCase name(node.name);
        if (!m_names->HasStyleProperty(name.View()) && !Contains(m_attributes, name.View()))
            m_errors.push_back({node.span, UnknownProperty, SeverityError});
    } else if (node.regionKind == m_cssSyntax->GetElementNameKind()) {
        const Base::CLowerCase name(node.name);
        if (!m_names->HasTag(name.View()) && !Contains(m_tags, name.View()))
            m_errors.push_back({node.span, UnknownElement, SeverityError});
    }
}

} // namespace Kesh::CodeAnalyzer
