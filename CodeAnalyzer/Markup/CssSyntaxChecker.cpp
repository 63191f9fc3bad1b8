#include "Markup/CssSyntaxChecker.h"

#include "Base/CommonString.h"
#include "Base/EditDistance.h"
#include "Base/HostComponent.h"
#include "Diagnostics/DiagnosticList.h"
#include "Diagnostics/ErrorsReceiver.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::SSemanticTree;
using SyntaxParser::SSemanticTreeNode;
using SyntaxParser::TSemanticIndex;

namespace {

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

void CCssSyntaxChecker::SetDetailed(bool detailed)
{
    m_details.reset();
    if (detailed)
        m_details.emplace(m_names->Data());
}

void CCssSyntaxChecker::OnDocumentParsed(SyntaxParser::ISPDocument* document)
{
    m_errors.clear();
    {
        const CSemanticDataLock lock(*document);
        if (const SSemanticTree* tree = document->GetSemanticTree(L"CSS"); tree && !tree->nodes.empty())
            CheckCss(*tree, 0);
    }
    if (m_errors.empty())
        return;
    const auto [errors, details] = Apart(std::move(m_errors));
    m_errorsManager->AddErrors(m_owner ? m_owner->GetFilePath() : document->GetFilePath(), errors, details);
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
        if (m_names->HasStyleProperty(name.View()) || Contains(m_attributes, name.View()) ||
            PassesOver(node, name.View()))
            return;
        m_errors.push_back({{node.span, Code::UnknownProperty, SeverityError}, {}});
        if (m_details)
            m_errors.back().details = m_details->OfProperty(node);
    } else if (node.regionKind == m_cssSyntax->GetElementNameKind()) {
        const Base::CLowerCase name(node.name);
        if (m_names->HasTag(name.View()) || Contains(m_tags, name.View()))
            return;
        m_errors.push_back({{node.span, Code::UnknownElement, SeverityError}, {}});
        if (m_details)
            m_errors.back().details = m_details->OfElement(node);
    }
}

bool CCssSyntaxChecker::PassesOver(const SSemanticTreeNode& property, std::wstring_view name)
{
    if (!m_isPassedOver || !m_isPassedOver(property))
        return false;
    const std::size_t prefix = name.find(L'-', 1);
    const bool isStandard =
        prefix != std::wstring_view::npos && m_names->HasStyleProperty(name.substr(prefix + 1));
    if (isStandard || !m_details)
        return true;
    constexpr std::size_t Slips = 2;
    const SDetails details = m_details->OfProperty(property);
    const std::wstring* nearest = details.Find("nearest");
    return !nearest || Base::EditDistance(name, *nearest, Slips) > Slips;
}

} // namespace Kesh::CodeAnalyzer
