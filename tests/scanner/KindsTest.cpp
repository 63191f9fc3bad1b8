#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/SPDocument.h"

#include <QString>
#include <gtest/gtest.h>

namespace Kesh::SyntaxParser {

namespace {

/// The kinds that a text's regions have, blanks left out: "VarDefs[3] TokenDefs[14] ...".
class CKinds : public IStateRegionHandler
{
public:
    static std::string Of(const std::wstring& text)
    {
        CKinds kinds;
        CPhpScanner(text, {&kinds}).Run(nullptr);
        return kinds.m_result;
    }
    int AddRegion(CRegion* region) override
    {
        if (region->text.find_first_not_of(L" \n") == std::wstring_view::npos)
            return 0;
        const QString name = QString::fromStdWString(region->definition->GetName());
        m_result += (m_result.empty() ? "" : " ") +
                    QString(name).remove("Defs").replace("[", "").remove("]").toStdString();
        return 0;
    }
    void Init(boost::shared_ptr<IReader>) override {}
    bool BeforeParse(const STextChange&, boost::shared_ptr<IReader>) override { return true; }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    std::wstring GetSRName() override { return {}; }
    CIterator GetStartPos() override { return {}; }
    CIterator GetEndPos() override { return {}; }

private:
    std::string m_result;
};

} // namespace

// A word, an arrow or a colon is what it acts as.
TEST(Kinds, FollowFromThePlace)
{
    const std::pair<const wchar_t*, const char*> cases[] = {
        {L"<?= $a ?>", "Tag1 Token16 Var3 Tag2"},
        {L"<?php static::a; static $b; static fn() => 1;",
         "Tag1 Token17 Token1 Token19 Token10 Token2 Var3 Token10 Token15 Extra3 Token3 Token4 Token21 "
         "Token20 Token10"},
        {L"<?php class A { static function list() { throw $b ?? throw $c; } }",
         "Tag1 Class1 Token19 Token3 Token2 Extra1 Extra5 Token3 Token4 Token3 Token2 Var3 Token21 Token15 "
         "Var3 "
         "Token10 Token4 Token4"},
        {L"<?php f(class: match($a) { 1 => 2 }, b: [1 => 2]);",
         "Tag1 Token19 Token3 Token19 Token1 Extra3 Token3 Var3 Token4 Token3 Token20 Token21 Token20 Token4 "
         "Token8 "
         "Token19 Token1 Token3 Token20 Token11 Token20 Token4 Token4 Token10"},
        {L"<?php function f(): ?A | B {}", "Tag1 Extra1 Extra5 Token3 Token4 Token1 Token19 Token3 Token4"},
        {L"<?php enum A: int { case Default = 1; }",
         "Tag1 Class1 Token19 Comment13 Comment13 Token3 Token2 Token17 Token14 Token20 Token10 Token4"},
        {L"<?php if (<<<A\nb\nA) b<<<A\nb\nA;",
         "Tag1 Token2 Token3 Token5 Token6 Token7 Token4 Comment13 Token1 Token18 Token10"},
        {L"<?php $a = <<<A\nb\n", "Tag1 Var3 Token14 Token1 Token6"},
        {L"<?php class A { use B { c as print; } }",
         "Tag1 Class1 Token19 Token3 Token2 Token19 Token3 Token19 Token2 Token19 Token10 Token4 Token4"},
        {L"<?php case $a ? 1 : 2: ", "Tag1 Token2 Var3 Token1 Token20 Token21 Token20 Token1"},
        {L"<?php \"a{$b[\"c\"]}\" . `d` . <<<E\nx\nE;",
         "Tag1 Token5 Token6 Token7 Token21 Token1 Token6 Token1 Token21 Token1 Token18 Token10"},
        {L"<?php $$a->b?->c ?\?= A\\B; #[C]\n// d ?> e",
         "Tag1 Var2 Var3 Token9 Token19 Token9 Token19 Token14 Token19 "
         "Token10 Comment12 Comment1 Tag2 Token22"},
        {L"<?php class A { public int $a { get => 1; } readonly int $b; var $c; }",
         "Tag1 Class1 Token19 Token3 Token2 Token19 Var3 Token3 Comment13 Comment13 Token20 Token10 Token4 "
         "Var1 "
         "Token19 Var3 Token10 Var1 Var3 Token10 Token4"},
        {L"<?php [f([1]) => 2, [3], 4 => 5]; array(array() => [6]);",
         "Tag1 Token3 Token19 Token3 Token3 Token20 Token4 Token4 Token21 Token20 Token8 Token3 Token20 "
         "Token4 "
         "Token8 Token20 Token11 Token20 Token4 Token10 Token2 Token3 Token2 Token3 Token4 Token21 Token3 "
         "Token20 Token4 Token4 Token10"},
        {L"<?php \"a", "Tag1 Token5 Token6"},
        {L"<?php __halt_compiler(); ) (", "Tag1 Extra3 Token3 Token4 Token10 Comment11"},
    };
    for (const auto& [text, kinds] : cases)
        EXPECT_EQ(CKinds::Of(text), kinds) << QString::fromWCharArray(text).toStdString();
}

// Every character lies in exactly one region, and positions count characters and lines.
TEST(Kinds, PositionsHaveNoGaps)
{
    class CPositions : public CKinds
    {
    public:
        int AddRegion(CRegion* region) override
        {
            EXPECT_EQ(region->start, end);
            end = region->end;
            return 0;
        }
        CIterator end;
    };
    CPositions positions;
    const std::wstring text = L"\U0001F600<p>\n<?php /* a\nb */ $é = 'x\ny';\n\n?>\n<?= 1";
    CPhpScanner(text, {&positions}).Run(nullptr);
    EXPECT_EQ(positions.end, (CIterator{5, 6}));
}

} // namespace Kesh::SyntaxParser
