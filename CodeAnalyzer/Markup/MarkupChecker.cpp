#include "Markup/MarkupChecker.h"

#include "Diagnostics/DiagnosticList.h"
#include "Diagnostics/ErrorsReceiver.h"
#include "Markup/HtmlAttributes.h"
#include "Markup/HtmlIds.h"
#include "Markup/HtmlNesting.h"
#include "Markup/HtmlProblems.h"
#include "Markup/MarkupKind.h"
#include "Markup/OthersNames.h"

#include <boost/pointer_cast.hpp>
#include <utility>

namespace Kesh::CodeAnalyzer {

using SyntaxParser::EHtmlProblem;
using SyntaxParser::EStyleKind;
using SyntaxParser::IMarkupTokens;
using SyntaxParser::ISPDocument;
using SyntaxParser::SHtmlToken;
using SyntaxParser::SMarkupSpan;
using SyntaxParser::SStyleToken;

CMarkupChecker::CMarkupChecker(const IMarkupCheck* wanted, ICheckOwner* owner, IErrorsReceiver* receiver)
    : m_wanted(wanted), m_owner(owner), m_receiver(receiver), m_styles(m_report)
{
    auto nesting = std::make_unique<CHtmlNesting>(m_report);
    const CTemplateTokens& tokens = nesting->Tokens();
    m_nesting = nesting.get();
    m_parts.push_back(std::move(nesting));
    m_parts.push_back(std::make_unique<CHtmlProblems>(m_report));
    m_parts.push_back(std::make_unique<CHtmlAttributes>(m_report));
    m_parts.push_back(std::make_unique<CHtmlIds>(m_report, tokens));
}

void CMarkupChecker::Follow(ISPDocument& document)
{
    const auto source =
        boost::dynamic_pointer_cast<IMarkupTokens>(document.GetComponent(L"IMarkupTokens").lock());
    if (!source)
        return;
    source->AddMarkupHandler(this);
    for (const auto& part : m_parts)
        part->Follow(document);
    if (m_path.empty())
        m_path = document.GetFilePath();
    m_connection =
        document.GetEndOfParseSignal().connect([this](ISPDocument* /*parsed*/) { OnDocumentParsed(); });
}

bool CMarkupChecker::PassesOver(const SyntaxParser::SSemanticTreeNode& node) const
{
    if (!m_isChecked)
        return false;
    const bool isTag = node.kind == SyntaxParser::SemanticTag;
    return m_isXml || (isTag ? IsPrefixed(node.name) : IsVendorAttribute(node.name)) ||
           m_report.IsBroken(node.span.start);
}

bool CMarkupChecker::PassesOverProperty(const SyntaxParser::SSemanticTreeNode& property) const
{
    return m_isChecked && IsVendorProperty(property.name);
}

bool CMarkupChecker::BeginMarkup(const SyntaxParser::IMarkupPlaces& places)
{
    m_found.clear();
    m_isChecked = false;
    if (m_owner)
        m_path = m_owner->GetFilePath();
    if (!m_wanted->IsWanted(m_path))
        return false;
    m_isChecked = true;
    m_isXml = IsXml(places);
    m_report.Begin(places);
    for (const auto& part : m_parts)
        part->Begin();
    return true;
}

void CMarkupChecker::AddHtml(const SHtmlToken& token)
{
    for (const auto& part : m_parts)
        part->AddHtml(token);
}

void CMarkupChecker::AddProblem(EHtmlProblem problem, SMarkupSpan span)
{
    for (const auto& part : m_parts)
        part->AddProblem(problem, span);
}

void CMarkupChecker::BeginStyle(EStyleKind kind, SMarkupSpan whole)
{
    m_styles.Begin(kind, whole);
}

void CMarkupChecker::AddStyle(const SStyleToken& token)
{
    m_styles.Add(token);
}

void CMarkupChecker::EndStyle()
{
    m_styles.End();
}

void CMarkupChecker::EndMarkup()
{
    for (const auto& part : m_parts)
        part->End();
    m_found = m_report.Take();
    if (m_halves)
        m_halves->Add(m_path, m_nesting->TakeHalves());
}

void CMarkupChecker::KeepHalves(CTemplateHalves* halves)
{
    m_halves = halves;
    m_nesting->KeepHalves();
}

void CMarkupChecker::OnDocumentParsed()
{
    if (m_found.empty())
        return;
    const auto [errors, details] = Apart(std::exchange(m_found, {}));
    m_receiver->AddErrors(m_path, errors, details);
}

} // namespace Kesh::CodeAnalyzer
