#include "Parsers/PhpSyntaxParser.h"

#include "Base/CommonString.h"
#include "Diagnostics/DiagnosticList.h"
#include "Diagnostics/ErrorsReceiver.h"
#include "Grammar/PhpGrammarChecker.h"
#include "Grammar/RecordMerge.h"
#include "Parsers/ClassParser.h"
#include "Parsers/CompoundStatementParser.h"
#include "Parsers/ConstExpressionParser.h"
#include "Parsers/ExpressionStatementParser.h"
#include "Parsers/ForParser.h"
#include "Parsers/ForeachParser.h"
#include "Parsers/FunctionStatementParser.h"
#include "Parsers/GlobalExpressionParser.h"
#include "Parsers/IfElseParser.h"
#include "Parsers/NamespaceParser.h"
#include "Parsers/StatementDetails.h"
#include "Parsers/StaticExpressionParser.h"
#include "Parsers/SwitchParser.h"
#include "Parsers/TryCatchParser.h"
#include "Parsers/WarningSigns.h"
#include "Parsers/WhileParser.h"

#include <bit>
#include <type_traits>

namespace Kesh::CodeAnalyzer {

using Base::CCommonString;
using SyntaxParser::CIterator;
using SyntaxParser::CRegion;
using SyntaxParser::IParser;
using SyntaxParser::IReader;
using SyntaxParser::ISPDocument;
using SyntaxParser::PhpTag;
using SyntaxParser::PhpToken;
using SyntaxParser::STextChange;

namespace {

constexpr int PhpHandlerCode = 10;

template <class T> boost::shared_ptr<T> DocumentComponent(ISPDocument& document, const wchar_t* name)
{
    return boost::dynamic_pointer_cast<T>(document.GetComponent(name).lock());
}

/// Whether the parser does more for each bracket than the base, which does nothing.
template <class TParser>
constexpr bool HandlesBrackets = !std::is_same_v<decltype(&TParser::HandleBracketRegion),
                                                 decltype(&CStatementParser::HandleBracketRegion)>;

} // namespace

CPhpSyntaxParser::CPhpSyntaxParser(SyntaxParser::CDefRegions* defs, IErrorsReceiver* errorsManager)
    : m_defs(defs), m_classes(CRegionClasses::Shared(defs->Php)), m_errorsManager(errorsManager)
{
    HandlerCode = PhpHandlerCode;
}

CPhpSyntaxParser::~CPhpSyntaxParser()
{
    for (CStatementParser* parser : m_parsers)
        delete parser;
}

void CPhpSyntaxParser::Init(boost::shared_ptr<IReader> reader)
{
    m_reader = std::move(reader);
}

void CPhpSyntaxParser::InitComponent(ISPDocument* document)
{
    m_reader = DocumentComponent<IReader>(*document, L"IReader");
    DocumentComponent<IParser>(*document, L"IParser")->AddStateRegionHandler(this);
}

void CPhpSyntaxParser::InitParser(boost::shared_ptr<ISPDocument> document)
{
    InitParser(DocumentComponent<IParser>(*document, L"IParser"),
               DocumentComponent<IReader>(*document, L"IReader"));
}

void CPhpSyntaxParser::InitParser(boost::shared_ptr<IParser> parser, boost::shared_ptr<IReader> reader)
{
    m_reader = std::move(reader);
    parser->AddStateRegionHandler(this);

    // The first that claims a region wins, so the expression parser, which claims nearly anything, is last.
    AddParser<CCompoundStatementParser>("");
    AddParser<CIfElseParser>("ie");
    m_switches = AddParser<CSwitchParser>("sc");
    AddParser<CFunctionStatementParser>("");
    AddParser<CForeachParser>("fe");
    m_whiles = AddParser<CWhileParser>("wd");
    AddParser<CForParser>("f");
    AddParser<CClassParser>("t");
    AddParser<CGlobalExpressionParser>("g");
    AddParser<CStaticExpressionParser>("sp");
    AddParser<CConstExpressionParser>("c");
    AddParser<CTryCatchParser>("tc");
    AddParser<CNamespaceParser>("nu");
    AddParser<CExpressionStatementParser>("abcdefghijklmnopqrstuvwxyz");
}

template <class TParser> CStatementParser* CPhpSyntaxParser::AddParser(std::string_view letters)
{
    auto* parser = new TParser(m_defs, m_reader, this);
    m_parsers.push_back(parser);
    m_brackets |= HandlesBrackets<TParser>;
    for (const char letter : letters)
        m_byLetter[static_cast<std::size_t>(letter - 'a')] |= 1U << (m_parsers.size() - 1);
    return parser;
}

void CPhpSyntaxParser::FollowGrammar(ISPDocument& document, const IGrammarCheck* wanted)
{
    if (!wanted)
        return;
    auto grammar = std::make_unique<CPhpGrammarChecker>();
    if (!grammar->Follow(document))
        return;
    m_grammar = std::move(grammar);
    m_grammarWanted = wanted;
}

void CPhpSyntaxParser::SteFileName(const std::wstring& name)
{
    m_fileName = name;
}

std::wstring CPhpSyntaxParser::GetSRName()
{
    return L"CCAPhpSemanticParser";
}

std::wstring CPhpSyntaxParser::GetComponentName()
{
    return L"CCAPhpSemanticParser";
}

CIterator CPhpSyntaxParser::GetStartPos()
{
    return {-1, -1};
}

CIterator CPhpSyntaxParser::GetEndPos()
{
    return {2147483647, 2147483647};
}

bool CPhpSyntaxParser::BeforeParse(const STextChange& change, boost::shared_ptr<IReader> /*reader*/)
{
    m_active = nullptr;
    m_skipToEnd = 0;
    m_inPhp = 0;
    m_errors.clear();
    m_redeliver = m_delivering = m_taken = false;
    // With the grammar a check depends on its text alone. Without it, what the text of the last pass has left
    // unfinished is taken up again where a statement of this one ends.
    const SGrammarChoice choice = m_grammar ? m_grammarWanted->GetChoice(m_fileName) : SGrammarChoice{};
    m_exact = choice.enabled;
    if (m_exact)
        m_suspended.clear();
    for (CStatementParser* parser : m_parsers) {
        parser->SetExact(m_exact);
        parser->BeforeParse(change);
    }
    m_kept.Clear();
    m_keeping = m_exact;
    if (m_grammar)
        m_grammar->Expect(m_exact, choice.phpVersion, choice.versionFrom);
    return true;
}

void CPhpSyntaxParser::AfterParse()
{
    if (NeedsStatements())
        ParseKept();
    m_kept.Clear();
    for (CStatementParser* parser : m_parsers)
        parser->AfterParse();
    if (m_grammar && m_grammar->HasVerdict())
        ReportMerged();
    else if (!m_errors.empty())
        m_errorsManager->AddErrors(m_fileName, m_errors);
}

// With what is known of each record, since a host that asks for the grammar check wants to know.
void CPhpSyntaxParser::ReportMerged()
{
    std::vector<SDiagnostic> diagnostics;
    for (const SCAError& error : m_errors)
        diagnostics.push_back({error, StatementDetails(error, m_grammar->Tokens())});
    MergeRecords(diagnostics, m_grammar->Diagnostics());
    if (diagnostics.empty())
        return;
    const auto [errors, details] = Apart(std::move(diagnostics));
    m_errorsManager->AddErrors(m_fileName, errors, details);
}

// Most regions belong to a statement that has begun.
inline void CPhpSyntaxParser::DispatchRegion(CRegion* region)
{
    if (m_brackets) [[unlikely]]
        DispatchBracketRegion(region);
    if (m_active && !m_skipToEnd) [[likely]]
        m_active->DispathRegion(region);
    else
        DispatchToNone(region);
}

int CPhpSyntaxParser::AddRegion(CRegion* region)
{
    if (!m_inPhp)
        return EnterPhp(region);
    if (region->definition == m_defs->Php.TagDefs[PhpTag::Closing])
        m_inPhp = 0;
    if (m_keeping)
        return Keep(region);
    DispatchRegion(region);
    return 0;
}

int CPhpSyntaxParser::EnterPhp(CRegion* region)
{
    if (region->definition == m_defs->Php.TagDefs[PhpTag::Opening])
        m_inPhp = 1;
    return 0;
}

int CPhpSyntaxParser::Keep(CRegion* region)
{
    if (!m_kept.Add(*region)) {
        ParseKept();
        DispatchRegion(region);
    }
    return 0;
}

// The statement parsers need not look at what the grammar accepts, unless they may have to warn of it.
bool CPhpSyntaxParser::NeedsStatements() const
{
    return m_keeping && !(m_grammar->HasVerdict() && m_grammar->Accepts() && !MayWarn(m_grammar->Tokens()));
}

// What comes now comes because the statement parsers are to look at it.
bool CPhpSyntaxParser::NeedsRegions()
{
    const bool needs = NeedsStatements();
    m_keeping = false;
    return needs;
}

void CPhpSyntaxParser::ParseKept()
{
    m_keeping = false;
    m_kept.Replay([this](CRegion* region) { DispatchRegion(region); });
}

void CPhpSyntaxParser::DispatchToNone(CRegion* region)
{
    if (!m_skipToEnd)
        Offer(region);
    else if (region->definition == m_defs->Php.TokenDefs[PhpToken::Semicolon])
        m_skipToEnd = 0;
}

void CPhpSyntaxParser::DispatchBracketRegion(CRegion* region)
{
    const auto& tokens = m_defs->Php.TokenDefs;
    if (region->definition != tokens[PhpToken::Opening] && region->definition != tokens[PhpToken::Closing])
        return;
    for (CStatementParser* parser : m_parsers)
        parser->HandleBracketRegion(region);
}

// Most regions mean something to few parsers where a statement may begin: blanks, operators and variables to
// the last alone, a word to those that know one with its first letter.
std::uint32_t CPhpSyntaxParser::ParsersFor(const CRegion& region) const
{
    const std::uint32_t last = 1U << (m_parsers.size() - 1);
    const std::uint32_t all = 2 * last - 1;
    if (region.definition == m_defs->Php.TokenDefs[PhpToken::Text])
        return last;
    switch (m_classes->Of(region)) {
    case ERegionClass::Blank:
    case ERegionClass::Variable: return last;
    case ERegionClass::ArrayWord:
    case ERegionClass::BreakWord:
    case ERegionClass::EchoWord:
    case ERegionClass::OtherKeyword:
    case ERegionClass::ReturnWord:
    case ERegionClass::Word: {
        const wchar_t letter = CCommonString::AsciiLower(region.text.front());
        return letter >= L'a' && letter <= L'z' ? m_byLetter[static_cast<std::size_t>(letter - L'a')] : all;
    }
    default: return all;
    }
}

// Whether a parser has claimed it.
bool CPhpSyntaxParser::Offer(CRegion* region)
{
    m_taken = true;
    for (std::uint32_t left = ParsersFor(*region); left != 0; left &= left - 1) {
        CStatementParser* const parser = m_parsers[static_cast<std::size_t>(std::countr_zero(left))];
        if (parser->StatementStartRegion(region)) {
            m_active = parser;
            return true;
        }
    }
    return false;
}

void CPhpSyntaxParser::OnParsingContinue(CRegion* region, int offer)
{
    m_suspended.push_back(m_active);
    m_active = nullptr;
    if (!offer)
        return;
    const std::size_t depth = m_suspended.size();
    if (Offer(region) || m_suspended.empty())
        return;
    // A parser that does not claim the region may still have ended a statement with it. What it has resumed
    // then goes on only if nesting is followed exactly.
    if (m_exact && (m_active || m_suspended.size() != depth))
        return;
    m_active = m_suspended.back();
    m_suspended.pop_back();
}

void CPhpSyntaxParser::OnStructureEnd(CRegion* region, int redispatch)
{
    if (m_exact && redispatch && m_active && m_active == m_switches) { // its block is a part of it
        m_active = nullptr;
        Offer(region);
        return;
    }
    m_active = nullptr;
    if (!m_suspended.empty()) {
        m_active = m_suspended.back();
        m_suspended.pop_back();
        if (m_active)
            m_active->RestoreForContinue();
    }
    if (!redispatch) {
        m_taken = true;
        return;
    }

    // The resumed parser may end with the same region, and so may the one below it: a loop, since statements
    // can be nested deeper than the stack.
    m_redeliver = true;
    if (m_delivering) {
        ++m_ended;
        return;
    }
    m_delivering = true;
    m_ended = 1;
    m_taken = false;
    while (m_redeliver) {
        m_redeliver = false;
        if (m_active)
            m_active->DispathRegion(region);
    }
    m_delivering = false;
    OfferEnding(region);
}

// A region that ends statements reaches both what it resumes and whatever it starts: it is offered once for
// each statement it has ended. Followed exactly, it starts something only if nothing has taken it yet: what
// was resumed may have offered it or have ended with it, a `do` takes its `while`, and what an error skips
// starts nothing.
void CPhpSyntaxParser::OfferEnding(CRegion* region)
{
    if (!m_exact) {
        for (std::size_t left = m_ended; left > 0; --left)
            Offer(region);
    } else if (!m_taken && !m_skipToEnd && (!m_active || m_active != m_whiles)) {
        Offer(region);
    }
}

void CPhpSyntaxParser::OnStructureError(int code, CRegion* region, int skipToEnd)
{
    m_errors.push_back({{region->start, region->end}, code, SeverityError});
    for (CStatementParser* parser : m_suspended) {
        if (parser)
            parser->OnError();
    }
    m_suspended.clear();
    m_active = nullptr;
    m_redeliver = false;
    m_skipToEnd = skipToEnd;
    if (!m_skipToEnd)
        Offer(region);
    else if (region->definition == m_defs->Php.TokenDefs[PhpToken::Semicolon])
        m_skipToEnd = 0;
}

void CPhpSyntaxParser::AddErrors(const std::vector<SCAError>& errors)
{
    m_errors.insert(m_errors.end(), errors.begin(), errors.end());
}

} // namespace Kesh::CodeAnalyzer
