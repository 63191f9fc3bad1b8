#include "Base/Exception.h"
#include "Markup/CssSyntaxChecker.h"
#include "Markup/HtmlCustomItemsKeeper.h"
#include "Markup/HtmlSyntaxChecker.h"
#include "Window/CAErrorsBar.h"
#include "Window/CAErrorsManager.h"
#include "markup/FakeHost.h"
#include "markup/MarkupTestText.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace Kesh::CodeAnalyzer {
namespace {

using SyntaxParser::BuildTrees;
using SyntaxParser::EMarkup;

std::string Print(const std::vector<SCAError>& errors)
{
    std::string text;
    for (const SCAError& error : errors) {
        EXPECT_EQ(error.type, SeverityError);
        text +=
            (text.empty() ? "" : " ") + std::to_string(error.code) + "@" + SyntaxParser::PrintSpan(error.pos);
    }
    return text;
}

struct SCase
{
    const char* text;
    const char* errors;
};

class Checkers : public ::testing::Test
{
protected:
    Checkers() { m_manager.Init(&m_application, &m_bar, {}); }

    /// What checkers that follow `m_document` post for a text.
    std::string Check(const char* text, EMarkup markup)
    {
        m_document->SetTrees(BuildTrees(text, markup));
        return Parse();
    }
    std::string Parse()
    {
        m_manager.Clear();
        m_document->Parse(true);
        m_manager.DeliverPosted();
        EXPECT_EQ(m_document->GetLocks(), 0);
        std::vector<SCAError> errors;
        m_manager.GetErrors(L"/p/a.php", errors);
        EXPECT_EQ(m_manager.GetAllErrors().size(), errors.empty() ? 0u : 1u);
        return Print(errors);
    }
    void ExpectErrors(EMarkup markup, std::initializer_list<SCase> cases)
    {
        for (const SCase& c : cases)
            EXPECT_EQ(Check(c.text, markup), c.errors) << c.text;
    }

    CFakeApplication m_application;
    CCAErrorsManager m_manager;
    CCAErrorsBar m_bar{&m_application, nullptr, &m_manager};
    CHtmlCustomItemsKeeper m_customItems;
    boost::shared_ptr<CFakeDocument> m_document = boost::make_shared<CFakeDocument>();
};

TEST_F(Checkers, HtmlFindsUnknownNames)
{
    m_customItems.AddTags({L"MyTag", L"mytag", L"\x130x"});
    m_customItems.AddAttributes({L"MyAttr", L"@Click"});
    CHtmlSyntaxChecker checker(nullptr, m_document, &m_application, &m_manager, &m_customItems);
    ExpectErrors(
        EMarkup::Html,
        {
            {"<p>a</p>", ""},
            {"<DIV CLASS=x><Br></DIV>", ""},
            {"\n <foo>", "2001@1,1-5,1"},
            {"<foo bar=1><baz qux></foo><p bar><b>", "2001@0,0-4,0 2002@29,0-32,0"},
            {"<p><fop><b x></fop></p><p y>", "2001@3,0-7,0 2002@26,0-27,0"},
            {"<div bar><p baz></p></div>", "2002@5,0-8,0 2002@12,0-15,0"},
            {"<div href width align>", "2002@5,0-9,0 2002@10,0-15,0"},
            // Authors' data.
            {"<p data-x DATA-Y data-><p xdata-x><p data>", "2002@26,0-33,0 2002@37,0-41,0"},
            // The user's own names.
            {"<MYTAG q MYATTR><p myattr @CLICK @klick>", "2002@7,0-8,0 2002@33,0-39,0"},
            // Modules of a content management system.
            {"<jdoc:include type=a name=b title=c style=d />", ""},
            {"<jdoc:include TYPE=a other=b class=c />", "2002@14,0-18,0 2002@21,0-26,0"},
            {"<JDOC:INCLUDE type=a class=b /><p type=a>", "2002@14,0-18,0 2002@34,0-38,0"},
            // What is not HTML's to name.
            {"<my-tag foo><h<?= 1 ?> bar><p <?= 1 ?>baz><svg viewBox=1><linearGradient gradientUnits=1>", ""},
            {"<my-tag><foo></my-tag><h<?= 1 ?>><q z>", "2001@8,0-12,0 2002@36,0-37,0"},
            {"<p onclick=a aria-label=b role=c itemprop=d xml:lang=e xlink:href=f>", "2002@55,0-65,0"},
        });
}

TEST_F(Checkers, CssFindsUnknownNames)
{
    CCssSyntaxChecker checker(nullptr, m_document, &m_application, &m_manager);
    ExpectErrors(EMarkup::Css,
                 {
                     {"a{COLOR:red;size:a4}@keyframes x{from{top:0}TO{top:1}}svg linearGradient{}", ""},
                     {"foo{colour:red}", "2501@0,0-3,0 2502@4,0-10,0"},
                     {"foo bar\n{a{topp:0}}", "2501@0,0-3,0 2501@4,0-7,0 2502@3,1-7,1"},
                     {"a{-webkit-frobnicate:1;-webkit-transform:none;--x:1;*zoomm:1}", "2502@2,0-20,0"},
                     {"my-tag{y:1;z:1}h<?= 1 ?>{<?= 2 ?>:1}", "2502@11,0-12,0"},
                 });
    EXPECT_EQ(Check("<foo style='bar:1'><style>baz{}</style>", EMarkup::Html),
              "2502@12,0-15,0 2501@26,0-29,0");
}

TEST_F(Checkers, TakeTheNamesThatTheHostHasNow)
{
    const char* markup = "<Zed mine=1><own yours=1 mine=2><late><p>";
    const auto check = [&](const SyntaxParser::ICompletionData* names, const char* text, EMarkup kind) {
        m_application.Parser().SetNames(names);
        CHtmlSyntaxChecker html(nullptr, m_document, &m_application, &m_manager, &m_customItems);
        CCssSyntaxChecker css(nullptr, m_document, &m_application, &m_manager);
        return Check(text, kind);
    };
    CFakeNames names({L"zed", L"own"}, {L"mine", L"our"});
    EXPECT_EQ(check(&names, markup, EMarkup::Html), "2002@17,0-22,0 2001@32,0-37,0");
    EXPECT_EQ(check(&names, "zed, p, from { OUR:0; size:0; color:0 }", EMarkup::Css),
              "2501@5,0-6,0 2502@30,0-35,0");
    names.AddTag(L"late");
    EXPECT_EQ(check(&names, markup, EMarkup::Html), "2002@17,0-22,0 2001@38,0-40,0");
    {
        const CFakeNames others({L"p"}, {});
        EXPECT_EQ(check(&others, "<p><zed>", EMarkup::Html), "2001@3,0-7,0");
    }
    EXPECT_EQ(check(nullptr, "<p mine><zed>", EMarkup::Html), "2002@3,0-7,0 2001@8,0-12,0");
}

TEST_F(Checkers, CssReportsAChildBeforeItsParent)
{
    SyntaxParser::SMarkupTrees trees = BuildTrees("foo bar baz{}", EMarkup::Css);
    auto& nodes = trees.css.nodes; // hang "bar" below "foo"
    nodes[1].firstChild = 2;
    nodes[1].nextSibling = 3;
    nodes[2].nextSibling = SyntaxParser::NoSemanticNode;
    CCssSyntaxChecker checker(nullptr, m_document, &m_application, &m_manager);
    m_document->SetTrees(std::move(trees));
    EXPECT_EQ(Parse(), "2501@4,0-7,0 2501@0,0-3,0 2501@8,0-11,0");
}

TEST_F(Checkers, FollowOneDocumentWhileTheyLive)
{
    {
        CHtmlSyntaxChecker html(nullptr, m_document, &m_application, &m_manager, &m_customItems);
        CCssSyntaxChecker css(nullptr, m_document, &m_application, &m_manager);
        EXPECT_EQ(Parse(), ""); // no trees yet
        EXPECT_EQ(Check("<foo><p style='bar:1'>", EMarkup::Html), "2001@0,0-4,0 2502@15,0-18,0");
        EXPECT_EQ(Check("<p>", EMarkup::Html), "");
    }
    EXPECT_EQ(Check("<foo>", EMarkup::Html), "");
}

TEST_F(Checkers, TakeAttributesInAnyOrder)
{
    const SyntaxParser::ICompletionData* data = SyntaxParser::GetBuiltInCompletionData();
    struct CUnsorted : SyntaxParser::IAttributeSource
    {
        const SyntaxParser::TCompletionList& GetAttributes(const std::wstring&) const override
        {
            return list;
        }
        SyntaxParser::TCompletionList list;
    } source;
    source.list = data->GetAttributeSource()->GetAttributes(L"a");
    std::reverse(source.list.begin(), source.list.end());
    m_application.SetAttributeSource(&source);
    CHtmlSyntaxChecker checker(nullptr, m_document, &m_application, &m_manager, &m_customItems);
    EXPECT_EQ(Check("<a href=x class=y title=z nope=1 id=b>", EMarkup::Html), "2002@26,0-30,0");
}

TEST_F(Checkers, NeedTheParsingService)
{
    CFakeApplication bare(false);
    const auto expectRaise = [](auto make) {
        try {
            make();
            FAIL();
        } catch (const Base::CCriticalError& error) {
            EXPECT_NE(std::string(error.what()).find("Bad sweak pointer"), std::string::npos);
            EXPECT_EQ(error.GetFile(), "Lib/sweak_ptr");
            EXPECT_EQ(error.GetLine(), 14);
        }
    };
    expectRaise([&] { CHtmlSyntaxChecker(nullptr, m_document, &bare, &m_manager, &m_customItems); });
    expectRaise([&] { CCssSyntaxChecker(nullptr, m_document, &bare, &m_manager); });
}

TEST_F(Checkers, WalkTreesOfAnyDepth)
{
    SyntaxParser::SMarkupTrees trees;
    for (SyntaxParser::SSemanticTree* tree : {&trees.html, &trees.css}) {
        tree->nodes.resize(1'000'000);
        for (std::size_t i = 0; i < tree->nodes.size(); ++i) {
            SyntaxParser::SSemanticTreeNode& node = tree->nodes[i];
            node.firstChild = i + 1 < tree->nodes.size() ? static_cast<SyntaxParser::TSemanticIndex>(i + 1)
                                                         : SyntaxParser::NoSemanticNode;
            node.kind = SyntaxParser::SemanticTag;
            node.regionKind = SyntaxParser::GetCssElementNameKind();
            node.name = L"b";
        }
        tree->nodes.back().name = L"x";
    }
    CHtmlSyntaxChecker html(nullptr, m_document, &m_application, &m_manager, &m_customItems);
    CCssSyntaxChecker css(nullptr, m_document, &m_application, &m_manager);
    m_document->SetTrees(std::move(trees));
    EXPECT_EQ(Parse(), "2001@0,0-0,0 2501@0,0-0,0");
}

TEST(HtmlCustomItemsKeeper, CollectsLowerCaseNames)
{
    CHtmlCustomItemsKeeper keeper;
    keeper.AddTags({L"MyTag", L"mytag"});
    keeper.AddTags({L"\xC4"
                    L"B"});
    keeper.AddAttributes({L"Attr"});
    EXPECT_EQ(keeper.GetTags(), (std::set<std::wstring>{L"mytag", L"\xE4"
                                                                  L"b"}));
    EXPECT_TRUE(keeper.HaveTag(L"MYTAG"));
    EXPECT_TRUE(keeper.HaveTag(L"\xE4"
                               L"B"));
    EXPECT_FALSE(keeper.HaveTag(L"attr"));
    EXPECT_TRUE(keeper.HaveAttribute(L"aTTR"));
    EXPECT_FALSE(keeper.HaveAttribute(L"mytag"));
}

} // namespace
} // namespace Kesh::CodeAnalyzer
