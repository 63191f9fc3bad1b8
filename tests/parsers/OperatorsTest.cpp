#include "Parsers/ExpressionStatementParser.h"
#include "SPBase/reader.h"
#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/SPDocument.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {

namespace {

using SyntaxParser::CRegion;

/// Feeds the regions of a text to one expression parser, as the driver would.
class CExpressionRun : public CParentParser, public SyntaxParser::IStateRegionHandler
{
public:
    explicit CExpressionRun(const std::wstring& text)
        : m_text(L"<?php " + text),
          m_reader(boost::make_shared<SyntaxParser::CSimpleReader>(m_text)),
          m_parser(SyntaxParser::GetDefRegions(), m_reader, this)
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
        {L"f();", L""},
    };
    for (const auto& [text, operations] : cases)
        EXPECT_EQ(CExpressionRun(text).Operations(), operations)
            << QString::fromWCharArray(text).toStdString();
}

} // namespace Kesh::CodeAnalyzer
