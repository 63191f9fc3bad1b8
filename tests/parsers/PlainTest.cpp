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
using SyntaxParser::PhpClass;
using SyntaxParser::PhpExtra;
using SyntaxParser::PhpInterface;
using SyntaxParser::PhpTag;
using SyntaxParser::PhpToken;
using SyntaxParser::PhpVar;

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
        : CBothWays(text, [&](IStateRegionHandler* handler) {
              SyntaxParser::CPhpScanner(text, {handler}).Run(nullptr);
          })
    {
    }
    template <class TSend> CBothWays(const std::wstring& text, const TSend& send)
    {
        const auto reader = boost::make_shared<SyntaxParser::CSimpleReader>(text);
        m_told.BeforeParse(reader);
        m_asking.BeforeParse(reader);
        send(this);
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

/// Regions of every kind whose text some rule tests, on one line; mostly in an order that is right.
class CRegions
{
public:
    /// Makes other ones.
    void Make()
    {
        text.clear();
        m_pieces.clear();
        Add(m_php.TagDefs[PhpTag::Opening], L"<?php ");
        for (unsigned left = 1 + m_random() % 3; left > 0; --left) {
            if (m_random() % 3 == 0)
                Word();
            Expression(3);
            Close(m_php.TokenDefs[PhpToken::Semicolon], L";");
        }
    }
    void Send(SyntaxParser::IStateRegionHandler* handler) const
    {
        std::size_t at = 0;
        for (const auto& [kind, size] : m_pieces) {
            const auto column = static_cast<std::int64_t>(at);
            CRegion region{{column, 0},
                           {column + static_cast<std::int64_t>(size), 0},
                           kind,
                           std::wstring_view(text).substr(at, size)};
            handler->AddRegion(&region);
            at += size;
        }
    }
    std::string Describe() const
    {
        std::string all;
        std::size_t at = 0;
        for (const auto& [kind, size] : m_pieces) {
            all +=
                QString::fromStdWString(text.substr(at, size) + L" " + kind->GetName() + L"\n").toStdString();
            at += size;
        }
        return all;
    }

    std::wstring text;

private:
    void Add(SyntaxParser::ISynRegion* kind, const wchar_t* piece)
    {
        text += piece;
        m_pieces.emplace_back(kind, std::wcslen(piece));
        if (m_random() % 6 == 0) {
            text += L' ';
            m_pieces.emplace_back(m_php.TokenDefs[PhpToken::Text], 1);
        }
    }
    void Word()
    {
        SyntaxParser::ISynRegion* const kinds[] = {
            m_php.TokenDefs[PhpToken::Keyword],      m_php.TokenDefs[PhpToken::ConstantWord],
            m_php.TokenDefs[PhpToken::Word],         m_php.TokenDefs[PhpToken::Word],
            m_php.TokenDefs[PhpToken::Text],         m_php.TokenDefs[PhpToken::PrefixWord],
            m_php.TokenDefs[PhpToken::ArgumentWord], m_php.ExtraDefs[PhpExtra::CalledWord]};
        Add(OneOf(kinds), OneOf(Words));
    }
    void Sign() { Add(m_php.TokenDefs[PhpToken::Text], OneOf(Signs)); }
    void Close(SyntaxParser::ISynRegion* kind, const wchar_t* piece)
    {
        Likely() ? Add(kind, piece) : Anything();
    }
    void Expression(int depth)
    {
        Operand(depth);
        for (unsigned left = m_random() % 3; left > 0; --left) {
            Likely() ? Operator() : Anything();
            Operand(depth);
        }
    }
    void Elements(int depth)
    {
        for (unsigned left = m_random() % 3; left > 0; --left) {
            Expression(depth);
            if (m_random() % 2) {
                Add(m_php.TokenDefs[PhpToken::DoubleArrow], L"=>");
                Expression(depth);
            }
            Close(m_php.TokenDefs[PhpToken::Comma], L",");
        }
    }
    void Operand(int depth)
    {
        if (!Likely())
            return Anything();
        switch (m_random() % (depth > 0 ? 11 : 6)) {
        case 0: Add(m_php.TokenDefs[PhpToken::Number], L"1"); break;
        case 1: String(); break;
        case 2: Word(); break;
        case 6:
            Add(m_php.TokenDefs[PhpToken::Opening], L"[");
            Elements(depth - 1);
            Close(m_php.TokenDefs[PhpToken::Closing], L"]");
            break;
        case 7:
            Add(m_php.TokenDefs[m_random() % 2 ? PhpToken::Keyword : PhpToken::Word], L"array");
            Add(m_php.TokenDefs[PhpToken::Opening], L"(");
            Elements(depth - 1);
            Close(m_php.TokenDefs[PhpToken::Closing], L")");
            break;
        case 8:
            Add(m_php.TokenDefs[PhpToken::Opening], L"(");
            m_random() % 2 ? Word() : Expression(depth - 1);
            Close(m_php.TokenDefs[PhpToken::Closing], L")");
            break;
        case 9:
            Word();
            Add(m_php.TokenDefs[PhpToken::Opening], L"(");
            Elements(depth - 1);
            Close(m_php.TokenDefs[PhpToken::Closing], L")");
            break;
        case 10:
            Add(m_php.VarDefs[PhpVar::Variable], L"$b");
            Add(m_php.TokenDefs[PhpToken::Opening], L"[");
            Expression(depth - 1);
            Close(m_php.TokenDefs[PhpToken::Closing], L"]");
            break;
        default: Add(m_php.VarDefs[PhpVar::Variable], L"$a"); break;
        }
    }
    void Operator()
    {
        switch (m_random() % 10) {
        case 0: Add(m_php.TokenDefs[PhpToken::Assign], L"="); break;
        case 1: Add(m_php.TokenDefs[PhpToken::Dot], L"."); break;
        case 2:
            Add(m_php.TokenDefs[PhpToken::Arrow], L"->");
            Word();
            Sign();
            break;
        case 3: Word(); break;
        default: Sign(); break;
        }
    }
    void Anything()
    {
        switch (m_random() % 8) {
        case 0: Word(); break;
        case 1: Sign(); break;
        case 2: Add(m_php.TokenDefs[PhpToken::Opening], OneOf({L"(", L"[", L"{"})); break;
        case 3: Add(m_php.TokenDefs[PhpToken::Closing], OneOf({L")", L"]", L"}"})); break;
        case 4: Add(AnyOf(m_php.VarDefs), L"$"); break;
        case 5: Add(AnyOf(m_php.TokenDefs), OneOf({L"x", L"e", L";", L"(", L" ", L"`"})); break;
        case 6:
            Add(OneOf<SyntaxParser::ISynRegion*>(
                    {m_php.ExtraDefs[PhpExtra::Function], m_php.ExtraDefs[PhpExtra::DeclaredName],
                     m_php.ClassDefs[PhpClass::Class], m_php.InterfaceDefs[PhpInterface::Interface],
                     AnyOf(m_php.CommentDefs), m_php.TagDefs[PhpTag::Closing],
                     m_php.TagDefs[PhpTag::Opening]}),
                L"function");
            break;
        default: Operand(0); break;
        }
    }
    void String()
    {
        Add(m_php.TokenDefs[PhpToken::StringStart], L"'");
        Add(m_php.TokenDefs[PhpToken::StringContent], OneOf({L"x", L"clone", L" ", L"("}));
        Add(m_php.TokenDefs[PhpToken::StringEnd], L"'");
    }
    bool Likely() { return m_random() % 12 != 0; }
    template <std::size_t Size>
    SyntaxParser::ISynRegion* AnyOf(SyntaxParser::ISynRegion* const (&kinds)[Size])
    {
        return kinds[1 + m_random() % (Size - 1)];
    }
    template <class T, std::size_t Size> T OneOf(T const (&choices)[Size])
    {
        return choices[m_random() % Size];
    }
    template <class T> T OneOf(std::initializer_list<T> choices)
    {
        return choices.begin()[m_random() % choices.size()];
    }

    static constexpr const wchar_t* Words[] = {
        L"php",        L"PHP",        L"array",    L"Array",   L"return",    L"break",
        L"brea\u212A", L"clone",      L"Clone",    L"and",     L"AND",       L"or",
        L"xor",        L"instanceof", L"exit",     L"echo",    L"print",     L"die",
        L"Die",        L"continue",   L"isset",    L"empty",   L"eval",      L"list",
        L"unset",      L"match",      L"int",      L"integer", L"float",     L"double",
        L"real",       L"string",     L"object",   L"bool",    L"boolean",   L"binary",
        L"e",          L"E",          L"yield",    L"include", L"require",   L"=",
        L"if",         L"else",       L"elseif",   L"endif",   L"foreach",   L"endforeach",
        L"as",         L"while",      L"endwhile", L"do",      L"for",       L"endfor",
        L"switch",     L"case",       L"default",  L"static",  L"public",    L"const",
        L"global",     L"throw",      L"catch",    L"use",     L"namespace", L"trait",
        L"extends",    L"implements", L"new",      L"fn",      L"foo",       L"\u00E9t\u00E9",
        L"\u0130nt",   L" clone ",    L" and",     L"self",    L"null"};
    static constexpr const wchar_t* Signs[] = {
        L"+",  L"-",   L"*",  L"/",   L"%",  L"&", L"|", L"^",   L"<<",  L">>", L"**",  L"||", L"&&",
        L"==", L"===", L"!=", L"!==", L"<>", L">", L"<", L">=",  L"<=",  L"?",  L":",   L"++", L"--",
        L"!",  L"~",   L"@",  L"::",  L"\\", L"$", L"`", L"...", L"<<<", L" ",  L" + ", L" :", L"\t"};

    const SyntaxParser::SPhpRegionDefs& m_php = SyntaxParser::GetDefRegions()->Php;
    std::vector<std::pair<SyntaxParser::ISynRegion*, std::size_t>> m_pieces;
    std::mt19937 m_random{11};
};

/// How many are compared; more of them when asked for.
std::size_t Rounds()
{
    const int wanted = qEnvironmentVariableIntValue("PLAIN_ROUNDS");
    return wanted > 0 ? static_cast<std::size_t>(wanted) : 20000;
}

} // namespace

// Most expressions never reach the states, if the source tells their texts; what is reported must be the
// same.
TEST(Plain, ReportsWhatTheStatesReport)
{
    CStatements statements;
    std::size_t clean = 0;
    const std::size_t rounds = Rounds();
    for (std::size_t round = 0; round < rounds; ++round) {
        const std::wstring text = statements.Text();
        const CBothWays both(text);
        ASSERT_EQ(both.told, both.asking) << QString::fromStdWString(text).toStdString();
        clean += both.told.empty();
    }
    EXPECT_GT(clean, rounds / 10) << "too few of them are right";
    EXPECT_LT(clean, rounds * 9 / 10) << "too few of them are wrong";
}

// Also where a region is of a kind that our scanner does not give its text.
TEST(Plain, AnyRegionsToo)
{
    CRegions regions;
    std::size_t clean = 0;
    const std::size_t rounds = Rounds();
    for (std::size_t round = 0; round < rounds; ++round) {
        regions.Make();
        const CBothWays both(regions.text, [&](auto* handler) { regions.Send(handler); });
        ASSERT_EQ(both.told, both.asking) << regions.Describe();
        clean += both.told.empty();
    }
    EXPECT_GT(clean, rounds / 20) << "too few of them are right";
    EXPECT_LT(clean, rounds * 9 / 10) << "too few of them are wrong";
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
