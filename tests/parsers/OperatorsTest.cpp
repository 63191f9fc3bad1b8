#include "Diagnostics/ErrorsReceiver.h"
#include "Parsers/PhpSyntaxParser.h"
#include "Parsers/SubExpressionParsers.h"
#include "SPBase/reader.h"
#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/SPDocument.h"

#include <boost/make_shared.hpp>
#include <cwchar>
#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {

namespace {

using SyntaxParser::CRegion;
using SyntaxParser::PhpToken;
using SyntaxParser::PhpVar;

/// Feeds the regions of a text to one expression parser, as the driver would.
class CExpressionRun : public CParentParser, public SyntaxParser::IStateRegionHandler
{
public:
    explicit CExpressionRun(const std::wstring& text, bool tellsTexts = true)
        : m_text(L"<?php " + text),
          m_reader(boost::make_shared<SyntaxParser::CSimpleReader>(m_text)),
          m_parser(SyntaxParser::GetDefRegions(), m_reader, this),
          m_tellsTexts(tellsTexts)
    {
        SyntaxParser::CPhpScanner(m_text, {this}).Run(nullptr);
    }

    /// "left op right" for each operation, in the order in which they were recorded.
    std::wstring Operations()
    {
        const auto text = [this](const SyntaxParser::SScheme& s) {
            return m_reader->GetText(s.start, s.end);
        };
        std::wstring result;
        for (const SSubExpr& e : m_parser.GetSubExpressions())
            result += L"(" + text(e.left) + L" " + e.op + L" " + text(e.right) + L")";
        return result;
    }

    int AddRegion(CRegion* region) override
    {
        if (!m_tellsTexts)
            region->text = {};
        if (m_started && !m_ended)
            m_parser.DispathRegion(region);
        else if (!m_ended)
            m_started = m_parser.StatementStartRegion(region);
        return 0;
    }
    void OnStructureEnd(CRegion*, int) override { m_ended = true; }
    void OnStructureError(int, CRegion*, int) override { m_ended = true; }
    void AddErrors(const std::vector<SCAError>&) override {}
    void Init(boost::shared_ptr<SyntaxParser::IReader>) override {}
    bool BeforeParse(const SyntaxParser::STextChange&, boost::shared_ptr<SyntaxParser::IReader>) override
    {
        return true;
    }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    std::wstring GetSRName() override { return {}; }
    SyntaxParser::CIterator GetStartPos() override { return {}; }
    SyntaxParser::CIterator GetEndPos() override { return {}; }

private:
    std::wstring m_text;
    boost::shared_ptr<SyntaxParser::IReader> m_reader;
    CExpressionStatementParser m_parser;
    bool m_tellsTexts;
    bool m_started = false;
    bool m_ended = false;
};

} // namespace

TEST(Operators, OperationsAreRecordedAsTheyAreReduced)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"$a = $b + $c * $d;", L"($c * $d)($b + $c * $d)($a = $b + $c * $d)"},
        {L"$a || $b + $c;", L"($a || $b)($a || $b + $c)"},
        {L"$a - $b - $c;", L"($a - $b)($a - $b - $c)"},
        {L"($a + $b) * $c;", L"($a + $b)(($a + $b) * $c)"},
        {L"$a * f($b, $c) + 1;", L"($a * f($b, $c))($a * f($b, $c) + 1)"},
        {L"$a + $b % $c;", L"($a + $b)($a + $b % $c)"},
        {L"$a = [$b + $c => f($d . $e)] + $g", L"($b + $c)($d . $e)"},
        {L"f();", L""},
    };
    for (const auto& [text, operations] : cases)
        for (const bool tellsTexts : {true, false})
            EXPECT_EQ(CExpressionRun(text, tellsTexts).Operations(), operations)
                << QString::fromWCharArray(text).toStdString();
}

namespace {

/// Takes what a parser that is driven by hand reports.
struct CParent : CParentParser
{
    void OnStructureEnd(CRegion*, int redispatch) override
    {
        reports += L"end" + std::to_wstring(redispatch) + L' ';
    }
    void OnParsingContinue(CRegion*, int) override { reports += L"nest "; }
    void OnStructureError(int code, CRegion*, int) override { reports += std::to_wstring(code) + L' '; }
    void AddErrors(const std::vector<SCAError>&) override {}
    std::wstring reports;
};

struct CErrors : IErrorsReceiver
{
    void AddErrors(const std::wstring&, const std::vector<SCAError>& errors, TDetails) override
    {
        count += errors.size();
    }
    std::size_t count = 0;
};

/// One line of text, cut by hand.
class CByHand : private SyntaxParser::IParser
{
public:
    explicit CByHand(const std::wstring& text)
        : reader(boost::make_shared<SyntaxParser::CSimpleReader>(text)), m_text(text)
    {
    }
    /// The next piece of the text, which must follow the last one but for blanks.
    CRegion Next(const std::wstring& piece, SyntaxParser::ISynRegion* kind)
    {
        const std::size_t at = m_text.find(piece, m_end);
        m_end = at + piece.size();
        return CRegion{{static_cast<std::int64_t>(at), 0}, {static_cast<std::int64_t>(m_end), 0}, kind};
    }

    boost::shared_ptr<IParser> AsParser() { return {boost::shared_ptr<void>(), this}; }

    SyntaxParser::CDefRegions* defs = SyntaxParser::GetDefRegions();
    const SyntaxParser::SPhpRegionDefs& php = defs->Php;
    boost::shared_ptr<SyntaxParser::IReader> reader;
    CParent parent;

private:
    void InitComponent(SyntaxParser::ISPDocument*) override {}
    std::wstring GetComponentName() override { return {}; }
    void AddStateRegionHandler(SyntaxParser::IStateRegionHandler*) override {}

    std::wstring m_text;
    std::size_t m_end = 0;
};

} // namespace

TEST(ByHand, RegionKindsCanBeMade)
{
    struct CKind : SyntaxParser::ISynRegion
    {
    } kind;
    CByHand text(L"php");
    CRegion region = text.Next(L"php", &kind);
    CExpressionStatementParser parser(text.defs, text.reader, &text.parent);
    EXPECT_FALSE(parser.StatementStartRegion(&region)) << "of a kind that nobody knows";
    EXPECT_EQ(kind.GetName(), L"");
    // The word after a short opening tag, whatever kind of word it is.
    for (const int index : {PhpToken::ConstantWord, PhpToken::Word}) {
        region.definition = text.php.TokenDefs[index];
        EXPECT_FALSE(parser.StatementStartRegion(&region)) << index;
    }
}

// Where a statement begins it is blank; where an operand is due it is a name.
TEST(ByHand, TheWordAfterAShortTagIsAnOperand)
{
    for (const wchar_t* before : {L"=", L"+", L"(", L"["}) {
        CByHand text(L"$a " + std::wstring(before) + L" php ;");
        CRegion variable = text.Next(L"$a", text.php.VarDefs[PhpVar::Variable]);
        const bool isBracket = std::wcschr(L"([", *before);
        CRegion sign = text.Next(before, text.php.TokenDefs[isBracket         ? PhpToken::Opening
                                                            : *before == L'=' ? PhpToken::Assign
                                                                              : PhpToken::Text]);
        CRegion word = text.Next(L"php", text.php.TokenDefs[PhpToken::Word]);
        CRegion end = text.Next(L";", text.php.TokenDefs[PhpToken::Semicolon]);
        CExpressionStatementParser parser(text.defs, text.reader, &text.parent);
        ASSERT_TRUE(parser.StatementStartRegion(&variable));
        for (CRegion* region : {&sign, &word, &end})
            parser.DispathRegion(region);
        EXPECT_EQ(text.parent.reports, isBracket ? L"101 " : L"end0 ");
        parser.DispathRegion(&word);
        EXPECT_FALSE(parser.StatementStartRegion(&word));
    }
}

// A parser that nests statements while none is active leaves nobody to be resumed.
TEST(ByHand, NobodyCanBeSuspended)
{
    CByHand text(L"} else");
    CRegion brace = text.Next(L"}", text.php.TokenDefs[PhpToken::Closing]);
    CRegion word = text.Next(L"else", text.php.TokenDefs[PhpToken::Keyword]);
    CErrors errors;
    CPhpSyntaxParser driver(text.defs, &errors);
    driver.InitParser(text.AsParser(), text.reader);
    for (int pass = 0; pass < 2; ++pass) {
        driver.BeforeParse({}, text.reader);
        for (int i = 0; i < 3; ++i)
            driver.OnParsingContinue(&brace, i % 2);
        driver.OnStructureEnd(&brace, 1);
        driver.OnStructureEnd(&brace, 0);
        if (pass == 1)
            driver.OnStructureError(101, &word, 0);
        driver.AfterParse();
    }
    EXPECT_EQ(errors.count, 2U) << "the error, and the `else` that it is offered as";
}

TEST(ByHand, AnOperandEndsAtTheBracketAfterAWord)
{
    CByHand text(L"f (");
    CRegion word = text.Next(L"f", text.php.TokenDefs[PhpToken::Word]);
    CRegion bracket = text.Next(L"(", text.php.TokenDefs[PhpToken::Opening]);
    COperandParser operand(text.defs, text.reader, &text.parent);
    ASSERT_TRUE(operand.StatementStartRegion(&word));
    operand.DispathRegion(&bracket);
    EXPECT_EQ(text.parent.reports, L"end0 ");
}

TEST(ByHand, AStateSetFromOutsideTakesWhatComes)
{
    for (int state = 0; state <= 35; ++state)
        for (const wchar_t* bracket : {L"(", L"[", L"{", L")", L"]", L"}"}) {
            CByHand text(bracket);
            CRegion region = text.Next(
                bracket,
                text.php.TokenDefs[std::wcschr(L"([{", *bracket) ? PhpToken::Opening : PhpToken::Closing]);
            COperandParser operand(text.defs, text.reader, &text.parent);
            operand.SetState(state);
            operand.DispathRegion(&region);
        }
}

TEST(ByHand, AStateComesBackAfterNestedStatements)
{
    CByHand text(L"$a + ;");
    CRegion variable = text.Next(L"$a", text.php.VarDefs[PhpVar::Variable]);
    CRegion plus = text.Next(L"+", text.php.TokenDefs[PhpToken::Text]);
    CRegion end = text.Next(L";", text.php.TokenDefs[PhpToken::Semicolon]);
    CExpressionStatementParser parser(text.defs, text.reader, &text.parent);
    ASSERT_TRUE(parser.StatementStartRegion(&variable));
    parser.DispathRegion(&plus);
    parser.OnParsingContinue(&plus, 0);
    parser.OnStructureEnd(&plus, 0);
    parser.DispathRegion(&end); // where an operand is still due
    EXPECT_EQ(text.parent.reports, L"nest 101 ");
}

TEST(ByHand, OperatorsCanBeAskedAbout)
{
    struct SCase
    {
        const wchar_t* text;
        PhpToken::EIndex kind;
        const char* tests;
        int priority;
    };
    const SCase cases[] = {{L"||", PhpToken::Text, "b", 5},        {L"**", PhpToken::Text, "a", -1},
                           {L"-", PhpToken::Text, "ap", 5},        {L"++", PhpToken::Text, "ps", -1},
                           {L"clone", PhpToken::Word, "p", -1},    {L"Clone", PhpToken::Keyword, "", -1},
                           {L"ISSET", PhpToken::Keyword, "f", -1}, {L"Print", PhpToken::Word, "n", -1},
                           {L"Int", PhpToken::Keyword, "t", -1},   {L"XOR", PhpToken::Word, "b", -1},
                           {L".", PhpToken::Dot, "ba", -1},        {L"&&", PhpToken::Text, "b", 6},
                           {L"(", PhpToken::Opening, "", 10}};
    for (const SCase& c : cases) {
        CByHand text(c.text);
        CRegion region = text.Next(c.text, text.php.TokenDefs[c.kind]);
        CExpressionStatementParser parser(text.defs, text.reader, &text.parent);
        std::string yes;
        yes += parser.IsBinaryOperator(&region) ? "b" : "";
        yes += parser.IsBinaryOperatorCanBeAssign(&region) ? "a" : "";
        yes += parser.IsPrefixOperator(&region) ? "p" : "";
        yes += parser.IsSuffixOperator(&region) ? "s" : "";
        yes += parser.IsFuncStyleKeyword(&region) ? "f" : "";
        yes += parser.IsNoNeedParamsFuncKeyword(&region) ? "n" : "";
        yes += parser.IsTypeRegion(&region) ? "t" : "";
        EXPECT_EQ(yes, c.tests) << QString::fromWCharArray(c.text).toStdString();
        EXPECT_EQ(parser.GetOperatorPriority(c.text), c.priority);
        EXPECT_FALSE(parser.IsTerminalRegion(&region));
        parser.AddOperator(&region);
        parser.AddOperator(std::wstring(L")")); // nothing to close is no harm
    }
}

} // namespace Kesh::CodeAnalyzer
