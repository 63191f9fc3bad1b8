#include "Diagnostics/ErrorsReceiver.h"
#include "Parsers/PhpSyntaxParser.h"
#include "SPBase/reader.h"
#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/SPDocument.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>
#include <random>

namespace Kesh::CodeAnalyzer {

namespace {

using SyntaxParser::CRegion;
using SyntaxParser::IReader;

/// One PHP checker, and what it has reported.
class CChecker : public IErrorsReceiver, private SyntaxParser::IParser
{
public:
    void BeforeParse(const boost::shared_ptr<IReader>& reader)
    {
        m_parser = std::make_unique<CPhpSyntaxParser>(SyntaxParser::GetDefRegions(), this);
        m_parser->InitParser(boost::shared_ptr<IParser>(boost::shared_ptr<void>(), this), reader);
        m_parser->BeforeParse({}, reader);
        m_found.clear();
    }
    void AddRegion(CRegion region) { m_parser->AddRegion(&region); }
    std::string AfterParse()
    {
        m_parser->AfterParse();
        return m_found;
    }

private:
    void AddErrors(const std::wstring&, const std::vector<SCAError>& errors, TDetails) override
    {
        for (const SCAError& e : errors)
            m_found += std::to_string(e.code) + " " + std::to_string(e.pos.start.y) + ":" +
                       std::to_string(e.pos.start.x) + "-" + std::to_string(e.pos.end.y) + ":" +
                       std::to_string(e.pos.end.x) + " ";
    }
    void InitComponent(SyntaxParser::ISPDocument*) override {}
    std::wstring GetComponentName() override { return {}; }
    void AddStateRegionHandler(SyntaxParser::IStateRegionHandler*) override {}

    std::unique_ptr<CPhpSyntaxParser> m_parser;
    std::string m_found;
};

/// Two checkers of the same regions; one has to ask the reader for the text of each.
class CBothWays : public SyntaxParser::IStateRegionHandler
{
public:
    explicit CBothWays(const std::wstring& text)
    {
        const auto reader = boost::make_shared<SyntaxParser::CSimpleReader>(text);
        m_told.BeforeParse(reader);
        m_asking.BeforeParse(reader);
        SyntaxParser::CPhpScanner(text, {this}).Run(nullptr);
        told = m_told.AfterParse();
        asking = m_asking.AfterParse();
    }

    std::string told;
    std::string asking;

private:
    int AddRegion(CRegion* region) override
    {
        m_told.AddRegion(*region);
        m_asking.AddRegion({region->start, region->end, region->definition});
        return 0;
    }
    void Init(boost::shared_ptr<IReader>) override {}
    bool BeforeParse(const SyntaxParser::STextChange&, boost::shared_ptr<IReader>) override { return true; }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    std::wstring GetSRName() override { return {}; }
    SyntaxParser::CIterator GetStartPos() override { return {}; }
    SyntaxParser::CIterator GetEndPos() override { return {}; }

    CChecker m_told;
    CChecker m_asking;
};

/// Statements that are mostly right, with something odd here and there.
class CStatements
{
public:
    std::wstring Text()
    {
        std::wstring text = L"<?php ";
        for (unsigned left = 1 + m_random() % 4; left > 0; --left) {
            text += Likely() ? OneOf({L"", L"", L"echo ", L"return "})
                             : OneOf({L"break ", L"if (", L"while (", L"foreach (", L"for (", L"switch (",
                                      L"case ", L"else ", L"function f(", L"static "});
            for (unsigned pairs = m_random() % 8; pairs > 0; --pairs)
                text += Likely() ? Operand() + Operator() : Likely() ? Operand() : Operator();
            text += Likely() ? L"$z" : L"";
            text += Likely() ? L";\n" : OneOf({L");", L") {", L"}", L":", L"\n", L"]);", L"?>\n<?php "});
        }
        return text;
    }

private:
    std::wstring Operand()
    {
        if (Likely())
            return OneOf({L"$a",     L"$b->c", L"f($x)",   L"1",           L"'s'",           L"\"d$e\"",
                          L"foo",    L"A\\B",  L"new A",   L"[$i, 2]",     L"array(1 => 2)", L"isset($j)",
                          L"A::c()", L"A::$d", L"(int)$k", L"fn($x) => 1", L"$l[1]",         L"true",
                          L"!$m",    L"-$n",   L"(1 + $o)"});
        return OneOf({L"f(",           L"[",           L"(",        L"array(", L"isset(",
                      L"(array) ",     L"(unset)",     L"...",      L"&",      L"++",
                      L"clone ",       L"Clone ",      L"php",      L"exit",   L"die(",
                      L"print ",       L"echo ",       L"list(",    L"match(", L"$$v",
                      L"`c`",          L"yield ",      L"include ", L"static", L"1.5",
                      L"1e3",          L"e",           L"$s{0}",    L"unset(", L"empty(",
                      L"string",       L"['k' =>",     L"\\C",      L"\n",     L"function() { g(); ",
                      L"new class { ", L"<<<A\nx\nA\n"});
    }
    std::wstring Operator()
    {
        if (Likely())
            return OneOf({L" + ", L"-", L" . ", L" = ", L" .= ", L"&&", L"===", L" and ", L" or ", L"??",
                          L" instanceof ", L"|", L"<=>", L" ? $p : ", L"?:"});
        return OneOf({L" ? ",     L" : ",    L",",        L", ",    L"=>",   L"->b", L"::c",   L"[",
                      L"]",       L")",      L"(",        L"++",    L"?\?=", L"\\",  L"}",     L"{",
                      L";",       L"\n",     L" as ",     L" + = ", L"->{",  L"!",   L"/* */", L"// x\n",
                      L"::class", L"->list", L"->print(", L"<<",    L"?->c("});
    }
    bool Likely() { return m_random() % 10 != 0; }
    std::wstring OneOf(std::initializer_list<const wchar_t*> pieces)
    {
        const wchar_t* piece = pieces.begin()[m_random() % pieces.size()];
        return std::wstring(piece) + (m_random() % 4 == 0 ? L" " : L"");
    }

    std::mt19937 m_random{7};
};

} // namespace

// Most expressions never reach the states, if the source tells their texts; what is reported must be the
// same.
TEST(Plain, ReportsWhatTheStatesReport)
{
    CStatements statements;
    std::size_t clean = 0;
    constexpr std::size_t Rounds = 20000;
    for (std::size_t round = 0; round < Rounds; ++round) {
        const std::wstring text = statements.Text();
        const CBothWays both(text);
        ASSERT_EQ(both.told, both.asking) << QString::fromStdWString(text).toStdString();
        clean += both.told.empty();
    }
    EXPECT_GT(clean, Rounds / 10) << "too few of them are right";
    EXPECT_LT(clean, Rounds * 9 / 10) << "too few of them are wrong";
}

// What is too long or too deep to be kept goes to the states half-way.
TEST(Plain, LongAndDeepOnesToo)
{
    const auto repeat = [](const std::wstring& piece, int times) {
        std::wstring text;
        for (int i = 0; i < times; ++i)
            text += piece;
        return text;
    };
    const std::wstring elements = repeat(L"'k' => [$a, 2],\n", 3000);
    const std::pair<std::wstring, std::string> cases[] = {
        {L"$a = [" + elements + L"];", ""},
        {L"$a = [" + elements + L"$b $c];", "101 3000:3-3000:5 "},
        {L"if (f([" + elements + L"])) { g(); }\n$d = 1 $e;", "101 3001:7-3001:9 "},
        {L"$a = [" + elements + L"]\n$b = 1;", "102 3001:0-3001:2 "},
        {L"$a = " + repeat(L"(", 40) + L"1" + repeat(L")", 40) + L";", ""},
        {L"$a = " + repeat(L"[", 40) + L"1" + repeat(L"]", 39) + L";", "101 0:91-0:92 "},
    };
    for (const auto& [text, expected] : cases) {
        const CBothWays both(L"<?php " + text);
        EXPECT_EQ(both.told, expected) << QString::fromStdWString(text.substr(0, 60)).toStdString();
        EXPECT_EQ(both.asking, expected);
    }
}

} // namespace Kesh::CodeAnalyzer
